#include "usr/ip_settings_dialog.h"

#include "device/usr_frame.h"
#include "log/event_log.h"
#include "log/notices.h"
#include "log/window_dress.h"
#include "ui_ip_settings_dialog.h"

#include <QCloseEvent>
#include <QRegularExpression>
#include <QTimer>
#include <algorithm>

namespace {
using usr_frame::dhcpAllocation;
using usr_frame::staticAllocation;

/// Whether `text` has the form of a dotted address. Octets over 255 pass: the module gets an empty
/// address then.
bool isDottedAddress(const QString &text)
{
    static const QRegularExpression form(QRegularExpression::anchoredPattern(
        QStringLiteral(R"(\d{1,3}\.\d{1,3}\.\d{1,3}\.\d{1,3})")));
    return form.match(text).hasMatch();
}

void logOctetsAbove255(const char *field, const QString &text)
{
    const QStringList octets = text.split(QLatin1Char('.'));
    const bool isAbove = std::any_of(octets.begin(), octets.end(),
                                     [](const QString &octet) { return octet.toInt() > 255; });
    if (isDottedAddress(text) && isAbove)
        writeLog(QStringLiteral("The %1 %2 has a number above 255; it was sent as an empty field")
                     .arg(QLatin1String(field), text)
                     .toStdString());
}

/// Shows what was read of one field, and keeps it unless it could not be read.
void takeRead(const QString &value, QLineEdit &field, QString &known)
{
    field.setText(value);
    if (value != USR_searcher::failed)
        known = value;
}
} // namespace

IP_Settings_Dialog::IP_Settings_Dialog(QWidget *parent, const QString &currentIP,
                                       const QString &ipAllocation, const QString &username,
                                       const QString &password, const UsrNetwork &network,
                                       IpSettingsTiming timing)
    : QDialog(parent), ui_(std::make_unique<Ui::IP_Settings_Dialog>()),
      waitingNotice_(new QMessageBox(this)), currentIP_(currentIP),
      ipAllocation_(ipAllocation == staticAllocation ? staticAllocation : dhcpAllocation),
      known_{USR_searcher::failed, USR_searcher::failed, USR_searcher::failed}, username_(username),
      password_(password), network_(network), timing_(timing),
      searcher_(currentIP, username, password, network)
{
    ui_->setupUi(this);
    dressWindow(*this, QSize(500, 450));
    // A child takes over its window's style sheet; the notice is to look like any other.
    waitingNotice_->setStyleSheet(
        QStringLiteral("QLabel, QPushButton {font-size: 12pt;} QPushButton {height: 26px;}"));
    showLayout(ipAllocation_ == staticAllocation);
    ui_->label_IP->setText(currentIP_);
    fillFields();
    usrName_ = searcher_.lastKnownName();
    for (QLineEdit *edit :
         {ui_->lineEdit_IPv4_Address, ui_->lineEdit_Subnet_Mask, ui_->lineEdit_Default_Gateway})
        connect(edit, &QLineEdit::textEdited, this, &IP_Settings_Dialog::settingsWereEdited);
}

IP_Settings_Dialog::~IP_Settings_Dialog() = default;

void IP_Settings_Dialog::takeAdminSettings(const QString &name, const QString &username,
                                           const QString &password)
{
    usrName_ = name;
    username_ = username;
    password_ = password;
}

void IP_Settings_Dialog::reject()
{
    markClosed();
    QDialog::reject();
}

void IP_Settings_Dialog::closeEvent(QCloseEvent *event)
{
    markClosed();
    QDialog::closeEvent(event);
}

void IP_Settings_Dialog::on_pushButton_Apply_IP_clicked()
{
    setButtonsEnabled(false);
    showMessage_for_waiting();
    QTimer::singleShot(timing_.beforeApply, this, SLOT(apply_IP()));
}

