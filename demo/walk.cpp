// Walks through the program as the README describes it, against the simulator that the caller has
// started, and leaves a picture of every page and dialog.
//   pelora-demo-walk PICTURE_FOLDER private|none

#include "walker.h"

#include "link/select_hardware_dialog.h"
#include "protocol/yes_no_dialog.h"
#include "usr/change_setting_for_usr_dialog.h"
#include "usr/credentials_dialog.h"
#include "usr/ip_settings_dialog.h"

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
        QTest::keyClicks(&Walker::child<QLineEdit>(dialog, "lineEdit_username"),
                         QStringLiteral("admin"));
        QTest::keyClicks(&Walker::child<QLineEdit>(dialog, "lineEdit_password"),
                         QStringLiteral("admin"));
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
    dialogs.on<Yes_No_Dialog>([&walker](Yes_No_Dialog &dialog) {
        walker.answer(dialog, QStringLiteral("factory-reset"), "pushButton_OK");
    });
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
    disconnect(walker);
    if (network) {
        byNetwork = true;
        connectByNetwork(walker);
    }
    return 0;
}
} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 3) {
        std::fputs("usage: pelora-demo-walk PICTURE_FOLDER private|none\n", stderr);
        return 2;
    }
    return walk(QDir(arguments.at(1)), arguments.at(2) == QStringLiteral("private"));
}
