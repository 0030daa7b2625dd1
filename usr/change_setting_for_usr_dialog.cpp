#include "usr/change_setting_for_usr_dialog.h"

#include "device/usr_frame.h"
#include "log/event_log.h"
#include "log/notices.h"
#include "log/window_dress.h"
#include "ui_change_setting_for_usr_dialog.h"

namespace {
/// What is wrong with the entries; empty when nothing is.
QString complaintAbout(const QString &name, const QString &username, const QString &password)
{
    if (name.size() > usr_frame::longestName)
        return QStringLiteral("Name of USR is too long");
    if (username.size() > usr_frame::longestCredential)
        return QStringLiteral("Username is too long");
    if (password.size() > usr_frame::longestCredential)
        return QStringLiteral("Password is too long");
    return {};
}

void takeUnlessBlank(const QString &entry, QString &value)
{
    if (!entry.isEmpty())
        value = entry;
}

void logBlankCredentials(const QString &username, const QString &password)
{
    if (username.isEmpty())
        writeLog("A blank user name was sent to the module; a blank one cannot log in");
    if (password.isEmpty())
        writeLog("A blank password was sent to the module; a blank one cannot log in");
}
} // namespace

Change_setting_for_USR_Dialog::Change_setting_for_USR_Dialog(
    QWidget *parent, const QString &currentIP, const QString &ip, const QString &subnetMask,
    const QString &gateway, const QString &ipAllocation, const QString &username,
    const QString &password, const QString &currentName, const UsrNetwork &network)
    : QDialog(parent), ui_(std::make_unique<Ui::Change_setting_for_USR_Dialog>()),
      currentIP_(currentIP), ip_(ip), subnetMask_(subnetMask), gateway_(gateway),
      ipAllocation_(ipAllocation), username_(username), password_(password), newName_(currentName),
      network_(network)
{
    ui_->setupUi(this);
    dressWindow(*this, QSize(425, 341));
}

Change_setting_for_USR_Dialog::~Change_setting_for_USR_Dialog() = default;

void Change_setting_for_USR_Dialog::on_pushButton_Apply_clicked()
{
    const QString name = ui_->lineEdit_Name->text();
    const QString username = ui_->lineEdit_Username->text();
    const QString password = ui_->lineEdit_Password->text();
    const QString complaint = complaintAbout(name, username, password);
    if (!complaint.isEmpty()) {
        showNoticeModal(complaint, QMessageBox::Warning);
        return;
    }
    takeUnlessBlank(name, newName_);
    takeUnlessBlank(username, newUsername_);
    takeUnlessBlank(password, newPassword_);

    USR_searcher searcher(currentIP_, ip_, subnetMask_, gateway_, ipAllocation_, username_,
                          password_, network_);
    if (searcher.change_username_password_and_name(newUsername_, newPassword_, newName_) > 0)
        logBlankCredentials(username, password);
    wasApplied_ = true;
    // Deliberate: said whatever came of it. What went wrong has been reported by then.
    showNoticeModal(QStringLiteral("Settings were applied successfully"), QMessageBox::Information);
    hide();
}
