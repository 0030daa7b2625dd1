#include "device/configuration_file.h"

#include "device/command.h"

#include <algorithm>

namespace {
/// What grid settings name that come from a window with inactive ports.
constexpr std::string_view threeTwice = "1233";

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

/// The number that `digits` are, up to three of them.
std::optional<int> numberOf(std::string_view digits)
{
    constexpr std::size_t mostDigits = 3;
    if (digits.empty() || digits.size() > mostDigits ||
        !std::all_of(digits.begin(), digits.end(), isDigit))
        return std::nullopt;
    return std::stoi(std::string(digits));
}

/// The number from `first` to `last` of the command that is `prefix` and a number without zeros in
/// front.
std::optional<int> numberOfCommand(std::string_view value, std::string_view prefix, int first,
                                   int last)
{
    if (!value.starts_with(prefix) || value.substr(prefix.size()).starts_with('0'))
        return std::nullopt;
    const std::optional<int> number = numberOf(value.substr(prefix.size()));
    return number && *number >= first && *number <= last ? number : std::nullopt;
}

/// Which of two commands `value` is: false for the first, true for the second.
std::optional<bool> choiceOf(std::string_view value, std::string_view off, std::string_view on)
{
    if (value != off && value != on)
        return std::nullopt;
    return value == on;
}

/// Takes what stands before the next blanks off the front of `text`, and the blanks.
std::string_view takeWord(std::string_view &text)
{
    const std::string_view word = text.substr(0, text.find(' '));
    text.remove_prefix(word.size());
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    return word;
}

std::optional<int> speedOf(std::string_view word)
{
    const std::optional<int> speed = numberOf(word);
    return speed && *speed >= slowestSpeed && *speed <= fastestSpeed ? speed : std::nullopt;
}

/// Whether the switch may have reported a name so: what it calls a setting may hold more than what
/// can be given as a name, and a file that was saved from it is read again.
bool isReportedName(const QString &name)
{
    return !name.isEmpty() && std::none_of(name.cbegin(), name.cend(), [](QChar character) {
        return character == QLatin1Char(' ') || isNoCharacterOfAName(character);
    });
}

std::string customHead(int setting)
{
    return "//MM C" + std::to_string(setting) + " ";
}

std::optional<MouseMovement> movementOf(std::string_view value, int setting)
{
    const std::string head = customHead(setting);
    if (!value.starts_with(head) || value.size() > longestCustomCommand)
        return std::nullopt;
    value.remove_prefix(head.size());
    value.remove_prefix(std::min(value.find_first_not_of(' '), value.size()));
    const std::optional<int> x = speedOf(takeWord(value));
    const std::optional<int> y = speedOf(takeWord(value));
    const std::string_view bytes = takeWord(value);
    const QString name = QString::fromUtf8(bytes);
    constexpr std::size_t speedsSize = 8; // "100 250 "
    const bool fits = head.size() + speedsSize + bytes.size() <= longestCustomCommand;
    if (!x || !y || !fits || !isReportedName(name) || name.toStdString() != bytes || !value.empty())
        return std::nullopt;
    return MouseMovement{*x, *y, name};
}

/// Whether blanks stand in the line of a custom setting where the switch has them: before X and Y
/// as far as they fill three characters up, one behind each, at most one behind the name.
bool isInColumns(std::string_view value, int setting)
{
    constexpr std::size_t columnWidth = 3;
    value.remove_prefix(customHead(setting).size());
    for (int column = 0; column < 2; ++column) {
        const std::size_t end =
            value.find(' ', std::min(value.find_first_not_of(' '), value.size()));
        if (end > columnWidth)
            return false;
        value.remove_prefix(end + 1);
    }
    return value.find(' ') >= value.size() - 1;
}

/// The displays of a layout command of four groups; none when it is not one.
std::optional<std::vector<PlacedDisplay>> displaysOf(std::string_view value)
{
    constexpr std::size_t groupSize = 7; // FF02B06
    constexpr std::size_t codeSize = 2;
    if (!value.starts_with("//") || value.size() != 2 + channelCount * groupSize)
        return std::nullopt;
    std::vector<PlacedDisplay> displays;
    for (value.remove_prefix(2); !value.empty(); value.remove_prefix(groupSize)) {
        const int channel = value[3] - '0';
        const std::optional<GridPosition> cell = cellOfCode(value.substr(5, codeSize));
        if (!value.starts_with("FF0") || value[4] != 'B' || channel < 1 || channel > channelCount ||
            !cell)
            return std::nullopt;
        displays.push_back({*cell, channel});
    }
    return displays;
}

/// The channels' digits in order: "1234".
std::string channelsOf(const std::vector<PlacedDisplay> &displays)
{
    std::string channels;
    for (const PlacedDisplay &display : displays)
        channels += static_cast<char>('0' + display.channel);
    std::sort(channels.begin(), channels.end());
    return channels;
}

std::optional<DisplayLayout> arranged(const DisplayLayout &layout)
{
    return isArrangement(layout) ? std::optional(layout) : std::nullopt;
}

/// The layout of the four coordinates in `text`.
std::optional<DisplayLayout> layoutOfPlaces(std::string_view text)
{
    DisplayLayout layout;
    for (std::size_t at = 0; at < layout.size(); ++at) {
        const std::optional<SettingsLine> line = findSettingsLine(text, coordinatesKeys.at(at));
        const auto place = line ? coordinatesFrom(line->value) : std::nullopt;
        if (!place)
            return std::nullopt;
        layout.at(at) = *place;
    }
    return arranged(layout);
}

std::optional<DisplayLayout> layoutOf(std::string_view value, std::string_view text)
{
    const auto displays = displaysOf(value);
    if (!displays)
        return std::nullopt;
    const std::string channels = channelsOf(*displays);
    if (channels == threeTwice)
        return layoutOfPlaces(text);
    if (channels != "1234")
        return std::nullopt;
    DisplayLayout layout;
    for (const PlacedDisplay &display : *displays)
        layout.at(static_cast<std::size_t>(display.channel - 1)) = display.position;
    return arranged(layout);
}

/// Reads line by line and notes what is wrong and what is missing.
class SettingsReader
{
public:
    explicit SettingsReader(std::string_view text) : text_(text) {}

