#pragma once

#include "simulator/serial_face.h"

#include <QSerialPort>

/// A serial line on a real port, 115200 8N1 without flow control: the switch's end of a null-modem
/// cable or of a pair of virtual ports. Bytes go as fast as the port takes them.
class RealPortFace : public SerialFace
{
    Q_OBJECT

public:
    /// `portName` as the system names it, such as "COM8" or "ttyUSB0", or a device path.
    RealPortFace(SimulatedSwitch &theSwitch, const QString &portName);

    void plug() override;
    void unplug() override;
    bool isPlugged() const override { return port_.isOpen(); }
    QString portName() const override { return port_.portName(); }

protected:
    void put(const QByteArray &bytes) override;
    qsizetype backlog() const override { return port_.bytesToWrite(); }

private:
    void onError(QSerialPort::SerialPortError error);

    QString name_;
    QSerialPort port_;
};
