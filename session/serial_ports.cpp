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

QHash<QString, QString> serialPortNotes()
{
    QHash<QString, QString> notes;
    const QList<QSerialPortInfo> availablePorts = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo &port : availablePorts) {
        const QString note = serialPortNote(port.description(), port.manufacturer());
        if (!note.isEmpty())
            notes.insert(port.portName(), note);
    }
    return notes;
}

QString serialPortNote(const QString &description, const QString &manufacturer)
{
    QStringList words = {description.simplified(), manufacturer.simplified()};
    words.removeAll(QString());
    return words.join(QStringLiteral(", "));
}