void IP_Settings_Dialog::apply_IP()
{
    if (isClosed_)
        return;
    const bool isStatic = ui_->radioButton_Static->isChecked();
    const bool isDhcp = ui_->radioButton_DHCP->isChecked();
    if (!isStatic && !isDhcp) {
        endApply(QStringLiteral("Select IP allocation"), QMessageBox::Warning);
        return;
    }
    const Addresses entered = enteredAddresses();
    const QString allocation = isStatic ? staticAllocation : dhcpAllocation;
    const bool isComplete = isDottedAddress(entered.address) &&
                            isDottedAddress(entered.subnetMask) && isDottedAddress(entered.gateway);
    USR_searcher writer(currentIP_, entered.address, entered.subnetMask, entered.gateway,
                        allocation, username_, password_, network_);
    if ((isStatic && !isComplete) || writer.setup_USR() < 0) {
        endApply(QStringLiteral("Error in applying IP"), QMessageBox::Warning);
        return;
    }
    logOctetsAbove255("IPv4 address", entered.address);
    logOctetsAbove255("subnet mask", entered.subnetMask);
    logOctetsAbove255("default gateway", entered.gateway);
    known_ = entered;
    ipAllocation_ = allocation;
    QTimer::singleShot(isDhcp ? timing_.afterDhcp : timing_.afterStatic, this,
                       SLOT(search_USR_in_network_after_changing()));
}

void IP_Settings_Dialog::on_radioButton_DHCP_clicked()
{
    showLayout(false);
    settingsWereEdited();
}

void IP_Settings_Dialog::on_radioButton_Static_clicked()
{
    showLayout(true);
    settingsWereEdited();
}

void IP_Settings_Dialog::on_pushButton_Connect_clicked()
{
    hide();
}

void IP_Settings_Dialog::search_USR_in_network_after_changing()
{
    if (isClosed_)
        return;
    currentIP_ = searcher_.get_IP_after_hanging();
    ui_->label_IP->setText(currentIP_);
    if (!currentIP_.isEmpty())
        searcher_.setTargetIP(currentIP_);
    usrName_ = searcher_.get_name();
    fillFields();
    ui_->pushButton_Connect->setDefault(true);
    // Deliberate: said also when the module was not found again; label_IP is empty then.
    endApply(QStringLiteral("The IP was applied successfully"), QMessageBox::Information);
}

void IP_Settings_Dialog::showMessage_for_waiting()
{
    showNotice(QStringLiteral("Please wait for changes to be made"), QMessageBox::Information,
               *waitingNotice_);
}

void IP_Settings_Dialog::showLayout(bool isStatic)
{
    for (QLineEdit *edit :
         {ui_->lineEdit_IPv4_Address, ui_->lineEdit_Subnet_Mask, ui_->lineEdit_Default_Gateway})
        edit->setEnabled(isStatic);
    ui_->radioButton_Static->setChecked(isStatic);
    ui_->radioButton_DHCP->setChecked(!isStatic);
}

void IP_Settings_Dialog::fillFields()
{
    takeRead(searcher_.get_static_IP(), *ui_->lineEdit_IPv4_Address, known_.address);
    takeRead(searcher_.get_subnet_mask(), *ui_->lineEdit_Subnet_Mask, known_.subnetMask);
    takeRead(searcher_.get_gateway(), *ui_->lineEdit_Default_Gateway, known_.gateway);
}

IP_Settings_Dialog::Addresses IP_Settings_Dialog::enteredAddresses() const
{
    return {ui_->lineEdit_IPv4_Address->text(), ui_->lineEdit_Subnet_Mask->text(),
            ui_->lineEdit_Default_Gateway->text()};
}

void IP_Settings_Dialog::setButtonsEnabled(bool isEnabled)
{
    ui_->pushButton_Apply_IP->setEnabled(isEnabled);
    ui_->pushButton_Connect->setEnabled(isEnabled);
    ui_->radioButton_DHCP->setEnabled(isEnabled);
    ui_->radioButton_Static->setEnabled(isEnabled);
}

/// Enter must not connect past what was just typed.
void IP_Settings_Dialog::settingsWereEdited()
{
    ui_->pushButton_Apply_IP->setDefault(true);
}

void IP_Settings_Dialog::endApply(const QString &text, QMessageBox::Icon icon)
{
    waitingNotice_->hide();
    showNoticeModal(text, icon);
    setButtonsEnabled(true);
}

/// What is still to come of an apply is left undone: the user has turned away.
void IP_Settings_Dialog::markClosed()
{
    isClosed_ = true;
    waitingNotice_->hide();
}
