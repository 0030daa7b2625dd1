#include "connection/select_connection_method_dialog.h"

#include "log/event_log.h"
#include "log/notices.h"
#include "log/window_dress.h"
#include "ui_select_connection_method_dialog.h"

Select_connection_method_Dialog::Select_connection_method_Dialog(QWidget *parent)
    : QDialog(parent), ui_(std::make_unique<Ui::Select_connection_method_Dialog>())
{
    openLog(); // this dialog is the first thing that the program makes
    ui_->setupUi(this);
    dressWindow(*this, {405, 170});
}

Select_connection_method_Dialog::~Select_connection_method_Dialog() = default;

void Select_connection_method_Dialog::showEvent(QShowEvent *event)
{
    closed_ = true; // until Continue says otherwise
    QDialog::showEvent(event);
}

void Select_connection_method_Dialog::on_pushButton_continue_clicked()
{
    if (ui_->radioButton_TCP_IP->isChecked()) {
        choice_ = Choice::TcpIp;
    } else if (ui_->radioButton_RS232->isChecked()) {
        choice_ = Choice::Rs232;
    } else {
        showNoticeModal(QStringLiteral("Select connection method"), QMessageBox::Warning);
        return;
    }
    closed_ = false;
    hide();
}
