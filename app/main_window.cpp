#include "app/main_window.h"

#include "app/screen_fit.h"
#include "app/selector_wheel.h"
#include "log/event_log.h"
#include "log/notices.h"
#include "log/window_dress.h"
#include "ui_main_window.h"

#include <QHeaderView>

namespace {
using Form = Ui::TRQ_Mobile_Setter_UI;

std::unique_ptr<Form> makeForm(KM_Configuration_Tool_Norvik &window, double scale)
{
    auto form = std::make_unique<Form>();
    form->setupUi(&window);
    // A form takes pictures as they are; an icon has one for sharp screens as well.
    const QSize logoSize = form->label_52->pixmap(Qt::ReturnByValue).size();
    form->label_52->setPixmap(
        QIcon(QStringLiteral(":/img/logos/rsz_norvik_image.png")).pixmap(logoSize));
    shrinkForm(window, scale);
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
                resolutionSelectors(form),
            {form.pushButton_Load_Settings_File, form.pushButton_Create_Settings_File,
             form.pushButton_Refresh, form.pushButtonSubmit,
             form.pushButton_Submit_Custom_Mouse_Movement_Settings, form.pushButton_Soft_Reset,
             form.pushButton_Factory_Reset}};
}

MouseSettings::Widgets mouseWidgets(const Form &form)
{
    return {resolutionSelectors(form),
            {form.label_Custom_1, form.label_Custom_2, form.label_Custom_3, form.label_Custom_4},
            form.comboBox_number_of_setting,
            form.lineEdit_Mouse_Movement_Name,
            form.lineEdit_Mouse_Movement_X,
            form.lineEdit_Mouse_Movement_Y};
}

GeneralSettings::Widgets generalWidgets(const Form &form)
{
    return {form.comboBox_KM_Control, form.comboBox_USB_Control, form.comboBox_Select_Display_Mode,
            form.comboBox_Select_active_port, form.comboBox_Enable_or_Disable_Cursor_Roll};
}

SettingsFile::Widgets settingsFileWidgets(const Form &form)
{
    return {form.comboBox_KM_Control, form.comboBox_USB_Control, form.comboBox_Select_active_port,
            form.comboBox_Enable_or_Disable_Cursor_Roll, form.comboBox_Select_Display_Mode};
}

ReplyApplication::Widgets replyWidgets(const Form &form)
{
    return {form.label_Current_Hotkey_Trigger_Data,
            form.comboBox_KM_Control,
            form.comboBox_USB_Control,
            form.comboBox_Select_active_port,
            form.comboBox_Enable_or_Disable_Cursor_Roll,
            form.comboBox_Select_Display_Mode};
}

constexpr QSize refreshIconSize(25, 25);

enum Page { configurationPage, mousePage, layoutPage };

ConnectionWizard::Settings wizardSettings(const WindowSettings &settings)
{
    ConnectionWizard::Settings ofWizard = settings.wizard;
    ofWizard.network.recorder = settings.recorder;
    return ofWizard;
}
} // namespace

