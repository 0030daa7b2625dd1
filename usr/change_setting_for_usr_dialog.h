#pragma once

#include "usr/usr_searcher.h"

#include <QDialog>
#include <memory>

namespace Ui {
class Change_setting_for_USR_Dialog;
}

/// Writes a new name, user name and password into a module ("Admin Settings") and hides.
class Change_setting_for_USR_Dialog : public QDialog
{
    Q_OBJECT

public:
    /// `currentIP` is the module's address on the link, `ip`, `subnetMask` and `gateway` (dotted)
    /// its stored ones, `ipAllocation` "00" or "80"; `username` and `password` are its current
    /// credentials, `currentName` its name. All but name and credentials are written back as given.
    Change_setting_for_USR_Dialog(QWidget *parent, const QString &currentIP, const QString &ip,
                                  const QString &subnetMask, const QString &gateway,
                                  const QString &ipAllocation, const QString &username,
                                  const QString &password, const QString &currentName,
                                  const UsrNetwork &network = {});
    ~Change_setting_for_USR_Dialog() override;

    /// Whether Apply ran, with texts that a module can take; it may have failed on the way there.
    bool wasApplied() const { return wasApplied_; }
    /// What Apply wrote. A blank name keeps the current one; blank credentials are written empty.
    const QString &newName() const { return newName_; }
    const QString &newUsername() const { return newUsername_; }
    const QString &newPassword() const { return newPassword_; }

private Q_SLOTS:
    void on_pushButton_Apply_clicked();

private:
    std::unique_ptr<Ui::Change_setting_for_USR_Dialog> ui_;
    QString currentIP_;
    QString ip_;
    QString subnetMask_;
    QString gateway_;
    QString ipAllocation_;
    QString username_;
    QString password_;
    QString newName_;
    // Deliberate: they start empty, so that a blank field empties the credential in the module.
    QString newUsername_;
    QString newPassword_;
    UsrNetwork network_;
    bool wasApplied_ = false;
};
