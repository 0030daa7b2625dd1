#include "supervisor.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <thread>
#include <utility>
#ifdef Q_OS_LINUX
#include <csignal>
#include <sys/prctl.h>
#endif

using namespace std::chrono_literals;

namespace {
/// A step takes some 0.1 s; what needs many times that hangs.
constexpr int longestPart = 6 * 3600 * 1000; // ms
constexpr int longestSilence = 400 * 1000;   // ms, more than a leg may take
constexpr qint64 longestShortening = 1200;   // s

QString planFile(const QDir &folder, const char *name)
{
    return folder.filePath(QString::fromLatin1(name));
}

/// The simulators of a part that has ended early end behind it, and take their ports with them.
void waitUntilPortsAreGone(const QDir &folder)
{
    const QDeadlineTimer patience(2s);
    while (
        !patience.hasExpired() &&
        !folder.entryList({QStringLiteral("switch-*")}, QDir::AllEntries | QDir::System).isEmpty())
        std::this_thread::sleep_for(5ms);
}

/// `steps` without the `count` from `from` on.
QByteArrayList without(const QByteArrayList &steps, qsizetype from, qsizetype count)
{
    return steps.mid(0, from) + steps.mid(from + count);
}
} // namespace

Supervisor::Supervisor(const QDir &folder, QStringList passedOn)
    : folder_(folder), passedOn_(std::move(passedOn))
{
}

int Supervisor::walk(const WalkPlan &plan)
{
    const QString file = planFile(folder_, "steps.txt");
    if (!writePlan(file, plan)) {
        std::printf("FAILED       the steps cannot be written to %s\n", qPrintable(file));
        return 1;
    }
    const Outcome outcome = run(plan);
    std::printf("walked       %s, seed %llu\n", nameOf(plan.road),
                static_cast<unsigned long long>(plan.seed));
    outcome.figures.print();
    if (outcome.kind.isEmpty())
        return 0;
    tellFailure(plan, outcome, file);
    return 1;
}

int Supervisor::replay(const WalkPlan &plan)
{
    const Outcome outcome = run(plan);
    outcome.figures.print();
    if (outcome.kind.isEmpty())
        return 0;
    WalkPlan failing = plan;
    failing.steps = plan.steps.mid(0, outcome.line); // what lies behind was not walked
    failing.steps.removeAll("check");
    const QString file = planFile(folder_, "short.txt");
    failing = shortened(failing, outcome.kind);
    if (!writePlan(file, failing))
        std::printf("             the shortened steps cannot be written\n");
    tellFailure(plan, outcome, file);
    std::printf("shortened    these %d steps fail in the same way, after %d runs:\n",
                stepsIn(failing.steps), runs_);
    for (const QByteArray &step : std::as_const(failing.steps))
        std::printf("  %s\n", step.constData());
    return 1;
}

void Supervisor::tellFailure(const WalkPlan &plan, const Outcome &outcome,
                             const QString &file) const
{
    std::printf("FAILED       %s, seed %llu, line %d of its steps\n"
                "             %s: %s\n"
                "             the steps are in %s; --replay with that file shortens them\n",
                nameOf(plan.road), static_cast<unsigned long long>(plan.seed), outcome.line,
                outcome.kind.constData(), outcome.text.constData(), qPrintable(file));
    std::fflush(stdout);
}

Supervisor::Outcome Supervisor::run(const WalkPlan &plan)
{
    ++runs_;
    Outcome outcome;
    const QString file = planFile(folder_, "walking.txt");
    if (!writePlan(file, plan)) {
        outcome.kind = "folder";
        outcome.text = "the steps cannot be written to " + file.toUtf8();
        return outcome;
    }
    for (int from = 0; runPart(file, from, outcome) && outcome.line < plan.steps.size();
         from = outcome.line) {
        if (outcome.line == from) {
            outcome.kind = "end";
            outcome.text = "the program ended twice at one line";
            return outcome;
        }
    }
    if (outcome.kind.isEmpty() && outcome.figures.steps != stepsIn(plan.steps)) {
        outcome.kind = "short";
        outcome.text = QByteArray::number(outcome.figures.steps) + " steps were walked of " +
                       QByteArray::number(stepsIn(plan.steps));
    }
    return outcome;
}

