#pragma once

#include "app/page_navigation.h"
#include "connection/connection_controls.h"
#include "connection/connection_panel.h"
#include "connection/connection_presenter.h"
#include "connection/connection_wizard.h"
#include "connection/select_connection_method_dialog.h"
#include "layout/layout_grid.h"
#include "layout/layout_submission.h"
#include "log/terminal_view.h"
#include "mouse/mouse_settings.h"
#include "readback/general_settings.h"
#include "readback/read_back.h"
#include "readback/reply_application.h"
#include "session/device_link.h"
#include "session/initial_exchange.h"
#include "session/link_recorder.h"
#include "settingsfile/settings_file.h"
#include "settingsfile/settings_file_handler.h"

#include <QMainWindow>
#include <QSize>
#include <memory>
#include <optional>
#include <string>

namespace Ui {
class TRQ_Mobile_Setter_UI;
}

/// Every delay, address, port and size of the program, and the switch's model, with the real values
/// as defaults.
struct WindowSettings
{
    DeviceLinkSettings networkLink;
    LinkFactories linkFactories;
    ConnectionPanel::Timing panel;
    ConnectionWizard::Settings wizard;
    ReadBack::Timing readBack;
    GeneralSettings::Timing generalSettings;
    MouseSettings::Timing mouse;
    SettingsFile::Timing settingsFile;
    LinkRecorder *recorder = nullptr; ///< keeps what passes; must outlive the window
    std::string kmType = "orca";      ///< key of the model
    double scale = 1; ///< of the window and what stands in it, at most 1: for a small screen
};

/// The main window: owns the form and one object per subsystem. Its slots are doors that hand over
/// to the subsystem that owns the work. Constructing it runs the connection wizard.
class KM_Configuration_Tool_Norvik : public QMainWindow
{
    Q_OBJECT

public:
    static constexpr QSize windowSize{1305, 693}; ///< fixed; at scale 1

    /// `fileDialogs` stands for the real file dialogs where it is given.
    explicit KM_Configuration_Tool_Norvik(
        QWidget *parent = nullptr, const WindowSettings &settings = {},
        const std::optional<SettingsFile::Dialogs> &fileDialogs = std::nullopt);
    ~KM_Configuration_Tool_Norvik() override;

public Q_SLOTS:
    void send_initial_command();
    void scroll_Cursor_to_the_end();
    void refresh_UI();
    void onReadyRead();
    void serialRecieve();
    void is_not_Connected_Message();
    void on_pushButton_Mouse_Speed_Settings_clicked();
    void on_TopologyAndDisplayBtn_clicked();
    void on_comboBox_SelectPort_currentIndexChanged();
    void on_pushButton_OFF_Connection_clicked();
    void on_pushButton_ON_Connection_clicked();
    void on_ConfigurationBtn_clicked();
    void on_pushButton_Create_Settings_File_clicked();
    void on_pushButton_Load_Settings_File_clicked();
    void load_second_part_of_settings();
    void on_pushButton_Refresh_clicked();
    void on_pushButton_Connection_Settings_clicked();
    void on_pushButton_Admin_Settings_clicked();
    void enable_refresh_button();
    void disable_refresh_button();
    void on_comboBox_Select_Display_Mode_currentIndexChanged();
    void on_comboBox_Enable_or_Disable_Cursor_Roll_currentIndexChanged();
    void on_comboBox_KM_Control_currentIndexChanged();
    void on_comboBox_USB_Control_currentIndexChanged();
    void on_comboBox_Select_active_port_currentIndexChanged();
    void get_data_from_TRQ_by_serial_port();
    void on_pushButton_Factory_Reset_clicked();
    void on_pushButton_Soft_Reset_clicked();
    void on_pushButton_ON_Beep_clicked();
    void on_pushButton_OFF_Beep_clicked();
    void on_pushButton_Submit_Custom_Mouse_Movement_Settings_clicked();
    void on_comboBox_mouse_movement_resolution_setting_1_currentIndexChanged();
    void on_comboBox_mouse_movement_resolution_setting_2_currentIndexChanged();
    void on_comboBox_mouse_movement_resolution_setting_3_currentIndexChanged();
    void on_comboBox_mouse_movement_resolution_setting_4_currentIndexChanged();
    void on_comboBox_number_of_setting_currentIndexChanged(int index);
    void on_pushButtonSubmit_clicked();
    void on_tableWidget_cellChanged(int row, int column);
    void on_tableWidget_cellPressed(int row, int column);
    void set_current_layout_from_buff();

private:
    void connectSubsystems();
    void recordTo(LinkRecorder &recorder);

    std::string kmType; ///< key of the switch's model

    // In the order of construction: each object gets only those above it.
    SettingsFileHandler settingsFileHandler;
    Select_connection_method_Dialog connectionMethodDialog;
    std::unique_ptr<Ui::TRQ_Mobile_Setter_UI> ui_;
    PageNavigation pages_;
    TerminalView terminal_;
    ConnectionControls controls_;
    DeviceLink link_;
    ConnectionPresenter presenter_;
    InitialExchange exchange_;
    ConnectionPanel panel_;
    ConnectionWizard wizard_;
    MouseSettings mouse_;
    LayoutGrid grid_;
    LayoutSubmission layout_;
    GeneralSettings generalSettings_;
    ReplyApplication replies_;
    ReadBack readBack_;
    SettingsFile settingsFile_;
};
