#include "device/settings_text.h"

#include <QString>
#include <algorithm>
#include <vector>

namespace {
constexpr std::size_t longestCoordinates = 9;

struct Line
{
    std::string_view key;
    std::string_view value;
};

std::vector<Line> linesOf(const SettingsValues &values)
{
    std::vector<Line> lines = {{kmControlKey, values.kmControl},
                               {usbControlKey, values.usbControl},
                               {limitPortsKey, values.limitPorts},
                               {cursorRollingKey, values.cursorRolling}};
    const auto add = [&lines](const auto &keys, const auto &group) {
        for (std::size_t at = 0; at < keys.size(); ++at)
            lines.push_back({keys.at(at), group.at(at)});
    };
    add(resolutionKeys, values.resolutions);
    add(customSettingKeys, values.customSettings);
    add(dataLabelKeys, values.dataLabels);
    lines.push_back({gridSettingsKey, values.gridSettings});
    add(coordinatesKeys, values.coordinates);
    lines.push_back({buzzerKey, values.buzzer});
    lines.push_back({mouseModeKey, values.mouseMode});
    return lines;
}

bool isForbidden(QChar character)
{
    return character.category() == QChar::Other_Control && character != QLatin1Char('\t');
}

std::string_view withoutMark(std::string_view text)
{
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    return text.starts_with(mark) ? text.substr(mark.size()) : text;
}

/// Takes one number from 0 to 3 off the front of `text`.
std::optional<int> takeGridNumber(std::string_view &text)
{
    const auto end = std::min(text.find_first_not_of("0123456789"), text.size());
    const std::string_view digits = text.substr(0, end);
    text.remove_prefix(end);
    int number = 0;
    for (const char digit : digits)
        number = std::min(number * 10 + (digit - '0'), gridSide);
    if (digits.empty() || number >= gridSide)
        return std::nullopt;
    return number;
}
} // namespace

std::string settingsText(const SettingsValues &values)
{
    std::string text;
    for (const auto &[key, value] : linesOf(values)) {
        text += key;
        text += value;
        text += '\n';
    }
    return text;
}

std::optional<SettingsLine> findSettingsLine(std::string_view text, std::string_view key)
{
    text = withoutMark(text);
    for (int number = 1;; ++number) {
        const auto end = text.find('\n');
        std::string_view line = text.substr(0, end);
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (line.starts_with(key))
            return SettingsLine{number, line.substr(key.size())};
        if (end == std::string_view::npos)
            return std::nullopt;
        text.remove_prefix(end + 1);
    }
}

bool isSettingsValue(std::string_view value)
{
    const QString text = QString::fromUtf8(value);
    return std::none_of(text.cbegin(), text.cend(), isForbidden);
}

std::optional<std::string> settingsValue(std::string_view text, std::string_view key)
{
    const std::optional<SettingsLine> line = findSettingsLine(text, key);
    if (!line || !isSettingsValue(line->value))
        return std::nullopt;
    return std::string(line->value);
}

bool holdsAnySetting(std::string_view text)
{
    const SettingsValues none;
    const std::vector<Line> lines = linesOf(none);
    return std::any_of(lines.begin(), lines.end(), [&](const Line &line) {
        return findSettingsLine(text, line.key).has_value();
    });
}

std::string coordinatesText(GridPosition place)
{
    const std::string text = std::to_string(place.row) + " " + std::to_string(place.column);
    return text.substr(0, longestCoordinates);
}

std::optional<GridPosition> coordinatesFrom(std::string_view value)
{
    const std::optional<int> row = takeGridNumber(value);
    const auto behindBlanks = value.find_first_not_of(' ');
    if (!row || behindBlanks == 0 || behindBlanks == std::string_view::npos)
        return std::nullopt;
    value.remove_prefix(behindBlanks);
    const std::optional<int> column = takeGridNumber(value);
    if (!column || value.find_first_not_of(' ') != std::string_view::npos)
        return std::nullopt;
    return GridPosition{*row, *column};
}
