#include "cli/device.h"

#include "cli/failure.h"
#include "device/ipv4_address.h"
#include "session/udp_switch_link.h"

#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <algorithm>

namespace {
const QLatin1String serialHead("serial:");
const QLatin1String udpHead("udp:");
const QLatin1String moduleHead("module:");

bool hasRoad(const QString &text)
{
    return text.startsWith(serialHead) || text.startsWith(udpHead) || text.startsWith(moduleHead);
}

bool hasControlCharacter(const QString &text)
{
    return std::any_of(text.begin(), text.end(), [](QChar character) {
        return character.category() == QChar::Other_Control;
    });
}

[[noreturn]] void refuse(const QString &text, const QString &why)
{
    throw UsageError(QStringLiteral("\"%1\" is no device: %2").arg(text, why));
}

QHostAddress addressFrom(const QString &text)
{
    static const QRegularExpression dotted(QStringLiteral("^[0-9]{1,3}(\\.[0-9]{1,3}){3}$"));
    const std::optional<quint32> address = ipv4From(text);
    return address && dotted.match(text).hasMatch() ? QHostAddress(*address) : QHostAddress();
}

void readUdp(Device &device, const QString &text)
{
    const QStringList parts = text.split(QLatin1Char(':'));
    device.address = addressFrom(parts.first());
    if (device.address.isNull() || parts.size() > 2)
        refuse(device.text, QStringLiteral("give an IPv4 address, such as udp:192.0.2.7"));
    device.udpPort = switchUdpPort;
    if (parts.size() < 2)
        return;
    bool isNumber = false;
    device.udpPort = parts.at(1).toUShort(&isNumber);
    if (!isNumber || device.udpPort == 0)
        refuse(device.text, QStringLiteral("a port is a number from 1 to 65535"));
}

QString moduleFrom(const QString &text)
{
    static const QRegularExpression mac(QStringLiteral("^[0-9A-Fa-f]{2}([:-]?[0-9A-Fa-f]{2}){5}$"));
    if (!mac.match(text).hasMatch())
        return text;
    QString digits = text.toLower();
    return digits.remove(QLatin1Char(':')).remove(QLatin1Char('-'));
}

/// `line` without a comment and the blanks around it.
QString withoutComment(const QString &line)
{
    static const QRegularExpression comment(QStringLiteral("(^|\\s)#.*$"));
    return QString(line).remove(comment).trimmed();
}

Device deviceOfLine(const QString &line)
{
    if (hasRoad(line))
        return deviceFrom(line);
    static const QRegularExpression blanks(QStringLiteral("\\s+"));
    const QRegularExpressionMatch match = blanks.match(line);
    if (!match.hasMatch())
        refuse(line, QStringLiteral("give NAME DEVICE or DEVICE, where DEVICE begins with serial:, "
                                    "udp: or module:"));
    Device device = deviceFrom(line.mid(match.capturedEnd()));
    device.name = line.left(match.capturedStart());
    return device;
}

/// What is the same for two devices on one port, however they are written. Of modules only the
/// search tells.
QString portOf(const Device &device)
{
    switch (device.road) {
    case Device::Road::Serial: {
        const QString path = QFileInfo(device.port).canonicalFilePath();
        return serialHead + (path.isEmpty() ? device.port : path);
    }
    case Device::Road::Udp:
        return udpHead + device.address.toString() + QLatin1Char(':') +
               QString::number(device.udpPort);
    case Device::Road::Module:
        break;
    }
    return moduleHead + device.module;
}
} // namespace

Device deviceFrom(const QString &text)
{
    if (hasControlCharacter(text))
        refuse(text, QStringLiteral("it has a control character in it"));
    Device device;
    device.name = text;
    device.text = text;
    if (text.startsWith(serialHead)) {
        device.road = Device::Road::Serial;
        device.port = text.mid(serialHead.size());
        if (device.port.isEmpty())
            refuse(text, QStringLiteral("name a port, such as serial:/dev/ttyUSB0"));
    } else if (text.startsWith(udpHead)) {
        device.road = Device::Road::Udp;
        readUdp(device, text.mid(udpHead.size()));
    } else if (text.startsWith(moduleHead)) {
        device.road = Device::Road::Module;
        device.module = moduleFrom(text.mid(moduleHead.size()));
        if (device.module.isEmpty())
            refuse(text, QStringLiteral("give a module's name or MAC, such as module:DESK-7"));
    } else {
        refuse(text, QStringLiteral("it begins with serial:, udp: or module:"));
    }
    return device;
}

std::vector<Device> devicesFrom(const QByteArray &list, const QString &source)
{
    std::vector<Device> devices;
    QStringList mistakes;
    QHash<QString, int> lineOfName;
    int number = 0;
    const QStringList lines = QString::fromUtf8(list).split(QLatin1Char('\n'));
    for (const QString &whole : lines) {
        ++number;
        const auto note = [&](const QString &what) {
            mistakes.append(
                QStringLiteral("%1, line %2: %3").arg(source, QString::number(number), what));
        };
        const QString line = withoutComment(whole);
        if (line.isEmpty())
            continue;
        try {
            devices.push_back(deviceOfLine(line));
        } catch (const UsageError &error) {
            note(error.lines().first());
            continue;
        }
        const QString &name = devices.back().name;
        if (lineOfName.contains(name))
            note(QStringLiteral("the name \"%1\" stands in line %2 already")
                     .arg(name, QString::number(lineOfName.value(name))));
        else
            lineOfName.insert(name, number);
    }
    if (!mistakes.isEmpty())
        throw UsageError(mistakes);
    return devices;
}

void requireDistinct(const std::vector<Device> &devices)
{
    QHash<QString, QString> ports;
    QHash<QString, QString> names;
    QStringList mistakes;
    for (const Device &device : devices) {
        const QString port = portOf(device);
        if (ports.contains(port))
            mistakes.append(QStringLiteral("\"%1\" and \"%2\" are the same port; name each once")
                                .arg(ports.value(port), device.name));
        else if (names.contains(device.name))
            mistakes.append(QStringLiteral("the name \"%1\" is given twice").arg(device.name));
        ports.insert(port, device.name);
        names.insert(device.name, device.name);
    }
    if (!mistakes.isEmpty())
        throw UsageError(mistakes);
}
