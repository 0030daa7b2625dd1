#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>

/// The simulator as its user runs it: the built program in a process of its own, which ends with
/// this object or with the test, whichever goes first.
class SimulatorProcess
{
public:
    SimulatorProcess() = default;
    ~SimulatorProcess();
    SimulatorProcess(const SimulatorProcess &) = delete;
    SimulatorProcess &operator=(const SimulatorProcess &) = delete;

    /// Starts it with `arguments` and waits for its first `lines` lines of output. Returns them
    /// without line ends; fewer when it ended before or took too long.
    QStringList start(const QStringList &arguments, int lines = 1);
    /// Types one line at its console.
    void type(const QByteArray &line);
    /// The next line of output, waited for; empty when none comes.
    QByteArray nextLine();
    /// Lines of output up to the first one that begins with `beginning`, each with its line end.
    QByteArray linesUpTo(const QByteArray &beginning);
    /// Everything reported on standard error so far.
    QByteArray reports();
    /// Closes standard input and waits for the end; the exit status, -1 when it does not end.
    int end();
    /// Waits for the end; the exit status, -1 when it does not end.
    int waitForEnd();

    QProcess process;

private:
    QByteArray reports_;
};

/// Runs the simulator to its end; returns its exit status and what it wrote. Its standard output
/// goes into the file `output` where one is named.
struct FinishedRun
{
    int status;
    QByteArray output;
    QByteArray reports;
};
FinishedRun runSimulator(const QStringList &arguments, const QString &output = {});
