#include "session/device_link.h"

#include "device/command_frame.h"
#include "session/serial_switch_link.h"

#include <QHostAddress>
#include <utility>

namespace {
const char *closeFailure(const Connection &connection)
{
    return connection.road() == SwitchLink::Road::Network ? "Close socket error"
                                                          : "Close serial error";
}
} // namespace

DeviceLink::DeviceLink(DeviceLinkSettings settings, LinkFactories factories)
    : settings_(settings), factories_(std::move(factories))
{
}

DeviceLink::~DeviceLink() = default;

template <typename Work>
void DeviceLink::attempt(const char *message, Work &&work)
{
    try {
        work();
    } catch (...) {
        Q_EMIT failed(message);
    }
}

void DeviceLink::openSerialLink(const std::string &portName)
{
    attempt("Connection to serial port error", [&] {
        closeActiveLink();
        const QString name = QString::fromStdString(portName);
        auto link = std::make_unique<SerialSwitchLink>(name, factories_.serialPort(name));
        begin(std::move(link), name);
        connection_->link()->open();
    });
}

void DeviceLink::openNetworkLink()
{
    attempt("Connection to socket error", [&] {
        Q_EMIT openingNetworkLink();
        closeActiveLink();
        auto link = std::make_unique<UdpSwitchLink>(QHostAddress(usrAddress), settings_.switchPort,
                                                    factories_.udpSocket());
        UdpSwitchLink &opening = *link;
        begin(std::move(link), usrAddress);
        Q_EMIT moduleChanged(usrAddress, moduleName_);
        opening.open();
        if (!opening.waitForOpened(settings_.connectWait))
            Q_EMIT notConnectedInTime();
    });
}

/// From here on everything belongs to the new connection. `name` is what people call its link.
void DeviceLink::begin(std::unique_ptr<SwitchLink> link, const QString &name)
{
    const SwitchLink::Road road = link->road();
    SwitchLink *const made = link.get();
    connection_ = std::make_unique<Connection>(std::move(link));
    connect(connection_.get(), &Connection::unanswered, this, &DeviceLink::unanswered);
    connect(made, &SwitchLink::opened, this, &DeviceLink::opened);
    connect(made, &SwitchLink::failed, this, &DeviceLink::openFailed);
    connect(made, &SwitchLink::written, this,
            [this, name, road](const QByteArray &bytes) { Q_EMIT written(name, road, bytes); });
    connect(made, &SwitchLink::received, this,
            [this, name, road](const QByteArray &bytes) { Q_EMIT received(name, road, bytes); });
    connect(made, &SwitchLink::received, this,
            road == SwitchLink::Road::Serial ? &DeviceLink::serialReadyRead
                                             : &DeviceLink::socketReadyRead);
    connect(made, &SwitchLink::broken, this, [this, name](const QString &reason) {
        end();
        Q_EMIT broken(name, reason);
    });
    Q_EMIT began();
}

void DeviceLink::end()
{
    if (!connection_->road())
        return;
    Connection *const former = std::exchange(connection_, std::make_unique<Connection>()).release();
    // Somebody may be in the middle of one of its signals, so it is deleted when the event loop has
    // its turn, or with this object where it never has.
    former->setParent(this);
    former->deleteLater();
    attempt(closeFailure(*former), [former] { former->end(); });
    Q_EMIT ended();
}

void DeviceLink::closeSerialLink()
{
    if (hasSerialPort())
        end();
}

void DeviceLink::closeNetworkLink()
{
    if (hasUdpSocket())
        end();
}

void DeviceLink::closeActiveLink()
{
    closeSerialLink();
    closeNetworkLink();
}

void DeviceLink::closeForExit()
{
    attempt(closeFailure(*connection_), [this] { connection_->close(); });
}

void DeviceLink::sendCommand(std::string &command)
{
    if (!connection_->isOpen() || !sendEnabled)
        return;
    attempt("Write data error", [&] { writeDirectly(frame(command)); });
}

void DeviceLink::forwardCommand(std::string command)
{
    sendCommand(command);
}

QByteArray DeviceLink::frame(std::string &command)
{
    QByteArray bytes;
    const auto toHex = [this](const std::string &text) {
        std::string hex;
        attempt("Hex converting error", [&] { hex = toHexText(text); });
        return hex;
    };
    attempt("Bytes converting error", [&] { bytes = frameCommand(command, toHex); });
    return bytes;
}

void DeviceLink::writeDirectly(const QByteArray &bytes)
{
    if (connection_->isOpen())
        connection_->link()->write(bytes);
}

void DeviceLink::setModule(const QString &address, const QString &name)
{
    usrAddress = address;
    moduleName_ = name;
}

void DeviceLink::setModuleName(const QString &name)
{
    moduleName_ = name;
    Q_EMIT moduleChanged(usrAddress, moduleName_);
}
