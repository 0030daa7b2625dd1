#pragma once

#include <QSerialPort>
#include <QString>

/// Why `portName` could not be opened, in one line for the event log and the indicator's tool tip:
/// - "no port chosen; press Connection Settings" without a name;
/// - "ttyUSB0 could not be opened: Permission denied (the device belongs to the group dialout)"
///   where the rights are missing; without the group where the system knows none;
/// - "ttyUSB0 could not be opened: in use by another program" where they are not, but
///   `error` is a PermissionError all the same;
/// - "ttyUSB0 could not be opened: No such file or directory", with `errorText`, otherwise.
QString openFailureText(const QString &portName, QSerialPort::SerialPortError error,
                        const QString &errorText);
