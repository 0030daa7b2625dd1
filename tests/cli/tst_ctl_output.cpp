#include "desk.h"

#include <QFile>
#include <QTest>

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
};

QTEST_GUILESS_MAIN(CtlOutputTest)
#include "tst_ctl_output.moc"
