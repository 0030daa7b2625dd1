#include "app/command_line.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace {
QCommandLineOption hiddenOption(const QString &name, const QString &value)
{
    QCommandLineOption option(name, QString(), value);
    option.setFlags(QCommandLineOption::HiddenFromHelp);
    return option;
}

/// What QApplication and its platforms take, with one or two dashes. They are known here so that
/// anything else can be told to be a mistake.
QList<QCommandLineOption> optionsOfQt()
{
    QList<QCommandLineOption> options;
    for (const char *name :
         {"display", "geometry", "icon", "name", "platform", "platformpluginpath", "platformtheme",
          "plugin", "qmljsdebugger", "qwindowgeometry", "qwindowicon", "qwindowtitle", "session",
          "style", "stylesheet", "title"})
        options.append(hiddenOption(QString::fromLatin1(name), QStringLiteral("value")));
    for (const char *name : {"dograb", "nograb", "qdebug", "reverse", "widgetcount"})
        options.append(hiddenOption(QString::fromLatin1(name), QString()));
    return options;
}

QString helpText(const QCommandLineParser &parser, int argc, char **argv)
{
    const QCoreApplication application(argc, argv); // whose name the text begins with
    return parser.helpText() +
           QStringLiteral("\nQt's own options, such as -platform and -style, are taken as well.\n");
}
} // namespace

std::variant<CommandLine, EarlyEnd> readCommandLine(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));

    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Show this help and end."));
    const QCommandLineOption version({QStringLiteral("v"), QStringLiteral("version")},
                                     QStringLiteral("Show the version and end."));
    const QCommandLineOption record(
        QStringLiteral("record"),
        QStringLiteral("Keep everything that passes on the link in FILE, as JSON lines without "
                       "module passwords."),
        QStringLiteral("FILE"));
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Configures the Norvik Pelora keyboard-and-mouse switch."));
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.addOptions({help, version, record});
    parser.addOptions(optionsOfQt());

    if (!parser.parse(arguments))
        return mistake(parser.errorText());
    if (parser.isSet(help))
        return EarlyEnd{helpText(parser, argc, argv), 0};
    if (parser.isSet(version))
        return EarlyEnd{QStringLiteral("pelora-utility " PELORA_VERSION "\n"), 0};
    if (!parser.positionalArguments().isEmpty())
        return mistake(
            QStringLiteral("unexpected argument \"%1\"").arg(parser.positionalArguments().first()));
    if (parser.isSet(record) && parser.value(record).isEmpty())
        return mistake(QStringLiteral("--record needs a file"));
    return CommandLine{parser.value(record)};
}

EarlyEnd mistake(const QString &text)
{
    return {QStringLiteral("pelora-utility: %1\nTry pelora-utility --help.\n").arg(text),
            mistakeStatus};
}
