#pragma once

#include "device/custom_setting.h"
#include "device/layout_command.h"
#include "device/ports.h"
#include "device/setting_key.h"

#include <QString>
#include <array>
#include <optional>
#include <vector>

/// A custom mouse movement setting: "120 80 DESK".
struct MouseMovement
{
    int x = 0; ///< 1 to 500, as is the next
    int y = 0;
    QString name; ///< without blanks, not empty

    bool operator==(const MouseMovement &) const = default;
};

/// All settings of one switch. What is not known of it is none, so that a part of it can be shown,
/// compared and set as well.
struct SwitchConfiguration
{
    std::optional<int> kmControl;   ///< the port that has keyboard and mouse, 1 to 4
    std::optional<int> usbControl;  ///< the port that has the USB devices, 1 to 4
    std::optional<int> activePorts; ///< 2 to 4
    std::optional<bool> cursorRolling;
    std::optional<bool> relativeMouse; ///< else the mouse mode is absolute
    std::optional<bool> buzzerOn;
    /// By channel, 1 to 13: the presets and behind them the custom settings.
    std::array<std::optional<int>, channelCount> resolutions;
    std::array<std::optional<MouseMovement>, customSettings> custom;
    std::optional<DisplayLayout> layout; ///< four cells of the grid, no two alike
    std::optional<QString> hotkeyTrigger;

    bool operator==(const SwitchConfiguration &) const = default;
};

/// The names of resolutions 1 to 13 at this switch: nine presets, four custom settings. The name of
/// one that is not known is empty.
QStringList resolutionNames(const SwitchConfiguration &configuration);

/// Whether `key` is known.
bool hasSetting(const SwitchConfiguration &configuration, SettingKey key);

/// The value of `key` for people: "3", "on", "absolute", "4K" (a resolution by its name, by its
/// number where the name is not known or stands twice), "120 80 DESK", "12../34../..../....". None
/// when it is not known.
std::optional<QString> settingText(const SwitchConfiguration &configuration, SettingKey key);

/// Four rows of four cells from the top left, a channel's digit or a dot: "..../.12./.34./....".
QString layoutText(const DisplayLayout &layout);

/// Whether both know `key` and mean the same. Resolutions are the same by their numbers, names of
/// custom settings whatever their case: a switch may store capitals.
bool isSameSetting(const SwitchConfiguration &left, const SwitchConfiguration &right,
                   SettingKey key);

/// `now` with everything that `changes` knows in its place.
SwitchConfiguration withChanges(const SwitchConfiguration &now, const SwitchConfiguration &changes);

/// A setting that is to be another.
struct SettingDifference
{
    SettingKey key = SettingKey::KmControl;
    std::optional<QString> from; ///< as settingText; none when it is not known
    QString to;

    bool operator==(const SettingDifference &) const = default;
};

/// What has to change to get from `from` to `to`, in the order of the keys: each setting that `to`
/// knows and that is not the same in `from`. The hotkey cannot be set and never differs.
std::vector<SettingDifference> differences(const SwitchConfiguration &from,
                                           const SwitchConfiguration &to);

/// The keys of `found`, in its order.
std::vector<SettingKey> keysOf(const std::vector<SettingDifference> &found);
