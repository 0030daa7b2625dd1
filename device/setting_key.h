#pragma once

#include "device/custom_setting.h"
#include "device/ports.h"

#include <QString>
#include <optional>
#include <vector>

/// The settings of a switch by name: what can be asked for, compared and set one by one.
enum class SettingKey {
    KmControl,
    UsbControl,
    ActivePorts,
    CursorRolling,
    Buzzer,
    MouseMode,
    FirstResolution, ///< and those behind it, by channel
    LastResolution = FirstResolution + channelCount - 1,
    FirstCustom, ///< and those behind it, by number
    LastCustom = FirstCustom + customSettings - 1,
    Layout,
    Hotkey ///< can be read only
};

/// The resolution of `channel` 1 to 4.
SettingKey resolutionSetting(int channel);
/// Custom setting `number` 1 to 4.
SettingKey customSetting(int number);
/// The channel or the custom setting, 1 to 4, that `key` is about; 0 where it is about neither.
int settingNumber(SettingKey key);
bool isResolution(SettingKey key);
bool isCustomSetting(SettingKey key);

/// All of them in the order of the enumeration, `Hotkey` last.
const std::vector<SettingKey> &allSettingKeys();

/// The name for people and scripts, which stays as it is: "km-control", "usb-control",
/// "active-ports", "cursor-rolling", "buzzer", "mouse-mode", "resolution.1" to "resolution.4",
/// "custom.1" to "custom.4", "layout", "hotkey".
QString settingName(SettingKey key);
/// The setting of that name; none when there is none.
std::optional<SettingKey> settingOfName(const QString &name);
