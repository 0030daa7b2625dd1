#include "readback/yes_no_dialog.h"
#include "support/canned_reply.h"
#include "support/serial_window.h"

#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWindow>

namespace {
constexpr char settingsLines[] = "KM Control: //c3\n"
                                 "USB Control: //u4\n"
                                 "Limit Ports: //D3\n"
                                 "Cursor Rolling: //o0\n"
                                 "Buzzer: //B0\n"
                                 "Mouse Mode: //ks\n";
const auto incomplete =
    QStringLiteral("Settings file not applied completely: the connection ended");
const QList<QByteArray> readCommands = {"//rl", "//??", "//BP"};

/// A window at one of two switches, with a settings file to load.
struct TwoSwitches : SerialWindow
{
    TwoSwitches()
    {
        qputenv("PELORA_EXTRA_SERIAL_PORTS",
                (cable->path() + QLatin1Char(':') + secondCable.path()).toLocal8Bit());
        QFile file(path());
        if (!file.open(QIODevice::WriteOnly) || file.write(settingsLines) < 0)
            qFatal("the test's file cannot be written");
    }

    QString path() const { return folder.filePath(QStringLiteral("desk.txt")); }

    bool startWithFile(const WindowSettings &settings = quick())
    {
        start(settings,
              SettingsFile::Dialogs{[this] {
                                        ++savesAsked;
                                        return folder.filePath(QStringLiteral("saved.txt"));
                                    },
                                    [this] { return path(); }});
        return waitForRead();
    }

    QTemporaryDir folder;
    PtyPair secondCable;
    ScriptedSwitch second{secondCable};
    int savesAsked = 0;
};

bool areDeviceControlsDisabled(const WindowBench &bench)
{
    for (const char *name :
         {"pushButton_Create_Settings_File", "pushButton_Load_Settings_File", "pushButton_Refresh",
          "pushButtonSubmit", "pushButton_Submit_Custom_Mouse_Movement_Settings",
          "pushButton_Factory_Reset", "pushButton_Soft_Reset", "pushButton_ON_Beep",
          "pushButton_OFF_Beep", "pushButton_Mouse_Speed_Settings", "TopologyAndDisplayBtn",
          "pushButton_Admin_Settings"}) {
        if (bench.button(name)->isEnabled())
            return false;
    }
    return !bench.combo("comboBox_KM_Control")->isEnabled() &&
           !bench.combo("comboBox_mouse_movement_resolution_setting_1")->isEnabled();
}

bool isDisconnected(const WindowBench &bench)
{
    return !bench.isGreen() && bench.button("pushButton_ON_Connection")->isEnabled() &&
           !bench.button("pushButton_OFF_Connection")->isEnabled() &&
           areDeviceControlsDisabled(bench);
}

/// Lets a timer run out that is longer than every delay of a quick window.
void passAllDelays()
{
    bool passed = false;
    QTimer::singleShot(400, qApp, [&] { passed = true; });
    QTRY_VERIFY(passed);
}
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

    void aPortThatDoesNotOpenLeavesEverythingDisabled_data()
    {
        QTest::addColumn<bool>("byWizard");
        QTest::newRow("Connection Settings") << true;
        QTest::newRow("port selector") << false;
    }

