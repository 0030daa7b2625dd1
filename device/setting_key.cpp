#include "device/setting_key.h"

#include <algorithm>

namespace {
constexpr int firstResolution = static_cast<int>(SettingKey::FirstResolution);
constexpr int firstCustom = static_cast<int>(SettingKey::FirstCustom);

QString groupName(SettingKey key)
{
    switch (key) {
    case SettingKey::KmControl:
        return QStringLiteral("km-control");
    case SettingKey::UsbControl:
        return QStringLiteral("usb-control");
    case SettingKey::ActivePorts:
        return QStringLiteral("active-ports");
    case SettingKey::CursorRolling:
        return QStringLiteral("cursor-rolling");
    case SettingKey::Buzzer:
        return QStringLiteral("buzzer");
    case SettingKey::MouseMode:
        return QStringLiteral("mouse-mode");
    case SettingKey::Layout:
        return QStringLiteral("layout");
    case SettingKey::Hotkey:
        return QStringLiteral("hotkey");
    default:
        return isResolution(key) ? QStringLiteral("resolution") : QStringLiteral("custom");
    }
}

/// The names of allSettingKeys(), in their order.
const std::vector<QString> &allNames()
{
    static const std::vector<QString> names = [] {
        std::vector<QString> all;
        for (const SettingKey key : allSettingKeys()) {
            const int number = settingNumber(key);
            all.push_back(number == 0 ? groupName(key)
                                      : QStringLiteral("%1.%2").arg(groupName(key)).arg(number));
        }
        return all;
    }();
    return names;
}
} // namespace

SettingKey resolutionSetting(int channel)
{
    return static_cast<SettingKey>(firstResolution + channel - 1);
}

SettingKey customSetting(int number)
{
    return static_cast<SettingKey>(firstCustom + number - 1);
}

int settingNumber(SettingKey key)
{
    if (isResolution(key))
        return static_cast<int>(key) - firstResolution + 1;
    return isCustomSetting(key) ? static_cast<int>(key) - firstCustom + 1 : 0;
}

bool isResolution(SettingKey key)
{
    return key >= SettingKey::FirstResolution && key <= SettingKey::LastResolution;
}

bool isCustomSetting(SettingKey key)
{
    return key >= SettingKey::FirstCustom && key <= SettingKey::LastCustom;
}

const std::vector<SettingKey> &allSettingKeys()
{
    static const std::vector<SettingKey> keys = [] {
        std::vector<SettingKey> all;
        for (int key = 0; key <= static_cast<int>(SettingKey::Hotkey); ++key)
            all.push_back(static_cast<SettingKey>(key));
        return all;
    }();
    return keys;
}

QString settingName(SettingKey key)
{
    return allNames().at(static_cast<std::size_t>(key));
}

std::optional<SettingKey> settingOfName(const QString &name)
{
    const std::vector<QString> &names = allNames();
    const auto found = std::find(names.begin(), names.end(), name);
    if (found == names.end())
        return std::nullopt;
    return allSettingKeys().at(static_cast<std::size_t>(found - names.begin()));
}
