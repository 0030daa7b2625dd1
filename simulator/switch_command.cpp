#include "simulator/switch_command.h"

#include <algorithm>
#include <map>
#include <optional>
#include <vector>

namespace {

using Kind = SwitchCommand::Kind;
using Decoded = std::variant<SwitchCommand, Rejection>;

constexpr std::size_t longestName = 24;

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

/// The number that `digits` (1 to 3 of them, nothing else) writes, if it lies in the range.
std::optional<int> numberIn(const std::string &digits, int lowest, int highest)
{
    if (digits.empty() || digits.size() > 3 || !std::all_of(digits.begin(), digits.end(), isDigit))
        return std::nullopt;
    const int number = std::stoi(digits);
    if (number < lowest || number > highest)
        return std::nullopt;
    return number;
}

/// One digit without padding, as all the switch's own numbers are written.
std::optional<int> digitIn(const std::string &text, int lowest, int highest)
{
    return text.size() == 1 ? numberIn(text, lowest, highest) : std::nullopt;
}

bool startsWith(const std::string &text, const std::string &prefix)
{
    return text.compare(0, prefix.size(), prefix) == 0;
}

Decoded numbered(Kind kind, const std::string &argument, int lowest, int highest)
{
    if (const auto number = digitIn(argument, lowest, highest))
        return SwitchCommand{.kind = kind, .number = *number};
    return Rejection{"the number must be " + std::to_string(lowest) + " to " +
                     std::to_string(highest)};
}

/// "2 5": channel and resolution.
Decoded resolution(const std::string &arguments)
{
    const std::size_t blank = arguments.find(' ');
    if (blank == std::string::npos)
        return Rejection{"a resolution needs a channel and a number"};
    const auto channel = digitIn(arguments.substr(0, blank), 1, 4);
    if (!channel)
        return Rejection{"the channel must be 1 to 4"};
    const std::string digits = arguments.substr(blank + 1);
    const auto value =
        startsWith(digits, "0") ? std::nullopt : numberIn(digits, 1, SwitchState::resolutionCount);
    if (!value)
        return Rejection{"the resolution must be 1 to " +
                         std::to_string(SwitchState::resolutionCount)};
    return SwitchCommand{.kind = Kind::Resolution, .number = *channel, .value = *value};
}

Decoded layout(const std::string &groups)
{
    const auto decoded = decodeLayout(groups);
    if (const auto *rejection = std::get_if<Rejection>(&decoded))
        return *rejection;
    return SwitchCommand{.kind = Kind::Layout, .layout = std::get<LayoutOrder>(decoded)};
}

std::string cutAtCharacter(std::string name)
{
    if (name.size() <= longestName)
        return name;
    std::size_t end = longestName;
    while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xc0) == 0x80)
        --end;
    name.resize(end);
    return name;
}

/// Texts that a listing with such a name in it could not be read past: keys and markers of the
/// switch's own answers.
bool isAmbiguousInAnswers(const std::string &name)
{
    static const std::vector<std::string> marks{"//", "**", "01B", "02B", "03B", "04B", "Current "};
    return std::any_of(marks.begin(), marks.end(), [&name](const std::string &mark) {
        return name.find(mark) != std::string::npos;
    });
}

/// Takes one argument and the blank that ends it off the front of `text`. The blanks that fill its
/// column up from the left are part of it.
std::optional<std::string> takeArgument(std::string &text)
{
    const std::size_t begin = text.find_first_not_of(' ');
    const std::size_t end = text.find(' ', std::min(begin, text.size()));
    if (end == std::string::npos)
        return std::nullopt;
    const std::string argument = text.substr(0, end);
    text.erase(0, end + 1);
    return argument;
}

/// A speed in at most three characters, padded from the left with zeros, with blanks or not at all.
std::optional<int> speedIn(const std::string &column)
{
    constexpr std::size_t columnWidth = 3;
    const std::size_t begin = column.find_first_not_of(' ');
    if (column.size() > columnWidth || begin == std::string::npos)
        return std::nullopt;
    return numberIn(column.substr(begin), 1, 500);
}

/// "2 120 80 DESK" or the same with one blank behind it: setting, X, Y, name.
Decoded custom(std::string arguments)
{
    std::array<std::string, 3> fields;
    for (std::string &field : fields) {
        const auto argument = takeArgument(arguments);
        if (!argument)
            return Rejection{"a custom setting needs a number, X, Y and a name"};
        field = *argument;
    }
    if (!arguments.empty() && arguments.back() == ' ')
        arguments.pop_back();
    const auto number = digitIn(fields[0], 1, SwitchState::customCount);
    if (!number)
        return Rejection{"the custom setting must be 1 to " +
                         std::to_string(SwitchState::customCount)};
    const auto x = speedIn(fields[1]);
    const auto y = speedIn(fields[2]);
    if (!x || !y)
        return Rejection{"X and Y must be 1 to 500"};
    const std::string name = cutAtCharacter(arguments);
    if (name.find_first_not_of(' ') == std::string::npos)
        return Rejection{"a custom setting needs a name"};
    if (isAmbiguousInAnswers(name))
        return Rejection{"the name holds a mark of the switch's own answers"};
    return SwitchCommand{
        .kind = Kind::Custom, .number = *number, .custom = CustomSetting{*x, *y, name}};
}

bool hasControlCharacter(const std::string &text)
{
    return std::any_of(text.begin(), text.end(), [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return byte < 0x20 || byte == 0x7f;
    });
}

} // namespace

Decoded decodeCommand(const std::string &text)
{
    static const std::map<std::string, Kind> plain{
        {"//rl", Kind::ReportConfiguration}, {"//??", Kind::ReportStatus},
        {"//BP", Kind::ReportLayout},        {"//ks", Kind::AbsoluteMouse},
        {"//km", Kind::RelativeMouse},       {"//o0", Kind::CursorRollingOff},
        {"//o1", Kind::CursorRollingOn},     {"//R", Kind::SoftReset},
        {"//F", Kind::FactoryReset},         {"//B1", Kind::BuzzerOn},
        {"//B0", Kind::BuzzerOff},
    };
    if (text.empty())
        return Rejection{"empty command"};
    if (hasControlCharacter(text))
        return Rejection{"control character in the command"};
    if (const auto found = plain.find(text); found != plain.end())
        return SwitchCommand{.kind = found->second};
    if (startsWith(text, "//CE "))
        return resolution(text.substr(5));
    if (startsWith(text, "//MM C"))
        return custom(text.substr(6));
    if (startsWith(text, "//FF"))
        return layout(text.substr(2));
    if (startsWith(text, "//c"))
        return numbered(Kind::KmControl, text.substr(3), 1, 4);
    if (startsWith(text, "//u"))
        return numbered(Kind::UsbControl, text.substr(3), 1, 4);
    if (startsWith(text, "//D"))
        return numbered(Kind::PortLimit, text.substr(3), 2, 4);
    return Rejection{"unknown command"};
}
