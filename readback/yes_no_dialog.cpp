#include "readback/yes_no_dialog.h"

#include "log/window_dress.h"
#include "ui_yes_no_dialog.h"

Yes_No_Dialog::Yes_No_Dialog(const QString &question, const QString &okText,
                             const QString &cancelText, QWidget *parent)
    : QDialog(parent), ui_(std::make_unique<Ui::Yes_No_Dialog>())
{
    ui_->setupUi(this);
    dressWindow(*this, {312, 100});
    ui_->label_question->setText(question);
    ui_->pushButton_OK->setText(okText);
    ui_->pushButton_Cancel->setText(cancelText);
    ui_->pushButton_Cancel->setFocus();
}

Yes_No_Dialog::~Yes_No_Dialog() = default;

void Yes_No_Dialog::on_pushButton_OK_clicked()
{
    answer_ = QStringLiteral("OK");
    hide();
}

void Yes_No_Dialog::on_pushButton_Cancel_clicked()
{
    answer_ = QStringLiteral("Cancel");
    hide();
}
