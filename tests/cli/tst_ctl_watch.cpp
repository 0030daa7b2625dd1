#include "desk.h"

#include <QTest>
#include <csignal>

/// peloractl watch.
class CtlWatchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatTheSwitchSaysIsShownAsItSaysIt()
    {
        Desk desk;
        CtlProcess process;
        process.start(
            (desk.option() + QStringLiteral("watch")).split(QLatin1Char(' '), Qt::SkipEmptyParts));
        QVERIFY(process.hasSaid("usb-control 3\n"));
        QCOMPARE(desk.commands(), QByteArrayList{"//??\r"});
        desk.say("\n**C4\nBeep on\n**M1\r\n");
        QVERIFY(process.hasSaid("usb-control 1\n"));
        desk.say("no end of \x1b[2J");
        QVERIFY(process.hasSaid("text no end of \\x1b[2J\n"));
        ::kill(static_cast<pid_t>(process.process.processId()), SIGINT);
        const CtlRun run = process.wait();
        QCOMPARE(run.status, 130);
        QCOMPARE(run.output, QByteArray("text Current Hotkey Trigger: Scroll Lock\n"
                                        "km-control 2\n"
                                        "usb-control 3\n"
                                        "text \n"
                                        "km-control 4\n"
                                        "text Beep on\n"
                                        "km-control 1\n"
                                        "usb-control 1\n"
                                        "text no end of \\x1b[2J\n"));
    }

    void aLineThatIsCutInTwoIsOneEvent()
    {
        Desk desk;
        CtlProcess process;
        process.start((desk.option() + QStringLiteral("--json watch"))
                          .split(QLatin1Char(' '), Qt::SkipEmptyParts));
        QVERIFY(process.hasSaid("usb_control"));
        desk.say("Current KM Con");
        desk.say("trol: 1\n");
        QVERIFY(process.hasSaid("\"value\":1"));
        ::kill(static_cast<pid_t>(process.process.processId()), SIGINT);
        CtlRun run = process.wait();
        QCOMPARE(run.status, 130);
        const QList<QJsonObject> events = run.objects();
        QCOMPARE(events.size(), 5); // three of the status, this one, and how it ended
        QCOMPARE(events.at(3).value(QStringLiteral("event")),
                 QJsonValue(QStringLiteral("km_control")));
        QVERIFY(events.at(3).value(QStringLiteral("time")).toString().endsWith(QLatin1Char('Z')));
        QCOMPARE(events.at(4).value(QStringLiteral("ok")), QJsonValue(false));
    }

    void aWatchSaysThatTheSwitchIsSilentAndGoesOn()
    {
        Desk desk;
        desk.answers.clear();
        CtlProcess process;
        process.start((desk.option() + QStringLiteral("--timeout 300 watch"))
                          .split(QLatin1Char(' '), Qt::SkipEmptyParts));
        QVERIFY(process.hasComplained("no answer from the switch yet; still listening\n"));
        desk.say("**C4\n");
        QVERIFY(process.hasSaid("km-control 4\n"));
    }

    void aCableThatIsPulledEndsTheWatch()
    {
        const QTemporaryDir folder;
        const QString link = folder.filePath(QStringLiteral("switch"));
        SimulatorProcess simulator;
        QVERIFY(!simulator
                     .start({QStringLiteral("serial"), QStringLiteral("--console"),
                             QStringLiteral("--link"), link})
                     .isEmpty());
        CtlProcess process;
        process.start(
            {QStringLiteral("-d"), QStringLiteral("serial:") + link, QStringLiteral("watch")});
        QVERIFY(process.hasSaid("usb-control 1\n"));
        simulator.type("unplug");
        const CtlRun run = process.wait();
        QCOMPARE(run.status, 3);
        QVERIFY2(run.errors.contains("the connection was lost"), run.errors.constData());
    }
};

QTEST_GUILESS_MAIN(CtlWatchTest)
#include "tst_ctl_watch.moc"
