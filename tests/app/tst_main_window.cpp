#include "support/serial_window.h"

#include <QDir>
#include <QLineEdit>
#include <QMetaMethod>
#include <QSerialPortInfo>
#include <QStackedWidget>
#include <QTemporaryDir>
#include <QTest>

/// The shell: size, title, pages, the wizard's serial branch, the program's end.
class MainWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theWindowHasItsTitleAndAFixedSize()
    {
        SerialWindow s;
        s.start();
        QCOMPARE(s.window->windowTitle(), QStringLiteral("Norvik\u00ae Pelora Utility"));
        QCOMPARE(s.window->size(), QSize(1305, 693));
        s.window->resize(800, 600);
        QCoreApplication::processEvents();
        QCOMPARE(s.window->size(), QSize(1305, 693));
        QCOMPARE(s.window->minimumSize(), s.window->maximumSize());
        QVERIFY(!s.window->windowIcon().isNull());
        QCOMPARE(s.window->focusPolicy(), Qt::StrongFocus);
        QCOMPARE(s.window->objectName(), QStringLiteral("TRQ_Mobile_Setter_UI"));
        QCOMPARE(s.button("pushButton_Refresh")->iconSize(), QSize(25, 25));
        QVERIFY(!s.button("pushButton_Refresh")->icon().isNull());
    }

    void theSlotsStandInTheirOrder()
    {
        const QList<QByteArray> slotNames = {
            "send_initial_command()",
            "scroll_Cursor_to_the_end()",
            "refresh_UI()",
            "onReadyRead()",
            "serialRecieve()",
            "is_not_Connected_Message()",
            "on_pushButton_Mouse_Speed_Settings_clicked()",
            "on_TopologyAndDisplayBtn_clicked()",
            "on_comboBox_SelectPort_currentIndexChanged()",
            "on_pushButton_OFF_Connection_clicked()",
            "on_pushButton_ON_Connection_clicked()",
            "on_ConfigurationBtn_clicked()",
            "on_pushButton_Create_Settings_File_clicked()",
            "on_pushButton_Load_Settings_File_clicked()",
            "load_second_part_of_settings()",
            "on_pushButton_Refresh_clicked()",
            "on_pushButton_Connection_Settings_clicked()",
            "on_pushButton_Admin_Settings_clicked()",
            "enable_refresh_button()",
            "disable_refresh_button()",
            "on_comboBox_Select_Display_Mode_currentIndexChanged()",
            "on_comboBox_Enable_or_Disable_Cursor_Roll_currentIndexChanged()",
            "on_comboBox_KM_Control_currentIndexChanged()",
            "on_comboBox_USB_Control_currentIndexChanged()",
            "on_comboBox_Select_active_port_currentIndexChanged()",
            "get_data_from_TRQ_by_serial_port()",
            "on_pushButton_Factory_Reset_clicked()",
            "on_pushButton_Soft_Reset_clicked()",
            "on_pushButton_ON_Beep_clicked()",
            "on_pushButton_OFF_Beep_clicked()",
            "on_pushButton_Submit_Custom_Mouse_Movement_Settings_clicked()",
            "on_comboBox_mouse_movement_resolution_setting_1_currentIndexChanged()",
            "on_comboBox_mouse_movement_resolution_setting_2_currentIndexChanged()",
            "on_comboBox_mouse_movement_resolution_setting_3_currentIndexChanged()",
            "on_comboBox_mouse_movement_resolution_setting_4_currentIndexChanged()",
            "on_comboBox_number_of_setting_currentIndexChanged(int)",
            "on_pushButtonSubmit_clicked()",
            "on_tableWidget_cellChanged(int,int)",
            "on_tableWidget_cellPressed(int,int)",
            "set_current_layout_from_buff()",
        };
        const QMetaObject &meta = KM_Configuration_Tool_Norvik::staticMetaObject;
        QList<QByteArray> declared;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
            declared.append(meta.method(i).methodSignature());
        QCOMPARE(declared, slotNames);
    }

    void aPageButtonShowsItsPageAndSendsNothing()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        s.device->forget();
        auto *pages = s.window->findChild<QStackedWidget *>(QStringLiteral("stackedWidget"));
        const QString active = QStringLiteral(
            "background-color: rgb(77, 156, 238); border: 2.5px solid rgb(189, 189, 189); "
            "border-radius: 10px");
        const QString normal = QStringLiteral(
            "QPushButton {background-color: rgb(189, 189, 189);border: 2.5px solid rgb(77, 156, "
            "238);border-radius: 10px;}QPushButton:hover {background-color: rgb(77, 156, "
            "238);border-radius: 10px;}QPushButton:pressed {background-color: rgb(189, 189, "
            "189);border: 2.5px solid rgb(77, 156, 238);border-radius: 10px;}");
        const char *names[] = {"ConfigurationBtn", "pushButton_Mouse_Speed_Settings",
                               "TopologyAndDisplayBtn"};
        QCOMPARE(pages->currentIndex(), 0);
        for (const int page : {1, 2, 0}) {
            s.button(names[page])->click();
            QCOMPARE(pages->currentIndex(), page);
            for (int other = 0; other < 3; ++other)
                QCOMPARE(s.button(names[other])->styleSheet(), other == page ? active : normal);
        }
        QVERIFY(s.isGreen());
        s.button("pushButton_Soft_Reset")->click();
        QTRY_COMPARE(s.device->commands(), QList<QByteArray>{"//R"});
    }

    void theSelectorHoldsThePortsByTheirFullPath()
    {
        SerialWindow s;
        s.start();
        auto *ports = s.combo("comboBox_SelectPort");
        QCOMPARE(ports->count(), 1 + QSerialPortInfo::availablePorts().size());
        QCOMPARE(ports->itemText(0), s.cable->path());
        QVERIFY(ports->isVisible());
        QVERIFY(s.label("label_Select_port")->isVisible());
        QVERIFY(!s.label("label_current_Ip")->isVisible());
        QVERIFY(!s.label("label_name_of_USR")->isVisible());
    }

    void anEntrySaysInItsToolTipWhatThePortIs()
    {
        SerialWindow s;
        WindowSettings settings = SerialWindow::quick();
        settings.wizard.portNotes = [&s] {
            return QHash<QString, QString>{{s.cable->path(), QStringLiteral("Bluetooth link")}};
        };
        s.start(settings);
        auto *ports = s.combo("comboBox_SelectPort");
        QCOMPARE(ports->itemText(0), s.cable->path());
        QCOMPARE(ports->itemData(0, Qt::ToolTipRole).toString(),
                 s.cable->path() + QStringLiteral("\nBluetooth link"));
    }

    void choosingAnotherPortReopensTheLink()
    {
        PtyPair second;
        ScriptedSwitch secondSwitch(second);
        SerialWindow s;
        qputenv("PELORA_EXTRA_SERIAL_PORTS",
                (s.cable->path() + QLatin1Char(':') + second.path()).toLocal8Bit());
        QVERIFY(s.startAndRead());
        s.combo("comboBox_SelectPort")->setCurrentIndex(1);
        QVERIFY(!s.isGreen());
        QTRY_COMPARE(secondSwitch.commands(), (QList<QByteArray>{"//rl", "//??", "//BP"}));
        QTRY_VERIFY(s.isGreen());
        QTRY_COMPARE(s.combo("comboBox_mouse_movement_resolution_setting_1")->count(), 13);
    }

    void offAndOnAgain()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        s.button("pushButton_OFF_Connection")->click();
        QVERIFY(!s.isGreen());
        QVERIFY(!s.button("pushButton_Refresh")->isEnabled());
        QVERIFY(s.button("pushButton_ON_Connection")->isEnabled());
        s.device->forget();
        s.button("pushButton_ON_Connection")->click();
        QTRY_COMPARE(s.device->commands(), (QList<QByteArray>{"//rl", "//??", "//BP"}));
        QTRY_VERIFY(s.isGreen());
    }

    void theWizardRunTwiceKeepsTheMethodAndConnectsAgain()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        s.device->forget();
        s.button("pushButton_Connection_Settings")->click();
        QVERIFY(s.window->findChildren<Select_connection_method_Dialog *>().isEmpty());
        QTRY_COMPARE(s.device->commands(), (QList<QByteArray>{"//rl", "//??", "//BP"}));
        QTRY_VERIFY(s.isGreen());
    }

    void aClosedMethodDialogLeavesTheLinkAndSendsNothing()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        s.device->forget();
        bool radioKept = false;
        s.user.on<Select_connection_method_Dialog>([&](Select_connection_method_Dialog &dialog) {
            radioKept =
                dialog.findChild<QRadioButton *>(QStringLiteral("radioButton_RS232"))->isChecked();
            dialog.close();
        });
        s.button("pushButton_Connection_Settings")->click();
        QVERIFY(radioKept);
        QVERIFY(s.isGreen());
        s.combo("comboBox_KM_Control")->setCurrentIndex(3);
        QTRY_COMPARE(s.device->commands(), QList<QByteArray>{"//c4"});
    }

    void aPortThatDoesNotOpenLeavesAStableRedWindow()
    {
        SerialWindow s;
        qputenv("PELORA_EXTRA_SERIAL_PORTS", "/dev/no_such_port");
        s.start();
        QVERIFY(!s.isGreen());
        QVERIFY(s.log().contains("/dev/no_such_port could not be opened"));
        QVERIFY(s.button("pushButton_Connection_Indicator")
                    ->toolTip()
                    .contains(QStringLiteral("could not be opened")));
        QVERIFY(s.user.seen().isEmpty());
    }

    void closingWritesTheStopLineAfterTheLinkIsClosed()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        s.window.reset();
        QVERIFY(s.log().startsWith("Start.........\n"));
        QVERIFY(s.log().endsWith("Stop.........\n"));
    }

    void closingAfterOffIsHarmless()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        s.button("pushButton_OFF_Connection")->click();
        s.window.reset();
        QVERIFY(s.log().endsWith("Stop.........\n"));
    }

    void aSettingsFileThatCannotBeFinishedAtTheEndIsInTheLog()
    {
        const QTemporaryDir folder;
        const QString place = folder.filePath(QStringLiteral("gone"));
        QVERIFY(QDir().mkdir(place));
        SerialWindow s;
        WindowSettings settings = SerialWindow::quick();
        settings.kmType = "zen";
        s.start(settings, SettingsFile::Dialogs{[&] { return place + QStringLiteral("/desk.txt"); },
                                                [] { return QString(); }});
        QVERIFY(s.waitForRead());
        s.button("pushButton_Create_Settings_File")->click();
        QCOMPARE(s.user.texts(), QStringList{QStringLiteral("File saved")});
        QVERIFY(QDir(place).removeRecursively());
        s.window.reset();
        const QByteArray log = s.log();
        QVERIFY2(log.contains("\nThe last settings file could not be saved: "), log);
        QVERIFY(log.endsWith("\nStop.........\n"));
    }

    void adminSettingsWithoutAModuleAreOutOfReach()
    {
        SerialWindow s;
        QVERIFY(s.startAndRead());
        QVERIFY(!s.button("pushButton_Admin_Settings")->isVisible());
        s.window->on_pushButton_Admin_Settings_clicked();
        QVERIFY(s.user.seen().isEmpty());
    }
};

QTEST_MAIN(MainWindowTest)
#include "tst_main_window.moc"