KM_Configuration_Tool_Norvik::KM_Configuration_Tool_Norvik(
    QWidget *parent, const WindowSettings &settings,
    const std::optional<SettingsFile::Dialogs> &fileDialogs)
    : QMainWindow(parent), kmType(settings.kmType), ui_(makeForm(*this, settings.scale)),
      pages_(*ui_->stackedWidget, {ui_->ConfigurationBtn, ui_->pushButton_Mouse_Speed_Settings,
                                   ui_->TopologyAndDisplayBtn}),
      terminal_(*ui_->textEdit_Main_Terminal), controls_(connectionWidgets(*ui_)),
      link_(settings.networkLink, settings.linkFactories),
      presenter_(link_, controls_, terminal_, {ui_->label_current_Ip, ui_->label_name_of_USR}),
      exchange_(link_), panel_(
                            *this, link_, controls_, exchange_, *ui_->comboBox_SelectPort,
                            [this] { return wizard_.isTcpIpSelected(); }, settings.panel),
      wizard_(*this,
              {ui_->comboBox_SelectPort,
               {ui_->comboBox_SelectPort, ui_->label_Select_port},
               {ui_->label_current_Ip, ui_->label_name_of_USR, ui_->pushButton_Admin_Settings}},
              connectionMethodDialog, link_, controls_, exchange_, wizardSettings(settings)),
      mouse_(*this, mouseWidgets(*ui_), link_, controls_, settings.mouse), grid_(*ui_->tableWidget),
      layout_(grid_, link_, *ui_->comboBox_Select_active_port),
      generalSettings_(*this, generalWidgets(*ui_), link_, controls_, grid_,
                       settings.generalSettings),
      replies_(replyWidgets(*ui_), controls_, mouse_, grid_),
      readBack_(*this,
                {link_, exchange_, controls_, terminal_, mouse_, layout_, replies_,
                 *ui_->pushButton_Refresh},
                settings.readBack),
      settingsFile_(
          *this, settingsFileWidgets(*ui_),
          {settingsFileHandler, link_, controls_, mouse_, grid_, layout_},
          [this] { return kmType; }, [this] { readBack_.readPlainly(); }, settings.settingsFile,
          fileDialogs ? *fileDialogs : SettingsFile::Dialogs::real(*this))
{
    dressWindow(*this, windowSize * settings.scale);
    setNoticeWindow(this);
    setFocusPolicy(Qt::StrongFocus);
    takeWheelOnlyWithFocus(*this);
    ui_->pushButton_Refresh->setIconSize(refreshIconSize * settings.scale);
    ui_->pushButton_Refresh->setIcon(QIcon(QStringLiteral(":/img/logos/refresh.png")));
    on_ConfigurationBtn_clicked();
    controls_.showDisconnected();
    ui_->tableWidget->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    ui_->tableWidget->verticalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    ui_->tableWidget->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid_.showInitialLayout();
    connectSubsystems();
    if (settings.recorder != nullptr)
        recordTo(*settings.recorder);
    link_.setSendEnabled(true);
    controls_.setHandlersArmed(false);
    on_pushButton_Connection_Settings_clicked();
    if (controls_.countsAsConnected())
        exchange_.sendAll();
}

KM_Configuration_Tool_Norvik::~KM_Configuration_Tool_Norvik()
{
    link_.closeForExit();
    settingsFileHandler.close();
    closeLog();
}

void KM_Configuration_Tool_Norvik::connectSubsystems()
{
    connect(&link_, &DeviceLink::serialReadyRead, this,
            &KM_Configuration_Tool_Norvik::serialRecieve);
    connect(&link_, &DeviceLink::socketReadyRead, this, &KM_Configuration_Tool_Norvik::onReadyRead);
    connect(&panel_, &ConnectionPanel::readBackWanted, this,
            &KM_Configuration_Tool_Norvik::refresh_UI);
    connect(&link_, &DeviceLink::began, this, [this] { mouse_.startOver(); });
}

void KM_Configuration_Tool_Norvik::recordTo(LinkRecorder &recorder)
{
    record(link_, recorder);
    // Queued: the notice waits for the user, and something may be in the middle of a write.
    const auto tell = [](const QString &reason) {
        const QString text = QStringLiteral("The record has ended: ") + reason;
        writeLog(text.toStdString());
        showNoticeModal(text, QMessageBox::Warning);
    };
    connect(&recorder, &LinkRecorder::failed, this, tell, Qt::QueuedConnection);
}

void KM_Configuration_Tool_Norvik::send_initial_command()
{
    exchange_.sendConfigurationQuery();
}

void KM_Configuration_Tool_Norvik::scroll_Cursor_to_the_end()
{
    terminal_.scrollToEnd();
}

void KM_Configuration_Tool_Norvik::refresh_UI()
{
    readBack_.refresh();
}

void KM_Configuration_Tool_Norvik::onReadyRead()
{
    readBack_.receiveNetwork();
}

void KM_Configuration_Tool_Norvik::serialRecieve()
{
    readBack_.receiveSerial();
}

void KM_Configuration_Tool_Norvik::is_not_Connected_Message()
{
    panel_.judgeConnection();
}

void KM_Configuration_Tool_Norvik::on_pushButton_Mouse_Speed_Settings_clicked()
{
    pages_.showPage(mousePage);
}

void KM_Configuration_Tool_Norvik::on_TopologyAndDisplayBtn_clicked()
{
    pages_.showPage(layoutPage);
}

void KM_Configuration_Tool_Norvik::on_comboBox_SelectPort_currentIndexChanged()
{
    panel_.openSelectedPort();
}

void KM_Configuration_Tool_Norvik::on_pushButton_OFF_Connection_clicked()
{
    panel_.switchOff();
}

void KM_Configuration_Tool_Norvik::on_pushButton_ON_Connection_clicked()
{
    panel_.switchOn();
}

