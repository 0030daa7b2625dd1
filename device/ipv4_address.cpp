#include "device/ipv4_address.h"

#include <QStringList>

namespace {
constexpr qsizetype octetCount = 4;
}

std::optional<quint32> ipv4From(const QString &dotted)
{
    const QStringList parts = dotted.split(u'.');
    if (parts.size() != octetCount)
        return {};
    quint32 address = 0;
    for (const QString &part : parts) {
        bool isNumber = false;
        const int octet = part.toInt(&isNumber);
        if (!isNumber || octet < 0 || octet > 255)
            return {};
        address = address << 8 | static_cast<quint32>(octet);
    }
    return address;
}

QString ipv4Text(quint32 address)
{
    const auto octet = [address](int shift) { return QString::number(address >> shift & 0xff); };
    return QStringLiteral("%1.%2.%3.%4").arg(octet(24), octet(16), octet(8), octet(0));
}
