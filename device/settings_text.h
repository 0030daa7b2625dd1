#pragma once

#include "device/custom_setting.h"
#include "device/layout_command.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

/// The text of a settings file: UTF-8, 23 lines of a key (which ends in ": ") and the command that
/// sets that setting, each ended by one line feed. docs/settings-file.md describes it for users.

/// The value of every line; see the keys below. Empty values are written as empty.
struct SettingsValues
{
    std::string kmControl;                             ///< "//c1" to "//c4"
    std::string usbControl;                            ///< "//u1" to "//u4"
    std::string limitPorts;                            ///< "//D2" to "//D4"
    std::string cursorRolling;                         ///< "//o0" or "//o1"
    std::array<std::string, channelCount> resolutions; ///< "//CE 1 1" and so on, by channel
    std::array<std::string, ::customSettings>
        customSettings;                                   ///< "//MM C1 100 250 OFFICE" and so on
    std::array<std::string, ::customSettings> dataLabels; ///< "100 250 OFFICE" and so on
    std::string gridSettings;                             ///< the layout command
    std::array<std::string, channelCount> coordinates;    ///< "row column", zero-based, by channel
    std::string buzzer;                                   ///< "//B0" or "//B1"
    std::string mouseMode;                                ///< "//ks" or "//km"
};

inline constexpr std::string_view kmControlKey = "KM Control: ";
inline constexpr std::string_view usbControlKey = "USB Control: ";
inline constexpr std::string_view limitPortsKey = "Limit Ports: ";
inline constexpr std::string_view cursorRollingKey = "Cursor Rolling: ";
inline constexpr std::array<std::string_view, channelCount> resolutionKeys = {
    "Resolution channel 1: ", "Resolution channel 2: ", "Resolution channel 3: ",
    "Resolution channel 4: "};
inline constexpr std::array<std::string_view, customSettings> customSettingKeys = {
    "Custom mouse movement setting 1: ", "Custom mouse movement setting 2: ",
    "Custom mouse movement setting 3: ", "Custom mouse movement setting 4: "};
inline constexpr std::array<std::string_view, customSettings> dataLabelKeys = {
    "Data from mouse movement label 1: ", "Data from mouse movement label 2: ",
    "Data from mouse movement label 3: ", "Data from mouse movement label 4: "};
static_assert(!resolutionKeys.back().empty() && !customSettingKeys.back().empty() &&
              !dataLabelKeys.back().empty());
inline constexpr std::string_view gridSettingsKey = "Grid settings: ";
inline constexpr std::array<std::string_view, channelCount> coordinatesKeys = {
    "Coordinates channel 1: ", "Coordinates channel 2: ", "Coordinates channel 3: ",
    "Coordinates channel 4: "};
static_assert(!coordinatesKeys.back().empty());
inline constexpr std::string_view buzzerKey = "Buzzer: ";
inline constexpr std::string_view mouseModeKey = "Mouse Mode: ";

/// The 23 lines in the order of the file: KM, USB and port limit, rolling, resolutions, custom
/// settings, labels, grid, coordinates, buzzer, mouse mode.
std::string settingsText(const SettingsValues &values);

/// A line of a settings file: what stands behind its key, without a CR at the line's end.
struct SettingsLine
{
    int number = 0; ///< from 1
    std::string_view value;
};

/// The first line of `text` that starts with `key`, whatever its value; none when no line does. A
/// byte order mark at the text's start does not count.
std::optional<SettingsLine> findSettingsLine(std::string_view text, std::string_view key);

/// Whether `value` can be one: it has no control character other than a tab, those beyond ASCII
/// (U+0080 to U+009F in UTF-8) included.
bool isSettingsValue(std::string_view value);

/// What stands behind `key` on the first line of `text` that starts with it. A CR at the line's end
/// and a byte order mark at the text's start do not count. None when no line has the key and when
/// the value holds a control character other than a tab. An empty value is a value.
std::optional<std::string> settingsValue(std::string_view text, std::string_view key);

/// Whether `text` has a line for at least one of the 23 keys.
bool holdsAnySetting(std::string_view text);

/// "row column": two decimal numbers joined by one blank, at most 9 characters.
std::string coordinatesText(GridPosition place);

/// The cell that a coordinates value names; none unless it is two numbers from 0 to 3 with blanks
/// between them.
std::optional<GridPosition> coordinatesFrom(std::string_view value);
