#pragma once

#include "device/command_frame.h"

#include <QByteArray>
#include <QObject>
#include <QSerialPort>
#include <QUdpSocket>
#include <chrono>
#include <functional>
#include <memory>
#include <string>

class ConnectionControls;
class QLabel;
class TerminalView;

/// What the network link needs of the world; tests bend it.
struct NetworkLinkSettings
{
    quint16 switchPort = 23;                     ///< the module's UDP port for switch traffic
    std::chrono::milliseconds connectWait{3000}; ///< longest wait for the connected state
};

/// How link objects are made; tests put failing ones in their place.
struct LinkFactories
{
    std::function<std::unique_ptr<QSerialPort>(const QString &portName)> serialPort;
    std::function<std::unique_ptr<QUdpSocket>()> udpSocket;
    std::function<QByteArray(std::string &command, const HexConversion &toHex)> frame;
    HexConversion toHexText;

    /// The real ones.
    static LinkFactories real();
};

/// The link to the switch: a serial port or a UDP socket, at most one of them at a time.
///
/// Owns both link objects, their open counters and the `sendEnabled` gate. Which of the two is
/// meant is asked from outside each time (`isTcpIpSelected`). Nothing here waits for an answer.
class DeviceLink : public QObject
{
    Q_OBJECT

public:
    /// The widgets that the link itself writes to.
    struct Widgets
    {
        QLabel *currentIp;
        QLabel *moduleName;
    };

    /// `isTcpIpSelected` answers true for the network and false for RS232.
    DeviceLink(ConnectionControls &controls, TerminalView &terminal, Widgets widgets,
               std::function<bool()> isTcpIpSelected, NetworkLinkSettings settings = {},
               LinkFactories factories = LinkFactories::real());
    ~DeviceLink() override;

    /// Opens `portName` (UTF-8, as the port selector shows it) at 115200 8N1 without flow control
    /// and closes whatever was open. A port that cannot be opened shows no notice: the reason goes
    /// to the event log and to the indicator's tool tip, and nothing can be sent.
    void openSerialLink(const std::string &portName);

    /// Opens the UDP link to `usrAddress` and closes whatever was open. Ends the process with
    /// status 1 when the socket is not connected in time.
    void openNetworkLink();

    void closeSerialLink();
    void closeNetworkLink();
    /// Closes the link of the chosen method, if there is one.
    void closeActiveLink();
    /// Closes the link object of the chosen method without deleting it; for the program's end.
    void closeForExit();

    /// Appends a carriage return to `command` and writes it to the link of the chosen method in one
    /// call. Lost silently when no link is open or `sendEnabled` is false.
    void sendCommand(std::string &command);
    /// The same for callers that keep their text.
    void forwardCommand(std::string command);

    /// `command` framed for the wire. A failure is reported and gives no bytes.
    QByteArray frame(std::string &command);

    /// Writes `bytes` to the link of the chosen method, past the gate. Without one: nothing.
    void writeDirectly(const QByteArray &bytes);

    bool isTcpIpSelected() const { return isTcpIpSelected_(); }
    bool hasSerialPort() const { return serialPort != nullptr; }
    bool hasUdpSocket() const { return udpSocket != nullptr; }
    int openSerialLinks() const { return serialOpenCount; }
    int openNetworkLinks() const { return socketOpenCount; }

    /// Counts openings and closings, so that a late timer can tell whether its link is still the
    /// one.
    int linkNumber() const { return linkNumber_; }

    bool isSendEnabled() const { return sendEnabled; }
    void setSendEnabled(bool enabled) { sendEnabled = enabled; }

    const QString &address() const { return usrAddress; }
    /// The module that the next openNetworkLink talks to: dotted IPv4 address and name.
    void setModule(const QString &address, const QString &name);
    /// The name alone; shown at once.
    void setModuleName(const QString &name);

    /// Everything that the serial port holds.
    QByteArray takeSerialBytes();
    /// The next pending datagram's payload into `datagram`; false when there is none.
    bool takeDatagram(QByteArray &datagram);

Q_SIGNALS:
    void serialReadyRead();
    void socketReadyRead();
    /// The open serial link broke and has been closed; shown and logged already.
    void linkBroken();

private:
    void watchForBreak();
    void onSerialError(QSerialPort::SerialPortError error);
    void reportOpenFailure();

    ConnectionControls &controls_;
    TerminalView &terminal_;
    Widgets widgets_;
    std::function<bool()> isTcpIpSelected_;
    NetworkLinkSettings settings_;
    LinkFactories factories_;

    std::unique_ptr<QSerialPort> serialPort;
    std::unique_ptr<QUdpSocket> udpSocket;
    QString portName_; ///< as the port selector shows it
    int serialOpenCount = 0;
    int socketOpenCount = 0;
    int linkNumber_ = 0;
    bool sendEnabled = true;
    QString usrAddress;
    QString moduleName_;
};
