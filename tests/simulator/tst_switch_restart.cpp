#include "simulator/switch_model.h"

#include "readback/general_settings.h"
#include "simulator/options.h"

#include <QByteArrayList>
#include <QTest>

namespace {

/// A switch that restarts after a reset, and what it loses and tells.
class RestartingSwitch
{
public:
    RestartingSwitch()
    {
        model.setRestartsAfterReset(true);
        model.onEvent = [this](const SwitchEvent &event) {
            if (event.kind == SwitchEvent::Kind::Rejected)
                lost << QByteArray::fromStdString(event.text + ": " + event.reason);
            restarts += event.kind == SwitchEvent::Kind::Restarted ? 1 : 0;
        };
    }
    QByteArray answerTo(const QByteArray &bytes, int line = 0)
    {
        return joined(model.receive(bytes, line));
    }

    SwitchModel model;
    QByteArrayList lost;
    int restarts = 0;
};

} // namespace

/// The switch is deaf and silent for a while after a reset.
class SwitchRestartTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void afterAResetItIsDeaf_data()
    {
        QTest::addColumn<QByteArray>("reset");
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("soft") << QByteArray("//R\r") << QByteArray("Soft reset\n");
        QTest::newRow("factory") << QByteArray("//F\r")
                                 << QByteArray("Factory settings restored\n");
    }

    void afterAResetItIsDeaf()
    {
        QFETCH(QByteArray, reset);
        QFETCH(QByteArray, answer);
        RestartingSwitch it;
        // the answer is still said; what stands behind the reset in the same bytes is lost already
        QCOMPARE(it.answerTo(reset + "//c2\r"), answer);
        QVERIFY(it.model.isRestarting());
        QCOMPARE(it.answerTo("//rl\r//??\r"), QByteArray());
        QCOMPARE(it.lost,
                 QByteArrayList({"//c2: the switch is restarting", "//rl: the switch is restarting",
                                 "//??: the switch is restarting"}));
        QCOMPARE(it.model.state().kmControl, 1);
        QCOMPARE(it.model.obeyedCount(), 1);

        it.model.finishRestart();
        QCOMPARE(it.restarts, 1);
        QVERIFY(!it.model.isRestarting());
        QCOMPARE(it.answerTo("//c3\r"), QByteArray("**C3\n"));
    }

    void everyLineIsLost()
    {
        RestartingSwitch it;
        it.answerTo("//c", 1);
        QCOMPARE(it.answerTo("//R\r", 0), QByteArray("Soft reset\n"));
        QCOMPARE(it.lost, QByteArrayList{"//c: the switch is restarting"});
        QCOMPARE(it.answerTo("3\r", 1), QByteArray());
        it.model.finishRestart();
        QCOMPARE(it.answerTo("//u4\r", 1), QByteArray("**U4\n"));
        QCOMPARE(it.model.state().kmControl, 1);
    }

    void aCommandThatBeganInTheDeafTimeLosesItsBeginning()
    {
        RestartingSwitch it;
        it.answerTo("//R\r//c");
        it.model.finishRestart();
        QCOMPARE(it.answerTo("3\r//c4\r"), QByteArray("**C4\n"));
        QCOMPARE(it.lost, QByteArrayList({"//c: the switch is restarting", "3: unknown command"}));
    }

    void overlongBytesAreLostLikeOthers()
    {
        RestartingSwitch it;
        it.answerTo("//R\r" + QByteArray(5000, 'x'));
        it.model.finishRestart();
        QCOMPARE(it.answerTo("//c2\r"), QByteArray("**C2\n"));
    }

    void pressesAndFloodsAreLostToo()
    {
        RestartingSwitch it;
        it.answerTo("//R\r");
        QVERIFY(it.model.press(3).empty());
        QVERIFY(it.model.pressNext().empty());
        QVERIFY(it.model.flood(70).empty());
        QCOMPARE(it.lost, QByteArrayList({"press 3: the switch is restarting",
                                          "press 2: the switch is restarting",
                                          "flood 70: the switch is restarting"}));
        QCOMPARE(it.model.state().kmControl, 1);
        it.model.finishRestart();
        QCOMPARE(joined(it.model.press(3)), QByteArray("**M3\n"));
    }

    void withoutAClockItHearsOn()
    {
        SwitchModel model;
        QCOMPARE(joined(model.receive("//R\r//c2\r")), QByteArray("Soft reset\n**C2\n"));
        QVERIFY(!model.isRestarting());
        int events = 0;
        model.onEvent = [&events](const SwitchEvent &) { ++events; };
        model.finishRestart();
        QCOMPARE(events, 0);
    }

    void theUtilityWaitsLonger()
    {
        const GeneralSettings::Timing utility;
        const Options simulator;
        QVERIFY(simulator.switchRestartTime < utility.networkReadAfterReset);
        QVERIFY(simulator.switchRestartTime < utility.serialReadAfterReset);
    }
};

QTEST_GUILESS_MAIN(SwitchRestartTest)
#include "tst_switch_restart.moc"