    void aPortThatDoesNotOpenLeavesEverythingDisabled()
    {
        QFETCH(bool, byWizard);
        SerialWindow s;
        QVERIFY(s.startAndRead());
        if (byWizard) {
            qputenv("PELORA_EXTRA_SERIAL_PORTS", "/dev/no_such_port");
            s.button("pushButton_Connection_Settings")->click();
        } else {
            s.combo("comboBox_SelectPort")->addItem(QStringLiteral("/dev/no_such_port"));
            s.combo("comboBox_SelectPort")
                ->setCurrentIndex(s.combo("comboBox_SelectPort")->count() - 1);
        }
        QVERIFY(isDisconnected(s));
        QVERIFY(s.button("pushButton_ON_Connection")
                    ->toolTip()
                    .contains(QStringLiteral("/dev/no_such_port could not be opened")));
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

    void theNoticeOfALostLinkDoesNotKeepTheProgram()
    {
        SerialWindow s;
        s.user.leaveBoxesOpen();
        QVERIFY(s.startAndRead());
        s.unplug();
        QTRY_COMPARE(s.user.seen().size(), 1);
        QMessageBox *notice = openBox();
        QVERIFY(notice);
        QVERIFY2(notice->windowHandle()->transientParent() == s.window->windowHandle(),
                 "it stays above the window");
        QTimer::singleShot(0, s.window.get(), [&s] { s.window->close(); });
        QTimer::singleShot(5000, qApp, [] { QCoreApplication::exit(7); });
        QCOMPARE(QApplication::exec(), 0);
        s.window.reset();
        QVERIFY(!openBox());
    }

    void theNoticeOfALostLinkGoesWhenTheLinkIsBack()
    {
        TwoSwitches s;
        s.user.leaveBoxesOpen();
        QVERIFY(s.startWithFile());
        s.unplug();
        QTRY_COMPARE(s.user.seen().size(), 1);
        QVERIFY(s.user.seen().constFirst().text.contains(
            QStringLiteral("; check the cable, then press On")));
        QVERIFY(openBox());
        s.button("pushButton_ON_Connection")->click(); // in vain
        QVERIFY(openBox());
        s.combo("comboBox_SelectPort")->setCurrentIndex(1);
        QTRY_VERIFY(s.isGreen());
        QVERIFY(!openBox());
    }

    void aSilentSwitchIsSpokenOf()
    {
        SerialWindow s;
        s.device->answers.clear();
        WindowSettings settings = SerialWindow::quick();
        settings.networkLink.noAnswer = std::chrono::milliseconds(50);
        s.start(settings);
        const auto tip = [&s](const char *name) { return s.button(name)->toolTip(); };
        QTRY_VERIFY(tip("pushButton_Connection_Indicator")
                        .startsWith(QStringLiteral("No answer from the switch; ")));
        QVERIFY(tip("pushButton_ON_Connection").endsWith(QStringLiteral("press On")));
        QCOMPARE(s.log().count("No answer from the switch; "), 1);
        QVERIFY(s.user.seen().isEmpty());
        s.device->answers = ScriptedSwitch::cannedAnswers();
        s.button("pushButton_ON_Connection")->click();
        QVERIFY(s.waitForRead());
        QCOMPARE(tip("pushButton_Connection_Indicator"), QStringLiteral("Connected"));
        QCOMPARE(tip("pushButton_ON_Connection"), QString());

        s.device->answers.clear();
        s.window->refresh_UI();
        QTRY_VERIFY(tip("pushButton_Connection_Indicator")
                        .startsWith(QStringLiteral("No answer from the switch; press Refresh")));
        QCOMPARE(s.log().count("No answer from the switch; "), 2);
    }

    void onWithoutAPortSaysWhereToChooseOne()
    {
        SerialWindow s;
        s.user.ignore<Select_connection_method_Dialog>();
        s.user.on<Select_connection_method_Dialog>(
            [](Select_connection_method_Dialog &dialog) { dialog.close(); });
        DialogRecorder closing;
        closing.on<Select_connection_method_Dialog>(
            [](Select_connection_method_Dialog &dialog) { dialog.close(); });
        s.start();
        s.button("pushButton_ON_Connection")->click();
        QVERIFY(s.button("pushButton_Connection_Indicator")
                    ->toolTip()
                    .contains(QStringLiteral("no port chosen; press Connection Settings")));
        QVERIFY(s.log().contains("no port chosen; press Connection Settings"));
    }

    void theLinkIsClosedBeforeTheStopLine()
    {
        SerialWindow s;
        WindowSettings settings = SerialWindow::quick();
        settings.linkFactories.serialPort = [](const QString &name) {
            return std::make_unique<TellingPort>(name);
        };
        QVERIFY(s.startAndRead(settings));
        s.window.reset();
        const QByteArray lines = s.log();
        QVERIFY2(lines.contains("the port is closed   "), lines.constData());
        QVERIFY(lines.indexOf("the port is closed   ") < lines.indexOf("Stop........."));
    }

private:
    /// A port that writes a line when it is closed.
    class TellingPort : public QSerialPort
    {
    public:
        using QSerialPort::QSerialPort;
        void close() override
        {
            writeLog("the port is closed");
            QSerialPort::close();
        }
    };

    static QMessageBox *openBox()
    {
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget *window : windows) {
            auto *box = qobject_cast<QMessageBox *>(window);
            if (box != nullptr && box->isVisible())
                return box;
        }
        return nullptr;
    }
};

QTEST_MAIN(CrossingsTest)
#include "tst_crossings.moc"
