// Walks through the program as the README describes it, against the simulator that the caller has
// started, and leaves a picture of every page and dialog.
//   pelora-demo-walk PICTURE_FOLDER private|none

#include "walker.h"

#include "connection/select_hardware_dialog.h"
#include "log/window_dress.h"
#include "readback/yes_no_dialog.h"
#include "usr/change_setting_for_usr_dialog.h"
#include "usr/credentials_dialog.h"
#include "usr/ip_settings_dialog.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QTextEdit>
#include <cstdio>

namespace {
void meetDialogs(Walker &walker, const bool &byNetwork)
{
    auto &dialogs = walker.dialogs();
    dialogs.on<Select_connection_method_Dialog>(
        [&walker, &byNetwork](Select_connection_method_Dialog &dialog) {
            const char *method = byNetwork ? "radioButton_TCP_IP" : "radioButton_RS232";
            Walker::child<QRadioButton>(dialog, method).setChecked(true);
            walker.answer(dialog, QStringLiteral("method"), "pushButton_continue");
        });
    dialogs.on<Select_hardware_Dialog>([&walker](Select_hardware_Dialog &dialog) {
        walker.answer(dialog, QStringLiteral("hardware"), "pushButton_Continue");
    });
    dialogs.on<Credentials_Dialog>([&walker](Credentials_Dialog &dialog) {
        typeInto(dialog, "lineEdit_username", QStringLiteral("admin"));
        typeInto(dialog, "lineEdit_password", QStringLiteral("admin"));
        walker.answer(dialog, QStringLiteral("login"), "pushButton_ip_allocation");
    });
    dialogs.on<IP_Settings_Dialog>([&walker](IP_Settings_Dialog &dialog) {
        const QString address = Walker::child<QLineEdit>(dialog, "lineEdit_IPv4_Address").text();
        walker.tell("the module's static address", address);
        walker.expect("the IP dialog is filled", address == QStringLiteral("192.0.2.7"));
        walker.answer(dialog, QStringLiteral("ip-settings"), "pushButton_Connect");
    });
    dialogs.on<Change_setting_for_USR_Dialog>([&walker](Change_setting_for_USR_Dialog &dialog) {
        walker.picture(dialog, QStringLiteral("admin-settings"));
        dialog.close();
    });
    dialogs.on<QFileDialog>([&walker](QFileDialog &dialog) {
        Walker::child<QLineEdit>(dialog, "fileNameEdit")
            .setText(walker.folder().filePath(QStringLiteral("settings.txt")));
        const bool saving = dialog.acceptMode() == QFileDialog::AcceptSave;
        walker.picture(dialog, saving ? QStringLiteral("save-file") : QStringLiteral("load-file"));
        auto &buttons = Walker::child<QDialogButtonBox>(dialog, "buttonBox");
        auto *button = buttons.button(saving ? QDialogButtonBox::Save : QDialogButtonBox::Open);
        walker.expect("the file dialog's button can be pressed", button && button->isEnabled());
        QTest::mouseClick(button, Qt::LeftButton);
    });
    dialogs.on<Yes_No_Dialog>([&walker](Yes_No_Dialog &dialog) {
        walker.answer(dialog, QStringLiteral("factory-reset"), "pushButton_OK");
    });
}

/// The last state that the simulator has printed, for comparing.
QString switchState(Walker &walker)
{
    QFile log(walker.folder().filePath(QStringLiteral("simulator.log")));
    walker.expect("the simulator's log can be read", log.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(log.readAll()).trimmed();
    return text.section(QStringLiteral("\n\n"), -1);
}

void waitForReading(Walker &walker)
{
    walker.waitUntil("the indicator turns green", [&] { return walker.isGreen(); });
    walker.waitUntil("the custom settings are shown", [&] {
        return !walker.find<QLabel>("label_Custom_4").text().isEmpty() &&
               walker.find<QComboBox>("comboBox_mouse_movement_resolution_setting_1").count() == 13;
    });
    QTest::qWait(1200); // the rest of the answer is applied a second after its first piece
}

void tellConfiguration(Walker &walker)
{
    walker.tell("hotkey trigger", walker.find<QLabel>("label_Current_Hotkey_Trigger_Data").text());
    for (const char *name :
         {"comboBox_KM_Control", "comboBox_USB_Control", "comboBox_Select_Display_Mode",
          "comboBox_Select_active_port", "comboBox_Enable_or_Disable_Cursor_Roll"})
        walker.tell(name + sizeof "comboBox", walker.find<QComboBox>(name).currentText());
    for (const char *name :
         {"label_Custom_1", "label_Custom_2", "label_Custom_3", "label_Custom_4"})
        walker.tell(name + sizeof "label", walker.find<QLabel>(name).text());
}

/// Every control of the Configuration page changes the switch, and Refresh shows what it accepted.
void changeConfiguration(Walker &walker)
{
    walker.picture(walker.window(), QStringLiteral("configuration"));
    walker.choose("comboBox_KM_Control", 3);
    walker.choose("comboBox_USB_Control", 1);
    walker.choose("comboBox_Select_Display_Mode", 1);
    walker.choose("comboBox_Enable_or_Disable_Cursor_Roll", 1);
    walker.choose("comboBox_Select_active_port", 1);
    const bool beepWasOff = walker.find<QPushButton>("pushButton_ON_Beep").isEnabled();
    walker.click(beepWasOff ? "pushButton_ON_Beep" : "pushButton_OFF_Beep");
    walker.find<QTextEdit>("textEdit_Main_Terminal").clear();
    walker.click("pushButton_Refresh");
    waitForReading(walker);
    walker.waitUntil("Refresh may be pressed again",
                     [&] { return walker.find<QPushButton>("pushButton_Refresh").isEnabled(); });
    walker.expect("KM control 4 was accepted", walker.index("comboBox_KM_Control") == 3);
    walker.expect("USB control 2 was accepted", walker.index("comboBox_USB_Control") == 1);
    walker.expect("relative mode was accepted", walker.index("comboBox_Select_Display_Mode") == 1);
    walker.expect("rolling was accepted",
                  walker.index("comboBox_Enable_or_Disable_Cursor_Roll") == 1);
    walker.expect("three ports were accepted", walker.index("comboBox_Select_active_port") == 1);
    walker.expect("the buzzer was switched",
                  walker.find<QPushButton>("pushButton_ON_Beep").isEnabled() != beepWasOff);
    const QString said = walker.find<QTextEdit>("textEdit_Main_Terminal").toPlainText();
    walker.expect("the terminal shows what the switch said",
                  said.contains(QStringLiteral("Current KM Control: 4")));
    walker.picture(walker.window(), QStringLiteral("configuration-changed"));
}

void resetToFactory(Walker &walker)
{
    walker.click("ConfigurationBtn");
    walker.click("pushButton_Factory_Reset");
    walker.waitUntil("the factory's KM control is read back",
                     [&] { return walker.index("comboBox_KM_Control") == 0; });
    waitForReading(walker);
}

/// Four custom settings, one of them chosen for channel 1.
void setMouseSpeed(Walker &walker)
{
    walker.click("pushButton_Mouse_Speed_Settings");
    const struct
    {
        const char *name, *x, *y, *stored;
    } settings[] = {{"OFFICE", "100", "250", "100 250 OFFICE"},
                    {"DESK", "120", "80", "120 080 DESK"},
                    {"WALL", "300", "300", "300 300 WALL"},
                    {"TABLET", "45", "60", "045 060 TABLET"}};
    for (int k = 0; k < 4; ++k) {
        walker.choose("comboBox_number_of_setting", k);
        walker.type("lineEdit_Mouse_Movement_Name", QString::fromLatin1(settings[k].name));
        walker.type("lineEdit_Mouse_Movement_X", QString::fromLatin1(settings[k].x));
        walker.type("lineEdit_Mouse_Movement_Y", QString::fromLatin1(settings[k].y));
        walker.click("pushButton_Submit_Custom_Mouse_Movement_Settings");
        const QByteArray label = "label_Custom_" + QByteArray::number(k + 1);
        walker.waitUntil("the switch reports the custom setting", [&] {
            return walker.find<QLabel>(label.constData()).text() ==
                   QString::fromLatin1(settings[k].stored);
        });
    }
    walker.choose("comboBox_mouse_movement_resolution_setting_1", 9);
    walker.choose("comboBox_mouse_movement_resolution_setting_2", 2);
    walker.expect(
        "custom setting 1 is chosen for channel 1",
        walker.find<QComboBox>("comboBox_mouse_movement_resolution_setting_1").currentText() ==
            QStringLiteral("OFFICE"));
    walker.picture(walker.window(), QStringLiteral("mouse-speed"));
}

/// The displays in a square, moved with the keyboard, and sent.
void arrangeLayout(Walker &walker)
{
    walker.click("TopologyAndDisplayBtn");
    auto &grid = walker.find<QTableWidget>("tableWidget");
    grid.setFocus();
    const struct
    {
        int row, column;
        Qt::Key direction;
    } moves[] = {
        {0, 3, Qt::Key_Down}, {1, 3, Qt::Key_Left}, {0, 0, Qt::Key_Down}, {1, 0, Qt::Key_Right}};
    for (const auto &move : moves) {
        grid.setCurrentCell(move.row, move.column);
        QTest::keyClick(&grid, move.direction, Qt::ControlModifier);
        walker.expect("the display has left its cell", !grid.item(move.row, move.column));
    }
    walker.click("pushButtonSubmit");
    walker.waitForNotice(QStringLiteral("Display topology has been updated"));
    walker.waitUntil("the switch has taken the layout", [&] {
        return switchState(walker).contains(QStringLiteral("Layout: 06 02 03 07"));
    });
    QTest::qWait(1300); // the switch's report is loaded a second after it was announced
    walker.expect("the grid shows it", grid.item(1, 2) && grid.item(1, 1));
}

void showInactiveChannels(Walker &walker)
{
    walker.click("ConfigurationBtn");
    walker.choose("comboBox_Select_active_port", 0);
    walker.click("TopologyAndDisplayBtn");
    walker.expect("channel 3 is inactive", walker.find<QTableWidget>("tableWidget")
                                               .item(0, 2)
                                               ->text()
                                               .contains(QStringLiteral("INACTIVE")));
    walker.picture(walker.window(), QStringLiteral("layout"));
    walker.click("ConfigurationBtn");
    walker.choose("comboBox_Select_active_port", 2);
}

/// Save, reset, load: the switch is as before the reset.
void carryInAFile(Walker &walker)
{
    walker.waitUntil("four ports are active again", [&] {
        return switchState(walker).contains(QStringLiteral("Active ports: 4"));
    });
    const QString before = switchState(walker);
    QFile::remove(walker.folder().filePath(QStringLiteral("settings.txt")));
    walker.click("pushButton_Create_Settings_File");
    walker.waitForNotice(QStringLiteral("File saved"));
    resetToFactory(walker);
    walker.expect("the reset changed the switch", switchState(walker) != before);
    walker.click("pushButton_Load_Settings_File");
    walker.waitForNotice(QStringLiteral("Settings file applied"));
    walker.waitUntil("the switch is as it was before the reset",
                     [&] { return switchState(walker) == before; });
    walker.tell("the switch after save, reset and load", QStringLiteral("as before the reset"));
    walker.click("pushButton_Mouse_Speed_Settings");
    walker.picture(walker.window(), QStringLiteral("loaded"));
    walker.click("ConfigurationBtn");
}

void connectByNetwork(Walker &walker)
{
    walker.click("pushButton_Connection_Settings");
    waitForReading(walker);
    walker.tell("module", walker.find<QLabel>("label_current_Ip").text() +
                              walker.find<QLabel>("label_name_of_USR").text());
    walker.expect("the address is shown", walker.find<QLabel>("label_current_Ip").text() ==
                                              QStringLiteral("  IP: 192.0.2.7"));
    walker.picture(walker.window(), QStringLiteral("connected-by-network"));
    walker.choose("comboBox_KM_Control", 2);
    walker.click("pushButton_Refresh");
    waitForReading(walker);
    walker.expect("KM control 3 was accepted", walker.index("comboBox_KM_Control") == 2);
    walker.click("pushButton_Admin_Settings");
}

void disconnect(Walker &walker)
{
    walker.click("pushButton_OFF_Connection");
    walker.expect("the indicator is red", !walker.isGreen());
    walker.picture(walker.window(), QStringLiteral("disconnected"));
    walker.click("pushButton_ON_Connection");
    waitForReading(walker);
}

int walk(const QDir &pictures, bool network)
{
    Walker walker(pictures);
    bool byNetwork = false;
    meetDialogs(walker, byNetwork);
    KM_Configuration_Tool_Norvik window;
    walker.setWindow(window);
    window.show();
    waitForReading(walker);
    tellConfiguration(walker);
    changeConfiguration(walker);
    resetToFactory(walker);
    setMouseSpeed(walker);
    arrangeLayout(walker);
    showInactiveChannels(walker);
    carryInAFile(walker);
    disconnect(walker);
    if (network) {
        byNetwork = true;
        connectByNetwork(walker);
        carryInAFile(walker);
        disconnect(walker);
    }
    return 0;
}
} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    useLightPalette();
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 3) {
        std::fputs("usage: pelora-demo-walk PICTURE_FOLDER private|none\n", stderr);
        return 2;
    }
    return walk(QDir(arguments.at(1)), arguments.at(2) == QStringLiteral("private"));
}
