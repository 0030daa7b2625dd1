#pragma once

#include "usr/usr_searcher.h"

#include <QDialog>
#include <QList>
#include <QString>
#include <memory>

namespace Ui {
class Select_hardware_Dialog;
}

/// A network module as the search found it.
struct FoundModule
{
    QString address; ///< dotted
    QString name;
};

/// The list of modules on the network. It searches when it is made and on Refresh, which takes
/// 1.5 s each; when nothing answers, it says so and ends the process with status 1.
class Select_hardware_Dialog : public QDialog
{
    Q_OBJECT

public:
    explicit Select_hardware_Dialog(QWidget *parent = nullptr, UsrNetwork network = {});
    ~Select_hardware_Dialog() override;

    /// Whether the user closed the dialog, with its close button or with Escape.
    bool isCancelled() const { return isCancelled_; }
    /// The selected module's address (dotted).
    const QString &selectedAddress() const { return selectedAddress_; }
    /// One for each module (by its MAC) in the order of the first answers; of a module with several
    /// answers in the searcher's list the later one counts.
    const QList<FoundModule> &modules() const { return modules_; }
    const USR_searcher &searcher() const { return searcher_; }

    void reject() override;

private Q_SLOTS:
    void on_pushButton_Refresh_clicked();
    void on_pushButton_Continue_clicked();
    void on_comboBox_Hardware_currentIndexChanged(int index);

private:
    void search();
    void takeModules();
    void setButtonsEnabled(bool isEnabled);

    std::unique_ptr<Ui::Select_hardware_Dialog> ui_;
    USR_searcher searcher_;
    QList<FoundModule> modules_;
    QString selectedAddress_;
    bool isListReady_ = false;
    bool isCancelled_ = false;
};
