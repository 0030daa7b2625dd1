#include "cli/arguments.h"
#include "cli/completion.h"
#include "cli/interrupts.h"
#include "cli/program.h"
#include "cli/reader_watch.h"

#include <QCoreApplication>
#include <algorithm>
#include <csignal>
#ifdef Q_OS_WIN
#include <windows.h>
#endif

namespace {
int statusOf(ExitStatus status)
{
    return static_cast<int>(status);
}

/// The status to end with where `status` would be, but for what has become of `output`.
int statusBehind(const Output &output, Printer &printer, int status)
{
    if (output.problem().isEmpty())
        return status;
    printer.complain(QStringLiteral("standard output cannot be written: ") + output.problem());
    return std::max(status, statusOf(ExitStatus::Usage));
}

int run(const Options &options)
{
    Output output(stdout);
    Output errors(stderr);
    Printer printer(options.json ? Printer::Form::Json : Printer::Form::People, output, errors);
    int status = 0;
    Program program(options, printer);
    const Interrupts interrupts;
    QObject::connect(&interrupts, &Interrupts::interrupted, &program, &Program::interrupt);
    const ReaderWatch reader(output);
    QObject::connect(&reader, &ReaderWatch::gone, &program, &Program::endUnread);
    QObject::connect(&program, &Program::finished, &program, [&status](ExitStatus ended) {
        status = statusOf(ended);
        QCoreApplication::exit(status);
    });
    // From within the event loop, which the program's end ends.
    QMetaObject::invokeMethod(&program, &Program::start, Qt::QueuedConnection);
    status = QCoreApplication::exec();
    return statusBehind(output, printer, status);
}

/// Says `text` on standard output, or on standard error for a mistake.
int say(const std::string &text, int status = 0)
{
    Output output(stdout);
    Output errors(stderr);
    Printer printer(Printer::Form::People, output, errors);
    (status == 0 ? output : errors).write(text);
    return statusBehind(output, printer, status);
}
} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("peloractl"));
    QCoreApplication::setApplicationVersion(QStringLiteral(PELORA_VERSION));
#ifdef Q_OS_WIN
    SetConsoleOutputCP(CP_UTF8);
#endif
#ifdef SIGPIPE
    // Whoever reads may go, as head does; what is under way with a switch is done to its end, but
    // for a watch, which has none.
    std::signal(SIGPIPE, SIG_IGN);
#endif
    const auto asked = readArguments(QCoreApplication::arguments());
    if (const auto *early = std::get_if<EarlyEnd>(&asked))
        return say(early->text, early->status);
    const auto &options = std::get<Options>(asked);
    if (options.command == Options::Command::Completion)
        return say(completionFor(options.shell));
    return run(options);
}
