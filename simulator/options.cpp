#include "simulator/options.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <stdexcept>

namespace {

/// A mistake on the command line, in words for the user.
class UsageError : public std::runtime_error
{
public:
    explicit UsageError(const QString &text) : std::runtime_error(text.toStdString()) {}
};

/// The options by name, so that each is written once.
struct Vocabulary
{
    QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")},
                            QStringLiteral("Show this help and end.")};
    QCommandLineOption version{{QStringLiteral("v"), QStringLiteral("version")},
                               QStringLiteral("Show the version and end.")};
    QCommandLineOption link{
        QStringLiteral("link"),
        QStringLiteral("serial: put a symbolic link to the virtual port at PATH."),
        QStringLiteral("PATH")};
    QCommandLineOption port{
        QStringLiteral("port"),
        QStringLiteral("serial: speak on the real serial port NAME (115200 8N1) instead of a "
                       "virtual one."),
        QStringLiteral("NAME")};
    QCommandLineOption fault{QStringLiteral("fault"),
                             QStringLiteral("Turn a fault on; may be given several times."),
                             QStringLiteral("NAME[=VALUE]")};
    QCommandLineOption console{
        QStringLiteral("console"),
        QStringLiteral("Read commands from standard input, also when it is no terminal.")};
    QCommandLineOption printState{
        QStringLiteral("print-state"),
        QStringLiteral("Print the state at the start and whenever it changes.")};
    QCommandLineOption verbose{QStringLiteral("verbose"),
                               QStringLiteral("Report every command and every answer.")};
    QCommandLineOption untilStdinCloses{QStringLiteral("until-stdin-closes"),
                                        QStringLiteral("End when standard input ends.")};

    QList<QCommandLineOption> all() const
    {
        return {help, version, link, port, fault, console, printState, verbose, untilStdinCloses};
    }
};

void readFaces(const QCommandLineParser &parser, Options &options)
{
    const QStringList faces = parser.positionalArguments();
    if (faces.isEmpty())
        throw UsageError(QStringLiteral("say which face to simulate: serial"));
    if (faces.size() > 1)
        throw UsageError(QStringLiteral("unexpected argument \"%1\"").arg(faces.at(1)));
    if (faces.first() != QLatin1String("serial"))
        throw UsageError(QStringLiteral("there is no face \"%1\"").arg(faces.first()));
    options.serial = true;
}

QString nonEmpty(const QCommandLineParser &parser, const QCommandLineOption &option)
{
    if (!parser.isSet(option))
        return {};
    const QString value = parser.value(option);
    if (value.isEmpty())
        throw UsageError(QStringLiteral("--%1 needs a value").arg(option.names().first()));
    return value;
}

Options optionsFrom(const QCommandLineParser &parser, const Vocabulary &words)
{
    Options options;
    readFaces(parser, options);
    options.linkPath = nonEmpty(parser, words.link);
    options.portName = nonEmpty(parser, words.port);
    if (!options.linkPath.isEmpty() && !options.portName.isEmpty())
        throw UsageError(QStringLiteral("--link leads to a virtual port and --port is a real one"));
    const QStringList faults = parser.values(words.fault);
    for (const QString &fault : faults) {
        const std::string mistake = setFault(options.faults, fault.toStdString());
        if (!mistake.empty())
            throw UsageError(QString::fromStdString(mistake));
    }
    options.console = parser.isSet(words.console);
    options.printState = parser.isSet(words.printState);
    options.verbose = parser.isSet(words.verbose);
    options.untilStdinCloses = parser.isSet(words.untilStdinCloses);
    return options;
}

} // namespace

std::variant<Options, EarlyEnd> readOptions(const QStringList &arguments)
{
    const Vocabulary words;
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("A simulated keyboard-and-mouse switch on a virtual serial port."));
    parser.addPositionalArgument(QStringLiteral("face"), QStringLiteral("serial"));
    parser.addOptions(words.all());

    const QString hint = QStringLiteral("Try pelora-simulator --help.\n");
    if (!parser.parse(arguments))
        return EarlyEnd{QStringLiteral("pelora-simulator: %1\n%2").arg(parser.errorText(), hint),
                        2};
    if (parser.isSet(words.help))
        return EarlyEnd{QStringLiteral("%1\nFaults:\n%2")
                            .arg(parser.helpText(), QString::fromStdString(faultHelp())),
                        0};
    if (parser.isSet(words.version))
        return EarlyEnd{
            QStringLiteral("pelora-simulator %1\n").arg(QCoreApplication::applicationVersion()), 0};
    try {
        return optionsFrom(parser, words);
    } catch (const UsageError &error) {
        return EarlyEnd{
            QStringLiteral("pelora-simulator: %1\n%2").arg(QLatin1String(error.what()), hint), 2};
    }
}
