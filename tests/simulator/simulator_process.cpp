#include "simulator_process.h"

#include <QTest>

namespace {

constexpr int longestWait = 20000;

QString programPath()
{
    return QStringLiteral(SIMULATOR_PROGRAM);
}

} // namespace

SimulatorProcess::~SimulatorProcess()
{
    if (process.state() == QProcess::NotRunning)
        return;
    process.closeWriteChannel();
    if (!process.waitForFinished(2000)) {
        process.kill();
        process.waitForFinished(2000);
    }
}

QStringList SimulatorProcess::start(const QStringList &arguments, int lines)
{
    process.start(programPath(), arguments + QStringList{QStringLiteral("--until-stdin-closes")});
    QStringList first;
    for (int i = 0; i < lines; ++i) {
        const QByteArray line = nextLine();
        if (line.isEmpty())
            break;
        first << QString::fromUtf8(line);
    }
    return first;
}

void SimulatorProcess::type(const QByteArray &line)
{
    process.write(line + "\n");
    process.waitForBytesWritten(longestWait);
}

QByteArray SimulatorProcess::nextLine()
{
    // The test's own ports need the event loop meanwhile.
    if (!QTest::qWaitFor([this] { return process.canReadLine(); }, longestWait))
        return {};
    QByteArray line = process.readLine();
    line.chop(1);
    return line;
}

QByteArray SimulatorProcess::linesUpTo(const QByteArray &beginning)
{
    QByteArray lines;
    while (QTest::qWaitFor([this] { return process.canReadLine(); }, longestWait)) {
        const QByteArray line = process.readLine();
        lines += line;
        if (line.startsWith(beginning))
            break;
    }
    return lines;
}

QByteArray SimulatorProcess::reports()
{
    reports_ += process.readAllStandardError();
    return reports_;
}

int SimulatorProcess::end()
{
    process.closeWriteChannel();
    return waitForEnd();
}

int SimulatorProcess::waitForEnd()
{
    if (!QTest::qWaitFor([this] { return process.state() == QProcess::NotRunning; }, longestWait))
        return -1;
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

FinishedRun runSimulator(const QStringList &arguments, const QString &output)
{
    QProcess process;
    if (!output.isEmpty())
        process.setStandardOutputFile(output);
    process.start(programPath(), arguments);
    process.closeWriteChannel();
    if (!process.waitForFinished(longestWait)) {
        process.kill();
        process.waitForFinished(longestWait);
        return {-1, {}, "did not end"};
    }
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            process.readAllStandardOutput(), process.readAllStandardError()};
}
