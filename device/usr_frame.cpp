#include "device/usr_frame.h"

#include "device/ipv4_address.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace usr_frame {
namespace {
constexpr qsizetype digitsPerByte = 2;
constexpr int ipv4Size = 4;
constexpr int macSize = 6;

constexpr qsizetype loginSize = 22;
constexpr qsizetype setupSize = 89; // with a whole name field
constexpr qsizetype usernameAt = 9;
constexpr qsizetype passwordAt = 15;
constexpr qsizetype newPasswordBeforeEnd = setupSize - 64;
constexpr qsizetype runBeforeEnd = setupSize - 70;
constexpr qsizetype knownOfReply = 21;

QString digitsAt(const QString &hexText, int offset, int size)
{
    if (hexText.size() < digitsPerByte * (offset + size))
        throw std::invalid_argument("reply too short");
    return hexText.mid(digitsPerByte * offset, digitsPerByte * size);
}

QString dottedText(const QByteArray &octets)
{
    quint32 address = 0;
    for (const char octet : octets)
        address = address << 8 | static_cast<quint8>(octet);
    return ipv4Text(address);
}

QString ipv4At(const QString &hexText, int offset)
{
    QByteArray octets = toBytes(digitsAt(hexText, offset, ipv4Size));
    std::reverse(octets.begin(), octets.end());
    return dottedText(octets);
}

QString withChecksum(const QString &lengthCommandAndData)
{
    quint8 sum = 0;
    for (const char byte : toBytes(lengthCommandAndData))
        sum = static_cast<quint8>(sum + static_cast<quint8>(byte));
    return QStringLiteral("ff") + lengthCommandAndData +
           toHexText(QByteArray(1, static_cast<char>(sum)));
}

QString authenticatedRequest(const QString &lengthAndCommand, const QString &mac,
                             const QString &username, const QString &password)
{
    return withChecksum(lengthAndCommand + mac + textField(username, credentialSize) +
                        textField(password, credentialSize));
}

char commandOf(const QByteArray &frame)
{
    return frame.size() > 2 ? frame[2] : '\0';
}

void hide(QByteArray &frame, qsizetype offset, qsizetype size)
{
    for (qsizetype i = offset; i < std::min(offset + size, frame.size()); ++i)
        frame[i] = '*';
}

bool isAscii(const QByteArray &bytes)
{
    return std::all_of(bytes.cbegin(), bytes.cend(),
                       [](char byte) { return static_cast<quint8>(byte) < 0x80; });
}

// Of the at most six characters of a credential that overflows its field, one at least is beyond
// ASCII, and so is one of its first six bytes and one of its last six.

/// Whether the credentials of a login or commit stand where they usually do. Without the MAC, and
/// with texts that overflow their fields, one can have the usual size as well.
bool isUsualLogin(const QByteArray &request)
{
    return request.size() == loginSize &&
           isAscii(request.mid(usernameAt, qsizetype{2} * credentialSize));
}

/// The same of a setup, whose addresses may be missing or whose name may be short: its fixed runs
/// tell where the fields between them are.
bool isUsualSetup(const QByteArray &request)
{
    const qsizetype size = request.size();
    return size <= setupSize && size >= setupSize - nameSize &&
           request.mid(passwordAt + credentialSize, 3) == QByteArray("\x09\x38\x03", 3) &&
           request.mid(25, 5) == QByteArray("\x20\x19\x50\x00\x02", 5) &&
           request.mid(size - runBeforeEnd, 4) == QByteArray("\x02\x01\x00\x00", 4) &&
           isAscii(request.mid(usernameAt, qsizetype{2} * credentialSize)) &&
           isAscii(request.mid(size - newPasswordBeforeEnd, credentialSize));
}
} // namespace

QString toHexText(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex());
}

