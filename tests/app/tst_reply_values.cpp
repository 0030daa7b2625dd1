#include "support/canned_reply.h"
#include "support/serial_window.h"

#include <QTableWidget>
#include <QTest>

/// What single values of an answer, and the switch's own news, do to the window's controls.
class ReplyValuesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aStatusWithoutUsbControlLeavesTheCombo()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        s.device->answers["//??"] = "Current Hotkey Trigger: F1\nCurrent KM Control: 4\n";
        s.window->refresh_UI();
        QTRY_COMPARE(s.label("label_Current_Hotkey_Trigger_Data")->text(), QStringLiteral("F1"));
        QCOMPARE(s.combo("comboBox_KM_Control")->currentIndex(), 3);
        QCOMPARE(s.combo("comboBox_USB_Control")->currentIndex(), 2);
    }

    void aUsbControlWithAColonIsLoggedByOneRuleAndReadByTheOther()
    {
        SerialWindow s;
        s.device->answers["//??"] =
            "Current Hotkey Trigger: F1\nCurrent KM Control: 4\nCurrent USB Control: 3\n";
        QVERIFY(s.startAndRead());
        QCOMPARE(s.combo("comboBox_USB_Control")->currentIndex(), 2);
        QVERIFY(s.log().contains("stoi   "));
        QVERIFY(s.user.seen().isEmpty());
    }

    void portLimitSelectsTwoLessAndLeavesOneChannelMoreActive_data()
    {
        QTest::addColumn<QByteArray>("limit");
        QTest::addColumn<int>("index");
        QTest::addColumn<bool>("thirdActive");
        QTest::addColumn<bool>("fourthActive");
        QTest::newRow("4") << QByteArray("4") << 2 << true << true;
        QTest::newRow("3") << QByteArray("3") << 1 << true << true;
        QTest::newRow("2") << QByteArray("2") << 0 << true << false;
    }

    /// The configuration alone is read here: its layout line is what repaints the grid afterwards,
    /// so the grid is looked at through a listing whose layout does not parse.
    void portLimitSelectsTwoLessAndLeavesOneChannelMoreActive()
    {
        QFETCH(QByteArray, limit);
        QFETCH(int, index);
        QFETCH(bool, thirdActive);
        QFETCH(bool, fourthActive);
        SerialWindow s;
        s.device->answers["//rl"] =
            QByteArray(cannedListing).replace("Limit: 4", "Limit: " + limit);
        s.device->answers["//BP"] = "no layout today\n";
        QVERIFY(s.startAndRead());
        QCOMPARE(s.combo("comboBox_Select_active_port")->currentIndex(), index);
        auto *grid = s.window->findChild<QTableWidget *>(QStringLiteral("tableWidget"));
        const auto inactive = QStringLiteral("INACTIVE");
        QCOMPARE(!grid->item(0, 2)->text().contains(inactive), thirdActive);
        QCOMPARE(!grid->item(0, 3)->text().contains(inactive), fourthActive);
    }

    void aPortLimitThatNamesNoItemLeavesComboAndGrid()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        s.device->answers["//rl"] = QByteArray(cannedListing)
                                        .replace("Limit: 4", "Limit: 9")
                                        .replace("Enabled", "Disabled");
        s.window->refresh_UI();
        QTRY_COMPARE(s.combo("comboBox_Enable_or_Disable_Cursor_Roll")->currentIndex(), 0);
        QCOMPARE(s.combo("comboBox_Select_active_port")->currentIndex(), 2);
        QVERIFY(s.user.seen().isEmpty());
    }

    void aMissingValueReadsAsZero()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        s.device->answers["//rl"] =
            "//RL\nKM Port Limit: 4\nC1\t100 250 OFFICE\nC2\t1\nC3\t\nChannels resolution:\n";
        s.window->refresh_UI();
        QTRY_COMPARE(s.combo("comboBox_Enable_or_Disable_Cursor_Roll")->currentIndex(), 0);
        QCOMPARE(s.combo("comboBox_Select_Display_Mode")->currentIndex(), 0);
        QVERIFY(s.button("pushButton_ON_Beep")->isEnabled());
        QVERIFY(!s.button("pushButton_OFF_Beep")->isEnabled());
        QVERIFY(s.user.seen().isEmpty());
    }

    void commandTextsAreAcceptedAsWords()
    {
        SerialWindow s;
        s.device->answers["//rl"] = QByteArray(cannedListing)
                                        .replace("Enabled", "//o1")
                                        .replace("Relative Mouse Mode", "//km")
                                        .replace("Buzzer: on", "Buzzer: //B1");
        QVERIFY(s.startAndRead());
        QCOMPARE(s.combo("comboBox_Enable_or_Disable_Cursor_Roll")->currentIndex(), 1);
        QCOMPARE(s.combo("comboBox_Select_Display_Mode")->currentIndex(), 1);
        QVERIFY(!s.button("pushButton_ON_Beep")->isEnabled());
    }

    void wordsAreNotTrimmedSoACarriageReturnMakesThemUnknown()
    {
        SerialWindow s;
        for (QByteArray &answer : s.device->answers)
            answer.replace("\n", "\r\n");
        s.start();
        QTRY_COMPARE(s.combo("comboBox_KM_Control")->currentIndex(), 1);
        QTRY_COMPARE(s.combo("comboBox_Select_active_port")->currentIndex(), 2);
        QCOMPARE(s.combo("comboBox_Enable_or_Disable_Cursor_Roll")->currentIndex(), 0);
        QCOMPARE(s.combo("comboBox_Select_Display_Mode")->currentIndex(), 0);
    }

    void aPressOnTheSwitchMovesBothControls()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        s.device->forget();
        s.device->say("**M4\n");
        QTRY_COMPARE(s.combo("comboBox_KM_Control")->currentIndex(), 3);
        QCOMPARE(s.combo("comboBox_USB_Control")->currentIndex(), 3);
        s.device->say("**C1\n");
        QTRY_COMPARE(s.combo("comboBox_KM_Control")->currentIndex(), 0);
        QCOMPARE(s.combo("comboBox_USB_Control")->currentIndex(), 3);
        s.device->say("**U2\n");
        QTRY_COMPARE(s.combo("comboBox_USB_Control")->currentIndex(), 1);
        QVERIFY2(s.device->commands().isEmpty(), "what the switch reports is not sent back");
    }

    void aPressOnTheSwitchIsTakenOnce()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        s.device->say("**M4\n");
        QTRY_COMPARE(s.combo("comboBox_KM_Control")->currentIndex(), 3);
        s.combo("comboBox_KM_Control")->setCurrentIndex(1);
        s.device->say("something else\n");
        QTRY_VERIFY(s.terminal().endsWith(QStringLiteral("something else\n")));
        QCOMPARE(s.combo("comboBox_KM_Control")->currentIndex(), 1);
    }

    void chunkRulesPutTheHandlersBackAsTheyWere()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        s.device->forget();
        s.device->say("**M4\n");
        QTRY_COMPARE(s.combo("comboBox_KM_Control")->currentIndex(), 3);
        s.combo("comboBox_KM_Control")->setCurrentIndex(1);
        QTRY_COMPARE(s.device->commands(), QList<QByteArray>{"//c2"});
    }

    void aResolutionEchoIsNoKmControl()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        s.device->say("**CE 4 3\n**C4\n");
        QTRY_VERIFY(s.terminal().endsWith(QStringLiteral("**CE 4 3\n**C4\n")));
        QCOMPARE(s.combo("comboBox_KM_Control")->currentIndex(), 1);
    }
};

QTEST_MAIN(ReplyValuesTest)
#include "tst_reply_values.moc"
