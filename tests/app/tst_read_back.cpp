#include "support/canned_reply.h"
#include "support/serial_window.h"

#include <QSignalSpy>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

namespace {
const QList<QByteArray> readCommands = {"//rl", "//??", "//BP"};
} // namespace

/// The road from what the switch says on the serial line to the window's controls.
class ReadBackTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aReadFillsEveryControl()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        QCOMPARE(s.device->commands(), readCommands);
        QVERIFY(s.isGreen());
        QCOMPARE(s.label("label_Current_Hotkey_Trigger_Data")->text(),
                 QStringLiteral("Scroll Lock"));
        QCOMPARE(s.combo("comboBox_KM_Control")->currentIndex(), 1);
        QCOMPARE(s.combo("comboBox_USB_Control")->currentIndex(), 2);
        QCOMPARE(s.combo("comboBox_Select_active_port")->currentIndex(), 2);
        QCOMPARE(s.combo("comboBox_Enable_or_Disable_Cursor_Roll")->currentIndex(), 1);
        QCOMPARE(s.combo("comboBox_Select_Display_Mode")->currentIndex(), 1);
        QVERIFY(!s.button("pushButton_ON_Beep")->isEnabled());
        QVERIFY(s.button("pushButton_OFF_Beep")->isEnabled());
        QCOMPARE(s.label("label_Custom_4")->text(), QStringLiteral("500 500 FAST"));
        auto *first = s.combo("comboBox_mouse_movement_resolution_setting_1");
        QCOMPARE(first->count(), 13);
        QCOMPARE(first->itemText(9), QStringLiteral("OFFICE"));
        QCOMPARE(first->currentIndex(), 0);
        QCOMPARE(s.combo("comboBox_mouse_movement_resolution_setting_4")->currentIndex(), 9);
        auto *grid = s.window->findChild<QTableWidget *>(QStringLiteral("tableWidget"));
        QCOMPARE(grid->item(1, 0)->text(), QStringLiteral("Channel 1"));
        QCOMPARE(grid->item(1, 3)->text(), QStringLiteral("Channel 4"));
        QVERIFY(!grid->item(0, 0));
        QTRY_VERIFY(s.terminal().contains(QStringLiteral("KM Port Limit: 4\n")));
        QVERIFY(s.user.seen().isEmpty());
    }

    void fillingTheControlsSendsNothingBack()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        QTest::qWait(50); // anything sent by mistake has left by then
        QCOMPARE(s.device->commands(), readCommands);
    }

    void theThreeCommandsAreSentOnceEach()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        QCOMPARE(s.device->commands().count("//rl"), 1);
        QCOMPARE(s.device->commands().count("//??"), 1);
        QCOMPARE(s.device->commands().count("//BP"), 1);
    }

    void aReplyInOneByteChunksIsReadTheSame()
    {
        SerialWindow s;
        s.device->answers.clear();
        WindowSettings settings = SerialWindow::quick();
        settings.readBack.takeOver = std::chrono::seconds(1);
        s.start(settings);
        QTRY_COMPARE(s.device->commands().size(), 3);
        const QByteArray reply = cannedReply;
        for (const char byte : reply) {
            s.device->say(QByteArray(1, byte));
            QCoreApplication::processEvents();
        }
        QVERIFY(s.waitForRead());
        QVERIFY(s.isGreen());
        QCOMPARE(s.combo("comboBox_KM_Control")->currentIndex(), 1);
    }

    void aHandshakeThatTheLineSplitCounts_data()
    {
        QTest::addColumn<QByteArray>("first");
        QTest::addColumn<QByteArray>("second");
        QTest::newRow("K M") << QByteArray("K") << QByteArray("M");
        QTest::newRow("// RL") << QByteArray("noise //") << QByteArray("RL\n");
        QTest::newRow("//R L") << QByteArray("//R") << QByteArray("L\n");
    }

    void aHandshakeThatTheLineSplitCounts()
    {
        QFETCH(QByteArray, first);
        QFETCH(QByteArray, second);
        SerialWindow s;
        s.device->answers.clear();
        s.start();
        QTRY_COMPARE(s.device->commands().size(), 3);
        s.device->say(first);
        QTRY_VERIFY(s.terminal().contains(QString::fromLatin1(first)));
        QVERIFY(!s.isGreen());
        s.device->say(second);
        QTRY_VERIFY(s.isGreen());
    }

    void untilTheHandshakeEverythingIsDisabledAndRed()
    {
        SerialWindow s;
        s.device->answers.clear();
        s.start();
        QTRY_COMPARE(s.device->commands().size(), 3);
        for (const char *name :
             {"pushButton_Create_Settings_File", "pushButton_Load_Settings_File",
              "pushButton_Refresh", "pushButtonSubmit",
              "pushButton_Submit_Custom_Mouse_Movement_Settings", "pushButton_Factory_Reset",
              "pushButton_Soft_Reset", "pushButton_ON_Beep", "pushButton_OFF_Beep",
              "pushButton_Mouse_Speed_Settings", "TopologyAndDisplayBtn",
              "pushButton_Admin_Settings"})
            QVERIFY2(!s.button(name)->isEnabled(), name);
        for (const char *name :
             {"comboBox_KM_Control", "comboBox_USB_Control", "comboBox_Select_Display_Mode",
              "comboBox_Select_active_port", "comboBox_Enable_or_Disable_Cursor_Roll",
              "comboBox_mouse_movement_resolution_setting_1",
              "comboBox_mouse_movement_resolution_setting_2",
              "comboBox_mouse_movement_resolution_setting_3",
              "comboBox_mouse_movement_resolution_setting_4"})
            QVERIFY2(!s.combo(name)->isEnabled(), name);
        QVERIFY(!s.isGreen());
        QVERIFY(s.button("pushButton_ON_Connection")->isEnabled());
        s.device->say("//RL\n");
        QTRY_VERIFY(s.isGreen());
        QVERIFY(s.button("pushButton_Factory_Reset")->isEnabled());
        QVERIFY(s.combo("comboBox_KM_Control")->isEnabled());
        QVERIFY(!s.button("pushButton_ON_Connection")->isEnabled());
    }

    void fiveRetriesThenTheUserIsTold()
    {
        SerialWindow s;
        s.device->answers["//rl"] = QByteArray(cannedListing).replace("Limit: 4", "Limit: x");
        s.start();
        QTRY_COMPARE_WITH_TIMEOUT(s.user.seen().size(), 1, 10000);
        QCOMPARE(s.user.seen().constFirst().title, QStringLiteral("Error"));
        QCOMPARE(s.user.seen().constFirst().text, QStringLiteral("Setting data from TRQ error"));
        QCOMPARE(s.user.seen().constFirst().icon, QMessageBox::Warning);
        QCOMPARE(s.device->commands().count("//rl"), 6);
        // The controls are usable, and the next read starts with a fresh count.
        QVERIFY(s.combo("comboBox_KM_Control")->isEnabled());
        s.device->forget();
        s.combo("comboBox_KM_Control")->setCurrentIndex(3);
        QTRY_COMPARE(s.device->commands(), QList<QByteArray>{"//c4"});
        s.device->answers["//rl"] = cannedListing;
        s.window->refresh_UI();
        QVERIFY(s.waitForRead());
        QCOMPARE(s.user.seen().size(), 1);
    }

    /// The user presses for another read while the sixth answer waits to be read. That answer is
    /// gone with the buffer, so the window gives up, and with it everything that was asked.
    void anAnswerAfterGivingUpIsShownAndNotTakenOver()
    {
        SerialWindow s;
        s.device->answers["//BP"] = "no layout\n";
        WindowSettings settings = SerialWindow::quick();
        settings.readBack.takeOver = std::chrono::milliseconds(200);
        s.start(settings);
        const auto answersShown = [&s] { return s.terminal().count(QStringLiteral("no layout")); };
        QTRY_COMPARE_WITH_TIMEOUT(answersShown(), 6, 10000);
        s.device->answers.clear();
        s.window->refresh_UI();
        QTRY_COMPARE(s.device->commands().count("//rl"), 7);
        QVERIFY(s.user.seen().isEmpty());
        QTRY_COMPARE(s.user.seen().size(), 1);
        QCOMPARE(s.user.seen().constFirst().text, QStringLiteral("Setting data from TRQ error"));

        s.device->say(QByteArray(cannedReply).replace("Scroll Lock", "F1"));
        QTRY_VERIFY(s.terminal().contains(QStringLiteral("Hotkey Trigger: F1")));
        QTRY_VERIFY(s.isGreen());
        bool takeOverIsPast = false;
        QTimer::singleShot(300, s.window.get(), [&] { takeOverIsPast = true; });
        QTRY_VERIFY(takeOverIsPast);
        QCOMPARE(s.label("label_Current_Hotkey_Trigger_Data")->text(),
                 QStringLiteral("Scroll Lock"));
        QCOMPARE(s.device->commands().count("//rl"), 7);

        s.device->answers = ScriptedSwitch::cannedAnswers();
        s.device->answers["//??"].replace("Scroll Lock", "F2");
        s.window->refresh_UI();
        QTRY_COMPARE(s.label("label_Current_Hotkey_Trigger_Data")->text(), QStringLiteral("F2"));
    }

    void aSwitchThatStumblesOnceIsReadAtTheSecondTry()
    {
        SerialWindow s;
        s.device->answers["//BP"] = "//F";
        s.start();
        QTRY_COMPARE(s.device->commands().count("//rl"), 2);
        s.device->answers["//BP"] = cannedLayout;
        QTRY_COMPARE(s.device->commands().count("//rl"), 3);
        auto *grid = s.window->findChild<QTableWidget *>(QStringLiteral("tableWidget"));
        QTRY_VERIFY(grid->item(1, 0) != nullptr);
        QTest::qWait(150);
        QCOMPARE(s.device->commands().count("//rl"), 3);
        QVERIFY(s.user.seen().isEmpty());
    }

    void aSavedLayoutIsReadBackAlone()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        s.device->forget();
        s.device->answers["//BP"] = "//FF01B13FF02B14FF03B15FF04B16\n";
        s.device->say("Saving horizontal dimension as 4\n");
        QTRY_COMPARE(s.device->commands(), QList<QByteArray>{"//BP"});
        auto *grid = s.window->findChild<QTableWidget *>(QStringLiteral("tableWidget"));
        QTRY_VERIFY(grid->item(3, 0) != nullptr);
        QCOMPARE(grid->item(3, 3)->text(), QStringLiteral("Channel 4"));
        QCOMPARE(s.device->commands(), QList<QByteArray>{"//BP"});
    }

    void aSavedLayoutThatDoesNotComeBackLeavesTheGridAndSaysSoInTheLog()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        s.device->answers["//BP"] = "nothing";
        s.device->say("Saving horizontal dimension as 4\n");
        QTRY_VERIFY(s.log().contains("The layout could not be read back: "));
        auto *grid = s.window->findChild<QTableWidget *>(QStringLiteral("tableWidget"));
        QCOMPARE(grid->item(1, 0)->text(), QStringLiteral("Channel 1"));
        QVERIFY(s.user.seen().isEmpty());
    }

    void twoPressesOfRefreshStartOneReadBack()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        s.device->forget();
        s.window->on_pushButton_Refresh_clicked();
        s.window->on_pushButton_Refresh_clicked();
        QTRY_COMPARE(s.device->commands(), readCommands);
        QVERIFY(s.waitForRead());
        QCOMPARE(s.device->commands(), readCommands);
        // Pressed again and again, the button starts the next read once the lock is over.
        QTRY_VERIFY((s.window->on_pushButton_Refresh_clicked(),
                     s.device->commands().size() > readCommands.size()));
        QTRY_COMPARE(s.device->commands(), readCommands + readCommands);
    }

    void refreshIsDisabledAtOnceAndComesBack()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        s.button("pushButton_Refresh")->click();
        QVERIFY(!s.button("pushButton_Refresh")->isEnabled());
        QTRY_VERIFY(s.button("pushButton_Refresh")->isEnabled());
    }

    void twoHundredKilobytesInOneGoAreShownAndTheBufferIsCut()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        const QByteArray line = "a talkative switch says this again and again and again\n";
        QByteArray text = line.repeated(200'000 / static_cast<int>(line.size()));
        text += "the end\n";
        const qsizetype before = s.terminal().size();
        s.device->say(text);
        QTRY_VERIFY(s.terminal().endsWith(QStringLiteral("the end\n")));
        QCOMPARE(s.terminal().size(), before + text.size());
        s.device->forget();
        s.window->refresh_UI();
        QTRY_COMPARE(s.device->commands(), readCommands);
        QVERIFY(s.waitForRead());
        QVERIFY(s.isGreen());
    }

    void randomBytesDoNotBreakTheWindow()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        QByteArray noise;
        quint32 seed = 20240302;
        for (int i = 0; i < 20'000; ++i) {
            seed = seed * 1664525U + 1013904223U;
            noise += static_cast<char>(seed >> 24U);
        }
        s.device->say(noise);
        s.device->say("\n<b>still here</b>\n");
        QTRY_VERIFY(s.terminal().endsWith(QStringLiteral("<b>still here</b>\n")));
        s.window->refresh_UI();
        QVERIFY(s.waitForRead());
    }

    void aPulledCableTurnsRedTellsOnceAndTheNextOnWorks()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        s.unplug();
        QTRY_COMPARE(s.user.seen().size(), 1);
        QVERIFY(!s.user.seen().constFirst().modal);
        QVERIFY(!s.isGreen());
        QVERIFY(!s.button("pushButton_Factory_Reset")->isEnabled());
        QVERIFY(!s.combo("comboBox_KM_Control")->isEnabled());
        QVERIFY(s.button("pushButton_ON_Connection")->isEnabled());
        QCOMPARE(s.log().count("was lost"), 1);

        s.button("pushButton_ON_Connection")
            ->click(); // the port is gone: red, the reason in the log
        QVERIFY(!s.isGreen());
        QVERIFY(s.log().contains("could not be opened"));

        s.cable = std::make_unique<PtyPair>();
        s.device = std::make_unique<ScriptedSwitch>(*s.cable);
        s.combo("comboBox_SelectPort")->addItem(s.cable->path());
        s.combo("comboBox_SelectPort")
            ->setCurrentIndex(s.combo("comboBox_SelectPort")->count() - 1);
        QTRY_VERIFY(s.isGreen());
    }
};

QTEST_MAIN(ReadBackTest)
#include "tst_read_back.moc"
