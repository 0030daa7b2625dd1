#pragma once

#include <chrono>
#include <string>

/// The switch's command texts, without the carriage return that the link appends.
/// Direction of all: utility to switch. The three that read are in
/// device/read_back_commands.h.
/// Arguments named `index` are zero-based combo box indexes.

inline constexpr char softResetCommand[] = "//R";
inline constexpr char factoryResetCommand[] = "//F";
/// From a reset to the next question, by the road that the question takes.
inline constexpr std::chrono::milliseconds networkRestAfterReset{1350};
inline constexpr std::chrono::milliseconds serialRestAfterReset{2500};
inline constexpr char absoluteMouseCommand[] = "//ks";
inline constexpr char relativeMouseCommand[] = "//km";
inline constexpr char cursorRollingOffCommand[] = "//o0";
inline constexpr char cursorRollingOnCommand[] = "//o1";
inline constexpr char beepOnCommand[] = "//B1";
inline constexpr char beepOffCommand[] = "//B0";

/// `prefix` followed by `number` in decimal without padding, for example "//c" and 3: "//c3".
std::string numberedCommand(const std::string &prefix, int number);

/// "//ks" (absolute) for index 0, "//km" (relative) for every other.
std::string mouseModeCommand(int index);
/// "//o0" (off) for index 0, "//o1" (on) for every other.
std::string cursorRollingCommand(int index);
/// "//c" and the port 1 to 4, index + 1.
std::string kmControlCommand(int index);
/// "//u" and the port 1 to 4, index + 1.
std::string usbControlCommand(int index);
/// "//D" and the number of active ports 2 to 4, index + 2.
std::string activePortsCommand(int index);
/// "//B1" (on) or "//B0" (off).
std::string buzzerCommand(bool on);
