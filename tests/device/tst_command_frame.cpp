#include "device/command_frame.h"

#include <QTest>

/// The bytes of a command on the wire, typed out.
class CommandFrameTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hexTextHasTwoLowerCaseDigitsAByte()
    {
        QCOMPARE(toHexText("//rl\r"), std::string("2f2f726c0d"));
        QCOMPARE(toHexText(""), std::string());
        QCOMPARE(toHexText(std::string("\x00\x01\x7f\x80\xff", 5)), std::string("00017f80ff"));
    }

    void statusQueryIsFiveBytes()
    {
        std::string command = "//??";
        QCOMPARE(frameCommand(command), QByteArray::fromRawData("\x2F\x2F\x3F\x3F\x0D", 5));
    }

    void theCallersTextGrowsByTheCarriageReturn()
    {
        std::string command = "//c3";
        frameCommand(command);
        QCOMPARE(command, std::string("//c3\r"));
    }

    void everyByteSurvives()
    {
        std::string command = std::string("\x00\x0d\x80\xff", 4);
        QCOMPARE(frameCommand(command), QByteArray("\x00\x0d\x80\xff\x0d", 5));
    }

    void anEmptyCommandIsOneCarriageReturn()
    {
        std::string command;
        QCOMPARE(frameCommand(command), QByteArray("\x0d", 1));
    }
};

QTEST_GUILESS_MAIN(CommandFrameTest)
#include "tst_command_frame.moc"
