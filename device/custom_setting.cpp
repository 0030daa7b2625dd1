#include "device/custom_setting.h"

#include <algorithm>

namespace {
constexpr std::size_t longestCommand = 99; // the switch's buffer of 100 holds an end mark too
constexpr int fieldWidth = 3;
constexpr int yOffset = 4;
constexpr int nameOffset = 8;
constexpr int lastResolution = presetResolutions + customSettings;

/// `text` in UTF-8 without the control characters that would end the command early.
std::string printable(QString text)
{
    text.removeIf([](QChar character) { return character.category() == QChar::Other_Control; });
    return text.toStdString();
}

/// `text` cut to `size` bytes, less where that would split a character.
std::string shortened(std::string text, std::size_t size)
{
    if (text.size() <= size)
        return text;
    const auto continues = [&](std::size_t at) {
        return (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
    };
    while (size > 0 && continues(size))
        --size;
    text.resize(size);
    return text;
}

std::string commandHead(int setting, const std::string &x, const std::string &y)
{
    return "//MM C" + std::to_string(setting) + " " + x + " " + y + " ";
}

bool isSpeed(const QString &text)
{
    const int speed = text.toInt(); // 0 for what is no number
    return speed >= slowestSpeed && speed <= fastestSpeed;
}

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}
} // namespace

std::string resolutionCommand(int channel, int index)
{
    return "//CE " + std::to_string(channel) + " " + std::to_string(index + 1);
}

std::string submittedCommand(int setting, const MovementSetting &values)
{
    const std::string head =
        commandHead(setting, printable(values.x.trimmed()), printable(values.y.trimmed()));
    // The name gives way rather than the blank behind it, which the switch requires.
    const std::size_t room = longestCommand - std::min(longestCommand, head.size() + 1);
    return shortened(head, longestCommand - 1) + shortened(printable(values.name), room) + " ";
}

std::string storedCommand(int setting, const MovementSetting &values)
{
    return shortened(commandHead(setting, printable(values.x), printable(values.y)) +
                         printable(values.name),
                     longestCommand);
}

QString customSettingProblem(const MovementSetting &values, int setting, const QStringList &choices)
{
    if (values.name.trimmed().isEmpty())
        return QStringLiteral("Enter name of setting");
    if (values.x.isEmpty())
        return QStringLiteral("Enter X for setting");
    if (values.y.isEmpty())
        return QStringLiteral("Enter Y for setting");
    const auto found = choices.indexOf(values.name.toUpper());
    if (found >= 0 && found != presetResolutions + setting)
        return QStringLiteral("This custom name already exists");
    if (!isSpeed(values.x) || !isSpeed(values.y))
        return QStringLiteral("Mouse Speed Range is between %1-%2")
            .arg(slowestSpeed)
            .arg(fastestSpeed);
    return {};
}

std::string customEntryName(std::string_view value, std::size_t skip)
{
    std::string name;
    if (value.size() <= skip)
        return name;
    std::copy_if(value.begin() + static_cast<std::ptrdiff_t>(skip), value.end(),
                 std::back_inserter(name),
                 [](char character) { return static_cast<unsigned char>(character) > ' '; });
    return name;
}

DataLabelFields dataLabelFields(const QString &text)
{
    DataLabelFields fields;
    fields.x = text.left(fieldWidth);
    if (text.size() < yOffset)
        return fields;
    fields.y = text.mid(yOffset, fieldWidth);
    if (text.size() < nameOffset)
        return fields;
    fields.name = text.mid(nameOffset);
    fields.name->removeIf([](QChar character) {
        return character == QLatin1Char(' ') || character == QLatin1Char('\t');
    });
    return fields;
}

std::array<std::optional<int>, 4> channelResolutions(std::string_view value)
{
    std::array<std::optional<int>, 4> items;
    auto position = value.begin();
    for (std::optional<int> &item : items) {
        position = std::find_if(position, value.end(), isDigit);
        const auto end = std::find_if_not(position, value.end(), isDigit);
        int number = 0;
        for (; position != end; ++position)
            number = std::min(number * 10 + (*position - '0'), lastResolution + 1);
        if (number >= 1 && number <= lastResolution)
            item = number - 1;
    }
    return items;
}
