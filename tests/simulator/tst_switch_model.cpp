#include "simulator/switch_model.h"

#include <QTest>

namespace {

const QByteArray factoryConfiguration = "//RL Pelora KM switch\n"
                                        "KM Port Limit: 4\n"
                                        "KM Cursor Rolling: Disabled\n"
                                        "KM tracking mode: Absolute Mouse Mode\n"
                                        "Channels resolution: 1 1 1 1\n"
                                        "Buzzer: on\n"
                                        "C1\t100 100 CUSTOM1\n"
                                        "C2\t100 100 CUSTOM2\n"
                                        "C3\t100 100 CUSTOM3\n"
                                        "C4\t100 100 CUSTOM4\n";
const QByteArray factoryStatus = "Current Hotkey Trigger: Left Ctrl\n"
                                 "Current KM Control: 1\n"
                                 "Current USB Control 1\n";
const QByteArray factoryLayout = "//FF01B01FF02B02FF03B03FF04B04\n";

const QByteArray factoryState = "KM control: 1\n"
                                "USB control: 1\n"
                                "Mouse mode: absolute\n"
                                "Cursor rolling: off\n"
                                "Active ports: 4\n"
                                "Buzzer: on\n"
                                "Layout: 01 02 03 04\n"
                                "Resolutions: 1 1 1 1\n"
                                "Custom 1: 100 100 CUSTOM1\n"
                                "Custom 2: 100 100 CUSTOM2\n"
                                "Custom 3: 100 100 CUSTOM3\n"
                                "Custom 4: 100 100 CUSTOM4\n"
                                "Hotkey trigger: Left Ctrl\n";

QByteArray answerTo(SwitchModel &model, const QByteArray &bytes)
{
    return joined(model.receive(bytes));
}

QByteArray stateOf(const SwitchModel &model)
{
    return QByteArray::fromStdString(model.stateText());
}

} // namespace

