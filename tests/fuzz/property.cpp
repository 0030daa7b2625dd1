#include "property.h"

#include "log/one_line.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

void require(bool holds, std::string_view promise, std::string_view found)
{
    if (holds)
        return;
    const std::string shown = asOneLine(found);
    std::fprintf(stderr, "\nbroken promise: %.*s\n", static_cast<int>(promise.size()),
                 promise.data());
    if (!found.empty())
        std::fprintf(stderr, "found: \"%s\"\n", shown.c_str());
    std::fflush(stderr);
    std::abort();
}

bool hasControlCharacter(const QString &text)
{
    return std::any_of(text.cbegin(), text.cend(), [](QChar character) {
        return character.category() == QChar::Other_Control;
    });
}

bool hasControlCharacter(std::string_view text)
{
    return hasControlCharacter(QString::fromUtf8(text));
}

std::string_view textOf(const std::uint8_t *data, std::size_t size)
{
    return {reinterpret_cast<const char *>(data), size};
}

int Choices::byte()
{
    if (left_.empty())
        return 0;
    const auto value = static_cast<unsigned char>(left_.front());
    left_.remove_prefix(1);
    return value;
}

int Choices::number(int first, int last)
{
    return first + byte() % (last - first + 1);
}

std::string Choices::line()
{
    const std::string text(left_.substr(0, left_.find('\n')));
    left_.remove_prefix(std::min(text.size() + 1, left_.size()));
    return text;
}

QByteArray Choices::bytes(int size)
{
    QByteArray taken(left_.data(), std::min<qsizetype>(size, static_cast<qsizetype>(left_.size())));
    left_.remove_prefix(static_cast<std::size_t>(taken.size()));
    return taken.leftJustified(size, '\0');
}
