#include "desk.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QTest>
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

namespace {
const QByteArray factorySettings = "KM Control: //c1\n"
                                   "USB Control: //u1\n"
                                   "Limit Ports: //D4\n"
                                   "Cursor Rolling: //o0\n"
                                   "Resolution channel 1: //CE 1 1\n"
                                   "Resolution channel 2: //CE 2 1\n"
                                   "Resolution channel 3: //CE 3 1\n"
                                   "Resolution channel 4: //CE 4 1\n"
                                   "Custom mouse movement setting 1: //MM C1 100 100 CUSTOM1\n"
                                   "Custom mouse movement setting 2: //MM C2 100 100 CUSTOM2\n"
                                   "Custom mouse movement setting 3: //MM C3 100 100 CUSTOM3\n"
                                   "Custom mouse movement setting 4: //MM C4 100 100 CUSTOM4\n"
                                   "Data from mouse movement label 1: 100 100 CUSTOM1\n"
                                   "Data from mouse movement label 2: 100 100 CUSTOM2\n"
                                   "Data from mouse movement label 3: 100 100 CUSTOM3\n"
                                   "Data from mouse movement label 4: 100 100 CUSTOM4\n"
                                   "Grid settings: //FF01B01FF02B02FF03B03FF04B04\n"
                                   "Coordinates channel 1: 0 0\n"
                                   "Coordinates channel 2: 0 1\n"
                                   "Coordinates channel 3: 0 2\n"
                                   "Coordinates channel 4: 0 3\n"
                                   "Buzzer: //B1\n"
                                   "Mouse Mode: //ks\n";

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

void write(const QString &path, const QByteArray &text)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("no test file");
}

QByteArray with(QByteArray text, const char *before, const char *after)
{
    if (!text.contains(before))
        qFatal("no such text");
    return text.replace(before, after);
}
} // namespace

