#include "device/command_frame.h"

#include <QString>

std::string toHexText(const std::string &text)
{
    static constexpr char digits[] = "0123456789abcdef";
    std::string hex;
    hex.reserve(text.size() * 2);
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        hex += digits[byte >> 4U];
        hex += digits[byte & 0x0FU];
    }
    return hex;
}

QByteArray frameCommand(std::string &command, const HexConversion &toHex)
{
    command += commandEnd;
    // Deliberate: the detour through hexadecimal text is the one road by which bytes reach the
    // wire.
    const QString hex = QString::fromStdString(toHex(command));
    return QByteArray::fromHex(hex.toUtf8());
}
