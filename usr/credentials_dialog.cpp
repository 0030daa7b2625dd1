#include "usr/credentials_dialog.h"

#include "device/usr_frame.h"
#include "log/notices.h"
#include "log/window_dress.h"
#include "ui_credentials_dialog.h"

namespace {
/// What is wrong with the entries; empty when nothing is.
QString complaintAbout(const QString &username, const QString &password)
{
    if (username.size() > usr_frame::longestCredential)
        return QStringLiteral("Username is too long");
    if (password.size() > usr_frame::longestCredential)
        return QStringLiteral("Password is too long");
    if (username.isEmpty())
        return QStringLiteral("Enter username");
    if (password.isEmpty())
        return QStringLiteral("Enter password");
    return {};
}
} // namespace

Credentials_Dialog::Credentials_Dialog(QWidget *parent, const QString &currentIP,
                                       const UsrNetwork &network)
    : QDialog(parent), ui_(std::make_unique<Ui::Credentials_Dialog>()), currentIP_(currentIP),
      network_(network)
{
    ui_->setupUi(this);
    dressWindow(*this, QSize(405, 205));
    ui_->label_current_ip->setText(currentIP_);
}

Credentials_Dialog::~Credentials_Dialog() = default;

QString Credentials_Dialog::username() const
{
    return ui_->lineEdit_username->text();
}

QString Credentials_Dialog::password() const
{
    return ui_->lineEdit_password->text();
}

void Credentials_Dialog::reject()
{
    isClosed_ = true;
    QDialog::reject();
}

void Credentials_Dialog::on_pushButton_ip_allocation_clicked()
{
    const QString complaint = complaintAbout(username(), password());
    if (!complaint.isEmpty()) {
        showNoticeModal(complaint, QMessageBox::Warning);
        return;
    }
    USR_searcher searcher(currentIP_, username(), password(), network_);
    ipAllocation_ = searcher.get_IP_allocation();
    hide();
}