QByteArray toBytes(const QString &hexText)
{
    const auto isDigit = [](QChar c) {
        return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
    };
    if (hexText.size() % digitsPerByte != 0 ||
        !std::all_of(hexText.cbegin(), hexText.cend(), isDigit))
        throw std::invalid_argument("not hexadecimal text");
    return QByteArray::fromHex(hexText.toLatin1());
}

QString textField(const QString &text, int size)
{
    return toHexText(text.toUtf8()).leftJustified(digitsPerByte * size, u'0');
}

QString ipv4Field(const QString &dotted)
{
    const std::optional<quint32> address = ipv4From(dotted);
    if (!address)
        return {};
    QByteArray octets;
    for (int shift = 0; shift < 8 * ipv4Size; shift += 8)
        octets.append(static_cast<char>(*address >> shift & 0xff));
    return toHexText(octets);
}

QString searchRequest()
{
    return QStringLiteral("ff010102");
}

QString loginRequest(const QString &mac, const QString &username, const QString &password)
{
    return authenticatedRequest(QStringLiteral("1303"), mac, username, password);
}

QString commitRequest(const QString &mac, const QString &username, const QString &password)
{
    return authenticatedRequest(QStringLiteral("1304"), mac, username, password);
}

QString setupRequest(const Setup &setup)
{
    return withChecksum(
        QStringLiteral("5605") + setup.mac + textField(setup.username, credentialSize) +
        textField(setup.password, credentialSize) + QStringLiteral("093803") + setup.ipAllocation +
        QStringLiteral("2019500002") + ipv4Field(setup.ip) + ipv4Field(setup.gateway) +
        ipv4Field(setup.subnetMask) + setup.nameHex + textField(setup.newUsername, credentialSize) +
        textField(setup.newPassword, credentialSize) + QStringLiteral("02010000") + setup.mac +
        QStringLiteral("100e000001000000"));
}

DiscoveryReply readDiscoveryReply(const QString &hexText)
{
    const QByteArray nameField = toBytes(digitsAt(hexText, 19, nameSize));
    const qsizetype end = nameField.indexOf('\0');
    const QByteArray name = end < 0 ? nameField : nameField.left(end);
    return {dottedText(toBytes(digitsAt(hexText, 5, ipv4Size))), digitsAt(hexText, 9, macSize),
            toHexText(name), QString::fromUtf8(name)};
}

ConfigurationReply readConfigurationReply(const QString &hexText)
{
    if (!isConfiguration(hexText))
        throw std::invalid_argument("no configuration reply");
    const bool isDhcp = digitsAt(hexText, 3, 1) == QStringLiteral("40");
    return {isDhcp ? dhcpAllocation : staticAllocation, ipv4At(hexText, 9), ipv4At(hexText, 13),
            ipv4At(hexText, 17)};
}

bool isDiscoveryReply(const QString &hexText)
{
    return hexText.size() == digitsPerByte * discoveryReplySize;
}

bool isConfiguration(const QString &hexText)
{
    return hexText.size() == digitsPerByte * configurationReplySize;
}

bool isRefusal(const QString &hexText)
{
    return hexText.size() == digitsPerByte * refusalSize;
}

QByteArray requestForRecord(const QByteArray &request)
{
    const char command = commandOf(request);
    if (command != 3 && command != 4 && command != 5)
        return request;
    QByteArray shown = request;
    if (command == 5 ? isUsualSetup(request) : isUsualLogin(request)) {
        hide(shown, passwordAt, credentialSize);
        if (command == 5)
            hide(shown, shown.size() - newPasswordBeforeEnd, credentialSize);
    } else {
        hide(shown, usernameAt, shown.size());
    }
    if (shown.size() > usernameAt)
        shown.back() = '\0';
    return shown;
}

QByteArray replyForRecord(const QByteArray &reply)
{
    QByteArray shown = reply;
    if (commandOf(reply) != 1)
        hide(shown, knownOfReply, shown.size());
    return shown;
}

} // namespace usr_frame
