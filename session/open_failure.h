#pragma once

#include <QSerialPort>
#include <QString>

/// Why `portName` could not be opened, in one line for the event log and the indicator's tool tip,
/// for example "ttyUSB0 could not be opened: Permission denied (the device belongs to the group
/// dialout)". The group is named only where permission is what is missing and the system knows it.
QString openFailureText(const QString &portName, QSerialPort::SerialPortError error,
                        const QString &errorText);
