#pragma once

#include "device/ports.h"

#include <QString>
#include <QStringList>
#include <array>
#include <optional>
#include <string>
#include <string_view>

/// Custom mouse movement settings and channel resolutions: their commands and their texts.
/// Direction of all commands: utility to switch, without the carriage return that the link appends.

/// The items that every resolution selector starts with; custom settings 1 to 4 follow them.
inline constexpr int presetResolutions = 9;
inline constexpr int customSettings = 4;
/// Resolutions are numbered from 1 to this.
inline constexpr int resolutionCount = presetResolutions + customSettings;

/// The item of `setting`, both zero-based: custom settings follow the presets.
constexpr int customItem(int setting)
{
    return presetResolutions + setting;
}

/// The presets' names in the order of their numbers: "1080p" to "1920x4320". The window's form
/// lists the same in its selectors.
const QStringList &presetNames();

/// The speeds that the switch takes for X and Y.
inline constexpr int slowestSpeed = 1;
inline constexpr int fastestSpeed = 500;

/// The bytes that the command of a custom setting may have: the switch's buffer of 100 holds an end
/// mark too.
inline constexpr std::size_t longestCustomCommand = 99;

/// The columns of a custom setting: X in characters 0 to 2, Y in 4 to 6, the name from here on.
inline constexpr std::size_t reportedNameOffset = 8;
/// The same in the command that stores it, behind "//MM C1 ".
inline constexpr std::size_t storedNameOffset = 15;

/// What the edit fields hold, as typed.
struct MovementSetting
{
    QString name;
    QString x;
    QString y;
};

/// The resolution of one channel: `channel` 1 to 4, `index` the zero-based item of its selector.
/// Example: channel 4 set to "2K" (index 2) gives "//CE 4 3" (2F 2F 43 45 20 34 20 33).
std::string resolutionCommand(int channel, int index);

/// The submitted form, `setting` 1 to 4, with the blank behind the name that the switch requires:
/// "//MM C2 120 80 DESK " (2F 2F 4D 4D 20 43 32 20 31 32 30 20 38 30 20 44 45 53 4B 20).
/// It has at most 99 bytes; a longer name is shortened, at a whole character. Control characters
/// and byte order marks in the texts are dropped, and so are blanks around X and Y; "+80" and
/// "0080" are sent as "80", since the switch reads no more than three digits.
std::string submittedCommand(int setting, const MovementSetting &values);

/// The stored form, `setting` 1 to 4, without a trailing blank: "//MM C2 120 080 DESK". At most 99
/// bytes; what is longer is cut at a whole character.
std::string storedCommand(int setting, const MovementSetting &values);

/// What is wrong with the edit fields, in the words of the notice; empty when nothing is.
/// `setting` is the zero-based setting that is edited, `choices` the items of a resolution
/// selector.
QString customSettingProblem(const MovementSetting &values, int setting,
                             const QStringList &choices);

/// Whether `character` is left out of every name, read or sent. Control characters would end a
/// command early. A byte order mark is nothing to see, and is lost wherever a text begins with it.
bool isNoCharacterOfAName(QChar character);

/// Whether `name` can be the name of a custom setting that is read again as it was written: not
/// empty, printable, without a blank.
bool isCustomName(const QString &name);

/// The name inside `value`: what stands behind its first `skip` bytes, without blanks, control
/// characters and byte order marks; bytes that are no UTF-8 come as U+FFFD. Empty when there is no
/// more than that. Example: "100 250 OFFICE" with 8 gives "OFFICE".
std::string customEntryName(std::string_view value, std::size_t skip);

/// The fields of a data label, where X stands in characters 0 to 2, Y in 4 to 6 and the name from
/// character 8 on: "100 250 OFFICE". A field that the text does not reach is none; the fields
/// before it are there all the same. Blanks and tabs are dropped from the name only.
struct DataLabelFields
{
    QString x;
    std::optional<QString> y;
    std::optional<QString> name;
};
DataLabelFields dataLabelFields(const QString &text);

/// The items, zero-based, that the value of "Channels resolution:" names for channels 1 to 4.
/// Direction: switch to utility. `entries` are the names of a selector's items, in their order.
///
/// Four tokens (between them blanks, tabs, commas or semicolons; a CR at the end) are read one by
/// one: a whole number from 1 to 13 is that item, the name of an entry, in capitals or not, is that
/// entry, and anything else is none. "4K 10 OFFICE 1080p" with OFFICE as item 10 gives 1, 9, 10, 0.
///
/// Any other count of tokens is read for numbers alone, separated by anything that is no digit:
/// none for a number outside of 1 to 13 and for a channel without a number.
std::array<std::optional<int>, channelCount> channelResolutions(std::string_view value,
                                                                const QStringList &entries);
