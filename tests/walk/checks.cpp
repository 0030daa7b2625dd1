#include "event_wait.h"
#include "resources.h"
#include "walk.h"

#include <QFile>

using namespace std::chrono_literals;

namespace {
constexpr auto quiet = 350; // ms without a word, longer than any fault makes a switch wait
constexpr auto longestQuiet = 60s;
constexpr auto longestReading = 8s;
constexpr int firstLegs = 5; // until caches are full

/// The bounds of a leg. Modules are searched for and logged in to without the event loop, as the
/// dialogs that do it are made: every search takes 60 ms here, every login behind it 30 ms.
constexpr qint64 longestGap = 2000;        // ms
constexpr qint64 waitOfASearch = 75;       // ms, with what the machine adds
constexpr qint64 waitOfALogin = 40;        // ms
constexpr qint64 memoryBound = 24 * 1024;  // KiB above that of the first legs
constexpr qint64 memoryOfAFileDialog = 20; // KiB that Qt's own one keeps each time
constexpr int filesBound = 4;              // above those of the first legs
} // namespace

/// The switches behave again and the window is read back; then everything has to be right.
void Walk::check()
{
    tell("check");
    ++figures_.checks;
    checkGap();
    answers_.setObliging(true);
    answers_.follow(plan_.seed);
    const auto steps = {&Walk::settle,        &Walk::connectAgain, &Walk::readBack,
                        &Walk::checkWindow,   &Walk::checkFile,    &Walk::checkTouch,
                        &Walk::checkCommands, &Walk::checkDialogs, &Walk::checkResources};
    for (const auto step : steps) {
        if (failures_.isEmpty())
            (this->*step)();
    }
    answers_.setObliging(false);
    sinceBeat_.start();
    legGap_ = 0;
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
    if (unit == 0 || isGone)
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
        difference = differenceToWindow(picture, user_.window());
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

void Walk::checkDialogs()
{
    if (!waitUntil([] { return DialogAnswers::shown().isEmpty(); }, 3s))
        fail("dialog", QStringLiteral("left open: ") + DialogAnswers::shown());
}

void Walk::checkGap()
{
    const qint64 bound = longestGap + waitOfASearch * searches_ + waitOfALogin * logins_;
    searches_ = 0;
    logins_ = 0;
    figures_.longestGap = std::max(figures_.longestGap, legGap_);
    if (legGap_ > bound)
        fail("gap", QStringLiteral("the event loop stood still for %1 ms, more than %2")
                        .arg(legGap_)
                        .arg(bound));
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
