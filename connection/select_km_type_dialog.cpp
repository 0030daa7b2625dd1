#include "connection/select_km_type_dialog.h"

#include "log/notices.h"
#include "log/window_dress.h"
#include "ui_select_km_type_dialog.h"

Select_KM_type_Dialog::Select_KM_type_Dialog(QWidget *parent)
    : QDialog(parent), ui_(std::make_unique<Ui::Select_KM_type_Dialog>())
{
    ui_->setupUi(this);
    dressWindow(*this, {405, 200});
}

Select_KM_type_Dialog::~Select_KM_type_Dialog() = default;

void Select_KM_type_Dialog::on_pushButton_Continue_clicked()
{
    for (const QRadioButton *model :
         {ui_->radioButton_VELO, ui_->radioButton_ORCA, ui_->radioButton_ZEN}) {
        if (model->isChecked()) {
            chosenModel_ = model->text();
            hide();
            return;
        }
    }
    showNoticeModal(QStringLiteral("Select version of KM"), QMessageBox::Warning);
}
