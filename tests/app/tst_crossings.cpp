#include "crossing_bench.h"
#include "readback/yes_no_dialog.h"
#include "support/canned_reply.h"

namespace {
const auto incomplete =
    QStringLiteral("Settings file not applied completely: the connection ended");
const QList<QByteArray> readCommands = {"//rl", "//??", "//BP"};
} // namespace

/// Where roads cross on the serial line: a connection ends while something of it is still to come.
class CrossingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theSecondHalfOfAFileGoesToNoOtherSwitch()
    {
        TwoSwitches s;
        QVERIFY(s.startWithFile());
        s.device->forget();
        s.button("pushButton_Load_Settings_File")->click();
        QTRY_COMPARE(s.device->commands(), QList<QByteArray>{"//c3"});
        s.combo("comboBox_SelectPort")->setCurrentIndex(1);
        QTRY_VERIFY(s.user.sawText(incomplete));
        QCOMPARE(s.user.seen().constFirst().icon, QMessageBox::Warning);
        QTRY_VERIFY(s.isGreen());
        passAllDelays();
        QCOMPARE(s.second.commands(), readCommands);
        QCOMPARE(s.device->commands(), QList<QByteArray>{"//c3"});
        QVERIFY(!s.user.sawText(QStringLiteral("Settings file applied")));
        QCOMPARE(s.log().count(incomplete.toUtf8()), 1);
        QVERIFY(s.button("pushButton_Load_Settings_File")->isEnabled());
    }

    void offBeforeTheSecondHalfDropsItAndEnablesNothing()
    {
        TwoSwitches s;
        QVERIFY(s.startWithFile());
        s.device->forget();
        s.button("pushButton_Load_Settings_File")->click();
        s.button("pushButton_OFF_Connection")->click();
        QTRY_VERIFY(s.user.sawText(incomplete));
        passAllDelays();
        QVERIFY(isDisconnected(s));
        QCOMPARE(s.user.seen().size(), 1);
        QCOMPARE(s.device->commands(), QList<QByteArray>{"//c3"});
    }

    void aCablePulledBetweenTheHalvesSaysBothThings()
    {
        TwoSwitches s;
        QVERIFY(s.startWithFile());
        s.button("pushButton_Load_Settings_File")->click();
        s.unplug();
        QTRY_VERIFY(s.user.sawText(incomplete));
        passAllDelays();
        QVERIFY(isDisconnected(s));
        QVERIFY(!s.user.sawText(QStringLiteral("Settings file applied")));
    }

    void offBeforeTheTakeOverEnablesNothing()
    {
        SerialWindow s;
        s.start();
        QTRY_VERIFY(s.isGreen()); // the answer is there, and not read yet
        s.button("pushButton_OFF_Connection")->click();
        passAllDelays();
        QVERIFY(isDisconnected(s));
        QCOMPARE(s.label("label_Custom_1")->text(), QString());
    }

    /// What reads the buffer after a delay is a slot, which anybody may call.
    void thereIsNothingToReadWithoutAConnection()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        s.button("pushButton_OFF_Connection")->click();
        const QByteArray log = s.log();
        for (int reads = 0; reads < 6; ++reads) // so many in vain, and the window says so
            QVERIFY(QMetaObject::invokeMethod(s.window.get(), "get_data_from_TRQ_by_serial_port"));
        QVERIFY(QMetaObject::invokeMethod(s.window.get(), "set_current_layout_from_buff"));
        QCOMPARE(s.log(), log);
        QVERIFY(s.user.seen().isEmpty());
        QVERIFY(isDisconnected(s));
    }

    void offBeforeARefreshIsAnsweredLeavesOnForTheUser()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        s.device->answers.clear();
        s.button("pushButton_Refresh")->click();
        s.button("pushButton_OFF_Connection")->click();
        QVERIFY(!s.isGreen());
        QVERIFY(s.button("pushButton_ON_Connection")->isEnabled());
        QVERIFY(!s.button("pushButton_OFF_Connection")->isEnabled());
        // Deliberate: the end of its lock enables Refresh whatever the connection is.
        QTRY_VERIFY(s.button("pushButton_Refresh")->isEnabled());
    }

    void theReadAfterAResetDoesNotReachAnotherSwitch()
    {
        TwoSwitches s;
        s.user.on<Yes_No_Dialog>(
            [](Yes_No_Dialog &dialog) { WindowBench::press(dialog, "pushButton_OK"); });
        QVERIFY(s.startWithFile());
        s.device->forget();
        s.button("pushButton_Factory_Reset")->click();
        QTRY_COMPARE(s.device->commands(), QList<QByteArray>{"//F"});
        s.combo("comboBox_SelectPort")->setCurrentIndex(1);
        QTRY_VERIFY(s.isGreen());
        passAllDelays();
        QCOMPARE(s.second.commands(), readCommands);
    }

    void aCablePulledUnderTheQuestionLeavesNothingToReadLater()
    {
        SerialWindow s;
        s.user.on<Yes_No_Dialog>([&s](Yes_No_Dialog &dialog) {
            s.unplug();
            QTRY_VERIFY(!s.isGreen());
            WindowBench::press(dialog, "pushButton_OK");
        });
        QVERIFY(s.startAndRead());
        s.button("pushButton_Factory_Reset")->click();
        QVERIFY(isDisconnected(s));
        passAllDelays();
        QCOMPARE(s.combo("comboBox_mouse_movement_resolution_setting_1")->count(), 13);
    }

    void theReadAfterACustomSettingDoesNotReachAnotherSwitch()
    {
        TwoSwitches s;
        WindowSettings settings = SerialWindow::quick();
        settings.mouse.readAfterSubmit = std::chrono::milliseconds(150);
        QVERIFY(s.startWithFile(settings));
        s.device->forget();
        s.button("pushButton_Submit_Custom_Mouse_Movement_Settings")->click();
        QTRY_COMPARE(s.device->commands(), QList<QByteArray>{"//MM C1 100 250 OFFICE "});
        s.combo("comboBox_SelectPort")->setCurrentIndex(1);
        QTRY_VERIFY(s.isGreen());
        passAllDelays();
        QCOMPARE(s.second.commands(), readCommands);
    }

    void aSavedLayoutIsNotReadFromTheNextSwitchsAnswer()
    {
        TwoSwitches s;
        QVERIFY(s.startWithFile());
        s.device->answers.clear();
        s.device->say("Saving horizontal dimension as 4\n");
        QTRY_COMPARE(s.device->commands().last(), QByteArray("//BP"));
        s.combo("comboBox_SelectPort")->setCurrentIndex(1);
        QTRY_COMPARE(s.second.commands(), readCommands);
        QVERIFY(s.waitForRead());
        passAllDelays();
        QVERIFY(!s.log().contains("The layout could not be read back"));
        QCOMPARE(s.second.commands(), readCommands);
    }

    void theRetriesOfOneSwitchAreNotTheNextOnes()
    {
        TwoSwitches s;
        s.device->answers["//BP"] = "no layout\n";
        s.second.answers["//BP"] = "no layout\n";
        WindowSettings settings = SerialWindow::quick();
        settings.readBack.takeOver = std::chrono::milliseconds(20);
        s.start(settings);
        QTRY_VERIFY(s.device->commands().count("//rl") >= 4); // three retries
        s.combo("comboBox_SelectPort")->setCurrentIndex(1);
        QTRY_COMPARE(s.user.seen().size(), 1);
        QCOMPARE(s.user.seen().constFirst().text, QStringLiteral("Setting data from TRQ error"));
        QCOMPARE(s.second.commands().count("//rl"), 6);
    }

    void anUnreadSwitchIsNotSaved()
    {
        TwoSwitches s;
        QVERIFY(s.startWithFile());
        s.device->answers.clear();
        s.button("pushButton_Refresh")->click();
        s.button("pushButton_Create_Settings_File")->click();
        QCOMPARE(s.user.seen().size(), 1);
        QCOMPARE(s.user.seen().constFirst().icon, QMessageBox::Warning);
        QCOMPARE(s.user.seen().constFirst().text,
                 QStringLiteral("The switch has not been read completely; nothing was saved. "
                                "Press Refresh."));
        QCOMPARE(s.savesAsked, 0);
        s.device->answers = ScriptedSwitch::cannedAnswers();
        s.window->refresh_UI();
        QVERIFY(QTest::qWaitFor([&] {
            return s.combo("comboBox_mouse_movement_resolution_setting_1")->count() == 13;
        }));
        s.button("pushButton_Create_Settings_File")->click();
        QCOMPARE(s.savesAsked, 1);
        QCOMPARE(s.user.seen().last().text, QStringLiteral("File saved"));
    }

    void anAnswerWithoutItsCustomSettingsIsNotSavedEither()
    {
        TwoSwitches s;
        s.device->answers["//rl"] = QByteArray(cannedListing).replace("C3\t010 010 SLOW\n", "");
        QVERIFY(s.startWithFile());
        s.button("pushButton_Create_Settings_File")->click();
        QCOMPARE(s.savesAsked, 0);
        QVERIFY(s.user.seen().constFirst().text.startsWith(
            QStringLiteral("The switch has not been read completely")));
    }

    void removedEntriesSendNothing()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        QCOMPARE(s.combo("comboBox_mouse_movement_resolution_setting_4")->currentIndex(), 9);
        s.device->forget();
        s.button("pushButton_Connection_Settings")->click();
        QVERIFY(s.waitForRead());
        passAllDelays();
        QCOMPARE(s.device->commands(), readCommands);
    }
};

QTEST_MAIN(CrossingsTest)
#include "tst_crossings.moc"
