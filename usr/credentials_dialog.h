#pragma once

#include "usr/usr_searcher.h"

#include <QDialog>
#include <memory>

namespace Ui {
class Credentials_Dialog;
}

/// The login to one module ("KM Login"): takes user name and password, proves them by reading the
/// module's IP allocation, and hides. Made afresh for each attempt.
class Credentials_Dialog : public QDialog
{
    Q_OBJECT

public:
    /// `currentIP` (dotted) is the module's address.
    Credentials_Dialog(QWidget *parent, const QString &currentIP, const UsrNetwork &network = {});
    ~Credentials_Dialog() override;

    /// "00" (DHCP), "80" (static) or "-1" (refused or unreadable); empty until Continue went
    /// through.
    const QString &ipAllocation() const { return ipAllocation_; }
    QString username() const;
    QString password() const;
    /// Whether the user closed the dialog, with its close button or with Escape.
    bool isClosed() const { return isClosed_; }

    void reject() override;

private Q_SLOTS:
    void on_pushButton_ip_allocation_clicked();

private:
    std::unique_ptr<Ui::Credentials_Dialog> ui_;
    QString currentIP_;
    UsrNetwork network_;
    QString ipAllocation_;
    bool isClosed_ = false;
};
