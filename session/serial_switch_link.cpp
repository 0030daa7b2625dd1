#include "session/serial_switch_link.h"

#include "session/open_failure.h"

#include <utility>

SerialSwitchLink::SerialSwitchLink(const QString &portName, std::unique_ptr<QSerialPort> port)
    : portName_(portName),
      serialPort(port ? std::move(port) : std::make_unique<QSerialPort>(portName))
{
}

SerialSwitchLink::~SerialSwitchLink()
{
    serialPort->disconnect(this); // its own closing is no broken link
}

void SerialSwitchLink::open()
{
    serialPort->setBaudRate(switchBaudRate, QSerialPort::AllDirections);
    serialPort->setDataBits(QSerialPort::Data8);
    serialPort->setParity(QSerialPort::NoParity);
    serialPort->setStopBits(QSerialPort::OneStop);
    serialPort->setFlowControl(QSerialPort::NoFlowControl);
    if (!serialPort->open(QIODevice::ReadWrite)) {
        Q_EMIT failed(openFailureText(portName_, serialPort->error(), serialPort->errorString()));
        return;
    }
    connect(serialPort.get(), &QSerialPort::errorOccurred, this, &SerialSwitchLink::onError);
    connect(serialPort.get(), &QSerialPort::readyRead, this,
            [this] { Q_EMIT received(serialPort->readAll()); });
    Q_EMIT opened();
}

void SerialSwitchLink::write(const QByteArray &bytes)
{
    if (serialPort->isOpen() && serialPort->write(bytes) == bytes.size())
        Q_EMIT written(bytes);
}

void SerialSwitchLink::close()
{
    serialPort->disconnect(this);
    if (!serialPort->isOpen())
        return;
    serialPort->flush(); // what was sent a moment ago is still the port's; closing would drop it
    serialPort->close();
}

void SerialSwitchLink::onError(QSerialPort::SerialPortError error)
{
    if (error == QSerialPort::NoError || error == QSerialPort::TimeoutError)
        return;
    const QString reason = serialPort->errorString();
    // Closed before anything else: a vanished pseudo-terminal repeats its error without end while
    // the port stays open.
    close();
    Q_EMIT broken(reason);
}