bool Supervisor::runPart(const QString &file, int from, Outcome &outcome)
{
    const QTemporaryDir home; // its path is short enough for anything
    QProcess part;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home.path());
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home.path());
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), home.path());
    environment.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("qt.qpa.*=false"));
    part.setProcessEnvironment(environment);
    part.setProcessChannelMode(QProcess::ForwardedErrorChannel);
#ifdef Q_OS_LINUX
    part.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); }); // not left behind
#endif
    part.start(QCoreApplication::applicationFilePath(),
               passedOn_ + QStringList{QStringLiteral("--replay"), file, QStringLiteral("--part"),
                                       QString::number(from), QStringLiteral("--folder"),
                                       home.path()});
    QElapsedTimer clock;
    clock.start();
    Figures figures;
    bool endedEarly = false;
    int lastLine = from;
    while (part.state() != QProcess::NotRunning || part.canReadLine()) {
        if (!part.canReadLine() && !part.waitForReadyRead(longestSilence) &&
            part.state() != QProcess::NotRunning)
            break;
        while (part.canReadLine()) {
            const QByteArray line = part.readLine().trimmed();
            if (line.startsWith("at ")) {
                lastLine = line.mid(3).toInt();
            } else if (line.startsWith("figures ")) {
                figures = Figures::from(line.mid(8));
            } else if (line.startsWith("failure ") && outcome.kind.isEmpty()) {
                const QByteArrayList words = line.split(' ');
                outcome.kind = words.value(1);
                outcome.line = words.value(3).chopped(1).toInt();
                outcome.text = line.mid(line.indexOf(": ") + 2);
            } else if (line.startsWith("end ")) {
                endedEarly = true;
                outcome.line = line.split(' ').value(1).toInt();
            }
        }
    }
    const bool hangs = part.state() != QProcess::NotRunning || clock.elapsed() > longestPart;
    if (hangs) {
        part.kill();
        part.waitForFinished();
    }
    waitUntilPortsAreGone(QDir(home.path()));
    outcome.figures.add(figures);
    const bool isAsExpected =
        part.exitStatus() == QProcess::NormalExit && part.exitCode() == (endedEarly ? 1 : 0);
    if (outcome.kind.isEmpty() && !isAsExpected) {
        const bool crashed = part.exitStatus() == QProcess::CrashExit;
        outcome.kind = hangs ? "hanging" : crashed ? "crash" : "end";
        outcome.line = lastLine;
        outcome.text =
            (crashed ? "the program was ended by signal " : "the program ended with status ") +
            QByteArray::number(part.exitCode());
    }
    return outcome.kind.isEmpty() && endedEarly;
}

/// Drops halves, quarters and so on of the steps, and in the end single ones, as long as what is
/// left fails in the same way.
WalkPlan Supervisor::shortened(WalkPlan plan, const QByteArray &kind)
{
    QElapsedTimer clock;
    clock.start();
    const auto hasTime = [&] { return clock.elapsed() < longestShortening * 1000; };
    for (qsizetype size = (plan.steps.size() + 1) / 2; size > 0; size /= 2) {
        bool isDropping = true;
        while (isDropping && hasTime()) {
            isDropping = false;
            for (qsizetype from = 0; from < plan.steps.size() && hasTime();) {
                WalkPlan candidate = plan;
                candidate.steps = without(plan.steps, from, size);
                if (candidate.steps.isEmpty() || run(candidate).kind != kind) {
                    from += size;
                    continue;
                }
                plan = candidate;
                isDropping = size == 1;
                std::printf("%d steps still fail\n", stepsIn(plan.steps));
                std::fflush(stdout);
            }
        }
    }
    return plan;
}
