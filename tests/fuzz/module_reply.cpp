#include "device/usr_frame.h"
#include "property.h"
#include "simulator/module_frame.h"

#include <algorithm>
#include <stdexcept>

namespace {
template <typename Octets>
void take(Octets &octets, Choices &choices)
{
    for (std::uint8_t &octet : octets)
        octet = static_cast<std::uint8_t>(choices.byte());
}

QString hexDigits(const Mac &mac)
{
    QString digits;
    for (const std::uint8_t octet : mac)
        digits += QStringLiteral("%1").arg(octet, 2, 16, QLatin1Char('0'));
    return digits;
}

void requireStateIsRead(Choices &choices)
{
    ModuleState state;
    take(state.mac, choices);
    take(state.staticAddress, choices);
    take(state.leasedAddress, choices);
    take(state.subnetMask, choices);
    take(state.gateway, choices);
    state.dhcp = choices.flag();
    state.name = choices.rest().substr(0, 16);

    const QString found = usr_frame::toHexText(discoveryAnswer(state));
    require(usr_frame::isDiscoveryReply(found), "a module is found");
    const usr_frame::DiscoveryReply module = usr_frame::readDiscoveryReply(found);
    require(module.ip.toStdString() == toText(state.address()), "its address is read as it is",
            module.ip.toStdString());
    require(module.mac == hexDigits(state.mac), "its MAC is read as it is",
            module.mac.toStdString());
    const std::string name = state.name.substr(0, state.name.find('\0'));
    require(module.name == QString::fromStdString(name), "its name is read as it is", name);
    require(usr_frame::toBytes(module.nameHex).toStdString() == name,
            "its name's bytes are kept as they are", name);

    const QString answer = usr_frame::toHexText(configurationAnswer(state));
    const usr_frame::ConfigurationReply read = usr_frame::readConfigurationReply(answer);
    require(read.ipAllocation == (state.dhcp ? QStringLiteral("00") : QStringLiteral("80")),
            "its allocation is read as it is");
    require(read.staticIp.toStdString() == toText(state.staticAddress) &&
                read.gateway.toStdString() == toText(state.gateway) &&
                read.subnetMask.toStdString() == toText(state.subnetMask),
            "its addresses are read as they are");
    require(usr_frame::ipv4Field(read.staticIp) == answer.mid(18, 8),
            "an address that was read is written as it was", read.staticIp.toStdString());
    require(usr_frame::isRefusal(usr_frame::toHexText(refusalAnswer())), "a refusal is one");
}

bool isHex(const QString &text)
{
    return text.size() % 2 == 0 && std::all_of(text.cbegin(), text.cend(), [](QChar digit) {
               return QStringLiteral("0123456789abcdefABCDEF").contains(digit);
           });
}

/// A reply of any size and content: it is read, or refused by the one exception.
void requireRefusedOrRead(const QString &hexText)
{
    try {
        const usr_frame::DiscoveryReply module = usr_frame::readDiscoveryReply(hexText);
        require(module.mac.size() == 12, "a MAC has 12 digits", module.mac.toStdString());
        require(module.nameHex.size() <= 32, "a name has at most 16 bytes");
        require(usr_frame::ipv4Field(module.ip).size() == 8, "an address is one");
    } catch (const std::invalid_argument &) {
        require(!isHex(hexText) || hexText.size() < 70, "a whole reply is read");
    }
    try {
        const usr_frame::ConfigurationReply read = usr_frame::readConfigurationReply(hexText);
        require(read.ipAllocation == QLatin1String("00") ||
                    read.ipAllocation == QLatin1String("80"),
                "an allocation is one of two");
        require(usr_frame::ipv4Field(read.staticIp).size() == 8, "an address is one");
    } catch (const std::invalid_argument &) {
        require(!isHex(hexText) || !usr_frame::isConfiguration(hexText), "a whole reply is read");
    }
}
} // namespace

/// The first byte chooses between what a module says of a state, bytes and text of any kind.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Choices choices(data, size);
    switch (choices.number(0, 2)) {
    case 0:
        requireStateIsRead(choices);
        break;
    case 1: {
        const QByteArray bytes = QByteArray::fromStdString(choices.rest());
        const QString hexText = usr_frame::toHexText(bytes);
        require(usr_frame::toBytes(hexText) == bytes, "bytes come back out of their digits");
        require(usr_frame::replyForRecord(bytes).size() == bytes.size(),
                "a record has the size of its frame");
        requireRefusedOrRead(hexText);
        break;
    }
    default: {
        const QString text = QString::fromStdString(choices.rest());
        requireRefusedOrRead(text);
        const QString field = usr_frame::ipv4Field(text);
        require(field.isEmpty() || field.size() == 8, "an address field has four bytes");
        require(isHex(usr_frame::textField(text, 6)), "a field is made of digits");
    }
    }
    return 0;
}
