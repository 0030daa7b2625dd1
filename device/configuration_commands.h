#pragma once

#include "device/switch_configuration.h"

#include <map>
#include <string>
#include <vector>

/// The commands that bring a switch from one configuration to another. Direction: utility to
/// switch, without the carriage return that the link appends.

/// A command and what it is sent for.
struct SettingCommand
{
    std::string text;
    SettingKey key = SettingKey::KmControl; ///< `Layout` also for the ports around a layout

    bool operator==(const SettingCommand &) const = default;
};

/// A settings file is applied in two halves with a rest between them, and so is any change. First:
/// KM control, custom settings, resolutions. Second: USB control, port limit, cursor rolling,
/// layout, buzzer, mouse mode.
bool isInSecondHalf(SettingKey key);

/// The command of each setting as somebody else has written it, to be sent as it stands.
using WrittenCommands = std::map<SettingKey, std::string>;

/// The command that sets `key` to what `configuration` says; empty where it is not known or cannot
/// be set. A custom setting's ends in the blank that the switch requires.
/// Example: custom setting 2, X 120, Y 80, name DESK: "//MM C2 120 80 DESK "
/// (2F 2F 4D 4D 20 43 32 20 31 32 30 20 38 30 20 44 45 53 4B 20).
std::string settingCommand(const SwitchConfiguration &configuration, SettingKey key);

/// The commands for `keys`, whose values are in `wanted`, to a switch that is as `now` says, in the
/// order of a settings file. A key in `asWritten` is sent as it stands there; one that `wanted`
/// does not know is left out.
///
/// A layout goes out with all ports active, because an inactive channel has no code of its own:
/// "//D4" before it unless they are, and the number of ports behind it where it is less than that.
/// A port limit among `keys` is not sent twice then: the number behind the layout is the wanted
/// one. Where the number of ports is known neither from `now` nor from `wanted`, the layout goes
/// alone. Example, two ports active, layout and a limit of three wanted:
/// "//D4", "//FF01B01FF02B02FF03B05FF04B06", "//D3".
std::vector<SettingCommand> commandsFor(const std::vector<SettingKey> &keys,
                                        const SwitchConfiguration &now,
                                        const SwitchConfiguration &wanted,
                                        const WrittenCommands &asWritten = {});
