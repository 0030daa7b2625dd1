#pragma once

#include <QByteArray>
#include <functional>
#include <string>

/// Framing of outgoing commands, the same on the serial line and in a datagram.

/// What ends a command on the wire.
inline constexpr char commandEnd = '\r';

/// Each byte of `text` (taken as 0 to 255) as two lower-case hexadecimal digits.
/// Example: "//rl\r" gives "2f2f726c0d".
std::string toHexText(const std::string &text);

using HexConversion = std::function<std::string(const std::string &)>;

/// Appends `commandEnd` to `command` itself and returns the bytes to write to the switch;
/// `toHex` is the conversion that they take on their way.
/// Direction: utility to switch. Example: "//??" gives 2F 2F 3F 3F 0D.
QByteArray frameCommand(std::string &command, const HexConversion &toHex = toHexText);
