#include "device/setting_values.h"

#include <QStringList>
#include <algorithm>
#include <stdexcept>

namespace {
[[noreturn]] void refuse(const QString &sentence)
{
    throw std::invalid_argument(sentence.toStdString());
}

[[noreturn]] void refuseValue(SettingKey key, const QString &good, const QString &value)
{
    refuse(QStringLiteral("%1 is %2, not \"%3\"").arg(settingName(key), good, value));
}

/// `text` as a number without sign and zeros in front.
std::optional<int> numberFrom(const QString &text)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber && QString::number(number) == text ? std::optional(number) : std::nullopt;
}

int numberFrom(SettingKey key, const QString &value, int first, int last)
{
    const std::optional<int> number = numberFrom(value);
    if (!number || *number < first || *number > last)
        refuseValue(key, QStringLiteral("a number from %1 to %2").arg(first).arg(last), value);
    return *number;
}

bool wordFrom(SettingKey key, const QString &value, const QString &off, const QString &on)
{
    if (value != off && value != on)
        refuseValue(key, off + QStringLiteral(" or ") + on, value);
    return value == on;
}

bool onOffFrom(SettingKey key, const QString &value)
{
    return wordFrom(key, value, QStringLiteral("off"), QStringLiteral("on"));
}

bool isSameName(const QString &left, const QString &right)
{
    return left.compare(right, Qt::CaseInsensitive) == 0;
}

/// The number of the preset called `name`.
std::optional<int> presetNamed(const QString &name)
{
    const QStringList &presets = presetNames();
    const auto found =
        std::find_if(presets.cbegin(), presets.cend(),
                     [&name](const QString &preset) { return isSameName(preset, name); });
    if (found == presets.cend())
        return std::nullopt;
    return static_cast<int>(found - presets.cbegin()) + 1;
}

std::size_t place(SettingKey key)
{
    return static_cast<std::size_t>(settingNumber(key) - 1);
}

QString keyList()
{
    QStringList names;
    for (const SettingKey key : allSettingKeys()) {
        if (key != SettingKey::Hotkey)
            names.append(settingName(key));
    }
    return names.join(QStringLiteral(", "));
}

SettingKey keyFrom(QString name)
{
    name.replace(QLatin1Char('_'), QLatin1Char('-'));
    const std::optional<SettingKey> key = settingOfName(name);
    if (!key)
        refuse(QStringLiteral("there is no setting \"%1\"; there are %2").arg(name, keyList()));
    if (*key == SettingKey::Hotkey)
        refuse(QStringLiteral("hotkey can be read only"));
    return *key;
}

/// The numbers of the resolutions that custom settings called `name` are.
std::vector<int> customsNamed(const QString &name, const SwitchConfiguration &configuration)
{
    std::vector<int> numbers;
    for (int setting = 0; setting < customSettings; ++setting) {
        const auto &custom = configuration.custom.at(static_cast<std::size_t>(setting));
        if (custom && isSameName(custom->name, name))
            numbers.push_back(customItem(setting) + 1);
    }
    return numbers;
}

int resolutionNamed(SettingKey key, const QString &name, const SwitchConfiguration &configuration)
{
    const std::vector<int> numbers = customsNamed(name, configuration);
    if (numbers.empty()) {
        QStringList names = ::resolutionNames(configuration);
        names.removeAll(QString());
        refuseValue(key,
                    QStringLiteral("a number from 1 to %1 or one of %2")
                        .arg(resolutionCount)
                        .arg(names.join(QStringLiteral(", "))),
                    name);
    }
    if (numbers.size() > 1)
        refuse(QStringLiteral("%1: \"%2\" is the name of %3 and of %4; give the number")
                   .arg(settingName(key), name, QString::number(numbers.at(0)),
                        QString::number(numbers.at(1))));
    return numbers.front();
}
} // namespace

DisplayLayout layoutFrom(const QString &text)
{
    const auto refuseLayout = [&text](const QString &why) {
        refuse(QStringLiteral("the layout \"%1\" %2; draw four rows of four cells joined by /, "
                              "such as ..../.12./.34./....")
                   .arg(text, why));
    };
    const QStringList rows = text.split(QLatin1Char('/'));
    if (rows.size() > gridSide)
        refuseLayout(QStringLiteral("has more than four rows"));
    std::array<std::optional<GridPosition>, channelCount> places;
    for (int row = 0; row < rows.size(); ++row) {
        if (rows.at(row).size() > gridSide)
            refuseLayout(QStringLiteral("has a row of more than four cells"));
        for (int column = 0; column < rows.at(row).size(); ++column) {
            const QChar cell = rows.at(row).at(column);
            if (cell == QLatin1Char('.'))
                continue;
            const int channel = cell.unicode() - u'0';
            if (channel < 1 || channel > channelCount)
                refuseLayout(QStringLiteral("holds a cell that is neither a dot nor 1 to 4"));
            auto &place = places.at(static_cast<std::size_t>(channel - 1));
            if (place)
                refuseLayout(QStringLiteral("holds channel %1 twice").arg(channel));
            place = GridPosition{row, column};
        }
    }
    DisplayLayout layout;
    for (std::size_t at = 0; at < layout.size(); ++at) {
        if (!places.at(at))
            refuseLayout(QStringLiteral("lacks channel %1").arg(at + 1));
        layout.at(at) = *places.at(at);
    }
    return layout;
}

