#include "connection/select_hardware_dialog.h"

#include "device/usr_frame.h"
#include "log/notices.h"
#include "log/window_dress.h"
#include "ui_select_hardware_dialog.h"

#include <QHash>
#include <cstdlib>
#include <utility>

Select_hardware_Dialog::Select_hardware_Dialog(QWidget *parent, UsrNetwork network)
    : QDialog(parent), ui_(std::make_unique<Ui::Select_hardware_Dialog>()),
      searcher_(nullptr, std::move(network))
{
    ui_->setupUi(this);
    dressWindow(*this, QSize(405, 341));
    setButtonsEnabled(false);
    search();
}

Select_hardware_Dialog::~Select_hardware_Dialog() = default;

void Select_hardware_Dialog::reject()
{
    isCancelled_ = true;
    QDialog::reject();
}

void Select_hardware_Dialog::on_pushButton_Refresh_clicked()
{
    setButtonsEnabled(false);
    repaint(); // the search blocks: without this the buttons would look ready all the while
    search();
    isCancelled_ = false;
}

void Select_hardware_Dialog::on_pushButton_Continue_clicked()
{
    hide();
}

void Select_hardware_Dialog::on_comboBox_Hardware_currentIndexChanged(int index)
{
    if (isListReady_ && index >= 0 && index < modules_.size())
        selectedAddress_ = modules_[index].address;
}

void Select_hardware_Dialog::search()
{
    isListReady_ = false;
    if (searcher_.search_USR() != 1) {
        showNoticeModal(QStringLiteral("No hardware online"), QMessageBox::Warning);
        std::exit(1); // NOLINT(concurrency-mt-unsafe): the program has one thread
    }
    guarded("Search USR error", [this] { takeModules(); });
    ui_->comboBox_Hardware->clear();
    for (const FoundModule &module : std::as_const(modules_))
        ui_->comboBox_Hardware->addItem(module.address + QStringLiteral("   ") + module.name);
    setButtonsEnabled(true);
    isListReady_ = true;
    on_comboBox_Hardware_currentIndexChanged(ui_->comboBox_Hardware->currentIndex());
}

void Select_hardware_Dialog::takeModules()
{
    modules_.clear();
    QHash<QString, qsizetype> rowOfMac;
    for (const QString &hexText : searcher_.get_replies()) {
        const usr_frame::DiscoveryReply reply = usr_frame::readDiscoveryReply(hexText);
        if (!rowOfMac.contains(reply.mac)) {
            rowOfMac.insert(reply.mac, modules_.size());
            modules_.append(FoundModule());
        }
        modules_[rowOfMac.value(reply.mac)] = {reply.ip, reply.name};
    }
}

void Select_hardware_Dialog::setButtonsEnabled(bool isEnabled)
{
    ui_->pushButton_Refresh->setEnabled(isEnabled);
    ui_->pushButton_Continue->setEnabled(isEnabled);
}