    /// What `read` makes of the value of `fileKey`.
    template <typename Read>
    auto take(SettingKey key, std::string_view fileKey, Read read)
        -> decltype(read(std::string_view()))
    {
        const std::optional<SettingsLine> line = findSettingsLine(text_, fileKey);
        if (!line || line->value.empty()) {
            result.missing.emplace_back(fileKey);
            return std::nullopt;
        }
        auto value = read(line->value);
        if (value)
            result.commands[key] = std::string(line->value);
        else
            noteError(*line, fileKey);
        return value;
    }

    /// A line that is nothing to send: it has to be there and, unless it is empty, `isGood`.
    void check(std::string_view fileKey, bool (*isGood)(std::string_view))
    {
        const std::optional<SettingsLine> line = findSettingsLine(text_, fileKey);
        if (!line)
            result.missing.emplace_back(fileKey);
        else if (!line->value.empty() && !isGood(line->value))
            noteError(*line, fileKey);
    }

    SettingsReading result;

private:
    void noteError(const SettingsLine &line, std::string_view fileKey)
    {
        result.errors.push_back({line.number, std::string(fileKey), std::string(line.value)});
    }

    std::string_view text_;
};

std::string threeDigits(int speed)
{
    return QString::number(speed).rightJustified(3, QLatin1Char('0')).toStdString();
}

std::string labelText(const MouseMovement &custom)
{
    return threeDigits(custom.x) + " " + threeDigits(custom.y) + " " + custom.name.toStdString();
}
} // namespace

