#include "simulator/text_form.h"

std::string padded(int number, int width, char fill)
{
    std::string digits = std::to_string(number);
    if (digits.size() < static_cast<std::size_t>(width))
        digits.insert(0, static_cast<std::size_t>(width) - digits.size(), fill);
    return digits;
}

std::string printable(const std::string &bytes)
{
    static constexpr char hexDigits[] = "0123456789ABCDEF";
    std::string text;
    text.reserve(bytes.size());
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        if (character == '\r')
            text += "\\r";
        else if (character == '\n')
            text += "\\n";
        else if (character == '\t')
            text += "\\t";
        else if (byte >= 0x20 && byte < 0x7f)
            text += character;
        else
            text.append("\\x").append(1, hexDigits[byte >> 4]).append(1, hexDigits[byte & 0x0f]);
    }
    return text;
}