bool touchEdgeToEdge(const DisplayLayout &layout)
{
    const std::vector<GridPosition> cells(layout.begin(), layout.end());
    return isConnected(neighbourCount(cells, [&cells](GridPosition cell) {
        return std::find(cells.begin(), cells.end(), cell) != cells.end();
    }));
}

void SettingValues::add(const QString &assignment)
{
    const qsizetype equals = assignment.indexOf(QLatin1Char('='));
    if (equals < 0)
        refuse(QStringLiteral("\"%1\" is not KEY=VALUE").arg(assignment));
    const SettingKey key = keyFrom(assignment.left(equals));
    if (std::find(keys_.begin(), keys_.end(), key) != keys_.end())
        refuse(QStringLiteral("%1 is given twice").arg(settingName(key)));
    read(key, assignment.mid(equals + 1));
    keys_.push_back(key);
}

std::vector<SettingKey> SettingValues::needed() const
{
    std::vector<SettingKey> needed = keys_;
    const auto need = [&needed](SettingKey key) {
        if (std::find(needed.begin(), needed.end(), key) == needed.end())
            needed.push_back(key);
    };
    if (values_.layout)
        need(SettingKey::ActivePorts);
    const bool isOpen = std::any_of(resolutionNames_.begin(), resolutionNames_.end(),
                                    [](const QString &name) { return !name.isEmpty(); });
    for (int setting = 1; isOpen && setting <= customSettings; ++setting)
        need(customSetting(setting));
    return needed;
}

SwitchConfiguration SettingValues::atSwitch(const SwitchConfiguration &now) const
{
    SwitchConfiguration wanted = values_;
    const SwitchConfiguration then = withChanges(now, values_);
    for (const SettingKey key : keys_) {
        if (isCustomSetting(key)) {
            const QString &name = values_.custom.at(place(key))->name;
            if (customsNamed(name, then).size() > 1)
                refuse(QStringLiteral("%1: \"%2\" is the name of another custom setting already")
                           .arg(settingName(key), name));
        } else if (isResolution(key) && !resolutionNames_.at(place(key)).isEmpty()) {
            wanted.resolutions.at(place(key)) =
                resolutionNamed(key, resolutionNames_.at(place(key)), then);
        }
    }
    return wanted;
}

void SettingValues::read(SettingKey key, const QString &value)
{
    switch (key) {
    case SettingKey::KmControl:
        values_.kmControl = numberFrom(key, value, 1, channelCount);
        return;
    case SettingKey::UsbControl:
        values_.usbControl = numberFrom(key, value, 1, channelCount);
        return;
    case SettingKey::ActivePorts:
        values_.activePorts = numberFrom(key, value, fewestActivePorts, mostActivePorts);
        return;
    case SettingKey::CursorRolling:
        values_.cursorRolling = onOffFrom(key, value);
        return;
    case SettingKey::Buzzer:
        values_.buzzerOn = onOffFrom(key, value);
        return;
    case SettingKey::MouseMode:
        values_.relativeMouse =
            wordFrom(key, value, QStringLiteral("absolute"), QStringLiteral("relative"));
        return;
    case SettingKey::Layout:
        values_.layout = layoutFrom(value);
        return;
    default:
        isResolution(key) ? readResolution(key, value) : readCustom(key, value);
    }
}

void SettingValues::readResolution(SettingKey key, const QString &value)
{
    const bool isNumber =
        !value.isEmpty() && std::all_of(value.cbegin(), value.cend(),
                                        [](QChar digit) { return digit >= u'0' && digit <= u'9'; });
    if (isNumber)
        values_.resolutions.at(place(key)) = numberFrom(key, value, 1, resolutionCount);
    else if (const std::optional<int> preset = presetNamed(value))
        values_.resolutions.at(place(key)) = *preset;
    else if (isCustomName(value))
        resolutionNames_.at(place(key)) = value;
    else
        refuseValue(key,
                    QStringLiteral("a number from 1 to %1, %2 or a custom setting's name")
                        .arg(resolutionCount)
                        .arg(presetNames().join(QStringLiteral(", "))),
                    value);
}

void SettingValues::readCustom(SettingKey key, const QString &value)
{
    const auto refuseCustom = [&](const QString &why) {
        refuse(QStringLiteral("%1 is \"X Y NAME\", such as \"120 80 DESK\": %2, in \"%3\"")
                   .arg(settingName(key), why, value));
    };
    const QStringList words = value.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (words.size() != 3)
        refuseCustom(QStringLiteral("three words"));
    const std::optional<int> x = numberFrom(words.at(0));
    const std::optional<int> y = numberFrom(words.at(1));
    const auto isSpeed = [](std::optional<int> speed) {
        return speed && *speed >= slowestSpeed && *speed <= fastestSpeed;
    };
    if (!isSpeed(x) || !isSpeed(y))
        refuseCustom(QStringLiteral("X and Y are numbers from %1 to %2")
                         .arg(slowestSpeed)
                         .arg(fastestSpeed));
    const QString &name = words.at(2);
    if (name.toUcs4().size() > longestCustomName || !isCustomName(name))
        refuseCustom(QStringLiteral("the name has 1 to %1 printable characters and no blank")
                         .arg(longestCustomName));
    if (presetNamed(name))
        refuseCustom(QStringLiteral("the name is that of a resolution"));
    values_.custom.at(place(key)) = MouseMovement{*x, *y, name};
}