SettingsReading readSettings(std::string_view text)
{
    SettingsReader reader(text);
    SwitchConfiguration &read = reader.result.configuration;
    const auto number = [](std::string_view prefix, int first, int last) {
        return [=](std::string_view value) { return numberOfCommand(value, prefix, first, last); };
    };
    const auto choice = [](std::string_view off, std::string_view on) {
        return [=](std::string_view value) { return choiceOf(value, off, on); };
    };
    read.kmControl =
        reader.take(SettingKey::KmControl, kmControlKey, number("//c", 1, channelCount));
    read.usbControl =
        reader.take(SettingKey::UsbControl, usbControlKey, number("//u", 1, channelCount));
    read.activePorts = reader.take(SettingKey::ActivePorts, limitPortsKey,
                                   number("//D", fewestActivePorts, mostActivePorts));
    read.cursorRolling = reader.take(SettingKey::CursorRolling, cursorRollingKey,
                                     choice(cursorRollingOffCommand, cursorRollingOnCommand));
    for (int channel = 1; channel <= channelCount; ++channel) {
        const auto at = static_cast<std::size_t>(channel - 1);
        read.resolutions.at(at) =
            reader.take(resolutionSetting(channel), resolutionKeys.at(at),
                        number("//CE " + std::to_string(channel) + " ", 1, resolutionCount));
    }
    for (int setting = 1; setting <= customSettings; ++setting) {
        const auto at = static_cast<std::size_t>(setting - 1);
        read.custom.at(at) =
            reader.take(customSetting(setting), customSettingKeys.at(at),
                        [=](std::string_view value) { return movementOf(value, setting); });
        const SettingKey key = customSetting(setting);
        // Sent as it stands, it would be another name to the switch, or none.
        if (read.custom.at(at) && !isInColumns(reader.result.commands.at(key), setting))
            reader.result.commands[key] = settingCommand(read, key);
    }
    for (const std::string_view key : dataLabelKeys)
        reader.check(key, [](std::string_view value) { return isSettingsValue(value); });
    read.layout = reader.take(SettingKey::Layout, gridSettingsKey,
                              [=](std::string_view value) { return layoutOf(value, text); });
    for (const std::string_view key : coordinatesKeys)
        reader.check(key,
                     [](std::string_view value) { return coordinatesFrom(value).has_value(); });
    read.buzzerOn =
        reader.take(SettingKey::Buzzer, buzzerKey, choice(beepOffCommand, beepOnCommand));
    read.relativeMouse = reader.take(SettingKey::MouseMode, mouseModeKey,
                                     choice(absoluteMouseCommand, relativeMouseCommand));
    if (read.layout) {
        std::string &command = reader.result.commands[SettingKey::Layout];
        // Sent as it stands, it would leave channel 4 where it is.
        if (channelsOf(displaysOf(command).value_or(std::vector<PlacedDisplay>())) == threeTwice)
            command = layoutCommand(*read.layout);
    }
    return std::move(reader.result);
}

SettingsValues settingsValues(const SwitchConfiguration &configuration)
{
    SettingsValues values;
    values.kmControl = settingCommand(configuration, SettingKey::KmControl);
    values.usbControl = settingCommand(configuration, SettingKey::UsbControl);
    values.limitPorts = settingCommand(configuration, SettingKey::ActivePorts);
    values.cursorRolling = settingCommand(configuration, SettingKey::CursorRolling);
    for (int channel = 1; channel <= channelCount; ++channel)
        values.resolutions.at(static_cast<std::size_t>(channel - 1)) =
            settingCommand(configuration, resolutionSetting(channel));
    for (std::size_t at = 0; at < configuration.custom.size(); ++at) {
        const std::optional<MouseMovement> &custom = configuration.custom.at(at);
        if (!custom)
            continue;
        values.customSettings.at(at) = storedCommand(
            static_cast<int>(at) + 1, {custom->name, QString::fromStdString(threeDigits(custom->x)),
                                       QString::fromStdString(threeDigits(custom->y))});
        values.dataLabels.at(at) = labelText(*custom);
    }
    values.gridSettings = settingCommand(configuration, SettingKey::Layout);
    if (configuration.layout)
        std::transform(configuration.layout->begin(), configuration.layout->end(),
                       values.coordinates.begin(), coordinatesText);
    values.buzzer = settingCommand(configuration, SettingKey::Buzzer);
    values.mouseMode = settingCommand(configuration, SettingKey::MouseMode);
    return values;
}

std::string settingsText(const SwitchConfiguration &configuration)
{
    return settingsText(settingsValues(configuration));
}
