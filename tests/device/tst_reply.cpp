#include "device/reply.h"

#include <QTest>
#include <limits>
#include <stdexcept>

/// Finding values in what the switch says.
class ReplyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void valueEndsAtTheLineFeed()
    {
        QCOMPARE(replyValue("//RL\nBuzzer: on\nC1\t100 250 OFFICE\n", "Buzzer: "),
                 std::string("on"));
        QCOMPARE(replyValue("//RL\nBuzzer: on\nC1\t100 250 OFFICE\n", "C1\t"),
                 std::string("100 250 OFFICE"));
    }

    void valueMayEndWithTheText()
    {
        QCOMPARE(replyValue("KM Port Limit: 4", "KM Port Limit: "), std::string("4"));
    }

    void anAbsentKeyOrAnEmptyValueIsZero()
    {
        QCOMPARE(replyValue("Buzzer: on\n", "KM Port Limit: "), std::string("0"));
        QCOMPARE(replyValue("Buzzer: \nnext", "Buzzer: "), std::string("0"));
        QCOMPARE(replyValue("Buzzer: ", "Buzzer: "), std::string("0"));
        QCOMPARE(replyValue("", "Buzzer: "), std::string("0"));
    }

    void theFirstOccurrenceWins() { QCOMPARE(replyValue("**C2\n**C4\n", "**C"), std::string("2")); }

    void theKeyMayStandAnywhereInALine()
    {
        QCOMPARE(replyValue("noise **M3\n", "**M"), std::string("3"));
    }

    void valuesAreNotTrimmed()
    {
        QCOMPARE(replyValue("Buzzer: on\r\nnext", "Buzzer: "), std::string("on\r"));
        QCOMPARE(replyValue("Buzzer:  on \n", "Buzzer: "), std::string(" on "));
    }

    void usbKeysDifferByTheColon()
    {
        QCOMPARE(replyValue("Current USB Control: 3\n", "Current USB Control"), std::string(": 3"));
        QCOMPARE(replyValue("Current USB Control 3\n", "Current USB Control"), std::string(" 3"));
        QCOMPARE(replyValue("Current USB Control 3\n", "Current USB Control: "), std::string("0"));
    }

    void numbersSkipBlanksAndStopAtTheFirstNonDigit()
    {
        QCOMPARE(replyNumber("4"), 4);
        QCOMPARE(replyNumber("  12abc"), 12);
        QCOMPARE(replyNumber("3\r"), 3);
        QCOMPARE(replyNumber("1x"), 1);
        QCOMPARE(replyNumber("007"), 7);
    }

    void noDigitThrows()
    {
        QVERIFY_EXCEPTION_THROWN(replyNumber(": 3"), std::invalid_argument);
        QVERIFY_EXCEPTION_THROWN(replyNumber(""), std::invalid_argument);
        QVERIFY_EXCEPTION_THROWN(replyNumber("on"), std::invalid_argument);
        QVERIFY_EXCEPTION_THROWN(replyNumber("99999999999"), std::out_of_range);
    }

    void itemIndexIsOneLess()
    {
        QCOMPARE(itemIndex("1"), 0);
        QCOMPARE(itemIndex("4"), 3);
        QCOMPARE(itemIndex("0"), -1);
        QVERIFY_EXCEPTION_THROWN(itemIndex("-2147483648"), std::out_of_range);
    }
};

QTEST_GUILESS_MAIN(ReplyTest)
#include "tst_reply.moc"
