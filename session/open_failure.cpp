#include "session/open_failure.h"

#include <QFile>
#include <QFileInfo>
#include <QSerialPortInfo>
#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>
#endif

namespace {
QString deviceOf(const QString &portName)
{
    if (portName.startsWith(QLatin1Char('/')))
        return portName;
    const QString listed = QSerialPortInfo(portName).systemLocation();
    return listed.isEmpty() ? QStringLiteral("/dev/") + portName : listed;
}

/// Whether this program has the rights to read and write `device`.
bool hasRightsTo(const QString &device)
{
#ifdef Q_OS_UNIX
    // As the user that files are opened as, who need not be the one that started the program.
    return ::faccessat(AT_FDCWD, QFile::encodeName(device).constData(), R_OK | W_OK, AT_EACCESS) ==
           0;
#else
    Q_UNUSED(device)
    return true; // a Windows port belongs to nobody: it is refused when it is in use
#endif
}
} // namespace

QString openFailureText(const QString &portName, QSerialPort::SerialPortError error,
                        const QString &errorText)
{
    if (portName.isEmpty())
        return QStringLiteral("no port chosen; press Connection Settings");
    QString text = QStringLiteral("%1 could not be opened: %2");
    if (error != QSerialPort::PermissionError)
        return text.arg(portName, errorText);
    const QString device = deviceOf(portName);
    // The error covers both what is forbidden and what somebody else has opened.
    if (hasRightsTo(device))
        return text.arg(portName, QStringLiteral("in use by another program"));
    text = text.arg(portName, errorText);
    const QString group = QFileInfo(device).group();
    if (!group.isEmpty())
        text += QStringLiteral(" (the device belongs to the group %1)").arg(group);
    return text;
}
