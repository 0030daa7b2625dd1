#pragma once

#include <QByteArray>
#include <QString>

/// The frames of the network module's management protocol: four requests, three replies.
///
/// A frame is kept as a text of hexadecimal digits, two a byte, and becomes bytes just before it
/// is sent; offsets below are given in bytes, the text's positions are twice that.
///
/// Every request is FF, a length byte, a command byte, data and a checksum: the sum, modulo 256, of
/// all bytes after the leading FF. The length byte is the request's usual size less three. It is
/// deliberate that it stays when a field is shorter or longer than usual: modules expect it so.
namespace usr_frame {

inline constexpr int discoveryReplySize = 36;      ///< bytes
inline constexpr int configurationReplySize = 260; ///< bytes
inline constexpr int refusalSize = 4;              ///< bytes

inline constexpr int credentialSize = 6; ///< bytes of a user name or a password field
inline constexpr int nameSize = 16;      ///< bytes of a name field

/// What may be typed, in characters. Beyond ASCII a text can be within it and overflow its field.
inline constexpr qsizetype longestCredential = 6;
inline constexpr qsizetype longestName = 16;

/// How a module comes by its address: one byte, as hexadecimal text.
inline constexpr QLatin1String dhcpAllocation("00");
inline constexpr QLatin1String staticAllocation("80");

/// `bytes` as lower-case hexadecimal text, two digits a byte: FF 01 gives "ff01".
QString toHexText(const QByteArray &bytes);

/// The bytes that `hexText` (digits of either case, two a byte) stands for: "ff01" gives FF 01.
/// Throws std::invalid_argument on an odd length or on anything that is no hexadecimal digit.
QByteArray toBytes(const QString &hexText);

/// The UTF-8 bytes of `text` in a field of `size` bytes, as hexadecimal text, filled up with zero
/// bytes: "admin" in 6 gives "61646d696e00". A text that fills or overflows the field is not cut.
QString textField(const QString &text, int size);

/// A dotted IPv4 address as four bytes, last octet first: "192.168.1.7" gives "0701a8c0". Empty
/// unless `dotted` is four decimal numbers from 0 to 255.
QString ipv4Field(const QString &dotted);

/// Utility to modules, broadcast: who is there? Four bytes, always FF 01 01 02.
QString searchRequest();

/// Utility to module: prove these credentials and send the configuration. 22 bytes:
/// 0 FF 13 03 | 3 MAC (6) | 9 user name (6) | 15 password (6) | 21 checksum.
/// `mac` is 12 digits, or empty when none is known, which makes the frame shorter.
/// Example, MAC 9CA5251A2B3C, "admin", "admin":
/// FF 13 03 9C A5 25 1A 2B 3C 61 64 6D 69 6E 00 61 64 6D 69 6E 00 0F
QString loginRequest(const QString &mac, const QString &username, const QString &password);

/// Utility to module, right behind a setup request: take it. The login request with command 04.
/// Example, as above:
/// FF 13 04 9C A5 25 1A 2B 3C 61 64 6D 69 6E 00 61 64 6D 69 6E 00 10
QString commitRequest(const QString &mac, const QString &username, const QString &password);

/// What a setup request carries.
struct Setup
{
    QString mac; ///< 12 digits, or empty when none is known
    QString username;
    QString password;
    QString ipAllocation; ///< dhcpAllocation or staticAllocation
    QString ip;           ///< dotted, as are the next two
    QString gateway;
    QString subnetMask;
    QString nameHex; ///< the name field as hexadecimal text, usually 32 digits
    QString newUsername;
    QString newPassword;
};

/// Utility to module: write this configuration. 89 bytes:
/// 0 FF 56 05 | 3 MAC (6) | 9 user name (6) | 15 password (6) | 21 09 38 03 | 24 allocation (1) |
/// 25 20 19 50 00 02 | 30 IP (4) | 34 gateway (4) | 38 subnet mask (4) | 42 name (16) |
/// 58 new user name (6) | 64 new password (6) | 70 02 01 00 00 | 74 MAC (6) |
/// 80 10 0E 00 00 01 00 00 00 | 88 checksum. The addresses stand last octet first.
/// Example, MAC 9CA5251A2B3C, "admin"/"admin", static 192.168.1.7 behind 192.168.1.1 with mask
/// 255.255.255.0, name "Desk", credentials kept:
/// FF 56 05 9C A5 25 1A 2B 3C 61 64 6D 69 6E 00 61 64 6D 69 6E 00 09 38 03 80 20 19 50 00 02
/// 07 01 A8 C0 01 01 A8 C0 00 FF FF FF 44 65 73 6B 00 00 00 00 00 00 00 00 00 00 00 00
/// 61 64 6D 69 6E 00 61 64 6D 69 6E 00 02 01 00 00 9C A5 25 1A 2B 3C 10 0E 00 00 01 00 00 00 1C
QString setupRequest(const Setup &setup);

/// What a module says of itself when it is searched for.
struct DiscoveryReply
{
    QString ip;      ///< dotted
    QString mac;     ///< 12 digits, lower case
    QString nameHex; ///< the name's bytes before the first zero byte, at most 32 digits
    QString name;    ///< the same bytes read as UTF-8
};

/// Reads a module's answer to the search request. 36 bytes:
/// 5 IP (4, first octet first) | 9 MAC (6) | 19 name (16, ends at the first zero byte).
/// That the address stands in network order here, and the other way round everywhere else, is the
/// module's doing. Throws std::invalid_argument when the reply is too short.
/// Example, 192.168.1.7, MAC 9CA5251A2B3C, "Desk":
/// FF 24 01 00 00 C0 A8 01 07 9C A5 25 1A 2B 3C 00 00 00 00 44 65 73 6B 00 00 00 00 00 00 00 00
/// 00 00 00 00 00
DiscoveryReply readDiscoveryReply(const QString &hexText);

/// Whether `hexText` has the size of an answer to the search request.
bool isDiscoveryReply(const QString &hexText);

/// What a module has stored.
struct ConfigurationReply
{
    QString ipAllocation; ///< dhcpAllocation or staticAllocation
    QString staticIp;     ///< dotted, as are the next two
    QString gateway;
    QString subnetMask;
};

/// Reads a module's answer to a login request. 260 bytes:
/// 3 allocation (40 is DHCP, anything else static) | 9 IP (4) | 13 gateway (4) | 17 mask (4).
/// The addresses stand last octet first. Throws std::invalid_argument on any other size.
/// Example, the first 21 bytes of a static configuration:
/// FF 00 00 80 00 00 00 00 00 07 01 A8 C0 01 01 A8 C0 00 FF FF FF
ConfigurationReply readConfigurationReply(const QString &hexText);

/// Whether `hexText` has the size of a configuration.
bool isConfiguration(const QString &hexText);

/// Whether `hexText` is a module's answer to a login with wrong credentials: any four bytes.
/// Example: FF 01 03 04
bool isRefusal(const QString &hexText);

/// `request` (bytes) as a record may keep it: each byte of a password is 2A, and the checksum,
/// which would tell about it, is 00. Where a field is shorter or longer than usual, or a credential
/// beyond ASCII, so that passwords may stand elsewhere, everything behind the first 9 bytes is 2A
/// and the last is 00.
/// What carries no credentials stays as it is. Example, the login above: FF 13 03 9C A5 25 1A 2B 3C
/// 61 64 6D 69 6E 00 2A 2A 2A 2A 2A 2A 00
QByteArray requestForRecord(const QByteArray &request);

/// `reply` (bytes) as a record may keep it: of anything but an answer to a search (third byte 01)
/// only the first 21 bytes; what modules say behind the subnet mask is not known, so each byte
/// there is 2A.
QByteArray replyForRecord(const QByteArray &reply);

} // namespace usr_frame
