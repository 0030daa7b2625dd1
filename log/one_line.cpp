#include "log/one_line.h"

#include <array>

namespace {
/// One character of UTF-8 text; `size` is 0 where the text is no UTF-8.
struct Character
{
    char32_t code = 0;
    std::size_t size = 0; ///< bytes
};

Character firstCharacter(std::string_view text)
{
    struct Form
    {
        unsigned mask, lead;
        char32_t least; ///< smaller codes in this form are written too long
    };
    constexpr std::array<Form, 4> forms{
        {{0x80, 0x00, 0x00}, {0xe0, 0xc0, 0x80}, {0xf0, 0xe0, 0x800}, {0xf8, 0xf0, 0x10000}}};
    const auto byteAt = [text](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    for (std::size_t form = 0; form < forms.size(); ++form) {
        if ((byteAt(0) & forms.at(form).mask) != forms.at(form).lead)
            continue;
        if (text.size() <= form)
            return {};
        char32_t code = byteAt(0) & ~forms.at(form).mask;
        for (std::size_t at = 1; at <= form; ++at) {
            if ((byteAt(at) & 0xc0U) != 0x80)
                return {};
            code = (code << 6U) | (byteAt(at) & 0x3fU);
        }
        const bool isSurrogate = code >= 0xd800 && code <= 0xdfff;
        if (code < forms.at(form).least || code > 0x10ffff || isSurrogate)
            return {};
        return {code, form + 1};
    }
    return {};
}

std::string hexEscape(char kind, std::size_t digits, char32_t value)
{
    std::string text{'\\', kind};
    for (std::size_t left = digits; left > 0; --left)
        text += "0123456789abcdef"[(value >> (4 * (left - 1))) & 0xfU];
    return text;
}

bool isSeparator(char32_t code)
{
    return code == 0x2028 || code == 0x2029; // of lines, of paragraphs
}

/// Marks, embeddings, overrides and isolates, which show what follows in another order.
bool turnsDirection(char32_t code)
{
    return code == 0x061c || code == 0x200e || code == 0x200f ||
           (code >= 0x202a && code <= 0x202e) || (code >= 0x2066 && code <= 0x2069);
}

/// How a control character, or what a viewer would break the line at, is written; empty for text.
std::string escapeOf(char32_t code)
{
    switch (code) {
    case U'\n':
        return "\\n";
    case U'\r':
        return "\\r";
    case U'\t':
        return "\\t";
    default:
        break;
    }
    if (isSeparator(code) || turnsDirection(code))
        return hexEscape('u', 4, code);
    if (code < 0x20 || code == 0x7f)
        return hexEscape('x', 2, code);
    return code >= 0x80 && code < 0xa0 ? hexEscape('u', 4, code) : std::string();
}
} // namespace

std::string asOneLine(std::string_view text)
{
    std::string line;
    while (!text.empty()) {
        const Character next = firstCharacter(text);
        if (next.size == 0) {
            line += hexEscape('x', 2, static_cast<unsigned char>(text.front()));
            text.remove_prefix(1);
            continue;
        }
        const std::string escape = escapeOf(next.code);
        line += escape.empty() ? text.substr(0, next.size) : escape;
        text.remove_prefix(next.size);
    }
    return line;
}