/// The simulated switch against tables typed by hand.
class SwitchModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFreshSwitchHasFactorySettings()
    {
        SwitchModel model;
        QCOMPARE(stateOf(model), factoryState);
    }

    void theThreeAnswersOfAFreshSwitch()
    {
        SwitchModel model;
        QCOMPARE(model.receive("//rl\r").size(), std::size_t{1}); // in one piece
        QCOMPARE(answerTo(model, "//rl\r"), factoryConfiguration);
        QCOMPARE(answerTo(model, "//??\r"), factoryStatus);
        QCOMPARE(answerTo(model, "//BP\r"), factoryLayout);
        QCOMPARE(answerTo(model, "//rl\r//??\r//BP\r"),
                 factoryConfiguration + factoryStatus + factoryLayout);
    }

    void everyCommandIsObeyedAndAnswered_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QByteArray>("stateLine");

        const auto row = [](const QByteArray &command, const QByteArray &answer,
                            const QByteArray &stateLine) {
            QTest::newRow(command.toPercentEncoding(" /").constData())
                << command << answer << stateLine;
        };
        row("//c1", "**C1\n", "KM control: 1\n");
        row("//c2", "**C2\n", "KM control: 2\n");
        row("//c3", "**C3\n", "KM control: 3\n");
        row("//c4", "**C4\n", "KM control: 4\n");
        row("//u1", "**U1\n", "USB control: 1\n");
        row("//u2", "**U2\n", "USB control: 2\n");
        row("//u3", "**U3\n", "USB control: 3\n");
        row("//u4", "**U4\n", "USB control: 4\n");
        row("//ks", "Mouse mode absolute\n", "Mouse mode: absolute\n");
        row("//km", "Mouse mode relative\n", "Mouse mode: relative\n");
        row("//o0", "Cursor rolling off\n", "Cursor rolling: off\n");
        row("//o1", "Cursor rolling on\n", "Cursor rolling: on\n");
        row("//D2", "Active ports 2\n", "Active ports: 2\n");
        row("//D3", "Active ports 3\n", "Active ports: 3\n");
        row("//D4", "Active ports 4\n", "Active ports: 4\n");
        row("//B0", "Beep off\n", "Buzzer: off\n");
        row("//B1", "Beep on\n", "Buzzer: on\n");
        row("//CE 1 9", "**CE 1 9\n", "Resolutions: 9 1 1 1\n");
        row("//CE 4 3", "**CE 4 3\n", "Resolutions: 1 1 1 3\n");
        row("//CE 2 13", "**CE 2 13\n", "Resolutions: 1 13 1 1\n");
        row("//MM C2 120 80 DESK ", "Custom setting 2 saved\n", "Custom 2: 120 80 DESK\n");
        row("//MM C4 1 500 Wall", "Custom setting 4 saved\n", "Custom 4: 1 500 Wall\n");
        row("//MM C1 080 007 LOW", "Custom setting 1 saved\n", "Custom 1: 80 7 LOW\n");
        row("//MM C2 120  80 DESK", "Custom setting 2 saved\n", "Custom 2: 120 80 DESK\n");
        row("//MM C3   7   8 LOW", "Custom setting 3 saved\n", "Custom 3: 7 8 LOW\n");
        row("//MM C3 007   8 LOW ", "Custom setting 3 saved\n", "Custom 3: 7 8 LOW\n");
        row("//MM C3 100 250 MY DESK ", "Custom setting 3 saved\n", "Custom 3: 100 250 MY DESK\n");
        row("//FF01B05FF02B06FF03B07FF04B08", "Saving horizontal dimension as 4\n",
            "Layout: 05 06 07 08\n");
        row("//FF01B01FF02B05FF03B09FF04B13", "Saving horizontal dimension as 1\n",
            "Layout: 01 05 09 13\n");
        row("//FF01B11FF02B12FF03B15FF04B16", "Saving horizontal dimension as 2\n",
            "Layout: 11 12 15 16\n");
        row("//FF01B01FF02B02FF03B09FF04B10", "Saving horizontal dimension as 2\n",
            "Layout: 01 02 09 10\n");
        row("//R", "Soft reset\n", "KM control: 1\n");
    }

    void everyCommandIsObeyedAndAnswered()
    {
        QFETCH(QByteArray, command);
        QFETCH(QByteArray, answer);
        QFETCH(QByteArray, stateLine);
        SwitchModel model;
        QCOMPARE(answerTo(model, command + "\r"), answer);
        QVERIFY2(stateOf(model).contains(stateLine), stateOf(model).constData());
        QCOMPARE(model.obeyedCount(), 1);
        QCOMPARE(model.rejectedCount(), 0);
    }

    void aFactoryResetRestoresEverything()
    {
        SwitchModel model;
        answerTo(model, "//c3\r//u2\r//km\r//o1\r//D2\r//B0\r//CE 2 5\r//MM C1 5 6 X \r"
                        "//FF01B16FF02B15FF03B14FF04B13\r");
        QCOMPARE(stateOf(model), QByteArray("KM control: 3\n"
                                            "USB control: 2\n"
                                            "Mouse mode: relative\n"
                                            "Cursor rolling: on\n"
                                            "Active ports: 2\n"
                                            "Buzzer: off\n"
                                            "Layout: 16 15 14 13\n"
                                            "Resolutions: 1 5 1 1\n"
                                            "Custom 1: 5 6 X\n"
                                            "Custom 2: 100 100 CUSTOM2\n"
                                            "Custom 3: 100 100 CUSTOM3\n"
                                            "Custom 4: 100 100 CUSTOM4\n"
                                            "Hotkey trigger: Left Ctrl\n"));
        QCOMPARE(answerTo(model, "//F\r"), QByteArray("Factory settings restored\n"));
        QCOMPARE(stateOf(model), factoryState);
    }

    void aSoftResetKeepsTheSettingsAndIsCounted()
    {
        SwitchModel model;
        answerTo(model, "//c3\r");
        QCOMPARE(answerTo(model, "//R\r"), QByteArray("Soft reset\n"));
        QCOMPARE(model.softResetCount(), 1);
        QCOMPARE(model.state().kmControl, 3);
    }

    void aChangedSwitchIsReadBack()
    {
        SwitchModel model;
        answerTo(model, "//c3\r//u2\r//km\r//o1\r//D3\r//B0\r//CE 1 2\r//CE 2 5\r//CE 3 10\r"
                        "//CE 4 13\r//MM C2 7 80 DESK \r//FF01B01FF02B05FF03B06FF04B10\r");
        QCOMPARE(answerTo(model, "//rl\r"), QByteArray("//RL Pelora KM switch\n"
                                                       "KM Port Limit: 3\n"
                                                       "KM Cursor Rolling: Enabled\n"
                                                       "KM tracking mode: Relative Mouse Mode\n"
                                                       "Channels resolution: 2 5 10 13\n"
                                                       "Buzzer: off\n"
                                                       "C1\t100 100 CUSTOM1\n"
                                                       "C2\t007 080 DESK\n"
                                                       "C3\t100 100 CUSTOM3\n"
                                                       "C4\t100 100 CUSTOM4\n"));
        QCOMPARE(answerTo(model, "//??\r"), QByteArray("Current Hotkey Trigger: Left Ctrl\n"
                                                       "Current KM Control: 3\n"
                                                       "Current USB Control 2\n"));
        QCOMPARE(answerTo(model, "//BP\r"), QByteArray("//FF01B01FF02B05FF03B06FF04B10\n"));
    }

    void malformedCommandsChangeNothing_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<QString>("reason");

        const auto row = [](const QByteArray &command, const char *reason) {
            QTest::newRow(command.toPercentEncoding(" /").constData())
                << command << QString::fromLatin1(reason);
        };
        row("", "empty command");
        row("rl", "unknown command");
        row("//RL", "unknown command");
        row("//rl ", "unknown command");
        row(" //rl", "unknown command");
        row("//KM", "unknown command");
        row("//B2", "unknown command");
        row("//o2", "unknown command");
        row("\n//rl", "control character in the command");
        row("//c0", "the number must be 1 to 4");
        row("//c5", "the number must be 1 to 4");
        row("//c", "the number must be 1 to 4");
        row("//c 1", "the number must be 1 to 4");
        row("//c01", "the number must be 1 to 4");
        row("//c11", "the number must be 1 to 4");
        row("//u5", "the number must be 1 to 4");
        row("//ux", "the number must be 1 to 4");
        row("//D1", "the number must be 2 to 4");
        row("//D5", "the number must be 2 to 4");
        row("//CE 2", "a resolution needs a channel and a number");
        row("//CE 5 1", "the channel must be 1 to 4");
        row("//CE 0 1", "the channel must be 1 to 4");
        row("//CE 2 0", "the resolution must be 1 to 13");
        row("//CE 2 14", "the resolution must be 1 to 13");
        row("//CE 2  5", "the resolution must be 1 to 13");
        row("//CE 2 5 ", "the resolution must be 1 to 13");
        row("//CE 2 05", "the resolution must be 1 to 13");
        row("//CE2 5", "unknown command");
        row("//MM C5 1 1 A ", "the custom setting must be 1 to 4");
        row("//MM C0 1 1 A ", "the custom setting must be 1 to 4");
        row("//MM CC1 1 1 A ", "the custom setting must be 1 to 4");
        row("//MM C1 0 1 A ", "X and Y must be 1 to 500");
        row("//MM C1 501 1 A ", "X and Y must be 1 to 500");
        row("//MM C1 1 0 A ", "X and Y must be 1 to 500");
        row("//MM C1 1 501 A ", "X and Y must be 1 to 500");
        row("//MM C1 abc 1 A ", "X and Y must be 1 to 500");
        row("//MM C1 -5 1 A ", "X and Y must be 1 to 500");
        row("//MM C1    1 1 A ", "X and Y must be 1 to 500");
        row("//MM C1  100 1 A ", "X and Y must be 1 to 500");
        row("//MM C1 1  100 A ", "X and Y must be 1 to 500");
        row("//MM C1 0100 1 A ", "X and Y must be 1 to 500");
        row("//MM C1   0 1 A ", "X and Y must be 1 to 500");
        row("//MM C1 1 0 1 A ", "X and Y must be 1 to 500");
        row("//MM C1   ", "a custom setting needs a number, X, Y and a name");
        row("//MM C1 1 1", "a custom setting needs a number, X, Y and a name");
        row("//MM C1 1 1 ", "a custom setting needs a name");
        row("//MM C1 1 1   ", "a custom setting needs a name");
        row("//MM C1 1 1 A\tB ", "control character in the command");
        row("//MM C1 1 1 **M3 ", "the name holds a mark of the switch's own answers");
        row("//MM C1 1 1 X01B07 ", "the name holds a mark of the switch's own answers");
        row("//MM C1 1 1 //FF ", "the name holds a mark of the switch's own answers");
        row("//FF01B01FF02B02FF03B03", "a layout has four groups of seven characters");
        row("//FF01B01FF02B02FF03B03FF04B04 ", "a layout has four groups of seven characters");
        row("//FF01B01FF01B02FF03B03FF03B04", "the layout names no channel once");
        row("//FF03B01FF03B02FF03B03FF03B04", "the layout names no channel once");
        row("//FF01B05FF02B05FF03B10FF03B14", "the layout uses cell 5 twice");
        row("//FF01B01FF02B02FF03B03FF04B03", "the layout uses cell 3 twice");
        row("//FF01B00FF02B02FF03B03FF04B04", "the layout group FF01B00 is none");
        row("//FF01B17FF02B02FF03B03FF04B04", "the layout group FF01B17 is none");
        row("//FF05B01FF02B02FF03B03FF04B04", "the layout group FF05B01 is none");
        row("//FF01C01FF02B02FF03B03FF04B04", "the layout group FF01C01 is none");
        row("//FF01B01FF02B0xFF03B03FF04B04", "the layout group FF02B0x is none");
        row("//FF01B01GF02B02FF03B03FF04B04", "the layout group GF02B02 is none");
    }

    void malformedCommandsChangeNothing()
    {
        QFETCH(QByteArray, command);
        QFETCH(QString, reason);
        SwitchModel model;
        QCOMPARE(answerTo(model, command + "\r"), QByteArray());
        QCOMPARE(QString::fromStdString(model.lastRejection()), reason);
        QCOMPARE(model.rejectedCount(), 1);
        QCOMPARE(model.obeyedCount(), 0);
        QCOMPARE(stateOf(model), factoryState);
    }

    void aRejectedCommandDoesNotStopTheNext()
    {
        SwitchModel model;
        QCOMPARE(answerTo(model, "//c9\r//c2\r"), QByteArray("**C2\n"));
        QCOMPARE(model.rejectedCount(), 1);
        QCOMPARE(model.obeyedCount(), 1);
    }

    void anOverlongCommandIsThrownAwayUpToItsEnd()
    {
        SwitchModel model;
        QCOMPARE(answerTo(model, QByteArray(100000, 'x')), QByteArray());
        QCOMPARE(answerTo(model, "//c2\r//c3\r"), QByteArray("**C3\n"));
        QCOMPARE(model.lastRejection(), std::string("command too long"));
        QCOMPARE(model.state().kmControl, 3);
    }

    void commandsMayArriveByteByByte()
    {
        SwitchModel model;
        QByteArray answer;
        for (const char byte : QByteArray("//rl\r//c2\r"))
            answer += answerTo(model, QByteArray(1, byte));
        QCOMPARE(answer, factoryConfiguration + "**C2\n");
    }

    void linesCollectTheirCommandsApart()
    {
        SwitchModel model;
        QCOMPARE(joined(model.receive("//c", 0)), QByteArray());
        QCOMPARE(joined(model.receive("//u3\r", 1)), QByteArray("**U3\n"));
        QCOMPARE(joined(model.receive("2\r", 0)), QByteArray("**C2\n"));
        QCOMPARE(model.rejectedCount(), 0);
    }

    void longNamesAreCutAndTheAnswersStayShort()
    {
        SwitchModel model;
        const QByteArray name(200, 'W');
        for (const char setting : QByteArray("1234"))
            answerTo(model, QByteArray("//MM C") + setting + " 500 500 " + name + " \r");
        answerTo(model, "//km\r//CE 1 13\r//CE 2 13\r//CE 3 13\r//CE 4 13\r");
        const QByteArray all = answerTo(model, "//rl\r//??\r//BP\r");
        QVERIFY(all.contains("C4\t500 500 WWWWWWWWWWWWWWWWWWWWWWWW\n"));
        QVERIFY2(all.size() < 600, QByteArray::number(all.size()).constData());
    }

    void aNameIsNeverCutInsideACharacter()
    {
        SwitchModel model;
        // 23 letters and a character of two bytes: byte 24 would be its first half.
        answerTo(model, "//MM C1 1 1 ABCDEFGHIJKLMNOPQRSTUVW\xC3\x84 \r");
        QCOMPARE(model.state().custom[0].name, std::string("ABCDEFGHIJKLMNOPQRSTUVW"));
        answerTo(model, "//MM C1 1 1 ABCDEFGHIJKLMNOPQRSTUV\xC3\x84 \r");
        QCOMPARE(model.state().custom[0].name, std::string("ABCDEFGHIJKLMNOPQRSTUV\xC3\x84"));
    }

    void marksStandOnlyWhereTheyBelong()
    {
        SwitchModel model;
        const QByteArray all = answerTo(model, "//rl\r//??\r//BP\r");
        for (const char *mark : {"01B", "02B", "03B", "04B", "//FF", "//RL", "KM Port Limit: ",
                                 "Current KM Control: ", "Current USB Control ", "Buzzer: "})
            QCOMPARE(all.count(mark), 1);
        for (const char *mark : {"**M", "**C", "**U", "Current USB Control: ", "Saving horizontal"})
            QCOMPARE(all.count(mark), 0);
        QVERIFY(all.indexOf("01B") > all.indexOf("//FF"));
    }

    void aFrontPanelPressMovesBothControls()
    {
        SwitchModel model;
        QCOMPARE(joined(model.press(3)), QByteArray("**M3\n"));
        QCOMPARE(model.state().kmControl, 3);
        QCOMPARE(model.state().usbControl, 3);
        QCOMPARE(joined(model.press(5)), QByteArray());
        QCOMPARE(joined(model.press(0)), QByteArray());
        QCOMPARE(model.rejectedCount(), 2);
        QCOMPARE(model.state().kmControl, 3);
    }

    void pressingOnGoesRoundTheActivePorts()
    {
        SwitchModel model;
        answerTo(model, "//D2\r");
        QCOMPARE(joined(model.pressNext()), QByteArray("**M2\n"));
        QCOMPARE(joined(model.pressNext()), QByteArray("**M1\n"));
    }

    void statesCanBeGivenAndCompared()
    {
        SwitchModel one;
        SwitchModel other;
        SwitchState state;
        state.layout = {0, 17, 99, 4};
        state.hotkeyTrigger = "Scroll Lock";
        one.setState(state);
        QVERIFY(one.state() != other.state());
        QCOMPARE(answerTo(one, "//BP\r"), QByteArray("//FF01B00FF02B17FF03B99FF04B04\n"));
        QVERIFY(answerTo(one, "//??\r").startsWith("Current Hotkey Trigger: Scroll Lock\n"));
        other.setState(state);
        QVERIFY(one.state() == other.state());
        QCOMPARE(stateOf(one), stateOf(other));
        one.resetState();
        QCOMPARE(stateOf(one), factoryState);
    }

    void eventsTellWhatHappens()
    {
        SwitchModel model;
        QStringList seen;
        model.onEvent = [&seen](const SwitchEvent &event) {
            static const char *const kinds[] = {"obeyed", "rejected", "said", "changed"};
            seen << QStringLiteral("%1 %2 %3")
                        .arg(QLatin1String(kinds[static_cast<int>(event.kind)]),
                             QString::fromStdString(event.text),
                             QString::fromStdString(event.reason))
                        .trimmed();
        };
        answerTo(model, "//c2\r//c2\r//c7\r");
        QCOMPARE(seen, QStringList({QStringLiteral("obeyed //c2"), QStringLiteral("changed"),
                                    QStringLiteral("said **C2"), QStringLiteral("obeyed //c2"),
                                    QStringLiteral("said **C2"),
                                    QStringLiteral("rejected //c7 the number must be 1 to 4")}));
    }
};

QTEST_GUILESS_MAIN(SwitchModelTest)
#include "tst_switch_model.moc"
