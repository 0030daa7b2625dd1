#pragma once

#include "session/connection.h"
#include "session/udp_switch_link.h"

#include <QByteArray>
#include <QObject>
#include <QSerialPort>
#include <QUdpSocket>
#include <chrono>
#include <functional>
#include <memory>
#include <string>

/// What a link needs of the world; tests bend it.
struct DeviceLinkSettings
{
    quint16 switchPort = switchUdpPort;          ///< the module's UDP port for switch traffic
    std::chrono::milliseconds connectWait{3000}; ///< longest wait for the connected state
    std::chrono::milliseconds noAnswer{3000};    ///< until a silent switch is spoken of
};

/// How link objects are made; tests put failing ones in their place.
struct LinkFactories
{
    std::function<std::unique_ptr<QSerialPort>(const QString &portName)> serialPort =
        [](const QString &portName) { return std::make_unique<QSerialPort>(portName); };
    std::function<std::unique_ptr<QUdpSocket>()> udpSocket = [] {
        return std::make_unique<QUdpSocket>();
    };
};

/// The way to the switch: one connection at a time, over a serial port or over UDP.
///
/// It only transports: it opens and closes, frames and writes, and says what happened. Opening
/// either link ends the connection that was there. Nothing here waits for an answer, and the only
/// wait of all is the one for the network link's connected state.
class DeviceLink : public QObject
{
    Q_OBJECT

public:
    explicit DeviceLink(DeviceLinkSettings settings = {}, LinkFactories factories = {});
    ~DeviceLink() override;

    /// The connection of the moment; one that ended is replaced by one without a link. What runs an
    /// event loop of its own may come back to another one.
    Connection &connection() const { return *connection_; }

    /// Begins a connection over `portName` (UTF-8, as the port selector shows it) at 115200 8N1
    /// without flow control. A port that cannot be opened leaves a connection that sends nothing.
    void openSerialLink(const std::string &portName);
    /// Begins a connection to the module of setModule over UDP and waits for its connected state.
    void openNetworkLink();

    void closeSerialLink();
    void closeNetworkLink();
    /// Ends the connection, whichever road it has.
    void closeActiveLink();
    /// Closes the link and keeps its object; for the program's end.
    void closeForExit();

    /// Appends a carriage return to `command` and writes it in one call. Lost silently when no link
    /// is open or `sendEnabled` is false.
    void sendCommand(std::string &command);
    /// The same for callers that keep their text.
    void forwardCommand(std::string command);
    /// `command` framed for the wire. A failure gives no bytes.
    QByteArray frame(std::string &command);
    /// Writes `bytes` past the gate. Without an open link: nothing.
    void writeDirectly(const QByteArray &bytes);

    bool hasSerialPort() const { return connection_->road() == SwitchLink::Road::Serial; }
    bool hasUdpSocket() const { return connection_->road() == SwitchLink::Road::Network; }
    /// Open links of each kind, 0 or 1.
    int serialOpenCount() const { return hasSerialPort() && connection_->isOpen() ? 1 : 0; }
    int socketOpenCount() const { return hasUdpSocket() && connection_->isOpen() ? 1 : 0; }

    void setSendEnabled(bool enabled) { sendEnabled = enabled; }

    /// How long a switch may stay silent before unanswered() is said.
    std::chrono::milliseconds noAnswerWait() const { return settings_.noAnswer; }

    const QString &address() const { return usrAddress; }
    /// The module that the next openNetworkLink talks to: dotted IPv4 address and name.
    void setModule(const QString &address, const QString &name);
    /// The name alone; the module in use has been renamed.
    void setModuleName(const QString &name);

Q_SIGNALS:
    /// A network link is about to be opened; what was shown of another one is out of date.
    void openingNetworkLink();
    /// A new connection has begun; its link is about to be opened.
    void began();
    /// The connection's link is open.
    void opened();
    /// The connection's link could not be opened; `reason` is a sentence.
    void openFailed(const QString &reason);
    /// The network link was not connected in time.
    void notConnectedInTime();
    /// The open link broke; the connection has ended. `name` is the port's.
    void broken(const QString &name, const QString &reason);
    /// The connection ended, for whatever reason, and there is none now.
    void ended();
    /// The switch has not answered the last read-back in time.
    void unanswered();
    /// Address and name of the module in use.
    void moduleChanged(const QString &usrAddress, const QString &name);
    /// Something has arrived for the connection to take.
    void serialReadyRead();
    void socketReadyRead();
    /// Everything that passes on an open link, for a record; `name` is the port's or the module's
    /// address. What has arrived is told before anybody may take it.
    void written(const QString &name, SwitchLink::Road road, const QByteArray &bytes);
    void received(const QString &name, SwitchLink::Road road, const QByteArray &bytes);
    /// An operation threw; `message` is what the log and the user are told.
    void failed(const char *message);

private:
    template <typename Work>
    void attempt(const char *message, Work &&work);
    void begin(std::unique_ptr<SwitchLink> link, const QString &name);
    void end();

    DeviceLinkSettings settings_;
    LinkFactories factories_;
    std::unique_ptr<Connection> connection_ = std::make_unique<Connection>();
    bool sendEnabled = true;
    QString usrAddress;
    QString moduleName_;
};
