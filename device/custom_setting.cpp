#include "device/custom_setting.h"

#include <algorithm>
#include <vector>

namespace {
constexpr int fieldWidth = 3;
constexpr int yOffset = 4;
constexpr auto nameOffset = static_cast<qsizetype>(reportedNameOffset);

QString withoutControls(QString text)
{
    text.removeIf(isNoCharacterOfAName);
    return text;
}

/// `text` in UTF-8 as it can be sent.
std::string printable(const QString &text)
{
    return withoutControls(text).toStdString();
}

/// The typed speed as the switch reads one: up to three digits as they stand, any other number that
/// isSpeed() takes by its value.
std::string speedText(const QString &typed)
{
    const QString text = typed.trimmed();
    const bool isPlain = text.size() <= fieldWidth &&
                         std::all_of(text.cbegin(), text.cend(),
                                     [](QChar digit) { return digit >= u'0' && digit <= u'9'; });
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber && !isPlain ? std::to_string(number) : printable(text);
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

/// The item of the number that `digits` are; none outside of 1 to 13.
std::optional<int> itemOfNumber(std::string_view digits)
{
    int number = 0;
    for (const char digit : digits)
        number = std::min(number * 10 + (digit - '0'), resolutionCount + 1);
    if (number < 1 || number > resolutionCount)
        return std::nullopt;
    return number - 1;
}

std::array<std::optional<int>, channelCount> numbersIn(std::string_view text)
{
    std::array<std::optional<int>, channelCount> items;
    for (std::optional<int> &item : items) {
        const auto begin = std::find_if(text.begin(), text.end(), isDigit);
        const auto end = std::find_if_not(begin, text.end(), isDigit);
        item = itemOfNumber({begin, end});
        text = {end, text.end()};
    }
    return items;
}

std::vector<std::string_view> tokensOf(std::string_view text)
{
    constexpr std::string_view separators = " \t,;\r";
    std::vector<std::string_view> tokens;
    for (;;) {
        text.remove_prefix(std::min(text.find_first_not_of(separators), text.size()));
        if (text.empty())
            return tokens;
        const std::size_t size = std::min(text.find_first_of(separators), text.size());
        tokens.push_back(text.substr(0, size));
        text.remove_prefix(size);
    }
}

std::optional<int> itemNamedBy(std::string_view token, const QStringList &entries)
{
    if (std::all_of(token.begin(), token.end(), isDigit)) {
        // The switch reports numbers. A custom setting may be called "7" all the same; the seventh
        // entry is what the switch means by it.
        if (const std::optional<int> item = itemOfNumber(token))
            return item;
    }
    const QString name = QString::fromUtf8(token);
    const auto isNamed = [&name](const QString &entry) {
        return entry.compare(name, Qt::CaseInsensitive) == 0;
    };
    const auto found = std::find_if(entries.cbegin(), entries.cend(), isNamed);
    if (found == entries.cend())
        return std::nullopt;
    return static_cast<int>(found - entries.cbegin());
}
} // namespace

const QStringList &presetNames()
{
    static const QStringList names = {
        QStringLiteral("1080p"),     QStringLiteral("4K"),        QStringLiteral("2K"),
        QStringLiteral("3840x1080"), QStringLiteral("5760x1080"), QStringLiteral("7680x1080"),
        QStringLiteral("1920x2160"), QStringLiteral("1920x3240"), QStringLiteral("1920x4320")};
    return names;
}

std::string resolutionCommand(int channel, int index)
{
    return "//CE " + std::to_string(channel) + " " + std::to_string(index + 1);
}

std::string submittedCommand(int setting, const MovementSetting &values)
{
    const std::string head = commandHead(setting, speedText(values.x), speedText(values.y));
    // The name gives way rather than the blank behind it, which the switch requires.
    const std::size_t room = longestCustomCommand - std::min(longestCustomCommand, head.size() + 1);
    return shortened(head, longestCustomCommand - 1) + shortened(printable(values.name), room) +
           " ";
}

std::string storedCommand(int setting, const MovementSetting &values)
{
    return shortened(commandHead(setting, printable(values.x), printable(values.y)) +
                         printable(values.name),
                     longestCustomCommand);
}

QString customSettingProblem(const MovementSetting &values, int setting, const QStringList &choices)
{
    if (withoutControls(values.name).trimmed().isEmpty())
        return QStringLiteral("Enter name of setting");
    if (values.x.isEmpty())
        return QStringLiteral("Enter X for setting");
    if (values.y.isEmpty())
        return QStringLiteral("Enter Y for setting");
    const auto found = choices.indexOf(values.name.toUpper());
    if (found >= 0 && found != customItem(setting))
        return QStringLiteral("This custom name already exists");
    if (!isSpeed(values.x) || !isSpeed(values.y))
        return QStringLiteral("Mouse Speed Range is between %1-%2")
            .arg(slowestSpeed)
            .arg(fastestSpeed);
    return {};
}

bool isNoCharacterOfAName(QChar character)
{
    return character.category() == QChar::Other_Control || character == QChar::ByteOrderMark;
}

bool isCustomName(const QString &name)
{
    return !name.isEmpty() && std::all_of(name.cbegin(), name.cend(), [](QChar character) {
        return character != QChar::ReplacementCharacter && !character.isSpace() &&
               (character.isPrint() || character.isSurrogate());
    });
}

std::string customEntryName(std::string_view value, std::size_t skip)
{
    value.remove_prefix(std::min(skip, value.size()));
    QString name = QString::fromUtf8(value);
    name.removeIf([](QChar character) {
        return character == QLatin1Char(' ') || isNoCharacterOfAName(character);
    });
    return name.toStdString();
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

std::array<std::optional<int>, channelCount> channelResolutions(std::string_view value,
                                                                const QStringList &entries)
{
    const std::vector<std::string_view> tokens = tokensOf(value);
    std::array<std::optional<int>, channelCount> items;
    if (tokens.size() != items.size())
        return numbersIn(value);
    for (std::size_t at = 0; at < items.size(); ++at)
        items.at(at) = itemNamedBy(tokens[at], entries);
    return items;
}
