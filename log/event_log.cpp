#include "log/event_log.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <array>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace {
// Lives from before main to after it, so that code running at either end may still log.
std::ofstream logStream; // NOLINT(cert-err58-cpp): a closed stream cannot throw here

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
    case 0x2028: // line separator
    case 0x2029: // paragraph separator
        return hexEscape('u', 4, code);
    default:
        break;
    }
    if (code < 0x20 || code == 0x7f)
        return hexEscape('x', 2, code);
    return code >= 0x80 && code < 0xa0 ? hexEscape('u', 4, code) : std::string();
}

std::string asOneLine(std::string_view message)
{
    std::string line;
    while (!message.empty()) {
        const Character next = firstCharacter(message);
        if (next.size == 0) {
            line += hexEscape('x', 2, static_cast<unsigned char>(message.front()));
            message.remove_prefix(1);
            continue;
        }
        const std::string escape = escapeOf(next.code);
        line += escape.empty() ? message.substr(0, next.size) : escape;
        message.remove_prefix(next.size);
    }
    return line;
}
} // namespace

QString eventLogPath()
{
#ifdef Q_OS_WIN
    return QStringLiteral("C:\\Users\\Public\\Documents\\KM_log.txt");
#else
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QDir(folder).filePath(QStringLiteral("KM_log.txt"));
#endif
}

int openLog()
{
    const QString path = eventLogPath();
#ifndef Q_OS_WIN
    QDir().mkpath(QFileInfo(path).absolutePath());
#endif
    logStream.open(std::filesystem::path(path.toStdU16String()), std::ios::out | std::ios::trunc);
    if (!logStream.is_open())
        return -1;
    logStream << "Start.........\n" << std::flush;
    return 1;
}

void writeLog(const std::string &message)
{
    const QString stamp =
        QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    logStream << asOneLine(message) << "   " << stamp.toStdString() << '\n' << std::flush;
}

void closeLog()
{
    logStream << "Stop.........\n" << std::flush;
    logStream.close();
}
