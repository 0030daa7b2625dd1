#pragma once

#include "session/serial_ports.h"
#include "usr/ip_settings_dialog.h"
#include "usr/usr_searcher.h"

#include <QList>
#include <QObject>
#include <functional>
#include <memory>

class ConnectionControls;
class DeviceLink;
class InitialExchange;
class PortSelector;
class QWidget;
class Select_connection_method_Dialog;

/// Walks the user from the choice of how the switch is reached to an open link and a first
/// read-back. A run either stops quietly (a dialog was closed; the link stays as it was), ends the
/// process with status 1 (no serial port, no module), or ends with an open link.
///
/// Owns the IP settings dialog of the module in use, from one run to the next.
class ConnectionWizard : public QObject
{
    Q_OBJECT

public:
    struct Widgets
    {
        PortSelector *portSelector;
        QList<QWidget *> serialWidgets;  ///< shown for RS232 only
        QList<QWidget *> networkWidgets; ///< shown for TCP/IP only
    };

    struct Settings
    {
        UsrNetwork network;
        IpSettingsTiming ipSettings;
        std::function<QStringList()> portNames = serialPortNames;
        std::function<QHash<QString, QString>()> portNotes = serialPortNotes;
    };

    ConnectionWizard(QWidget &window, Widgets widgets, Select_connection_method_Dialog &method,
                     DeviceLink &link, ConnectionControls &controls, InitialExchange &exchange,
                     Settings settings);
    ~ConnectionWizard() override;

    void run();

    /// "Admin Settings": changes the module's name and credentials. Without a module: nothing.
    void editAdminSettings();

    /// Whether the last run that was gone through chose the network.
    bool isTcpIpSelected() const { return isTcpIpSelected_; }

private:
    void connectByNetwork();
    void connectBySerialPort();
    bool logIn(const QString &address);

    QWidget &window_;
    Widgets widgets_;
    Select_connection_method_Dialog &connectionMethodDialog;
    DeviceLink &link_;
    ConnectionControls &controls_;
    InitialExchange &exchange_;
    Settings settings_;
    bool isTcpIpSelected_ = false;
    std::unique_ptr<IP_Settings_Dialog> ipSettingsDialog;
};