/// peloractl save, diff and apply.
class CtlFilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSavedFileHoldsEverything()
    {
        SimulatedDesk desk;
        const CtlRun run = desk.ctl(QStringLiteral("save"), {desk.file("desk.txt")});
        QCOMPARE(run.status, 0);
        QCOMPARE(run.output, "saved to " + desk.file("desk.txt").toUtf8() + '\n');
        QCOMPARE(contents(desk.file("desk.txt")), factorySettings);
    }

    void inactivePortsKeepTheirDigits()
    {
        SimulatedDesk desk;
        QCOMPARE(desk.ctl(QStringLiteral("set active-ports=2")).status, 0);
        QCOMPARE(desk.ctl(QStringLiteral("save"), {desk.file("desk.txt")}).status, 0);
        QCOMPARE(contents(desk.file("desk.txt")), with(factorySettings, "//D4", "//D2"));
    }

    void aFileSavedFromOneSwitchIsAppliedToAnother()
    {
        SimulatedDesk one;
        QCOMPARE(one.ctl(QStringLiteral("set km-control=2 active-ports=3 layout=1/2/3/4 "
                                        "resolution.4=LAB mouse-mode=relative"),
                         {QStringLiteral("custom.3=7 8 LAB")})
                     .status,
                 0);
        QCOMPARE(one.ctl(QStringLiteral("save"), {one.file("one.txt")}).status, 0);
        SimulatedDesk other;
        CtlRun run = other.ctl(QStringLiteral("diff"), {one.file("one.txt")});
        QCOMPARE(run.status, 1);
        const QByteArray changes = "km-control    1 -> 2\n"
                                   "active-ports  4 -> 3\n"
                                   "mouse-mode    absolute -> relative\n"
                                   "resolution.4  1080p -> LAB\n"
                                   "custom.3      100 100 CUSTOM3 -> 7 8 LAB\n"
                                   "layout        1234/..../..../.... -> 1.../2.../3.../4...\n";
        QCOMPARE(run.output, changes);
        QCOMPARE(other.state("KM control"), QByteArray("KM control: 1")); // nothing was sent
        run = other.ctl(QStringLiteral("apply"), {one.file("one.txt")});
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.status, 0);
        QCOMPARE(run.output, changes);
        run = other.ctl(QStringLiteral("diff"), {one.file("one.txt")});
        QCOMPARE(run.status, 0);
        QCOMPARE(run.output, QByteArray("no difference\n"));
        QCOMPARE(other.ctl(QStringLiteral("apply"), {one.file("one.txt")}).output,
                 QByteArray("already so\n"));
        QCOMPARE(other.ctl(QStringLiteral("save"), {other.file("other.txt")}).status, 0);
        QCOMPARE(contents(other.file("other.txt")), contents(one.file("one.txt")));
    }

    void diffAsksTheThreeQuestionsAndNothingElse()
    {
        const Desk desk;
        const QTemporaryDir folder;
        const QString file = folder.filePath(QStringLiteral("f.txt"));
        write(file, factorySettings);
        QCOMPARE(ctl(desk.option() + QStringLiteral("diff"), {file}).status, 1);
        QCOMPARE(desk.commands(), (QByteArrayList{"//rl\r", "//??\r", "//BP\r"}));
    }

    void applySendsTheFilesLinesInTheirOrder()
    {
        const Desk desk;
        const QTemporaryDir folder;
        const QString file = folder.filePath(QStringLiteral("f.txt"));
        write(file, with(factorySettings, "//MM C1 100 100 CUSTOM1", "//MM C1 090 100 CUSTOM1"));
        const CtlRun run = ctl(desk.option() + QStringLiteral("--json apply -n"), {file});
        QCOMPARE(run.status, 0);
        QStringList commands;
        const QJsonArray texts = run.object().value(QStringLiteral("commands")).toArray();
        for (const QJsonValue &text : texts)
            commands.append(text.toString());
        QCOMPARE(commands.join(QLatin1Char('|')),
                 QStringLiteral("//c1|//MM C1 090 100 CUSTOM1|//MM C2 100 100 CUSTOM2|"
                                "//MM C3 100 100 CUSTOM3|//MM C4 100 100 CUSTOM4|//CE 2 1|"
                                "//CE 3 1|//CE 4 1|//u1|//D4|//o0|"
                                "//FF01B01FF02B02FF03B03FF04B04|//ks"));
        QCOMPARE(desk.sentCommands(), QByteArrayList());
    }

    void aFileOfAWindowWithInactivePortsIsUnderstood()
    {
        SimulatedDesk desk;
        QByteArray text = with(factorySettings, "//FF01B01FF02B02FF03B03FF04B04",
                               "//FF01B05FF02B06FF03B10FF03B14");
        text = with(text,
                    "channel 1: 0 0\nCoordinates channel 2: 0 1\nCoordinates channel 3: 0 2\n"
                    "Coordinates channel 4: 0 3",
                    "channel 1: 1 0\nCoordinates channel 2: 1 1\nCoordinates channel 3: 2 1\n"
                    "Coordinates channel 4: 3 1");
        write(desk.file("f.txt"), text);
        QCOMPARE(desk.ctl(QStringLiteral("apply"), {desk.file("f.txt")}).status, 0);
        QCOMPARE(desk.state("Layout"), QByteArray("Layout: 05 06 10 14"));
    }

    void aFileWithoutSomeOfTheSettingsLeavesThemAlone()
    {
        SimulatedDesk desk;
        write(desk.file("f.txt"), "KM Control: //c4\nBuzzer: \n");
        const CtlRun run = desk.ctl(QStringLiteral("apply"), {desk.file("f.txt")});
        QCOMPARE(run.status, 0);
        QCOMPARE(run.output, QByteArray("km-control  1 -> 4\n"));
        QVERIFY(run.errors.contains("f.txt does not set usb-control, active-ports"));
        QVERIFY(run.errors.contains("buzzer"));
    }

    void aBadFileStopsItBeforeAnythingIsSent_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("said");
        QTest::newRow("half a command")
            << with(factorySettings, "//c1", "//F")
            << QByteArray("line 1: \"//F\" is no value of \"KM Control:\"");
        QTest::newRow("another key's command")
            << with(factorySettings, "Buzzer: //B1", "Buzzer: //R")
            << QByteArray("line 22: \"//R\" is no value of \"Buzzer:\"");
        QTest::newRow("a second command") << with(factorySettings, "//ks", "//ks\r//F\r")
                                          << QByteArray("line 23: \"//ks\\r//F\" is no value");
        QTest::newRow("a cell outside")
            << with(factorySettings, "FF04B04", "FF04B17") << QByteArray("line 17:");
        QTest::newRow("empty") << QByteArray() << QByteArray("it holds none of the settings");
        QTest::newRow("binary") << factorySettings + QByteArray("\0", 1)
                                << QByteArray("it holds a NUL byte");
        QTest::newRow("2 MiB") << factorySettings + QByteArray(2 * 1024 * 1024, 'x')
                               << QByteArray("it is larger than 1 MiB");
    }

    void aBadFileStopsItBeforeAnythingIsSent()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, said);
        const Desk desk;
        const QTemporaryDir folder;
        const QString file = folder.filePath(QStringLiteral("f.txt"));
        write(file, text);
        for (const char *command : {"apply", "diff"}) {
            const CtlRun run = ctl(desk.option() + QLatin1String(command), {file});
            QCOMPARE(run.status, 2);
            QVERIFY2(run.errors.contains(said), run.errors.constData());
        }
        QVERIFY(desk.commands().isEmpty());
    }

    void aFileWithAPercentSignIsNamedAsItIs()
    {
        const Desk desk;
        const QTemporaryDir folder;
        const QString file = folder.filePath(QStringLiteral("floor%2%3%4.txt"));
        write(file, with(factorySettings, "//c1", "//F%4"));
        const CtlRun run = ctl(desk.option() + QStringLiteral("diff"), {file});
        QCOMPARE(run.status, 2);
        QVERIFY2(run.errors.contains("floor%2%3%4.txt, line 1: \"//F%4\" is no value of \"KM "
                                     "Control:\""),
                 run.errors.constData());
    }

    void aFileThatIsNotThereStopsIt()
    {
        const Desk desk;
        const CtlRun run = ctl(desk.option() + QStringLiteral("apply /nowhere/f.txt"));
        QCOMPARE(run.status, 2);
        QVERIFY(run.errors.contains("f.txt cannot be read: No such file or directory"));
        QVERIFY(
            ctl(desk.option() + QStringLiteral("apply /tmp")).errors.contains("it is not a file"));
        QVERIFY(desk.commands().isEmpty());
    }

    void aFolderThatIsNotThereStopsASave()
    {
        const Desk desk;
        const CtlRun run = ctl(desk.option() + QStringLiteral("save /nowhere/f.txt"));
        QCOMPARE(run.status, 2);
        QVERIFY(run.errors.contains("there is no folder /nowhere; make it first"));
        QVERIFY(desk.commands().isEmpty());
    }

    void aDiskThatIsFullIsToldOf()
    {
        const Desk desk;
        const QTemporaryDir folder;
        const QString file = folder.filePath(QStringLiteral("f.txt"));
        write(file, "as before");
        CtlProcess process;
        process.process.setChildProcessModifier([] { // no file may be longer than 100 bytes
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{100, 100};
            ::setrlimit(RLIMIT_FSIZE, &limit);
        });
        process.start(
            (desk.option() + QStringLiteral("save")).split(QLatin1Char(' '), Qt::SkipEmptyParts) +
            QStringList{file});
        const CtlRun run = process.wait();
        QCOMPARE(run.status, 2);
        QVERIFY2(run.errors.contains("f.txt cannot be written: File too large"),
                 run.errors.constData());
        QCOMPARE(run.output, QByteArray());
        QCOMPARE(contents(file), QByteArray("as before"));
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList{QStringLiteral("f.txt")});
    }

    void whatIsNoFileIsNotReplacedByOne()
    {
        const Desk desk;
        const QTemporaryDir folder;
        const QString pipe = folder.filePath(QStringLiteral("pipe"));
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        const CtlRun run = ctl(desk.option() + QStringLiteral("save"), {pipe});
        QCOMPARE(run.status, 2);
        QVERIFY2(run.errors.contains("pipe cannot be written: it is not a file"),
                 run.errors.constData());
        QVERIFY(!QFileInfo(pipe).isFile());
    }

    void aSwitchThatDoesNotTellEverythingIsNotSaved()
    {
        Desk desk;
        desk.replace("//rl\r", "C2\t120 080 DESK\n", "");
        const QTemporaryDir folder;
        const QString file = folder.filePath(QStringLiteral("f.txt"));
        write(file, "as before");
        const CtlRun run =
            ctl(desk.option() + QStringLiteral("--timeout 300 --retries 0 save"), {file});
        QCOMPARE(run.status, 4);
        QVERIFY(run.errors.contains("the switch did not tell custom.2, so nothing was saved"));
        QCOMPARE(contents(file), QByteArray("as before"));
    }
};

QTEST_GUILESS_MAIN(CtlFilesTest)
#include "tst_ctl_files.moc"
