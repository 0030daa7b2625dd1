#include "device/switch_news.h"

#include "device/ports.h"
#include "device/reply_words.h"

namespace {
/// The port that `line` names behind `key` and nothing else.
std::optional<int> portBehind(std::string_view line, std::string_view key)
{
    if (!line.starts_with(key))
        return std::nullopt;
    line.remove_prefix(key.size());
    if (line.starts_with(':'))
        line.remove_prefix(1);
    while (line.starts_with(' '))
        line.remove_prefix(1);
    while (line.ends_with(' ') || line.ends_with('\r'))
        line.remove_suffix(1);
    const int port = line.size() == 1 ? line.front() - '0' : 0;
    return port >= 1 && port <= channelCount ? std::optional(port) : std::nullopt;
}
} // namespace

ControlNews controlNews(std::string_view line)
{
    if (const auto both = portBehind(line, bothControlsEcho))
        return {both, both};
    std::optional<int> km = portBehind(line, kmControlEcho);
    if (!km)
        km = portBehind(line, kmControlReplyKey);
    std::optional<int> usb = portBehind(line, usbControlEcho);
    if (!usb)
        usb = portBehind(line, usbControlReplyKey);
    return {km, usb};
}
