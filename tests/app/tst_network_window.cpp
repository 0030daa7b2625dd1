#include "readback/yes_no_dialog.h"
#include "support/network_window.h"
#include "usr/change_setting_for_usr_dialog.h"

#include <QAbstractEventDispatcher>
#include <QTableWidget>
#include <QTest>

namespace {
const QList<QByteArray> readCommands = {"//rl\r", "//??\r", "//BP\r"};

/// Reads the switch, and lets the window ask for a layout that does not come.
bool startAndAskForALayout(NetworkWindow &n)
{
    n.start();
    if (!n.waitForRead())
        return false;
    n.answers.clear();
    n.commands.clear();
    n.say("Saving horizontal dimension as 4\n");
    return QTest::qWaitFor([&n] { return n.commands == QList<QByteArray>{"//BP\r"}; });
}
} // namespace

/// The wizard's network road and the switch over UDP, in the whole window.
class NetworkWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theWizardEndsInAReadConfiguration()
    {
        NetworkWindow n;
        n.start();
        QTRY_VERIFY(n.isGreen());
        QTRY_COMPARE(n.find("comboBox_KM_Control")->currentIndex(), 1);
        QCOMPARE(n.commands, readCommands);
        QCOMPARE(n.find<QLabel>("label_current_Ip")->text(), QStringLiteral("  IP: 127.0.0.1"));
        QCOMPARE(n.find<QLabel>("label_name_of_USR")->text(),
                 QStringLiteral("  Name: Meeting Room"));
        QVERIFY(!n.find("comboBox_SelectPort")->isVisible());
        QVERIFY(!n.find<QLabel>("label_Select_port")->isVisible());
        QVERIFY(n.find<QLabel>("label_current_Ip")->isVisible());
        QCOMPARE(n.find("comboBox_USB_Control")->currentIndex(), 2);
        QCOMPARE(n.find("comboBox_mouse_movement_resolution_setting_4")->currentIndex(), 9);
        QVERIFY(n.find<QTableWidget>("tableWidget")->item(1, 3) != nullptr);
        QTRY_COMPARE(n.terminal(), QString::fromUtf8(cannedReply));
        QVERIFY(n.user.seen().isEmpty());
    }

    void textBeforeTheSwitchHasAnsweredIsNotShown()
    {
        NetworkWindow n;
        n.answers.clear();
        n.start();
        QTRY_COMPARE(n.commands.size(), 3);
        n.say("hello from nobody\n");
        n.say(cannedReply);
        QTRY_VERIFY(n.isGreen());
        QTRY_VERIFY(!n.terminal().isEmpty());
        QVERIFY(!n.terminal().contains(QStringLiteral("nobody")));
    }

    void everyDatagramIsReadByTheRules()
    {
        NetworkWindow n;
        n.start();
        QTRY_VERIFY(n.isGreen());
        n.commands.clear();
        n.say("**C4\n");
        QTRY_COMPARE(n.find("comboBox_KM_Control")->currentIndex(), 3);
        n.say("**U1\n");
        QTRY_COMPARE(n.find("comboBox_USB_Control")->currentIndex(), 0);
        n.say("**M3\n");
        QTRY_COMPARE(n.find("comboBox_KM_Control")->currentIndex(), 2);
        QCOMPARE(n.find("comboBox_USB_Control")->currentIndex(), 2);
        n.say("**CE 1 2\n**C1\n");
        QTRY_VERIFY(n.terminal().endsWith(QStringLiteral("**C1\n")));
        QCOMPARE(n.find("comboBox_KM_Control")->currentIndex(), 2);
        QVERIFY(n.commands.isEmpty());
    }

    void aDatagramThatWasAppliedIsReadByTheRulesToo()
    {
        NetworkWindow n;
        n.answers = {cannedReply + "**M4\n"};
        n.start();
        QTRY_COMPARE(n.find("comboBox_KM_Control")->currentIndex(), 3);
        QCOMPARE(n.find("comboBox_USB_Control")->currentIndex(), 3);
    }

    void aSettingGoesOutAsOneDatagram()
    {
        NetworkWindow n;
        n.start();
        QTRY_COMPARE(n.find("comboBox_KM_Control")->currentIndex(), 1);
        n.commands.clear();
        n.find("comboBox_KM_Control")->setCurrentIndex(3);
        n.find<QPushButton>("pushButton_Soft_Reset")->click();
        QTRY_COMPARE(n.commands, (QList<QByteArray>{"//c4\r", "//R\r"}));
    }

    void aSavedLayoutIsAppliedAlone()
    {
        NetworkWindow n;
        n.start();
        QTRY_COMPARE(n.find("comboBox_KM_Control")->currentIndex(), 1);
        n.commands.clear();
        n.answers = {"//FF01B13FF02B14FF03B15FF04B16\n"};
        n.say("Saving horizontal dimension as 4\n");
        QTRY_VERIFY(n.find<QTableWidget>("tableWidget")->item(3, 0) != nullptr);
        QCOMPARE(n.commands, QList<QByteArray>{"//BP\r"});
        QCOMPARE(n.find("comboBox_KM_Control")->currentIndex(), 1);
    }

    void anAnswerWithoutALayoutIsReadFiveTimesAgainAndThenGivenUp()
    {
        NetworkWindow n;
        n.answers = {cannedReply.left(60)};
        n.start();
        QTRY_COMPARE_WITH_TIMEOUT(n.user.seen().size(), 1, 10000);
        QCOMPARE(n.user.seen().constFirst().title, QStringLiteral("Error"));
        QCOMPARE(n.user.seen().constFirst().text, QStringLiteral("Setting data from TRQ error"));
        QCOMPARE(n.commands.count("//rl\r"), 6);
    }

    void anAnswerInTwoDatagramsIsAppliedByTheRetryThatTheFirstOneCauses()
    {
        NetworkWindow n;
        n.answers = {cannedReply.left(60), cannedReply.mid(60)};
        n.start();
        QTRY_VERIFY(n.find<QTableWidget>("tableWidget")->item(1, 3) != nullptr);
        QTRY_COMPARE(n.find("comboBox_KM_Control")->currentIndex(), 1);
        QVERIFY(n.user.seen().isEmpty());
    }

    void offLeavesNoSocketAndOnConnectsAgain()
    {
        NetworkWindow n;
        WindowSettings settings = n.settings();
        settings.panel.handshakeWatchdog = std::chrono::seconds(1);
        n.WindowBench::start(settings);
        QTRY_VERIFY(n.isGreen());
        n.find<QPushButton>("pushButton_OFF_Connection")->click();
        QVERIFY(!n.isGreen());
        QUdpSocket peersPort;
        QVERIFY(peersPort.bind(QHostAddress::LocalHost, n.peerPort));
        peersPort.close();
        n.commands.clear();
        n.find<QTextEdit>("textEdit_Main_Terminal")->setPlainText(QStringLiteral("of before"));
        n.find<QPushButton>("pushButton_ON_Connection")->click();
        QTRY_COMPARE(n.commands, readCommands);
        QTRY_VERIFY(n.isGreen());
        QVERIFY(!n.terminal().contains(QStringLiteral("of before")));
        QTest::qWait(1100); // past the watchdog, which finds the switch connected
        QVERIFY(n.user.seen().isEmpty());
    }

    void oneTimerScrollsToAllThatComesMeanwhile()
    {
        NetworkWindow n;
        WindowSettings settings = n.settings();
        settings.readBack.scrollToEnd = std::chrono::seconds(60);
        n.WindowBench::start(settings);
        QVERIFY(n.waitForRead());
        const auto *dispatcher = QAbstractEventDispatcher::instance(); // owns timers of one shot
        const auto before = dispatcher->children().size();
        for (int piece = 0; piece < 50; ++piece)
            n.say("text\n");
        QTRY_COMPARE(n.terminal().count(QStringLiteral("text\n")), 50);
        QVERIFY(dispatcher->children().size() <= before + 5);
    }

    void aLayoutThatNeverCameBackDoesNotSpoilTheNextConnection()
    {
        NetworkWindow n;
        QVERIFY(startAndAskForALayout(n));
        n.find<QPushButton>("pushButton_OFF_Connection")->click();
        n.answers = {QByteArray(cannedReply).replace("KM Control: 2", "KM Control: 4")};
        n.find<QPushButton>("pushButton_ON_Connection")->click();
        QTRY_COMPARE(n.find("comboBox_KM_Control")->currentIndex(), 3);
        QCOMPARE(n.find("comboBox_mouse_movement_resolution_setting_1")->count(), 13);
    }

    void aLayoutThatNeverCameBackDoesNotSpoilTheNextRefresh()
    {
        NetworkWindow n;
        QVERIFY(startAndAskForALayout(n));
        n.answers = {QByteArray(cannedReply).replace("Buzzer: on", "Buzzer: off")};
        n.find<QPushButton>("pushButton_Refresh")->click();
        QTRY_VERIFY(n.button("pushButton_ON_Beep")->isEnabled());
        QTRY_COMPARE(n.find("comboBox_mouse_movement_resolution_setting_1")->count(), 13);
        QVERIFY(!n.button("pushButton_OFF_Beep")->isEnabled());
    }

    void aLayoutThatIsOnItsWayDoesNotSpoilARefresh()
    {
        NetworkWindow n;
        QVERIFY(startAndAskForALayout(n));
        n.find<QPushButton>("pushButton_Refresh")->click();
        QTRY_COMPARE(n.commands.size(), 4);
        n.say("//FF01B13FF02B14FF03B15FF04B16\n"); // the answer to the first of them
        n.say(QByteArray(cannedReply).replace("Buzzer: on", "Buzzer: off"));
        QTRY_COMPARE(n.find("comboBox_mouse_movement_resolution_setting_1")->count(), 13);
        QVERIFY(n.button("pushButton_ON_Beep")->isEnabled());
        QVERIFY(!n.button("pushButton_OFF_Beep")->isEnabled());
        QVERIFY(n.find<QTableWidget>("tableWidget")->item(1, 0) != nullptr);
        QCOMPARE(n.commands.size(), 4);
    }

    void aRefusedLoginIsAskedAgainWithEmptyFields()
    {
        NetworkWindow n;
        n.module.answerLogins([](int nth) -> FakeModule::Answers {
            if (nth == 1)
                return {{FakeModule::refusal(), {}}};
            return {{FakeModule::configuration('\x80'), {}}};
        });
        n.start();
        QCOMPARE(n.logins, 2);
        QVERIFY(n.fieldsWereEmpty);
        QCOMPARE(n.user.seen().size(), 1);
        QCOMPARE(n.user.seen().constFirst().text, QStringLiteral("Bad credentials"));
        QTRY_VERIFY(n.isGreen());
        QFile log(eventLogPath());
        QVERIFY(log.open(QIODevice::ReadOnly));
        const QByteArray lines = log.readAll();
        QVERIFY(!lines.contains("secret") && !lines.contains("admin"));
    }

    void aDialogClosedOnTheWayStopsQuietly_data()
    {
        QTest::addColumn<int>("which");
        QTest::newRow("hardware list") << 0;
        QTest::newRow("login") << 1;
        QTest::newRow("IP settings") << 2;
    }

    void aDialogClosedOnTheWayStopsQuietly()
    {
        QFETCH(int, which);
        NetworkWindow n;
        n.start();
        QTRY_COMPARE(n.find("comboBox_KM_Control")->currentIndex(), 1);
        n.commands.clear();
        n.closeHardware = which == 0;
        n.closeLogin = which == 1;
        n.closeIpSettings = which == 2;
        n.find<QPushButton>("pushButton_Connection_Settings")->click();
        QVERIFY(n.isGreen());
        QVERIFY(n.commands.isEmpty());
        n.find("comboBox_KM_Control")->setCurrentIndex(2); // the link is as it was
        QTRY_COMPARE(n.commands, QList<QByteArray>{"//c3\r"});
        QVERIFY(n.user.seen().isEmpty());
    }

    void aFirstRunThatStopsLeavesAWindowThatOnDoesNotEnd()
    {
        NetworkWindow n;
        n.closeHardware = true;
        n.start();
        QVERIFY(!n.isGreen());
        n.find<QPushButton>("pushButton_ON_Connection")->click();
        QVERIFY(n.window->isVisible());
        QVERIFY(!n.isGreen());
        QVERIFY(n.commands.isEmpty());
    }

    void adminSettingsTakeOverNameAndCredentials()
    {
        NetworkWindow n;
        n.start();
        QTRY_VERIFY(n.isGreen());
        n.module.forgetFrames();
        n.user.on<Change_setting_for_USR_Dialog>([](Change_setting_for_USR_Dialog &dialog) {
            dialog.findChild<QLineEdit *>(QStringLiteral("lineEdit_Name"))
                ->setText(QStringLiteral("Front Desk"));
            dialog.findChild<QLineEdit *>(QStringLiteral("lineEdit_Username"))
                ->setText(QStringLiteral("root"));
            dialog.findChild<QLineEdit *>(QStringLiteral("lineEdit_Password"))
                ->setText(QStringLiteral("toor"));
            NetworkWindow::press(dialog, "pushButton_Apply");
        });
        n.find<QPushButton>("pushButton_Admin_Settings")->click();
        QCOMPARE(n.user.seen().size(), 1);
        QCOMPARE(n.user.seen().constFirst().text,
                 QStringLiteral("Settings were applied successfully"));
        QCOMPARE(n.find<QLabel>("label_name_of_USR")->text(), QStringLiteral("  Name: Front Desk"));
        QVERIFY(n.module.waitForFrames(3));
        QCOMPARE(n.module.order(), (QStringList{QStringLiteral("search"), QStringLiteral("setup"),
                                                QStringLiteral("commit")}));
        // The next change authenticates with the new credentials: "root" is 72 6F 6F 74.
        n.module.forgetFrames();
        n.find<QPushButton>("pushButton_Admin_Settings")->click();
        QVERIFY(n.module.waitForFrames(3));
        QCOMPARE(n.module.frames().at(1).mid(9, 12),
                 QByteArray("\x72\x6f\x6f\x74\x00\x00\x74\x6f\x6f\x72\x00\x00", 12));
    }

    void addressesThatWereNotAppliedAreNotWrittenWithTheAdminSettings()
    {
        NetworkWindow n;
        n.start();
        QTRY_VERIFY(n.isGreen());
        n.find<QLineEdit>("lineEdit_IPv4_Address")->setText(QStringLiteral("10.1.2.3"));
        n.find<QAbstractButton>("radioButton_DHCP")->click();
        n.module.forgetFrames();
        n.user.on<Change_setting_for_USR_Dialog>(
            [](QDialog &dialog) { NetworkWindow::press(dialog, "pushButton_Apply"); });
        n.find<QPushButton>("pushButton_Admin_Settings")->click();
        QVERIFY(n.module.waitForFrames(3));
        // Static, fixed bytes, then 192.168.1.7 behind 192.168.1.1, each backwards.
        QCOMPARE(n.module.frames().at(1).mid(24, 14),
                 QByteArray::fromHex("80 2019500002 0701a8c0 0101a8c0"));
    }

    void aFactoryResetIsReadBackOverTheNetwork()
    {
        NetworkWindow n;
        n.start();
        QTRY_COMPARE(n.find("comboBox_KM_Control")->currentIndex(), 1);
        n.commands.clear();
        n.user.on<Yes_No_Dialog>(
            [](Yes_No_Dialog &dialog) { NetworkWindow::press(dialog, "pushButton_OK"); });
        n.find<QPushButton>("pushButton_Factory_Reset")->click();
        QTRY_COMPARE(n.commands, QList<QByteArray>{"//F\r"} + readCommands);
    }
};

QTEST_MAIN(NetworkWindowTest)
#include "tst_network_window.moc"
