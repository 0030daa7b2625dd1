#include "cli/module_values.h"

#include "cli/failure.h"
#include "device/ipv4_address.h"
#include "device/usr_frame.h"

#include <algorithm>

namespace {
[[noreturn]] void refuse(const QString &line)
{
    throw UsageError(line);
}

/// As a module says it, so that what was wanted and what it has can be compared.
QString addressFrom(const QString &key, const QString &value)
{
    const std::optional<quint32> address = ipv4From(value);
    if (!address)
        refuse(QStringLiteral("%1 is an IPv4 address such as 192.168.1.7, not \"%2\"")
                   .arg(key, value));
    return ipv4Text(*address);
}

QString maskFrom(const QString &value)
{
    const QString text = addressFrom(QStringLiteral("mask"), value);
    const quint32 mask = ipv4From(text).value_or(0);
    const quint32 rest = ~mask;
    if (mask == 0 || (rest & (rest + 1)) != 0)
        refuse(
            QStringLiteral("mask is a subnet mask such as 255.255.255.0, not \"%1\"").arg(value));
    return text;
}

QString textFrom(const QString &key, const QString &value, int size)
{
    const bool isPrintable = std::all_of(value.cbegin(), value.cend(), [](QChar character) {
        return character.isPrint() || character.isSurrogate();
    });
    if (value.isEmpty() || value.toUtf8().size() > size || !isPrintable)
        refuse(QStringLiteral("%1 is 1 to %2 bytes of text").arg(key).arg(size));
    return value;
}

void read(ModuleValues &values, const QString &text)
{
    const qsizetype equals = text.indexOf(QLatin1Char('='));
    const QString key = text.left(equals);
    const QString value = equals < 0 ? QString() : text.mid(equals + 1);
    const auto take = [&](std::optional<QString> &taken, const QString &good) {
        if (taken)
            refuse(QStringLiteral("%1 is given twice").arg(key));
        taken = good;
    };
    if (text == QLatin1String("dhcp"))
        values.dhcp = true;
    else if (equals >= 0 && key == QLatin1String("ip"))
        take(values.ip, addressFrom(key, value));
    else if (equals >= 0 && key == QLatin1String("mask"))
        take(values.mask, maskFrom(value));
    else if (equals >= 0 && key == QLatin1String("gateway"))
        take(values.gateway, addressFrom(key, value));
    else if (equals >= 0 && key == QLatin1String("name"))
        take(values.name, textFrom(key, value, usr_frame::nameSize));
    else if (equals >= 0 && key == QLatin1String("username"))
        take(values.username, textFrom(key, value, usr_frame::credentialSize));
    else if (key == QLatin1String("password"))
        refuse(QStringLiteral("no password is taken from the command line; give --new-password"));
    else
        refuse(QStringLiteral("a module has no \"%1\"; there are dhcp, ip=, mask=, gateway=, name= "
                              "and username=")
                   .arg(text));
}
} // namespace

ModuleValues moduleValuesFrom(const std::vector<std::string> &texts)
{
    ModuleValues values;
    QStringList mistakes;
    for (const std::string &text : texts) {
        try {
            read(values, QString::fromStdString(text));
        } catch (const UsageError &error) {
            mistakes += error.lines();
        }
    }
    if (values.dhcp && (values.ip || values.mask || values.gateway))
        mistakes.append(QStringLiteral("dhcp and addresses exclude each other"));
    if (!mistakes.isEmpty())
        throw UsageError(mistakes);
    if (values.ip)
        values.dhcp = false;
    return values;
}

void requirePassword(const QString &password)
{
    textFrom(QStringLiteral("a module's password"), password, usr_frame::credentialSize);
}

ModuleSettings settingsFor(const ModuleValues &values, const usr_frame::ConfigurationReply &now,
                           const ModuleCredentials &credentials)
{
    ModuleSettings settings;
    settings.ipAllocation = now.ipAllocation;
    if (values.dhcp)
        settings.ipAllocation =
            *values.dhcp ? usr_frame::dhcpAllocation : usr_frame::staticAllocation;
    settings.ip = values.ip.value_or(now.staticIp);
    settings.subnetMask = values.mask.value_or(now.subnetMask);
    settings.gateway = values.gateway.value_or(now.gateway);
    settings.name = values.name;
    settings.newCredentials = {values.username.value_or(credentials.username),
                               values.password.value_or(credentials.password)};
    return settings;
}
