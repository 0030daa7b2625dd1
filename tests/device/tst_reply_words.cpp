#include "device/reply_words.h"

#include "device/custom_setting.h"
#include "device/ports.h"

#include <QTest>

/// Words and numbers that the switch's settings have, typed by hand.
class ReplyWordsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theWordAndItsCommandMeanOn()
    {
        QVERIFY(saysCursorRollingOn("Enabled"));
        QVERIFY(saysCursorRollingOn("//o1"));
        QVERIFY(saysRelativeMouse("Relative Mouse Mode"));
        QVERIFY(saysRelativeMouse("//km"));
        QVERIFY(saysBuzzerOn("on"));
        QVERIFY(saysBuzzerOn("//B1"));
    }

    void anythingElseMeansOff()
    {
        for (const char *value :
             {"", "0", "Disabled", "enabled", "Enabled\r", "//o0", "//km", "on", "//B1"})
            QVERIFY2(!saysCursorRollingOn(value), value);
        for (const char *value :
             {"", "0", "Absolute Mouse Mode", "Relative Mouse Mode\r", "//ks", "//o1", "on"})
            QVERIFY2(!saysRelativeMouse(value), value);
        for (const char *value : {"", "0", "off", "On", "on\r", "//B0", "//o1"})
            QVERIFY2(!saysBuzzerOn(value), value);
    }

    void aCustomSettingIsReportedBehindATab()
    {
        QCOMPARE(customSettingReplyKey(0), std::string_view("C1\t"));
        QCOMPARE(customSettingReplyKey(3), std::string_view("C4\t"));
    }

    void twoToFourPortsAreActive()
    {
        QVERIFY(!isPortLimit(1));
        QVERIFY(isPortLimit(2));
        QVERIFY(isPortLimit(3));
        QVERIFY(isPortLimit(4));
        QVERIFY(!isPortLimit(5));
    }

    void theNinePresetsAndWhatFollowsThem()
    {
        const QStringList names = {
            QStringLiteral("1080p"),     QStringLiteral("4K"),        QStringLiteral("2K"),
            QStringLiteral("3840x1080"), QStringLiteral("5760x1080"), QStringLiteral("7680x1080"),
            QStringLiteral("1920x2160"), QStringLiteral("1920x3240"), QStringLiteral("1920x4320")};
        QCOMPARE(presetNames(), names);
        QCOMPARE(customItem(0), 9);
        QCOMPARE(customItem(3), 12);
        QCOMPARE(resolutionCount, 13);
    }
};

QTEST_GUILESS_MAIN(ReplyWordsTest)
#include "tst_reply_words.moc"
