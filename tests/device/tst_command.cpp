#include "device/command.h"
#include "device/read_back_commands.h"

#include <QTest>

/// Command texts against the switch's command table, typed out.
class CommandTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fixedTexts()
    {
        QCOMPARE(std::string(readConfigurationCommand), std::string("//rl"));
        QCOMPARE(std::string(readStatusCommand), std::string("//??"));
        QCOMPARE(std::string(readLayoutCommand), std::string("//BP"));
        QCOMPARE(std::string(softResetCommand), std::string("//R"));
        QCOMPARE(std::string(factoryResetCommand), std::string("//F"));
        QCOMPARE(std::string(beepOnCommand), std::string("//B1"));
        QCOMPARE(std::string(beepOffCommand), std::string("//B0"));
    }

    void kmControl()
    {
        QCOMPARE(kmControlCommand(0), std::string("//c1"));
        QCOMPARE(kmControlCommand(1), std::string("//c2"));
        QCOMPARE(kmControlCommand(2), std::string("//c3"));
        QCOMPARE(kmControlCommand(3), std::string("//c4"));
    }

    void usbControl()
    {
        QCOMPARE(usbControlCommand(0), std::string("//u1"));
        QCOMPARE(usbControlCommand(1), std::string("//u2"));
        QCOMPARE(usbControlCommand(2), std::string("//u3"));
        QCOMPARE(usbControlCommand(3), std::string("//u4"));
    }

    void portsOneAndTwoSendTwoNeverOne()
    {
        QCOMPARE(activePortsCommand(0), std::string("//D2"));
        QCOMPARE(activePortsCommand(1), std::string("//D3"));
        QCOMPARE(activePortsCommand(2), std::string("//D4"));
    }

    void relativeModeSendsKmAndAbsoluteKs()
    {
        QCOMPARE(mouseModeCommand(0), std::string("//ks"));
        QCOMPARE(mouseModeCommand(1), std::string("//km"));
        QCOMPARE(mouseModeCommand(2), std::string("//km"));
        QCOMPARE(mouseModeCommand(-1), std::string("//km"));
    }

    void cursorRolling()
    {
        QCOMPARE(cursorRollingCommand(0), std::string("//o0"));
        QCOMPARE(cursorRollingCommand(1), std::string("//o1"));
        QCOMPARE(cursorRollingCommand(-1), std::string("//o1"));
    }

    void buzzer()
    {
        QCOMPARE(buzzerCommand(false), std::string("//B0"));
        QCOMPARE(buzzerCommand(true), std::string("//B1"));
    }

    void numbersAreDecimalWithoutPadding()
    {
        QCOMPARE(numberedCommand("//c", 3), std::string("//c3"));
        QCOMPARE(numberedCommand("//u", 12), std::string("//u12"));
        QCOMPARE(numberedCommand("//D", 105), std::string("//D105"));
    }
};

QTEST_GUILESS_MAIN(CommandTest)
#include "tst_command.moc"
