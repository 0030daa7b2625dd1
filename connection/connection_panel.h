#pragma once

#include <QObject>
#include <chrono>
#include <deque>

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
    ConnectionPanel(QObject &window, DeviceLink &link, ConnectionControls &controls,
                    InitialExchange &exchange, QComboBox &portSelector, Timing timing);

    /// Opens the link of the chosen method and asks for a read-back.
    void switchOn();
    /// Closes the link of the chosen method.
    void switchOff();
    /// The user picked another port: opens it and sends the initial exchange.
    void openSelectedPort();
    /// The watchdog's end: ends the process with status 1 after a warning box if the network
    /// connection that it was started for is still there and has not answered.
    void judgeConnection();

Q_SIGNALS:
    /// What was received so far and what was read from it counts no more.
    void startingOver();
    void readBackWanted();

private:
    QObject &window_;
    DeviceLink &link_;
    ConnectionControls &controls_;
    InitialExchange &exchange_;
    QComboBox &portSelector_;
    Timing timing_;
    std::deque<int> watchedLinks_; ///< the link that each running watchdog was started for
};
