#pragma once

#include <QObject>
#include <chrono>
#include <functional>

class ConnectionControls;
class DeviceLink;
class InitialExchange;
class QComboBox;

/// The window's On and Off buttons, its port selector and the watchdog behind On.
class ConnectionPanel : public QObject
{
    Q_OBJECT

public:
    struct Timing
    {
        std::chrono::milliseconds handshakeWatchdog{
            7000}; ///< longest wait for the network's answer
    };

    /// `window` has the slot is_not_Connected_Message(), which the watchdog's timer calls by name.
    /// `isTcpIpSelected` answers true for the network and false for RS232.
    ConnectionPanel(QObject &window, DeviceLink &link, ConnectionControls &controls,
                    InitialExchange &exchange, QComboBox &portSelector,
                    std::function<bool()> isTcpIpSelected, Timing timing);

    /// Opens the link of the chosen method and asks for a read-back.
    void switchOn();
    /// Ends the connection.
    void switchOff();
    /// The user picked another port: opens it and sends the initial exchange.
    void openSelectedPort();
    /// The watchdog's end: ends the process with status 1 after a warning box if the connection has
    /// not answered. Without a connection: nothing.
    void judgeConnection();

Q_SIGNALS:
    void readBackWanted();

private:
    QObject &window_;
    DeviceLink &link_;
    ConnectionControls &controls_;
    InitialExchange &exchange_;
    QComboBox &portSelector_;
    std::function<bool()> isTcpIpSelected_;
    Timing timing_;
};
