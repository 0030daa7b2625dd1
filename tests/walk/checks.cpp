#include "event_wait.h"
#include "resources.h"
#include "walk.h"

#include <QApplication>
#include <QFile>
#include <QMessageBox>
#include <QThread>
#include <utility>

using namespace std::chrono_literals;

namespace {
constexpr auto quiet = 350; // ms without a word, longer than any fault makes a switch wait
constexpr auto longestQuiet = 60s;
constexpr auto longestReading = 8s;
constexpr int checksOfAWizard = 4; // the wizard is run again in every fourth
constexpr int firstLegs = 5;       // until caches are full

/// Modules are searched for and logged in to without the event loop, as the dialogs that do it are
/// made: every search takes 60 ms here, every login behind it 30 ms. The desk's report of them is
/// read when the loop turns again.
constexpr qint64 longestGap = 2000;        // ms
constexpr auto reportsAreRead = 200;       // ms
constexpr qint64 waitOfASearch = 75;       // ms, with what the machine adds
constexpr qint64 waitOfALogin = 40;        // ms
constexpr qint64 memoryBound = 24 * 1024;  // KiB above that of the first legs
constexpr qint64 memoryOfAFileDialog = 20; // KiB that Qt's own one keeps each time
constexpr int filesBound = 4;              // above those of the first legs

/// A dialog that no answer closes.
class StubbornDialog : public QDialog
{
public:
    void reject() override {}
};
} // namespace

/// The switches behave again and the window is read back; then everything has to be right.
void Walk::check()
{
    tell("check");
    ++figures_.checks;
    answers_.setObliging(true);
    answers_.follow(plan_.seed);
    const auto steps = {&Walk::settle,        &Walk::connectAgain,   &Walk::readBack,
                        &Walk::checkWindow,   &Walk::checkFile,      &Walk::checkTouch,
                        &Walk::checkCommands, &Walk::breakSomething, &Walk::checkDialogs,
                        &Walk::checkGap,      &Walk::checkResources};
    for (const auto step : steps) {
        if (failures_.isEmpty())
            (this->*step)();
    }
    answers_.setObliging(false);
}

void Walk::settle()
{
    const QList<SwitchPicture> seen = desk_.look();
    bool isLockedOut = false;
    for (const SwitchPicture &picture : seen)
        isLockedOut =
            isLockedOut ||
            (picture.contains("Module username") &&
             (picture["Module username"].isEmpty() || picture["Module password"].isEmpty()));
    desk_.heal(isLockedOut);
    waitForQuiet();
    // What was asked in trouble and has no answer may end the program yet.
    if (user_.isOnNetwork() && !user_.isGreen())
        waitUntil([this] { return user_.isGreen(); },
                  User::quickSettings().panel.handshakeWatchdog + 50ms);
    desk_.forgetTrouble();
}

void Walk::waitForQuiet()
{
    const auto isQuiet = [this] {
        const QString terminal = user_.terminal();
        if (terminal != lastTerminal_ || !DialogAnswers::shown().isEmpty() || desk_.isSpeaking()) {
            lastTerminal_ = terminal;
            sinceTerminal_.start();
        }
        return sinceTerminal_.elapsed() > quiet && desk_.quietFor() > quiet;
    };
    sinceTerminal_.start();
    if (!waitUntil(isQuiet, longestQuiet))
        fail("quiet", QStringLiteral("neither the switches nor the window come to rest; ") +
                          DialogAnswers::shown());
    user_.clearTerminal();
}

void Walk::connectAgain()
{
    const QList<SwitchPicture> seen = desk_.look();
    const int unit = user_.chosenUnit();
    const bool isGone = user_.isOnNetwork() &&
                        seen.value(unit - 1)["Module address"] != user_.moduleAddress().toLatin1();
    const bool isWizardsTurn = user_.isOnNetwork() && figures_.checks % checksOfAWizard == 0;
    if (unit == 0 || isGone || isWizardsTurn)
        user_.press("pushButton_Connection_Settings");
    else if (!user_.isGreen())
        user_.press("pushButton_ON_Connection");
    watch_.choose(user_.chosenUnit());
    if (!waitUntil([this] { return user_.isGreen(); }, longestReading))
        fail("connection", QStringLiteral("the window does not find the switch again"));
    waitForQuiet();
}

void Walk::readBack()
{
    if (!waitUntil([this] { return user_.isEnabled("pushButton_Refresh"); }, longestReading)) {
        fail("refresh", QStringLiteral("Refresh stays disabled"));
        return;
    }
    user_.press("pushButton_Refresh");
    waitForQuiet();
}

SwitchPicture Walk::pictureOfChosen()
{
    (void)desk_.look();
    return desk_.lastSeen(user_.chosenUnit());
}

void Walk::checkWindow()
{
    const SwitchPicture picture = pictureOfChosen();
    QString difference;
    const auto agrees = [&] {
        difference = differenceToWindow(picture, user_.window(), isNameKnown_);
        return difference.isEmpty();
    };
    if (!waitUntil(agrees, 1s))
        fail("window", difference);
}

