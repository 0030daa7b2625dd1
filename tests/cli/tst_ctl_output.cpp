#include "desk.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>
#include <filesystem>
#include <unistd.h>

namespace {
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
} // namespace

/// Where peloractl writes to: standard output, and the record of what passes.
class CtlOutputTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void outputThatCannotBeWrittenIsToldOf()
    {
        const Desk desk;
        CtlProcess process;
        process.process.setStandardOutputFile(QStringLiteral("/dev/full"));
        process.start(
            (desk.option() + QStringLiteral("get")).split(QLatin1Char(' '), Qt::SkipEmptyParts));
        const CtlRun run = process.wait();
        QCOMPARE(run.status, 2);
        QCOMPARE(
            run.errors,
            QByteArray("peloractl: standard output cannot be written: No space left on device\n"));
    }

    void textThatCannotBeWrittenIsToldOf_data()
    {
        QTest::addColumn<QStringList>("arguments");
        for (const char *arguments : {"--help", "--version", "get --help", "completion bash"})
            QTest::newRow(arguments) << QString::fromLatin1(arguments).split(u' ');
    }

    void textThatCannotBeWrittenIsToldOf()
    {
        QFETCH(QStringList, arguments);
        CtlProcess full;
        full.process.setStandardOutputFile(QStringLiteral("/dev/full"));
        full.start(arguments);
        CtlRun run = full.wait();
        QCOMPARE(run.status, 2);
        QCOMPARE(
            run.errors,
            QByteArray("peloractl: standard output cannot be written: No space left on device\n"));
        CtlProcess closed; // whoever read has had enough
        closed.process.setChildProcessModifier([] {
            int ends[2] = {-1, -1};
            if (::pipe(ends) != 0 || ::dup2(ends[1], STDOUT_FILENO) < 0)
                ::_exit(99);
            ::close(ends[0]);
            ::close(ends[1]);
        });
        closed.start(arguments);
        run = closed.wait();
        QCOMPARE(run.status, 0);
        QCOMPARE(run.errors, QByteArray());
    }

    void outputThatIsClosedEarlyHarmsNothing()
    {
        const Desk desk;
        CtlProcess process;
        process.start((desk.option() + QStringLiteral("set km-control=2"))
                          .split(QLatin1Char(' '), Qt::SkipEmptyParts));
        process.process.closeReadChannel(QProcess::StandardOutput);
        const CtlRun run = process.wait();
        QCOMPARE(run.status, 0);
        QCOMPARE(run.errors, QByteArray());
    }

    void whatPassesIsRecorded()
    {
        const Desk desk;
        const QTemporaryDir folder;
        const QString file = folder.filePath(QStringLiteral("record.jsonl"));
        QCOMPARE(ctl(desk.option() + QStringLiteral("get --record"), {file}).status, 0);
        QFile record(file);
        QVERIFY(record.open(QIODevice::ReadOnly));
        const QByteArray text = record.readAll();
        QVERIFY(text.startsWith("{\"bytes\":\"2f2f726c0d\",\"direction\":\"sent\""));
        QVERIFY(text.contains("\"text\":\"Current Hotkey Trigger: Scroll Lock\\n"));
        QCOMPARE(text.count('\n'), 6);
        QCOMPARE(text.count("\"road\":\"udp\""), 6);
    }

    void aRecordThatCannotBeWrittenStopsItBeforeAnythingIsSent()
    {
        const Desk desk;
        const CtlRun run = ctl(desk.option() + QStringLiteral("get --record /nowhere/r.jsonl"));
        QCOMPARE(run.status, 2);
        QVERIFY(run.errors.contains("the record /nowhere/r.jsonl cannot be written"));
        QVERIFY(desk.commands().isEmpty());
    }

    void aRecordThatMeetsAFullDiskEndsAndTheWorkGoesOn()
    {
        const Desk desk;
        const CtlRun run = ctl(desk.option() + QStringLiteral("get buzzer --record /dev/full"));
        QCOMPARE(run.status, 0);
        QCOMPARE(run.output, QByteArray("buzzer  on\n"));
        QCOMPARE(run.errors, QByteArray("peloractl: warning: the record /dev/full ends here: No "
                                        "space left on device\n"));
    }

    void aMistakeLeavesAnEarlierRecordAsItWas_data()
    {
        QTest::addColumn<QStringList>("command");
        QTest::addColumn<QByteArray>("said");
        const auto row = [](const char *command, const char *said) {
            QTest::newRow(command) << QString::fromLatin1(command).split(u' ') << QByteArray(said);
        };
        row("set km-control=9", "km-control is a number from 1 to 4");
        row("get volume", "there is no setting \"volume\"");
        row("apply /nowhere/f.txt", "f.txt cannot be read");
        row("save /nowhere/f.txt", "there is no folder /nowhere");
        row("reset factory", "a factory reset deletes every setting; give --yes");
        row("module show -u admin", "no password");
    }

    void aMistakeLeavesAnEarlierRecordAsItWas()
    {
        QFETCH(QStringList, command);
        QFETCH(QByteArray, said);
        const Desk desk;
        const QTemporaryDir folder;
        const QString record = folder.filePath(QStringLiteral("old.jsonl"));
        write(record, "as before");
        const CtlRun run =
            ctl(desk.option(), command + QStringList{QStringLiteral("--record"), record});
        QCOMPARE(run.status, 2);
        QVERIFY2(run.errors.contains(said), run.errors.constData());
        QCOMPARE(contents(record), QByteArray("as before"));
        QVERIFY(desk.commands().isEmpty());
    }

    void aRecordIsNoFileThatIsReadOrWrittenAsWell_data()
    {
        QTest::addColumn<QStringList>("command");
        const auto row = [](const char *command) {
            QTest::newRow(command) << QString::fromLatin1(command).split(u' ');
        };
        row("apply FILE");
        row("diff FILE");
        row("apply LINK");
        row("apply TWIN");
        row("diff {name}");
        row("save FILE");
        row("save FOLDER/../FILE");
        row("get -D FILE");
        row("get -D ./FILE");
        row("module show -u admin --password-file FILE");
        row("module set -u admin --password-file OTHER --new-password-file FILE");
    }

    void aRecordIsNoFileThatIsReadOrWrittenAsWell()
    {
        QFETCH(QStringList, command);
        Desk desk;
        const QTemporaryDir folder;
        // Good as each of them.
        const QByteArray text = command.contains(QStringLiteral("-D")) ? QByteArray("udp:127.0.0.2")
                                : command.first() == QLatin1String("module") ? QByteArray("secret")
                                                                             : "KM Control: //c1\n";
        write(folder.filePath(QStringLiteral("FILE")), text);
        write(folder.filePath(QStringLiteral("OTHER")), text);
        QVERIFY(QFile::link(QStringLiteral("FILE"), folder.filePath(QStringLiteral("LINK"))));
        std::filesystem::create_hard_link(folder.filePath(QStringLiteral("FILE")).toStdString(),
                                          folder.filePath(QStringLiteral("TWIN")).toStdString());
        QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("FOLDER")));
        const QString list = folder.filePath(QStringLiteral("list"));
        write(list, "FILE " + desk.option().mid(3).toUtf8());
        CtlProcess process;
        process.process.setWorkingDirectory(folder.path());
        if (!command.contains(QStringLiteral("-D")))
            command += {QStringLiteral("-D"), list};
        process.start(command + QStringList{QStringLiteral("--record"), QStringLiteral("FILE")});
        const CtlRun run = process.wait();
        QCOMPARE(run.status, 2);
        QCOMPARE(run.errors, QByteArray("peloractl: the record FILE is a file that this command "
                                        "reads or writes as well; choose another\n"));
        QCOMPARE(contents(folder.filePath(QStringLiteral("FILE"))), text);
        QVERIFY(desk.commands().isEmpty());
    }

    void aSaveAndItsRecordAreTwoFiles()
    {
        const Desk desk;
        const QTemporaryDir folder;
        const QString file = folder.filePath(QStringLiteral("new.txt"));
        CtlRun run =
            ctl(desk.option() + QStringLiteral("save"),
                {file, QStringLiteral("--record"), folder.filePath(QStringLiteral("./new.txt"))});
        QCOMPARE(run.status, 2);
        QVERIFY2(run.errors.contains("reads or writes as well"), run.errors.constData());
        QVERIFY(!QFileInfo::exists(file));
        run = ctl(desk.option() + QStringLiteral("save"),
                  {file, QStringLiteral("--record"), folder.filePath(QStringLiteral("new.jsonl"))});
        QVERIFY2(run.status == 0, run.errors.constData());
    }
};

QTEST_GUILESS_MAIN(CtlOutputTest)
#include "tst_ctl_output.moc"
