#include "connection/device_link.h"

#include "connection/connection_controls.h"
#include "log/event_log.h"
#include "log/notices.h"
#include "log/terminal_view.h"
#include "session/open_failure.h"

#include <QHostAddress>
#include <QLabel>
#include <QMessageBox>
#include <QNetworkDatagram>
#include <utility>

LinkFactories LinkFactories::real()
{
    return {
        [](const QString &portName) { return std::make_unique<QSerialPort>(portName); },
        [] { return std::make_unique<QUdpSocket>(); },
        frameCommand,
        ::toHexText,
    };
}

DeviceLink::DeviceLink(ConnectionControls &controls, TerminalView &terminal, Widgets widgets,
                       std::function<bool()> isTcpIpSelected, NetworkLinkSettings settings,
                       LinkFactories factories)
    : controls_(controls), terminal_(terminal), widgets_(widgets),
      isTcpIpSelected_(std::move(isTcpIpSelected)), settings_(settings),
      factories_(std::move(factories))
{
}

DeviceLink::~DeviceLink() = default;

void DeviceLink::openSerialLink(const std::string &portName)
{
    guarded("Connection to serial port error", [&] {
        if (serialOpenCount > 0) {
            --serialOpenCount;
            serialPort->disconnect(this); // a port that fails while it closes is no broken link
            serialPort->close();
            serialPort.reset();
        }
        closeNetworkLink();
        ++linkNumber_;
        portName_ = QString::fromStdString(portName);
        serialPort = factories_.serialPort(portName_);
        serialPort->setBaudRate(QSerialPort::Baud115200, QSerialPort::AllDirections);
        serialPort->setDataBits(QSerialPort::Data8);
        serialPort->setParity(QSerialPort::NoParity);
        serialPort->setStopBits(QSerialPort::OneStop);
        serialPort->setFlowControl(QSerialPort::NoFlowControl);
        if (serialPort->open(QIODevice::ReadWrite)) {
            ++serialOpenCount;
            watchForBreak();
        } else {
            reportOpenFailure();
        }
        connect(serialPort.get(), &QSerialPort::readyRead, this, &DeviceLink::serialReadyRead);
    });
}

void DeviceLink::openNetworkLink()
{
    guarded("Connection to socket error", [&] {
        terminal_.clear();
        if (socketOpenCount > 0) {
            terminal_.clear();
            udpSocket->close();
            udpSocket.reset();
            controls_.setDisconnected();
            --socketOpenCount;
        }
        closeSerialLink();
        ++linkNumber_;
        udpSocket = factories_.udpSocket();
        udpSocket->connectToHost(QHostAddress(usrAddress), settings_.switchPort,
                                 QIODevice::ReadWrite);
        widgets_.currentIp->setText(QStringLiteral("  IP: ") + usrAddress);
        setModuleName(moduleName_);
        connect(udpSocket.get(), &QUdpSocket::readyRead, this, &DeviceLink::socketReadyRead);
        if (!udpSocket->waitForConnected(static_cast<int>(settings_.connectWait.count())))
            warnAndExit(QStringLiteral("No connection"));
        ++socketOpenCount;
    });
}

void DeviceLink::closeSerialLink()
{
    guarded("Close serial error", [&] {
        if (!serialPort)
            return;
        controls_.disableDeviceControls();
        controls_.disableSettingsCombos();
        serialOpenCount = 0; // a port that failed to open never counted, so this may not go below
        ++linkNumber_;
        serialPort->disconnect(this);
        serialPort->close();
        serialPort.reset();
    });
}

void DeviceLink::closeNetworkLink()
{
    guarded("Close socket error", [&] {
        if (!udpSocket)
            return;
        controls_.disableDeviceControls();
        controls_.disableSettingsCombos();
        socketOpenCount = 0;
        ++linkNumber_;
        udpSocket->close();
        udpSocket.reset();
    });
}

void DeviceLink::closeActiveLink()
{
    if (isTcpIpSelected())
        closeNetworkLink();
    else
        closeSerialLink();
}

void DeviceLink::closeForExit()
{
    if (isTcpIpSelected() && udpSocket)
        guarded("Close socket error", [&] { udpSocket->close(); });
    else if (!isTcpIpSelected() && serialPort)
        guarded("Close serial error", [&] { serialPort->close(); });
}

void DeviceLink::sendCommand(std::string &command)
{
    if (serialOpenCount < 1 && socketOpenCount < 1)
        return;
    if (!sendEnabled)
        return;
    guarded("Write data error", [&] { writeDirectly(frame(command)); });
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
        guarded("Hex converting error", [&] { hex = factories_.toHexText(text); });
        return hex;
    };
    guarded("Bytes converting error", [&] { bytes = factories_.frame(command, toHex); });
    return bytes;
}

void DeviceLink::writeDirectly(const QByteArray &bytes)
{
    if (isTcpIpSelected()) {
        if (udpSocket)
            udpSocket->write(bytes);
    } else if (serialPort && serialPort->isOpen()) {
        serialPort->write(bytes);
    }
}

void DeviceLink::setModule(const QString &address, const QString &name)
{
    usrAddress = address;
    moduleName_ = name;
}

void DeviceLink::setModuleName(const QString &name)
{
    moduleName_ = name;
    widgets_.moduleName->setText(QStringLiteral("  Name: ") + name);
}

QByteArray DeviceLink::takeSerialBytes()
{
    return serialPort ? serialPort->readAll() : QByteArray();
}

bool DeviceLink::takeDatagram(QByteArray &datagram)
{
    if (!udpSocket || !udpSocket->hasPendingDatagrams())
        return false;
    const QNetworkDatagram received = udpSocket->receiveDatagram();
    datagram = received.data();
    return received.isValid();
}

void DeviceLink::watchForBreak()
{
    connect(serialPort.get(), &QSerialPort::errorOccurred, this, &DeviceLink::onSerialError);
}

void DeviceLink::onSerialError(QSerialPort::SerialPortError error)
{
    if (error == QSerialPort::NoError || error == QSerialPort::TimeoutError || !serialPort)
        return;
    const QString reason = serialPort->errorString();
    // Closed before anything else: a vanished pseudo-terminal repeats its error without end while
    // the port stays open. The port is in the middle of its own signal, so it is deleted later.
    QSerialPort *broken = serialPort.release();
    broken->disconnect(this);
    broken->close();
    broken->deleteLater();
    serialOpenCount = 0;
    ++linkNumber_;
    controls_.disableDeviceControls();
    controls_.disableSettingsCombos();
    controls_.setDisconnected();
    const QString message =
        QStringLiteral("The connection to %1 was lost: %2").arg(portName_, reason);
    controls_.explainDisconnection(message);
    writeLog(message.toStdString());
    auto *box = new QMessageBox;
    box->setAttribute(Qt::WA_DeleteOnClose);
    showNotice(message, QMessageBox::Warning, *box);
    Q_EMIT linkBroken();
}

void DeviceLink::reportOpenFailure()
{
    const QString reason =
        openFailureText(portName_, serialPort->error(), serialPort->errorString());
    writeLog(reason.toStdString());
    controls_.explainDisconnection(reason);
}
