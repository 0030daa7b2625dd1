#include "simulator/real_port_face.h"

#include "simulator/serial_line.h"

#include <stdexcept>

RealPortFace::RealPortFace(SimulatedSwitch &theSwitch, const QString &portName)
    : SerialFace(theSwitch, ReplyPacer::unpaced), name_(portName)
{
    connect(&port_, &QSerialPort::readyRead, this, [this] { hear(port_.readAll()); });
    connect(&port_, &QSerialPort::errorOccurred, this, &RealPortFace::onError);
}

void RealPortFace::plug()
{
    if (port_.isOpen())
        port_.close();
    port_.setPortName(name_);
    port_.setBaudRate(lineBaudRate);
    port_.setDataBits(QSerialPort::Data8);
    port_.setParity(QSerialPort::NoParity);
    port_.setStopBits(QSerialPort::OneStop);
    port_.setFlowControl(QSerialPort::NoFlowControl);
    if (!port_.open(QIODevice::ReadWrite))
        throw std::runtime_error("cannot open the serial port " + name_.toStdString() + ": " +
                                 port_.errorString().toStdString());
}

void RealPortFace::unplug()
{
    forgetPending();
    if (port_.isOpen())
        port_.close();
}

void RealPortFace::put(const QByteArray &bytes)
{
    constexpr qint64 longestBacklog = qint64{32} * 1024 * 1024;
    if (port_.isOpen() && port_.bytesToWrite() + bytes.size() <= longestBacklog)
        port_.write(bytes);
}

void RealPortFace::onError(QSerialPort::SerialPortError error)
{
    if (error == QSerialPort::NoError || error == QSerialPort::TimeoutError || !port_.isOpen())
        return;
    const QString reason =
        QStringLiteral("the serial port %1 failed: %2").arg(name_, port_.errorString());
    unplug();
    Q_EMIT broken(reason);
}
