#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#ifdef Q_OS_WIN
#define NO_SUCH_FOLDER "Path not found."
#else
#define NO_SUCH_FOLDER "No such file or directory"
#endif

namespace {
struct Run
{
    int status;
    QByteArray output;
    QByteArray errors;
};

/// Runs the utility to its end where no display can be had: an application that needs one aborts.
/// What it says goes into the file `output` where one is named.
Run run(const QStringList &arguments, const QString &output = {})
{
    QProcess program;
    if (!output.isEmpty())
        program.setStandardOutputFile(output);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("nowhere"));
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(UTILITY_PROGRAM), arguments);
    if (!program.waitForFinished(20'000)) {
        program.kill();
        program.waitForFinished();
        return {-1, {}, "did not end"};
    }
    const auto lines = [](QByteArray text) { return text.replace("\r\n", "\n"); }; // of Windows
    return {program.exitStatus() == QProcess::NormalExit ? program.exitCode() : -1,
            lines(program.readAllStandardOutput()), lines(program.readAllStandardError())};
}
} // namespace

/// The built program's command line.
class CommandLineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void helpNeedsNoDisplay()
    {
        for (const char *option : {"--help", "-h"}) {
            const Run help = run({QString::fromLatin1(option)});
            QCOMPARE(help.status, 0);
            QCOMPARE(help.errors, QByteArray());
            QVERIFY(help.output.startsWith("Usage: "));
            for (const char *named : {"Configures the Norvik Pelora keyboard-and-mouse switch.",
                                      "-h, --help", "-v, --version", "--record <FILE>"})
                QVERIFY2(help.output.contains(named), help.output.constData());
            QVERIFY(!help.output.contains("qwindowgeometry"));
        }
    }

    void theVersionNeedsNoDisplay()
    {
        for (const char *option : {"--version", "-v"}) {
            const Run version = run({QString::fromLatin1(option)});
            QCOMPARE(version.status, 0);
            QCOMPARE(version.errors, QByteArray());
            QCOMPARE(version.output, QByteArray("pelora-utility " UTILITY_VERSION "\n"));
        }
    }

    void helpThatCannotBeWrittenIsToldOf()
    {
        if (!QFile::exists(QStringLiteral("/dev/full")))
            QSKIP("this system has no /dev/full");
        for (const char *option : {"--help", "--version"}) {
            const Run full = run({QString::fromLatin1(option)}, QStringLiteral("/dev/full"));
            QCOMPARE(full.status, 2);
            QCOMPARE(full.errors,
                     QByteArray("pelora-utility: standard output cannot be written: No space left "
                                "on device\n"));
        }
    }

    void mistakesEndWithStatus2_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("mistake");
        const auto row = [](const char *arguments, const char *mistake) {
            QTest::newRow(arguments)
                << QString::fromLatin1(arguments).split(QLatin1Char(' ')) << QByteArray(mistake);
        };
        row("--bogus", "Unknown option 'bogus'.");
        row("-x", "Unknown option 'x'.");
        row("settings.txt", "unexpected argument \"settings.txt\"");
        row("--record", "Missing value after '--record'.");
        row("--record=", "--record needs a file");
        row("-platform offscreen --bogus", "Unknown option 'bogus'.");
        row("--record /nowhere/record.jsonl",
            "cannot write the record /nowhere/record.jsonl: " NO_SUCH_FOLDER);
    }

    void mistakesEndWithStatus2()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, mistake);
        const Run wrong = run(arguments);
        QCOMPARE(wrong.status, 2);
        QCOMPARE(wrong.output, QByteArray());
        QCOMPARE(wrong.errors, "pelora-utility: " + mistake + "\nTry pelora-utility --help.\n");
    }

    void qtsOwnOptionsReachQt_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("one dash") << QStringList{QStringLiteral("-platform"),
                                                 QStringLiteral("offscreen")};
        QTest::newRow("two dashes")
            << QStringList{QStringLiteral("--platform"), QStringLiteral("offscreen")};
        QTest::newRow("with others")
            << QStringList{QStringLiteral("-style=fusion"), QStringLiteral("-reverse"),
                           QStringLiteral("-platform"), QStringLiteral("offscreen")};
    }

    /// The platform that the environment names does not exist, so that the program only runs on
    /// when Qt has taken its option.
    void qtsOwnOptionsReachQt()
    {
#ifdef Q_OS_WIN
        QSKIP("the event log is not in the home folder");
#endif
        QFETCH(QStringList, arguments);
        const QTemporaryDir dir;
        const QString record = dir.filePath(QStringLiteral("record.jsonl"));
        const QString log = qEnvironmentVariable("HOME") + QStringLiteral("/Documents/KM_log.txt");
        (void)QFile::remove(log);
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("nowhere"));
        program.setProcessEnvironment(environment);
        program.start(QStringLiteral(UTILITY_PROGRAM),
                      arguments + QStringList{QStringLiteral("--record"), record});
        const auto isUp = [&] { return QFile::exists(log); };
        QVERIFY2(QTest::qWaitFor(isUp, 20'000), program.readAllStandardError().constData());
        QCOMPARE(program.state(), QProcess::Running);
        QVERIFY(QFile::exists(record));
        program.kill();
        QVERIFY(program.waitForFinished());
    }
};

QTEST_GUILESS_MAIN(CommandLineTest)
#include "tst_command_line.moc"
