#include "session/open_failure.h"

#include <QFileInfo>
#include <QSerialPortInfo>

QString openFailureText(const QString &portName, QSerialPort::SerialPortError error,
                        const QString &errorText)
{
    QString text = QStringLiteral("%1 could not be opened: %2").arg(portName, errorText);
    if (error != QSerialPort::PermissionError)
        return text;
    const QString device = portName.startsWith(QLatin1Char('/'))
                               ? portName
                               : QSerialPortInfo(portName).systemLocation();
    const QString group = QFileInfo(device).group();
    if (!group.isEmpty())
        text += QStringLiteral(" (the device belongs to the group %1)").arg(group);
    return text;
}
