#include "walk.h"

#include "event_wait.h"

#include <QApplication>
#include <cstdio>

using namespace std::chrono_literals;

namespace {
constexpr auto longestLeg = 300s;
constexpr auto longestStart = 3s; // a switch that stays silent is found out later
constexpr int statusOfHanging = 99;

/// Files that a user may try to load besides those that the utility has saved.
void layOutFiles(const QDir &folder)
{
    const auto write = [&](const char *name, const QByteArray &text) {
        QFile file(folder.filePath(QString::fromLatin1(name)));
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            qFatal("%s cannot be written", name);
    };
    write("empty.txt", "");
    write("short.txt", "KM Control: //c2\nBuzzer: //B0\nCursor Rolling: //o1\n");
    static constexpr char noise[] = "\x00\xff\xfe\x80 KM\n\n: \n";
    write("noise.txt", QByteArray(noise, sizeof noise - 1));
}
} // namespace

Walk::Walk(const WalkPlan &plan, const QDir &folder, bool verbose)
    : plan_(plan), folder_(folder), verbose_(verbose), desk_(plan.road, folder),
      answers_(plan.road, desk_, folder), user_(desk_, watch_, answers_, folder)
{
    desk_.onEvent = [this](const DeskEvent &event) {
        watch_.take(event);
        if (event.text.startsWith("search") && event.unit == 1)
            ++waits_.searches;
        else if (event.text.startsWith("login"))
            ++waits_.logins;
        if (event.kind == DeskEvent::Kind::ModuleRequest)
            isNameKnown_ = !desk_.isUnwell();
    };
    desk_.onTrouble = [this] {
        watch_.noteTrouble();
        isNameKnown_ = false; // the window shows a name that the module may not have taken
    };
    answers_.onEnd = [this](const QString &text) { endEarly(text); };
    answers_.onAnswer = [this](const QString &text) { tell("    " + text.toUtf8()); };
    connect(&pump_, &QTimer::timeout, this, [this] {
        if (isQueued_)
            return;
        isQueued_ = true;
        // Not from within the timer: it does not fire again before its slot has returned.
        QMetaObject::invokeMethod(this, &Walk::advance, Qt::QueuedConnection);
    });
    connect(&heartbeat_, &QTimer::timeout, this, &Walk::tick);
    heartbeat_.setTimerType(Qt::PreciseTimer);
}

int Walk::run(int from)
{
    layOutFiles(folder_);
    const QString problem = desk_.start();
    if (!problem.isEmpty()) {
        fail("desk", problem);
        return failureStatus;
    }
    if (!keptFault_.isEmpty())
        desk_.keepFault(keptFault_);
    next_ = from;
    sinceBeat_.start();
    sinceTerminal_.start();
    heartbeat_.start(5);
    answers_.follow(plan_.seed);
    answers_.setObliging(true);
    bool goesOn = inProgram([this] {
        user_.openWindow();
        waitUntil([this] { return user_.isGreen(); }, longestStart);
        waitForQuiet(); // the first reading
    });
    answers_.setObliging(false);
    gap_ = {};
    const auto lines = static_cast<int>(plan_.steps.size());
    while (goesOn && failures_.isEmpty() && next_ < lines) {
        const auto checkAt = static_cast<int>(plan_.steps.indexOf("check", next_));
        const int end = checkAt < 0 ? lines : checkAt;
        user_.window().show();
        goesOn = inProgram([&] {
            walkLeg(next_, end);
            if (failures_.isEmpty())
                check();
        });
        next_ = end + 1;
        report();
    }
    user_.closeWindow();
    return failures_.isEmpty() ? 0 : failureStatus;
}

/// Does `work` inside the program's event loop and closes the window after it, which has to end the
/// loop with status 0.
bool Walk::inProgram(const std::function<void()> &work)
{
    QTimer hanging;
    hanging.setSingleShot(true);
    connect(&hanging, &QTimer::timeout, &hanging, [] { QApplication::exit(statusOfHanging); });
    QTimer::singleShot(0, this, [&] {
        work();
        user_.window().close();
        hanging.start(10s);
    });
    const int status = QApplication::exec();
    if (status != 0 && failures_.isEmpty())
        fail("end", QStringLiteral("closing the window ended the program with %1").arg(status));
    return status == 0;
}

void Walk::walkLeg(int from, int end)
{
    next_ = from;
    legEnd_ = end;
    rest_ = 0;
    resting_.start();
    pump_.start(2);
    const bool arrived = waitUntil(
        [&] { return next_ >= legEnd_ && !isBusy_ && resting_.elapsed() >= rest_; }, longestLeg);
    pump_.stop();
    if (!arrived)
        fail("stuck", QStringLiteral("the leg did not come to its end; ") + DialogAnswers::shown());
}

/// The next step, if its time has come. The user's steps wait until the one before has returned and
/// no dialog is in the way; the desk's do not.
void Walk::advance()
{
    isQueued_ = false;
    if (next_ >= legEnd_ || resting_.elapsed() < rest_)
        return;
    const QByteArray line = plan_.steps.at(next_);
    const Step step = readStep(line);
    const bool isOfUser = !isOfDesk(step);
    if (isOfUser && (isBusy_ || DialogAnswers::blocksWindow()))
        return;
    ++next_;
    ++figures_.steps;
    rest_ = step.action == "wait" ? step.number(0) : 0;
    resting_.start();
    tell(QByteArray::number(next_) + " " + line);
    std::printf("at %d\n", next_);
    std::fflush(stdout);
    if (!isOfUser) {
        desk_.obey(step);
        return;
    }
    isBusy_ = true;
    if (!user_.act(step))
        ++figures_.leftOut;
    isBusy_ = false;
}

void Walk::tick()
{
    takeGap(sinceBeat_.restart());
    const bool isGreen = user_.hasWindow() && user_.isGreen();
    if (isGreen && !wasGreen_)
        ++figures_.connections;
    wasGreen_ = isGreen;
}

void Walk::fail(const QByteArray &kind, const QString &text)
{
    failures_.append({kind, text});
    std::printf("failure %s line %d: %s\n", kind.constData(), next_, qPrintable(text));
    std::fflush(stdout);
}

/// The program is about to end with status 1, having said why.
void Walk::endEarly(const QString &text)
{
    // There is no window yet when the wizard of its start ends the program.
    const bool isGone = user_.hasWindow() && user_.isOnNetwork() &&
                        desk_.unitAt(user_.moduleAddress()) != 0 &&
                        desk_.lastSeen(desk_.unitAt(user_.moduleAddress()))["Module address"] !=
                            user_.moduleAddress().toLatin1();
    if (!desk_.isUnwell() && !isGone)
        fail("end", QStringLiteral("the program ends beside a healthy switch: ") + text);
    ++figures_.ends;
    report();
    std::printf("end %d %s\n", next_, qPrintable(text));
    std::fflush(stdout);
}

void Walk::tell(const QByteArray &text) const
{
    if (verbose_)
        std::fprintf(stderr, "%s\n", text.constData());
}

void Walk::report()
{
    figures_.commands = watch_.commands();
    figures_.faults = desk_.faultsSet();
    figures_.dialogs = answers_.answered();
    std::printf("figures %s\n", figures_.text().constData());
    std::fflush(stdout);
}