void KM_Configuration_Tool_Norvik::on_ConfigurationBtn_clicked()
{
    pages_.showPage(configurationPage);
}

void KM_Configuration_Tool_Norvik::on_pushButton_Create_Settings_File_clicked()
{
    settingsFile_.create();
}

void KM_Configuration_Tool_Norvik::on_pushButton_Load_Settings_File_clicked()
{
    settingsFile_.load();
}

void KM_Configuration_Tool_Norvik::load_second_part_of_settings()
{
    settingsFile_.loadSecondPart();
}

void KM_Configuration_Tool_Norvik::on_pushButton_Refresh_clicked()
{
    readBack_.refreshPressed();
}

void KM_Configuration_Tool_Norvik::on_pushButton_Connection_Settings_clicked()
{
    wizard_.run();
}

void KM_Configuration_Tool_Norvik::on_pushButton_Admin_Settings_clicked()
{
    wizard_.editAdminSettings();
}

void KM_Configuration_Tool_Norvik::enable_refresh_button()
{
    readBack_.unlockRefresh();
}

void KM_Configuration_Tool_Norvik::disable_refresh_button()
{
    readBack_.lockRefresh();
}

void KM_Configuration_Tool_Norvik::on_comboBox_Select_Display_Mode_currentIndexChanged()
{
    generalSettings_.mouseModeChanged();
}

void KM_Configuration_Tool_Norvik::on_comboBox_Enable_or_Disable_Cursor_Roll_currentIndexChanged()
{
    generalSettings_.cursorRollingChanged();
}

void KM_Configuration_Tool_Norvik::on_comboBox_KM_Control_currentIndexChanged()
{
    generalSettings_.kmControlChanged();
}

void KM_Configuration_Tool_Norvik::on_comboBox_USB_Control_currentIndexChanged()
{
    generalSettings_.usbControlChanged();
}

void KM_Configuration_Tool_Norvik::on_comboBox_Select_active_port_currentIndexChanged()
{
    generalSettings_.activePortsChanged();
}

void KM_Configuration_Tool_Norvik::get_data_from_TRQ_by_serial_port()
{
    readBack_.takeOver();
}

void KM_Configuration_Tool_Norvik::on_pushButton_Factory_Reset_clicked()
{
    generalSettings_.factoryReset();
}

void KM_Configuration_Tool_Norvik::on_pushButton_Soft_Reset_clicked()
{
    generalSettings_.softReset();
}

void KM_Configuration_Tool_Norvik::on_pushButton_ON_Beep_clicked()
{
    generalSettings_.beepOn();
}

void KM_Configuration_Tool_Norvik::on_pushButton_OFF_Beep_clicked()
{
    generalSettings_.beepOff();
}

void KM_Configuration_Tool_Norvik::on_pushButton_Submit_Custom_Mouse_Movement_Settings_clicked()
{
    mouse_.submitCustomSetting();
}

void KM_Configuration_Tool_Norvik::
    on_comboBox_mouse_movement_resolution_setting_1_currentIndexChanged()
{
    mouse_.resolutionChanged(1);
}

void KM_Configuration_Tool_Norvik::
    on_comboBox_mouse_movement_resolution_setting_2_currentIndexChanged()
{
    mouse_.resolutionChanged(2);
}

void KM_Configuration_Tool_Norvik::
    on_comboBox_mouse_movement_resolution_setting_3_currentIndexChanged()
{
    mouse_.resolutionChanged(3);
}

void KM_Configuration_Tool_Norvik::
    on_comboBox_mouse_movement_resolution_setting_4_currentIndexChanged()
{
    mouse_.resolutionChanged(4);
}

void KM_Configuration_Tool_Norvik::on_comboBox_number_of_setting_currentIndexChanged(int /*index*/)
{
    mouse_.fillEditFields();
}

void KM_Configuration_Tool_Norvik::on_pushButtonSubmit_clicked()
{
    layout_.submit();
}

void KM_Configuration_Tool_Norvik::on_tableWidget_cellChanged(int row, int column)
{
    grid_.cellChanged(row, column);
}

void KM_Configuration_Tool_Norvik::on_tableWidget_cellPressed(int row, int column)
{
    grid_.cellPressed(row, column);
}

void KM_Configuration_Tool_Norvik::set_current_layout_from_buff()
{
    readBack_.loadLayoutFromBuffer();
}
