#include "simulator/module_frame.h"

#include <algorithm>
#include <numeric>

namespace {

using Kind = ModuleRequest::Kind;

constexpr qsizetype loginSize = 22;
constexpr qsizetype longestSetup = 89;
constexpr qsizetype longestName = 16;
constexpr qsizetype credentialSize = 6;

std::uint8_t byteAt(const QByteArray &bytes, qsizetype at)
{
    return static_cast<std::uint8_t>(bytes.at(at));
}

std::string hexText(const QByteArray &bytes)
{
    return bytes.toHex(' ').toUpper().toStdString();
}

std::string hexText(std::uint8_t byte)
{
    return hexText(QByteArray(1, static_cast<char>(byte)));
}

/// Sum of all bytes behind the leading FF and before the checksum.
std::uint8_t checksumOf(const QByteArray &frame)
{
    return std::accumulate(
        frame.begin() + 1, frame.end() - 1, std::uint8_t{0}, [](std::uint8_t sum, char byte) {
            return static_cast<std::uint8_t>(sum + static_cast<unsigned char>(byte));
        });
}

template <std::size_t size>
std::array<std::uint8_t, size> octetsAt(const QByteArray &frame, qsizetype at)
{
    std::array<std::uint8_t, size> octets{};
    for (std::size_t i = 0; i < size; ++i)
        octets[i] = byteAt(frame, at + static_cast<qsizetype>(i));
    return octets;
}

/// An address whose last octet comes first.
Ipv4 reversedAddressAt(const QByteArray &frame, qsizetype at)
{
    Ipv4 address = octetsAt<4>(frame, at);
    std::reverse(address.begin(), address.end());
    return address;
}

/// A credential field without the zeros that fill it up.
std::string credentialAt(const QByteArray &frame, qsizetype at)
{
    QByteArray field = frame.mid(at, credentialSize);
    while (field.endsWith('\0'))
        field.chop(1);
    return field.toStdString();
}

void requireRun(const QByteArray &frame, qsizetype at, const QByteArray &expected)
{
    const QByteArray found = frame.mid(at, expected.size());
    if (found != expected)
        throw Rejection{"offset " + std::to_string(at) + " holds " + hexText(found) + ", not " +
                        hexText(expected)};
}

struct Shape
{
    Kind kind;
    std::uint8_t length;
    qsizetype smallest;
    qsizetype largest;
};

Shape shapeOf(std::uint8_t command)
{
    switch (command) {
    case 0x01:
        return {Kind::Search, 0x01, 4, 4};
    case 0x03:
        return {Kind::Login, 0x13, loginSize, loginSize};
    case 0x04:
        return {Kind::Commit, 0x13, loginSize, loginSize};
    case 0x05:
        return {Kind::Setup, 0x56, longestSetup - longestName, longestSetup};
    default:
        throw Rejection{"there is no command " + hexText(command)};
    }
}

bool isMask(const Ipv4 &mask)
{
    std::uint32_t bits = 0;
    for (const std::uint8_t octet : mask)
        bits = bits << 8 | octet;
    const std::uint32_t inverted = ~bits;
    return (inverted & (inverted + 1)) == 0;
}

void requireSensible(const ModuleSetup &setup)
{
    if (!isMask(setup.subnetMask))
        throw Rejection{"the subnet mask " + toText(setup.subnetMask) + " is none"};
    if (setup.dhcp)
        return;
    if (setup.subnetMask == Ipv4{})
        throw Rejection{"a static address needs a subnet mask"};
    if (setup.address.front() == 0 || setup.address.front() >= 224)
        throw Rejection{"the static address " + toText(setup.address) + " is none"};
}

ModuleSetup setupFrom(const QByteArray &frame)
{
    requireRun(frame, 21, QByteArray("\x09\x38\x03", 3));
    const std::uint8_t allocation = byteAt(frame, 24);
    if (allocation != 0x00 && allocation != 0x80)
        throw Rejection{"the allocation is " + hexText(allocation) + ", neither 00 nor 80"};
    requireRun(frame, 25, QByteArray("\x20\x19\x50\x00\x02", 5));
    const qsizetype nameSize = frame.size() - (longestSetup - longestName);
    const qsizetype behindName = 42 + nameSize;
    requireRun(frame, behindName + 12, QByteArray("\x02\x01\x00\x00", 4));
    requireRun(frame, behindName + 16, frame.mid(3, 6));
    requireRun(frame, behindName + 22, QByteArray("\x10\x0E\x00\x00\x01\x00\x00\x00", 8));

    const std::string nameField = frame.mid(42, nameSize).toStdString();
    const ModuleSetup setup{
        .dhcp = allocation == 0x00,
        .address = reversedAddressAt(frame, 30),
        .gateway = reversedAddressAt(frame, 34),
        .subnetMask = reversedAddressAt(frame, 38),
        .name = nameField.substr(0, nameField.find('\0')),
        .username = credentialAt(frame, behindName),
        .password = credentialAt(frame, behindName + credentialSize),
    };
    requireSensible(setup);
    return setup;
}

ModuleRequest requestFrom(const QByteArray &frame)
{
    if (frame.size() < 4)
        throw Rejection{"too short for a frame"};
    if (byteAt(frame, 0) != 0xff)
        throw Rejection{"starts with " + hexText(byteAt(frame, 0)) + ", not FF"};
    const Shape shape = shapeOf(byteAt(frame, 2));
    if (byteAt(frame, 1) != shape.length)
        throw Rejection{"the length byte is " + hexText(byteAt(frame, 1)) + ", not " +
                        hexText(shape.length)};
    if (frame.size() < shape.smallest || frame.size() > shape.largest)
        throw Rejection{"has " + std::to_string(frame.size()) + " bytes, not " +
                        std::to_string(shape.largest)};
    const std::uint8_t checksum = checksumOf(frame);
    if (byteAt(frame, frame.size() - 1) != checksum)
        throw Rejection{"the checksum is " + hexText(byteAt(frame, frame.size() - 1)) + ", not " +
                        hexText(checksum)};

    ModuleRequest request{.kind = shape.kind};
    if (shape.kind == Kind::Search)
        return request;
    request.mac = octetsAt<6>(frame, 3);
    request.username = credentialAt(frame, 9);
    request.password = credentialAt(frame, 15);
    if (shape.kind == Kind::Setup)
        request.setup = setupFrom(frame);
    return request;
}

/// A frame of `size` zeros with its head and, once closed, its checksum.
QByteArray openFrame(qsizetype size, char command)
{
    QByteArray frame(size, '\0');
    frame[0] = '\xff';
    // The length rule of the requests; 260 bytes do not fit into one, which nobody minds.
    frame[1] = static_cast<char>((size - 3) & 0xff);
    frame[2] = command;
    return frame;
}

void closeFrame(QByteArray &frame)
{
    frame[frame.size() - 1] = static_cast<char>(checksumOf(frame));
}

template <typename Range>
void put(QByteArray &frame, qsizetype at, const Range &bytes)
{
    std::transform(bytes.begin(), bytes.end(), frame.begin() + at,
                   [](auto byte) { return static_cast<char>(byte); });
}

void putReversed(QByteArray &frame, qsizetype at, Ipv4 address)
{
    std::reverse(address.begin(), address.end());
    put(frame, at, address);
}

} // namespace

std::variant<ModuleRequest, Rejection> decodeRequest(const QByteArray &datagram)
{
    try {
        return requestFrom(datagram);
    } catch (const Rejection &rejection) {
        return rejection;
    }
}

QByteArray discoveryAnswer(const ModuleState &state)
{
    QByteArray frame = openFrame(36, 0x01);
    // Deliberately the other way round than in the configuration answer: the device does so.
    put(frame, 5, state.address());
    put(frame, 9, state.mac);
    put(frame, 19, state.name.substr(0, longestName));
    closeFrame(frame);
    return frame;
}

QByteArray configurationAnswer(const ModuleState &state)
{
    QByteArray frame = openFrame(260, 0x03);
    frame[3] = static_cast<char>(state.dhcp ? 0x40 : 0x80);
    putReversed(frame, 9, state.staticAddress);
    putReversed(frame, 13, state.gateway);
    putReversed(frame, 17, state.subnetMask);
    closeFrame(frame);
    return frame;
}

QByteArray refusalAnswer()
{
    return QByteArray("\xFF\x01\x03\x04", 4);
}
