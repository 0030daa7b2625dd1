#include "connection/connection_wizard.h"

#include "connection/connection_controls.h"
#include "connection/port_selector.h"
#include "connection/select_connection_method_dialog.h"
#include "connection/select_hardware_dialog.h"
#include "log/notices.h"
#include "session/device_link.h"
#include "session/initial_exchange.h"
#include "usr/change_setting_for_usr_dialog.h"
#include "usr/credentials_dialog.h"
#include "usr/usr_searcher.h"

#include <QSignalBlocker>
#include <utility>

namespace {
void setVisible(const QList<QWidget *> &widgets, bool visible)
{
    for (QWidget *widget : widgets)
        widget->setVisible(visible);
}
} // namespace

ConnectionWizard::ConnectionWizard(QWidget &window, Widgets widgets,
                                   Select_connection_method_Dialog &method, DeviceLink &link,
                                   ConnectionControls &controls, InitialExchange &exchange,
                                   Settings settings)
    : window_(window), widgets_(std::move(widgets)), connectionMethodDialog(method), link_(link),
      controls_(controls), exchange_(exchange), settings_(std::move(settings))
{
}

ConnectionWizard::~ConnectionWizard() = default;

void ConnectionWizard::run()
{
    connectionMethodDialog.exec();
    if (connectionMethodDialog.isClosed())
        return;
    if (connectionMethodDialog.isTcpIpSelected()) {
        connectByNetwork();
        return;
    }
    if (connectionMethodDialog.isRs232Selected())
        connectBySerialPort();
    exchange_.sendAll();
}

void ConnectionWizard::connectByNetwork()
{
    Select_hardware_Dialog hardware(&window_, settings_.network);
    hardware.exec();
    if (hardware.isCancelled() || !logIn(hardware.selectedAddress()))
        return;

    isTcpIpSelected_ = true;
    controls_.showDisconnected();
    link_.setModule(ipSettingsDialog->currentIP(), ipSettingsDialog->usrName());
    setVisible(widgets_.serialWidgets, false);
    setVisible(widgets_.networkWidgets, true);
    link_.openNetworkLink();
    exchange_.sendAll();
}

/// Asks for credentials until the module takes them, then shows its IP settings. False when one of
/// the dialogs was closed.
bool ConnectionWizard::logIn(const QString &address)
{
    QString ipAllocation;
    QString username;
    QString password;
    do {
        Credentials_Dialog login(&window_, address, settings_.network);
        login.exec();
        if (login.isClosed())
            return false;
        ipAllocation = login.ipAllocation();
        username = login.username();
        password = login.password();
    } while (ipAllocation == USR_searcher::failed);

    // Only a dialog that was gone through replaces the one of the module in use.
    auto settings =
        std::make_unique<IP_Settings_Dialog>(&window_, address, ipAllocation, username, password,
                                             settings_.network, settings_.ipSettings);
    settings->exec();
    if (settings->isClosed())
        return false;
    ipSettingsDialog = std::move(settings);
    return true;
}

void ConnectionWizard::connectBySerialPort()
{
    const QStringList names = settings_.portNames();
    if (names.isEmpty())
        warnAndExit(QStringLiteral("No available port"));
    {
        const QSignalBlocker quiet(widgets_.portSelector); // the port is opened below, once
        widgets_.portSelector->clear();
        widgets_.portSelector->addItems(names);
        widgets_.portSelector->setNotes(settings_.portNotes());
    }
    isTcpIpSelected_ = false;
    setVisible(widgets_.serialWidgets, true);
    setVisible(widgets_.networkWidgets, false);
    controls_.showDisconnected();
    link_.openSerialLink(widgets_.portSelector->currentText().toStdString());
}

void ConnectionWizard::editAdminSettings()
{
    if (!ipSettingsDialog)
        return;
    Change_setting_for_USR_Dialog admin(
        &window_, link_.address(), ipSettingsDialog->address(), ipSettingsDialog->subnetMask(),
        ipSettingsDialog->gateway(), ipSettingsDialog->ipAllocation(), ipSettingsDialog->username(),
        ipSettingsDialog->password(), ipSettingsDialog->usrName(), settings_.network);
    admin.exec();
    if (!admin.wasApplied())
        return;
    ipSettingsDialog->takeAdminSettings(admin.newName(), admin.newUsername(), admin.newPassword());
    link_.setModuleName(admin.newName());
}
