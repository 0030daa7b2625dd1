#pragma once

#include "device/configuration_commands.h"
#include "device/settings_text.h"

#include <string>
#include <string_view>
#include <vector>

/// A configuration as the text of a settings file, both ways.

/// A line whose value is not the command, or the place, of its key.
struct SettingsLineError
{
    int line = 0; ///< from 1
    std::string key;
    std::string value; ///< as it stands, so make it visible

    bool operator==(const SettingsLineError &) const = default;
};

/// What a settings file says.
struct SettingsReading
{
    SwitchConfiguration configuration; ///< the hotkey is in no file
    WrittenCommands commands;          ///< the lines of what `configuration` knows
    std::vector<SettingsLineError> errors;
    /// The keys that no line has, and those of an empty value. A label and a place may be empty.
    std::vector<std::string> missing;
};

/// Reads the text of a settings file strictly: every line has to be the command of its key. The
/// first line of a key counts, other lines are skipped; CR LF and a byte order mark do no harm.
/// A custom setting's line may end in a blank; one with other blanks than those that fill columns
/// up is taken, and has the command of what it says in `commands`. Its name is any that a switch
/// can report: UTF-8 without blanks, control characters and byte order marks.
///
/// Grid settings that name channel 3 twice and not channel 4 come from a window with inactive
/// ports. The layout is that of the four coordinates then, and `commands` has its whole command.
SettingsReading readSettings(std::string_view text);

/// The values of the file's lines, what is not known as empty ones.
SettingsValues settingsValues(const SwitchConfiguration &configuration);
/// The 23 lines: X and Y of custom settings with three digits, no blank behind their names.
std::string settingsText(const SwitchConfiguration &configuration);
