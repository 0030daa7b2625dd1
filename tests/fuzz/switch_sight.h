#pragma once

#include "device/configuration_commands.h"
#include "device/switch_configuration.h"
#include "simulator/switch_command.h"
#include "simulator/switch_state.h"

#include <optional>
#include <string>

/// What the simulated switch, which reads and writes with code of its own, makes of what the
/// utility says, and the other way round.

/// `command` (without its carriage return) as the switch reads it. Requires that it is one, that it
/// is no longer than the switch's buffer and that nothing in it could end it early. None where the
/// switch refuses a custom setting's name because its own answers look like it.
std::optional<SwitchCommand> requireUnderstood(const std::string &command);

/// Requires that the switch reads `command` as what sets `key` to what `wanted` says. Of a layout's
/// companions, the ports around it, only that they are understood.
void requireSets(const SettingCommand &command, const SwitchConfiguration &wanted);

/// What the switch keeps of a custom setting's name that is sent to it.
std::string keptName(const QString &sent);

/// Whether nothing can be read of the name that a switch in `state` has for the custom setting
/// `key`, because it is of blanks and control characters alone.
bool hasUnreadableName(const SwitchState &state, SettingKey key);

/// Requires that `configuration` is what a switch in `state` has, setting for setting. Blanks,
/// control characters and byte order marks in a custom setting's name are not read, and a setting
/// of which nothing is left is not; bytes that are no UTF-8 are U+FFFD.
void requireTells(const SwitchConfiguration &configuration, const SwitchState &state);
