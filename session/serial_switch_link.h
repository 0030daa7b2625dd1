#pragma once

#include "session/switch_link.h"

#include <QSerialPort>
#include <memory>

/// The switch's line as its maker set it: 115200 baud both ways, 8 data bits, no parity, one stop
/// bit, no flow control.
inline constexpr qint32 switchBaudRate = QSerialPort::Baud115200;

/// A serial port that a switch hangs on. Owns the port and its error state.
class SerialSwitchLink : public SwitchLink
{
    Q_OBJECT

public:
    /// `portName` as the system names it ("ttyUSB0", "COM3") or a device's path; `port` is made for
    /// it, an ordinary one when none is given.
    explicit SerialSwitchLink(const QString &portName, std::unique_ptr<QSerialPort> port = nullptr);
    ~SerialSwitchLink() override;

    Road road() const override { return Road::Serial; }
    /// Says opened() or failed() before it returns.
    void open() override;
    bool isOpen() const override { return serialPort->isOpen(); }
    void write(const QByteArray &bytes) override;
    void close() override;

private:
    void onError(QSerialPort::SerialPortError error);

    QString portName_; ///< as it was given, where the port itself keeps a shorter one
    std::unique_ptr<QSerialPort> serialPort;
};
