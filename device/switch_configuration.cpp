#include "device/switch_configuration.h"

#include <algorithm>

namespace {
/// `known` as text, none where it is not known.
template <typename Value, typename Text>
std::optional<QString> textOf(const std::optional<Value> &known, Text text)
{
    if (!known)
        return std::nullopt;
    return text(*known);
}

std::optional<QString> numberText(std::optional<int> number)
{
    return textOf(number, [](int known) { return QString::number(known); });
}

std::optional<QString> onOffText(std::optional<bool> on)
{
    return textOf(on,
                  [](bool known) { return known ? QStringLiteral("on") : QStringLiteral("off"); });
}

QString resolutionText(int number, const QStringList &names)
{
    const QString name = names.value(number - 1);
    const bool tells = !name.isEmpty() && names.count(name) == 1;
    return tells ? name : QString::number(number);
}

const std::optional<int> &resolutionOf(const SwitchConfiguration &configuration, SettingKey key)
{
    return configuration.resolutions.at(static_cast<std::size_t>(settingNumber(key) - 1));
}

const std::optional<MouseMovement> &customOf(const SwitchConfiguration &configuration,
                                             SettingKey key)
{
    return configuration.custom.at(static_cast<std::size_t>(settingNumber(key) - 1));
}
} // namespace

QStringList resolutionNames(const SwitchConfiguration &configuration)
{
    QStringList names = presetNames();
    for (const std::optional<MouseMovement> &custom : configuration.custom)
        names.append(custom ? custom->name : QString());
    return names;
}

bool hasSetting(const SwitchConfiguration &configuration, SettingKey key)
{
    return settingText(configuration, key).has_value();
}

std::optional<QString> settingText(const SwitchConfiguration &configuration, SettingKey key)
{
    switch (key) {
    case SettingKey::KmControl:
        return numberText(configuration.kmControl);
    case SettingKey::UsbControl:
        return numberText(configuration.usbControl);
    case SettingKey::ActivePorts:
        return numberText(configuration.activePorts);
    case SettingKey::CursorRolling:
        return onOffText(configuration.cursorRolling);
    case SettingKey::Buzzer:
        return onOffText(configuration.buzzerOn);
    case SettingKey::MouseMode:
        return textOf(configuration.relativeMouse, [](bool relative) {
            return relative ? QStringLiteral("relative") : QStringLiteral("absolute");
        });
    case SettingKey::Layout:
        return textOf(configuration.layout, layoutText);
    case SettingKey::Hotkey:
        return configuration.hotkeyTrigger;
    default:
        break;
    }
    if (isResolution(key))
        return textOf(resolutionOf(configuration, key), [&](int number) {
            return resolutionText(number, resolutionNames(configuration));
        });
    return textOf(customOf(configuration, key), [](const MouseMovement &custom) {
        return QStringLiteral("%1 %2 ").arg(custom.x).arg(custom.y) + custom.name;
    });
}

QString layoutText(const DisplayLayout &layout)
{
    QString text = QStringLiteral("..../..../..../....");
    constexpr int rowWidth = gridSide + 1;
    for (int channel = 1; channel <= channelCount; ++channel) {
        const GridPosition cell = layout.at(static_cast<std::size_t>(channel - 1));
        if (isOnGrid(cell))
            text[cell.row * rowWidth + cell.column] = QLatin1Char(static_cast<char>('0' + channel));
    }
    return text;
}

bool isSameSetting(const SwitchConfiguration &left, const SwitchConfiguration &right,
                   SettingKey key)
{
    if (!hasSetting(left, key) || !hasSetting(right, key))
        return false;
    if (isResolution(key))
        return resolutionOf(left, key) == resolutionOf(right, key);
    const Qt::CaseSensitivity cases =
        isCustomSetting(key) ? Qt::CaseInsensitive : Qt::CaseSensitive;
    return settingText(left, key)->compare(*settingText(right, key), cases) == 0;
}

SwitchConfiguration withChanges(const SwitchConfiguration &now, const SwitchConfiguration &changes)
{
    SwitchConfiguration result = now;
    const auto take = [](auto &known, const auto &change) {
        if (change)
            known = change;
    };
    take(result.kmControl, changes.kmControl);
    take(result.usbControl, changes.usbControl);
    take(result.activePorts, changes.activePorts);
    take(result.cursorRolling, changes.cursorRolling);
    take(result.relativeMouse, changes.relativeMouse);
    take(result.buzzerOn, changes.buzzerOn);
    for (std::size_t at = 0; at < result.resolutions.size(); ++at)
        take(result.resolutions.at(at), changes.resolutions.at(at));
    for (std::size_t at = 0; at < result.custom.size(); ++at)
        take(result.custom.at(at), changes.custom.at(at));
    take(result.layout, changes.layout);
    take(result.hotkeyTrigger, changes.hotkeyTrigger);
    return result;
}

std::vector<SettingDifference> differences(const SwitchConfiguration &from,
                                           const SwitchConfiguration &to)
{
    std::vector<SettingDifference> found;
    for (const SettingKey key : allSettingKeys()) {
        if (key == SettingKey::Hotkey || isSameSetting(from, to, key))
            continue;
        if (const std::optional<QString> wanted = settingText(to, key))
            found.push_back({key, settingText(from, key), *wanted});
    }
    return found;
}

std::vector<SettingKey> keysOf(const std::vector<SettingDifference> &found)
{
    std::vector<SettingKey> keys(found.size());
    std::transform(found.begin(), found.end(), keys.begin(),
                   [](const SettingDifference &difference) { return difference.key; });
    return keys;
}
