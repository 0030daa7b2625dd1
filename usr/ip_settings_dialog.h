#pragma once

#include "usr/usr_searcher.h"

#include <QDialog>
#include <QMessageBox>
#include <chrono>
#include <memory>

namespace Ui {
class IP_Settings_Dialog;
}

/// How long the IP dialog lets things happen; tests bend it.
struct IpSettingsTiming
{
    std::chrono::milliseconds beforeApply{50};   ///< lets the waiting notice paint itself
    std::chrono::milliseconds afterDhcp{6000};   ///< until a module has got its address by DHCP
    std::chrono::milliseconds afterStatic{3500}; ///< until a module has taken a static address
};

/// Shows and changes how one module gets its address. After a change it finds the module again,
/// by its MAC, since its address may be another. Hides on Connect; the program keeps it then as
/// its knowledge of the module that it is connected to.
class IP_Settings_Dialog : public QDialog
{
    Q_OBJECT

public:
    /// Reads the module at `currentIP` (dotted) with three logins, which takes seconds.
    /// `ipAllocation` is "80" for a static address; all else counts as DHCP.
    IP_Settings_Dialog(QWidget *parent, const QString &currentIP, const QString &ipAllocation,
                       const QString &username, const QString &password,
                       const UsrNetwork &network = {}, IpSettingsTiming timing = {});
    ~IP_Settings_Dialog() override;

    /// Whether the user closed the dialog, with its close button or with Escape.
    bool isClosed() const { return isClosed_; }
    /// Dotted; empty when the module was not found again after a change.
    const QString &currentIP() const { return currentIP_; }
    /// The module's name.
    const QString &usrName() const { return usrName_; }
    /// "00" for DHCP, "80" for static: what the module was last given, or had from the start. What
    /// the radio buttons show is only what Apply would send.
    const QString &ipAllocation() const { return ipAllocation_; }
    const QString &username() const { return username_; }
    const QString &password() const { return password_; }
    /// What the module has, as it was last read or else last applied, whatever the fields show:
    /// dotted, or "-1" where it could never be read.
    const QString &address() const { return known_.address; }
    const QString &subnetMask() const { return known_.subnetMask; }
    const QString &gateway() const { return known_.gateway; }

    /// The module's name and credentials have been changed to these.
    void takeAdminSettings(const QString &name, const QString &username, const QString &password);

    void reject() override;

private Q_SLOTS:
    void on_pushButton_Apply_IP_clicked();
    void apply_IP();
    void on_radioButton_DHCP_clicked();
    void on_pushButton_Connect_clicked();
    void on_radioButton_Static_clicked();
    void search_USR_in_network_after_changing();

protected Q_SLOTS:
    void closeEvent(QCloseEvent *event) override;

private Q_SLOTS:
    void showMessage_for_waiting();

private:
    struct Addresses
    {
        QString address;
        QString subnetMask;
        QString gateway;
    };

    void showLayout(bool isStatic);
    void fillFields();
    Addresses enteredAddresses() const;
    void setButtonsEnabled(bool isEnabled);
    void settingsWereEdited();
    void endApply(const QString &text, QMessageBox::Icon icon);
    void markClosed();

    std::unique_ptr<Ui::IP_Settings_Dialog> ui_;
    QMessageBox *waitingNotice_; ///< a child of the dialog, so that it can be closed over it
    QString currentIP_;
    QString ipAllocation_;
    Addresses known_;
    QString username_;
    QString password_;
    QString usrName_;
    UsrNetwork network_;
    IpSettingsTiming timing_;
    USR_searcher searcher_;
    bool isClosed_ = false;
};
