#pragma once

#include <array>
#include <string>

/// One custom mouse movement setting: two speeds (1 to 500) and a name of at most 24 bytes of
/// UTF-8.
struct CustomSetting
{
    int x = 100;
    int y = 100;
    std::string name;

    bool operator==(const CustomSetting &) const = default;
};

/// Everything that the simulated switch remembers. A fresh value holds the factory settings.
/// Numbers are as on the wire: channels, positions and resolutions count from 1. Values outside
/// their ranges may be put in on purpose; the switch reports them as they are.
struct SwitchState
{
    static constexpr int customCount = 4;
    static constexpr int resolutionCount = 9 + customCount; ///< presets and custom settings

    int kmControl = 1;          ///< channel with keyboard and mouse, 1 to 4
    int usbControl = 1;         ///< channel with the USB devices, 1 to 4
    bool relativeMouse = false; ///< false: absolute mouse mode
    bool cursorRolling = false;
    int activePorts = 4; ///< 2 to 4
    bool buzzer = true;
    std::array<int, 4> layout{1, 2, 3, 4}; ///< grid cell per channel, 1 (top left) to 16
    /// Per channel, from 1; the last `customCount` are the custom settings.
    std::array<int, 4> resolutions{1, 1, 1, 1};
    std::array<CustomSetting, customCount> custom{
        CustomSetting{100, 100, "CUSTOM1"}, CustomSetting{100, 100, "CUSTOM2"},
        CustomSetting{100, 100, "CUSTOM3"}, CustomSetting{100, 100, "CUSTOM4"}};
    std::string hotkeyTrigger = "Left Ctrl";

    bool operator==(const SwitchState &) const = default;
};

/// The state in lines that stay the same from version to version, one property each, ended by LF.
/// Equal states give equal texts. First line: "KM control: 1".
std::string stateText(const SwitchState &state);