void Walk::checkFile()
{
    const QString name = QStringLiteral("check.txt");
    QFile file(folder_.filePath(name));
    file.remove();
    Step save;
    save.action = "save";
    save.rest = name.toLatin1();
    user_.act(save);
    if (!file.open(QIODevice::ReadOnly)) {
        fail("file", QStringLiteral("no settings file was saved"));
        return;
    }
    const QString difference = differenceToFile(pictureOfChosen(), file.readAll());
    if (!difference.isEmpty())
        fail("file", difference);
}

/// The controls still reach the switch that is chosen.
void Walk::checkTouch()
{
    const QByteArray before = pictureOfChosen()["KM control"];
    const int item = before.toInt() % 4; // the next port's
    user_.choose("comboBox_KM_Control", item);
    const QByteArray wanted = QByteArray::number(item + 1);
    if (!waitUntil([&] { return pictureOfChosen()["KM control"] == wanted; }, 3s))
        fail("touch", QStringLiteral("choosing another port for KM control does not reach the "
                                     "switch"));
}

void Walk::checkCommands()
{
    waitUntil([this] { return !watch_.isWaiting(); }, 2s);
    watch_.settle();
    const QStringList complaints = watch_.takeComplaints();
    if (!complaints.isEmpty())
        fail("command", complaints.join(QStringLiteral("; ")));
}

bool Walk::setBreakage(const QByteArray &what)
{
    breakage_ = what;
    return QByteArrayList{"gap", "memory", "files", "dialog", "end", "early-end"}.contains(what);
}

/// What the checks behind it have to find.
void Walk::breakSomething()
{
    constexpr int tooMuchMemory = 16 * 1024 * 1024; // bytes
    if (breakage_ == "gap") {
        QThread::msleep(longestGap + 500);
    } else if (breakage_ == "memory") {
        keptMemory_.append(QByteArray(tooMuchMemory, 'x'));
    } else if (breakage_ == "files") {
        for (int count = 0; count < filesBound; ++count) {
            keptFiles_.push_back(std::make_unique<QFile>(QStringLiteral("/dev/null")));
            if (!keptFiles_.back()->open(QIODevice::ReadOnly))
                qFatal("/dev/null cannot be opened");
        }
    } else if (breakage_ == "dialog") {
        keptDialog_ = std::make_unique<StubbornDialog>();
        keptDialog_->show();
    } else if (breakage_ == "end") {
        QApplication::setQuitOnLastWindowClosed(false);
    } else if (breakage_ == "early-end") {
        QMessageBox(QMessageBox::Critical, {}, QStringLiteral("No hardware online")).exec();
    }
}

void Walk::checkDialogs()
{
    if (!waitUntil([] { return DialogAnswers::shown().isEmpty(); }, 3s))
        fail("dialog", QStringLiteral("left open: ") + DialogAnswers::shown());
}

/// A time that the event loop has stood still, 5 ms when nothing keeps it.
void Walk::takeGap(qint64 length)
{
    ++beats_;
    figures_.longestGap = std::max(figures_.longestGap, length);
    if (length > longestGap && length > gap_.length) {
        gap_ = {length, waitsAtBeat_, {}};
        gap_.since.start();
    } else if (gap_.length > 0 && gap_.since.elapsed() > reportsAreRead) {
        const Gap gap = std::exchange(gap_, {});
        const qint64 bound = longestGap + waitOfASearch * (waits_.searches - gap.before.searches) +
                             waitOfALogin * (waits_.logins - gap.before.logins);
        if (gap.length > bound)
            fail("gap", QStringLiteral("the event loop stood still for %1 ms, more than %2")
                            .arg(gap.length)
                            .arg(bound));
    }
    waitsAtBeat_ = waits_;
}

void Walk::checkGap()
{
    const qint64 seen = beats_; // a gap up to this moment is with the next one
    if (!waitUntil([&] { return beats_ > seen && gap_.length == 0; }, 3s))
        fail("gap", QStringLiteral("the event loop stands still again and again"));
}

void Walk::checkResources()
{
    const qint64 memory = residentKiB();
    const int files = openFiles();
    figures_.lastMemory = memory;
    figures_.lastFiles = files;
    if (figures_.checks <= firstLegs) {
        figures_.firstMemory = std::max(figures_.firstMemory, memory);
        figures_.firstFiles = std::max(figures_.firstFiles, files);
    }
    figures_.mostMemory = std::max(figures_.mostMemory, memory);
    figures_.mostFiles = std::max(figures_.mostFiles, files);
    const qint64 bound = memoryBound + memoryOfAFileDialog * answers_.fileDialogs();
    if (isResidentMemoryOurs() && memory > figures_.firstMemory + bound)
        fail("memory", QStringLiteral("%1 KiB are resident, at first %2")
                           .arg(memory)
                           .arg(figures_.firstMemory));
    if (files > figures_.firstFiles + filesBound)
        fail("files",
             QStringLiteral("%1 files are open, at first %2").arg(files).arg(figures_.firstFiles));
}
