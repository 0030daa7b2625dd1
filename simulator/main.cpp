#include "simulator/console.h"
#include "simulator/options.h"
#include "simulator/output.h"
#include "simulator/quit_signals.h"
#include "simulator/replay.h"
#include "simulator/simulation.h"
#include "simulator/stdin_lines.h"

#include <QCoreApplication>
#include <cerrno>
#include <cstring>
#include <exception>
#include <iostream>
#include <memory>

namespace {

constexpr int failureStatus = 1;
constexpr int mistakeStatus = 2;

void obeyConsoleLine(Console &console, const QString &line)
{
    const Console::Result result = console.obey(line.toStdString());
    std::cout << result.text << std::flush;
    if (result.quit)
        QCoreApplication::quit();
}

/// Standard input as the options and its nature ask for: a console, an end, both or neither.
std::unique_ptr<StdinLines> watchStdin(const Options &options, Console &console)
{
    const bool interactive = StdinLines::isInteractive();
    const bool asConsole = options.console || interactive;
    if (!asConsole && !options.untilStdinCloses)
        return nullptr;
    auto lines = std::make_unique<StdinLines>();
    if (asConsole)
        QObject::connect(lines.get(), &StdinLines::entered, lines.get(),
                         [&console](const QString &line) { obeyConsoleLine(console, line); });
    if (options.untilStdinCloses || interactive)
        QObject::connect(lines.get(), &StdinLines::closed, lines.get(),
                         [] { QCoreApplication::quit(); });
    if (interactive)
        reportLine("Type help for the commands.");
    return lines;
}

/// Says why the program ends before it begins; the status to end with.
int say(const EarlyEnd &end)
{
    (end.status == 0 ? std::cout : std::cerr) << end.text.toStdString() << std::flush;
    const int error = errno;
    if (std::cout || error == EPIPE) // whoever reads may have had enough
        return end.status;
    reportLine(std::string("pelora-simulator: standard output cannot be written: ") +
               std::strerror(error));
    return mistakeStatus;
}

int replay(const Options &options)
{
    Replay replay(*options.replay, options.verbose);
    const QuitSignals signals;
    QObject::connect(&signals, &QuitSignals::raised, &signals, [] { QCoreApplication::quit(); });
    replay.start();
    std::unique_ptr<StdinLines> lines;
    if (options.untilStdinCloses) {
        lines = std::make_unique<StdinLines>();
        QObject::connect(lines.get(), &StdinLines::closed, lines.get(),
                         [] { QCoreApplication::quit(); });
    }
    return QCoreApplication::exec();
}

int run(const Options &options)
{
    if (options.replay)
        return replay(options);
    Simulation simulation(options);
    QObject::connect(&simulation, &Simulation::failed, &simulation, [](const QString &reason) {
        reportLine("pelora-simulator: " + reason.toStdString());
        QCoreApplication::exit(failureStatus);
    });
    const QuitSignals signals;
    QObject::connect(&signals, &QuitSignals::raised, &signals, [] { QCoreApplication::quit(); });
    simulation.start();
    Console console(simulation);
    const std::unique_ptr<StdinLines> lines = watchStdin(options, console);
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("pelora-simulator"));
    QCoreApplication::setApplicationVersion(QStringLiteral(PELORA_VERSION));

    const auto asked = readOptions(QCoreApplication::arguments());
    if (const auto *early = std::get_if<EarlyEnd>(&asked))
        return say(*early);
    try {
        return run(std::get<Options>(asked));
    } catch (const BadRecording &error) {
        reportLine(std::string("pelora-simulator: ") + error.what());
        return mistakeStatus;
    } catch (const std::exception &error) {
        reportLine(std::string("pelora-simulator: ") + error.what());
        return failureStatus;
    }
}
