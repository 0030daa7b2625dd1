#include "desk.h"

#include <QJsonArray>
#include <QTest>
#include <csignal>

namespace {
const QString impatient = QStringLiteral("--timeout 300 --retries 0 ");

QJsonObject change(const char *key, const QJsonValue &from, const QJsonValue &to)
{
    return {{QStringLiteral("key"), QLatin1String(key)},
            {QStringLiteral("from"), from},
            {QStringLiteral("to"), to}};
}
} // namespace

/// peloractl set and reset.
class CtlChangesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everySettingIsTakenAndTold()
    {
        SimulatedDesk desk;
        const CtlRun run = desk.ctl(
            QStringLiteral("set km-control=3 usb-control=2 active-ports=3 cursor-rolling=on "
                           "buzzer=off mouse-mode=relative resolution.1=desk resolution.4=2K "
                           "layout=..../12/34"),
            {QStringLiteral("custom.2=120 80 DESK")});
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.status, 0);
        QCOMPARE(run.output,
                 QByteArray("km-control      1 -> 3\n"
                            "usb-control     1 -> 2\n"
                            "active-ports    4 -> 3\n"
                            "cursor-rolling  off -> on\n"
                            "buzzer          on -> off\n"
                            "mouse-mode      absolute -> relative\n"
                            "resolution.1    1080p -> DESK\n"
                            "resolution.4    1080p -> 2K\n"
                            "custom.2        100 100 CUSTOM2 -> 120 80 DESK\n"
                            "layout          1234/..../..../.... -> ..../12../34../....\n"));
        QCOMPARE(desk.state("KM control"), QByteArray("KM control: 3"));
        QCOMPARE(desk.state("USB control"), QByteArray("USB control: 2"));
        QCOMPARE(desk.state("Active ports"), QByteArray("Active ports: 3"));
        QCOMPARE(desk.state("Cursor rolling"), QByteArray("Cursor rolling: on"));
        QCOMPARE(desk.state("Buzzer"), QByteArray("Buzzer: off"));
        QCOMPARE(desk.state("Mouse mode"), QByteArray("Mouse mode: relative"));
        QCOMPARE(desk.state("Resolutions"), QByteArray("Resolutions: 11 1 1 3"));
        QCOMPARE(desk.state("Custom 2"), QByteArray("Custom 2: 120 80 DESK"));
        QCOMPARE(desk.state("Layout"), QByteArray("Layout: 05 06 09 10"));
    }

    void whatIsSoAlreadyIsNotSent()
    {
        const Desk desk;
        const CtlRun run =
            ctl(desk.option() + QStringLiteral("set km-control=2 layout=..../12/.3/.4 "
                                               "resolution.2=office"),
                {QStringLiteral("custom.2=120 80 desk")});
        QCOMPARE(run.output, QByteArray("already so\n"));
        QCOMPARE(run.status, 0);
        QCOMPARE(desk.commands(), (QByteArrayList{"//rl\r", "//??\r", "//BP\r"}));
    }

    void forceSendsItAllTheSame()
    {
        const Desk desk;
        const CtlRun run = ctl(desk.option() + QStringLiteral("set km-control=2 --force"));
        QCOMPARE(run.output, QByteArray("sent again, as it was\n"));
        QCOMPARE(run.status, 0);
        QCOMPARE(desk.sentCommands(), QByteArrayList{"//c2\r"});
    }

    void aDryRunShowsTheCommandsInTheirOrder()
    {
        const Desk desk;
        const CtlRun run =
            ctl(desk.option() +
                    QStringLiteral("set -n layout=12/34 buzzer=off km-control=1 resolution.1=HALL"),
                {QStringLiteral("custom.4=1 2 HALL")});
        QCOMPARE(run.status, 0);
        QVERIFY(run.output.endsWith("would send    //c1\n"
                                    "would send    //MM C4 1 2 HALL\n"
                                    "would send    //CE 1 13\n"
                                    "would send    //D4\n"
                                    "would send    //FF01B01FF02B02FF03B05FF04B06\n"
                                    "would send    //D3\n"
                                    "would send    //B0\n"));
        QCOMPARE(desk.sentCommands(), QByteArrayList());
        const QJsonObject object =
            ctl(desk.option() + QStringLiteral("--json set -n buzzer=off")).object();
        QCOMPARE(object.value(QStringLiteral("commands")).toArray(),
                 QJsonArray{QStringLiteral("//B0")});
        QCOMPARE(object.value(QStringLiteral("changes")).toArray(),
                 QJsonArray{change("buzzer", true, false)});
    }

    void jsonTellsWhatChanged()
    {
        SimulatedDesk desk;
        const QJsonObject object =
            desk.ctl(QStringLiteral("--json set km-control=2 resolution.3=DESK"),
                     {QStringLiteral("custom.1=5 6 DESK")})
                .object();
        QCOMPARE(object.value(QStringLiteral("ok")), QJsonValue(true));
        const auto custom = [](int x, int y, const char *name) {
            return QJsonObject{{QStringLiteral("x"), x},
                               {QStringLiteral("y"), y},
                               {QStringLiteral("name"), QLatin1String(name)}};
        };
        const auto resolution = [](int number, const char *name) {
            return QJsonObject{{QStringLiteral("number"), number},
                               {QStringLiteral("name"), QLatin1String(name)}};
        };
        QCOMPARE(
            object.value(QStringLiteral("changes")).toArray(),
            (QJsonArray{change("km_control", 1, 2),
                        change("resolution.3", resolution(1, "1080p"), resolution(10, "DESK")),
                        change("custom.1", custom(100, 100, "CUSTOM1"), custom(5, 6, "DESK"))}));
    }

    void mistakesAreNamedBeforeAnythingIsSent()
    {
        const Desk desk;
        const CtlRun run =
            ctl(desk.option() + QStringLiteral("set km-control=1 volume=3 buzzer=loud"));
        QCOMPARE(run.status, 2);
        QCOMPARE(run.errors.count('\n'), 2);
        QVERIFY(run.errors.contains("there is no setting \"volume\"; there are km-control"));
        QVERIFY(run.errors.contains("buzzer is off or on, not \"loud\""));
        QVERIFY(desk.commands().isEmpty());
    }

    void aNameThatTheSwitchDoesNotHaveIsAMistake()
    {
        const Desk desk;
        const CtlRun run =
            ctl(desk.option() + QStringLiteral("set resolution.1=HALL km-control=1"));
        QCOMPARE(run.status, 2);
        QVERIFY(run.errors.contains("1920x4320, OFFICE, DESK, HOME, LAB, not \"HALL\""));
        QCOMPARE(desk.sentCommands(), QByteArrayList());
    }

    void whatTheSwitchDoesNotTakeIsSentTwiceMoreAndTold()
    {
        const Desk desk; // answers always the same
        const CtlRun run = ctl(desk.option() + QStringLiteral("set km-control=4 buzzer=on"));
        QCOMPARE(run.status, 5);
        QCOMPARE(run.output, QByteArray());
        QVERIFY(
            run.errors.contains("the switch did not take km-control (wanted \"4\", it has \"2\")"));
        QCOMPARE(desk.sentCommands(), (QByteArrayList{"//c4\r", "//c4\r", "//c4\r"}));
    }

    void aKeyThatTheSwitchDoesNotTellStopsIt()
    {
        Desk desk;
        desk.replace("//rl\r", "KM Port Limit: 3\n", "");
        const CtlRun run =
            ctl(impatient + desk.option() + QStringLiteral("set km-control=1 layout=1234"));
        QCOMPARE(run.status, 4);
        QVERIFY(run.errors.contains("the switch did not tell active-ports, so nothing was sent"));
        QCOMPARE(desk.sentCommands(), QByteArrayList());
        // What is not asked for may be missing.
        desk.replace("//??\r", "KM Control: 2", "KM Control: 1");
        QCOMPARE(ctl(impatient + desk.option() + QStringLiteral("set km-control=1")).status, 0);
    }

    void aLateAnswerToAnEarlierQuestionIsNotTakenForTheLast()
    {
        Desk desk;
        const auto answers = std::exchange(desk.answers, {});
        CtlProcess process;
        process.start((desk.option() + QStringLiteral("--timeout 700 --retries 1 set km-control=1"))
                          .split(QLatin1Char(' '), Qt::SkipEmptyParts));
        QTRY_COMPARE(desk.commands().size(), 3);
        desk.answers = answers;
        QTRY_COMPARE(desk.sentCommands(), QByteArrayList{"//c1\r"});
        // The first question's answer comes now, and says what is no longer true.
        const QByteArray stale = QByteArray::fromStdString(exampleAnswer());
        desk.replace("//??\r", "KM Control: 2", "KM Control: 1");
        desk.say(stale);
        const CtlRun run = process.wait();
        QCOMPARE(run.status, 0);
        QCOMPARE(desk.sentCommands(), QByteArrayList{"//c1\r"}); // not sent again
    }

    void displaysThatDoNotTouchAreSentWithAWarning()
    {
        SimulatedDesk desk;
        const CtlRun run = desk.ctl(QStringLiteral("set layout=1.2./..../3.4."));
        QCOMPARE(run.status, 0);
        QVERIFY(run.errors.contains("warning: the displays of the layout do not all touch"));
        QCOMPARE(desk.state("Layout"), QByteArray("Layout: 01 03 09 11"));
    }

    void aLayoutGoesOutWithAllPortsActive()
    {
        SimulatedDesk desk;
        QCOMPARE(desk.ctl(QStringLiteral("set active-ports=2")).status, 0);
        const CtlRun run = desk.ctl(QStringLiteral("set layout=1/2/3/4"));
        QCOMPARE(run.status, 0);
        QCOMPARE(desk.state("Layout"), QByteArray("Layout: 01 05 09 13"));
        QCOMPARE(desk.state("Active ports"), QByteArray("Active ports: 2"));
    }

    void aSoftResetKeepsTheSettings()
    {
        SimulatedDesk desk;
        QCOMPARE(desk.ctl(QStringLiteral("set km-control=3")).status, 0);
        const CtlRun run = desk.ctl(QStringLiteral("reset soft"));
        QCOMPARE(run.output, QByteArray("reset, and it answers again\n"));
        QCOMPARE(run.status, 0);
        QCOMPARE(desk.state("KM control"), QByteArray("KM control: 3"));
    }

    void aFactoryResetIsMeant()
    {
        SimulatedDesk desk;
        QCOMPARE(desk.ctl(QStringLiteral("set km-control=3")).status, 0);
        const CtlRun refused = desk.ctl(QStringLiteral("reset factory"));
        QCOMPARE(refused.status, 2);
        QVERIFY(refused.errors.contains("give --yes"));
        QCOMPARE(desk.state("KM control"), QByteArray("KM control: 3"));
        QCOMPARE(desk.ctl(QStringLiteral("reset factory --yes")).status, 0);
        QCOMPARE(desk.state("KM control"), QByteArray("KM control: 1"));
    }

    void aSwitchThatStaysAwayAfterAResetIsToldOf()
    {
        Desk desk;
        desk.answers.clear();
        const CtlRun run = ctl(impatient + desk.option() + QStringLiteral("reset soft"));
        QCOMPARE(run.status, 3);
        QVERIFY(run.errors.contains("no answer from the switch"));
        QCOMPARE(desk.sentCommands(), QByteArrayList{"//R\r"});
    }

    void anInterruptedResetSaysThatItWasSent()
    {
        Desk desk;
        desk.answers.clear();
        CtlProcess process;
        process.start(
            (desk.option() + QStringLiteral("reset soft")).split(u' ', Qt::SkipEmptyParts));
        QTRY_COMPARE_WITH_TIMEOUT(desk.sentCommands(), QByteArrayList{"//R\r"}, 20000);
        ::kill(static_cast<pid_t>(process.process.processId()), SIGINT);
        const CtlRun run = process.wait();
        QCOMPARE(run.status, 130);
        QVERIFY2(run.errors.contains("interrupted; the reset was sent\n"), run.errors.constData());
    }

    void aPortThatVanishesInTheMiddleIsToldOfWithWhatWasSent()
    {
        SimulatedDesk desk({QStringLiteral("--no-pacing")});
        CtlProcess process;
        // A rest of two seconds lies between the halves.
        process.start({QStringLiteral("-d"), QStringLiteral("serial:") + desk.link(),
                       QStringLiteral("--json"), QStringLiteral("set"),
                       QStringLiteral("km-control=3"), QStringLiteral("buzzer=off")});
        QTRY_COMPARE_WITH_TIMEOUT(desk.state("KM control"), QByteArray("KM control: 3"), 20000);
        desk.simulator.type("unplug");
        const CtlRun run = process.wait();
        QCOMPARE(run.object().value(QStringLiteral("sent")).toArray(),
                 QJsonArray{QStringLiteral("//c3")});
        QCOMPARE(run.status, 3);
        QVERIFY2(run.errors.contains("the connection was lost"), run.errors.constData());
        QVERIFY2(run.errors.contains("sent before: //c3\n"), run.errors.constData());
    }

    void anInterruptSaysWhatWasSent()
    {
        SimulatedDesk desk({QStringLiteral("--no-pacing")});
        CtlProcess process;
        process.start({QStringLiteral("-d"), QStringLiteral("serial:") + desk.link(),
                       QStringLiteral("set"), QStringLiteral("km-control=3"),
                       QStringLiteral("buzzer=off")});
        QTRY_COMPARE_WITH_TIMEOUT(desk.state("KM control"), QByteArray("KM control: 3"), 20000);
        ::kill(static_cast<pid_t>(process.process.processId()), SIGINT);
        const CtlRun run = process.wait();
        QCOMPARE(run.status, 130);
        QVERIFY2(run.errors.contains("interrupted; sent 1 of 2 commands: //c3\n"),
                 run.errors.constData());
        QCOMPARE(desk.state("Buzzer"), QByteArray("Buzzer: on"));
    }
};

QTEST_GUILESS_MAIN(CtlChangesTest)
#include "tst_ctl_changes.moc"
