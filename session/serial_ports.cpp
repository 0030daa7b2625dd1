#include "session/serial_ports.h"

#include <QDir>
#include <QSerialPortInfo>

QStringList serialPortNames()
{
    QStringList names = qEnvironmentVariable("PELORA_EXTRA_SERIAL_PORTS")
                            .split(QDir::listSeparator(), Qt::SkipEmptyParts);
    const QList<QSerialPortInfo> availablePorts = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo &port : availablePorts)
        names.append(port.portName());
    return names;
}
