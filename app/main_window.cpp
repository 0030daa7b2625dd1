#include "app/main_window.h"

#include "log/event_log.h"
#include "log/window_dress.h"
#include "ui_main_window.h"

#include <QHeaderView>

namespace
{
using Form = Ui::TRQ_Mobile_Setter_UI;

std::unique_ptr<Form> makeForm(KM_Configuration_Tool_Norvik &window)
{
    auto form = std::make_unique<Form>();
    form->setupUi(&window);
    return form;
}

QList<QComboBox *> resolutionSelectors(const Form &form)
{
    return {form.comboBox_mouse_movement_resolution_setting_1,
            form.comboBox_mouse_movement_resolution_setting_2,
            form.comboBox_mouse_movement_resolution_setting_3,
            form.comboBox_mouse_movement_resolution_setting_4};
}

ConnectionControls::Widgets connectionWidgets(const Form &form)
{
    return {form.pushButton_Connection_Indicator,
            form.pushButton_ON_Connection,
            form.pushButton_OFF_Connection,
            form.pushButton_ON_Beep,
            form.pushButton_OFF_Beep,
            {form.pushButton_Create_Settings_File, form.pushButton_Load_Settings_File,
             form.pushButton_Refresh, form.pushButtonSubmit,
             form.pushButton_Submit_Custom_Mouse_Movement_Settings, form.pushButton_Factory_Reset,
             form.pushButton_Soft_Reset, form.pushButton_ON_Beep, form.pushButton_OFF_Beep,
             form.pushButton_Mouse_Speed_Settings, form.TopologyAndDisplayBtn,
             form.pushButton_Admin_Settings},
            QList<QComboBox *>{form.comboBox_KM_Control, form.comboBox_USB_Control,
                               form.comboBox_Select_Display_Mode, form.comboBox_Select_active_port,
                               form.comboBox_Enable_or_Disable_Cursor_Roll} +
                resolutionSelectors(form)};
}

constexpr QSize windowSize(1305, 693);
constexpr QSize refreshIconSize(25, 25);

enum Page { configurationPage, mousePage, layoutPage };
} // namespace

KM_Configuration_Tool_Norvik::KM_Configuration_Tool_Norvik(QWidget *parent,
                                                           const WindowSettings &settings)
    : QMainWindow(parent), ui_(makeForm(*this)),
      pages_(*ui_->stackedWidget, {ui_->ConfigurationBtn, ui_->pushButton_Mouse_Speed_Settings,
                                   ui_->TopologyAndDisplayBtn}),
      terminal_(*ui_->textEdit_Main_Terminal), controls_(connectionWidgets(*ui_)),
      link_(controls_, terminal_, {ui_->label_current_Ip, ui_->label_name_of_USR},
            [this] { return connectionMethodDialog.isTcpIpSelected(); }, settings.networkLink),
      exchange_(link_),
      panel_(*this, link_, controls_, exchange_, *ui_->comboBox_SelectPort, settings.panel),
      wizard_(*this,
              {ui_->comboBox_SelectPort,
               {ui_->comboBox_SelectPort, ui_->label_Select_port},
               {ui_->label_current_Ip, ui_->label_name_of_USR, ui_->pushButton_Admin_Settings}},
              connectionMethodDialog, link_, controls_, exchange_, settings.wizard)
{
}
