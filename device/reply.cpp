#include "device/reply.h"

#include <limits>
#include <stdexcept>

std::optional<std::string_view> findReplyValue(std::string_view text, std::string_view key)
{
    const auto found = text.find(key);
    if (found == std::string_view::npos)
        return std::nullopt;
    text.remove_prefix(found + key.size());
    return text.substr(0, text.find('\n'));
}

std::string replyValue(std::string_view text, std::string_view key)
{
    const std::string_view value = findReplyValue(text, key).value_or("");
    return std::string(value.empty() ? absentValue : value);
}

int replyNumber(const std::string &value)
{
    return std::stoi(value);
}

int itemIndex(const std::string &value)
{
    const int number = replyNumber(value);
    if (number == std::numeric_limits<int>::min())
        throw std::out_of_range("stoi");
    return number - 1;
}
