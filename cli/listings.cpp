#include "cli/listings.h"

#include "session/serial_ports.h"

#include <QHash>
#include <QSerialPortInfo>

namespace {
QJsonValue numberOrNull(bool isKnown, quint16 number)
{
    return isKnown ? QJsonValue(number) : QJsonValue();
}

QString hexOrNothing(bool isKnown, quint16 number)
{
    return isKnown ? QStringLiteral("%1").arg(number, 4, 16, QLatin1Char('0')) : QString();
}
} // namespace

void printPorts(Printer &printer)
{
    QHash<QString, QSerialPortInfo> known;
    const QList<QSerialPortInfo> infos = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo &info : infos)
        known.insert(info.portName(), info);
    QList<QStringList> rows;
    QList<QJsonObject> objects;
    const QStringList names = serialPortNames();
    for (const QString &name : names) {
        const QSerialPortInfo info = known.value(name);
        const QString location = info.isNull() ? name : info.systemLocation();
        rows.append({name, location, info.description(), info.manufacturer(), info.serialNumber(),
                     hexOrNothing(info.hasVendorIdentifier(), info.vendorIdentifier()),
                     hexOrNothing(info.hasProductIdentifier(), info.productIdentifier())});
        objects.append({{QStringLiteral("name"), name},
                        {QStringLiteral("location"), location},
                        {QStringLiteral("description"), info.description()},
                        {QStringLiteral("manufacturer"), info.manufacturer()},
                        {QStringLiteral("serial_number"), info.serialNumber()},
                        {QStringLiteral("vendor"),
                         numberOrNull(info.hasVendorIdentifier(), info.vendorIdentifier())},
                        {QStringLiteral("product"),
                         numberOrNull(info.hasProductIdentifier(), info.productIdentifier())}});
    }
    if (rows.isEmpty())
        printer.complain(QStringLiteral("this machine has no serial port; plug the cable in"));
    else
        printer.printTable({QStringLiteral("NAME"), QStringLiteral("LOCATION"),
                            QStringLiteral("DESCRIPTION"), QStringLiteral("MANUFACTURER"),
                            QStringLiteral("SERIAL"), QStringLiteral("VENDOR"),
                            QStringLiteral("PRODUCT")},
                           rows, objects);
}

void printModules(Printer &printer, const ModuleSearchResult &found)
{
    QList<QStringList> rows;
    QList<QJsonObject> objects;
    for (const ModuleOnLan &module : found.modules) {
        const usr_frame::DiscoveryReply &reply = module.reply;
        rows.append({reply.ip, reply.mac.toUpper(), reply.name});
        objects.append({{QStringLiteral("address"), reply.ip},
                        {QStringLiteral("mac"), reply.mac.toUpper()},
                        {QStringLiteral("name"), reply.name}});
    }
    printer.printTable({QStringLiteral("ADDRESS"), QStringLiteral("MAC"), QStringLiteral("NAME")},
                       rows, objects);
}

QString emptySearch(const ModuleSearchResult &found)
{
    if (found.isPortTaken)
        return QStringLiteral("no search for modules: UDP port 4242 cannot be had (%1); close the "
                              "program that has it")
            .arg(found.problem);
    if (!found.problem.isEmpty())
        return QStringLiteral("no search for modules: it cannot be sent (%1); check that this "
                              "machine is on the network")
            .arg(found.problem);
    const QString odd =
        found.ignored == 0
            ? QString()
            : QStringLiteral(" (%1 answers that no module gives)").arg(found.ignored);
    return QStringLiteral("no module answered%1; check that it is on, on this LAN, and that the "
                          "firewall lets UDP port 4242 in")
        .arg(odd);
}
