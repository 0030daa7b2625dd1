#pragma once

#include <string_view>

/// The keys under which the switch reports, and the words that its two-valued settings have.
/// Direction: switch to utility; device/reply.h reads the value of a key.

inline constexpr std::string_view portLimitReplyKey = "KM Port Limit: ";
inline constexpr std::string_view cursorRollingReplyKey = "KM Cursor Rolling: ";
inline constexpr std::string_view mouseModeReplyKey = "KM tracking mode: ";
inline constexpr std::string_view resolutionsReplyKey = "Channels resolution:";
inline constexpr std::string_view buzzerReplyKey = "Buzzer: ";
inline constexpr std::string_view hotkeyReplyKey = "Current Hotkey Trigger: ";
inline constexpr std::string_view kmControlReplyKey = "Current KM Control: ";
/// In the status text a blank and the port follow. In what the switch says on its own, and in some
/// switches' status text, it is a colon, a blank and the port.
inline constexpr std::string_view usbControlReplyKey = "Current USB Control";
/// What the switch says on its own when USB control has moved.
inline constexpr std::string_view usbControlNewsKey = "Current USB Control: ";
/// Echoes of a change, each followed by the port that now has KM control, USB control, both.
inline constexpr std::string_view kmControlEcho = "**C";
inline constexpr std::string_view usbControlEcho = "**U";
inline constexpr std::string_view bothControlsEcho = "**M";
/// The echo of a resolution command, which is not to be taken for the first of these.
inline constexpr std::string_view resolutionEcho = "**CE";
/// The layout line begins with it; the first group's "FF" is part of the key.
inline constexpr std::string_view layoutReplyKey = "//FF";

/// "C1\t" to "C4\t": X, Y and the name of custom setting 1 to 4. `setting` is zero-based.
std::string_view customSettingReplyKey(int setting);

/// Whether `value` says that the setting is on. A settings file and a reply are read by the same
/// words, so the command that sets it counts as well. Whatever else is said means off.
bool saysCursorRollingOn(std::string_view value); ///< "Enabled", "//o1"
bool saysRelativeMouse(std::string_view value);   ///< "Relative Mouse Mode", "//km"
bool saysBuzzerOn(std::string_view value);        ///< "on", "//B1"
