#pragma once

#include "device/switch_configuration.h"

#include <QString>
#include <array>
#include <optional>
#include <vector>

/// Settings as people and scripts write them: "km-control=3", "layout=12/34".

/// The longest name of a custom setting that may be given here, in characters.
inline constexpr qsizetype longestCustomName = 16;

/// The layout that `text` draws: up to four rows of up to four cells from the top left joined by
/// "/", each a channel's digit or a dot; what is not drawn is empty. Every channel stands in it
/// once. "12/34" is a square in the top left corner. Throws std::invalid_argument, with a sentence
/// for people, on anything else.
DisplayLayout layoutFrom(const QString &text);

/// Whether the displays touch edge to edge, as they should.
bool touchEdgeToEdge(const DisplayLayout &layout);

/// What a list of KEY=VALUE asks for.
///
///     km-control, usb-control   1 to 4
///     active-ports              2 to 4
///     cursor-rolling, buzzer    on, off
///     mouse-mode                absolute, relative
///     resolution.1 to .4        1 to 13, a preset's name or a custom setting's
///     custom.1 to .4            "X Y NAME": 1 to 500 twice, 1 to 16 characters without a blank
///     layout                    as layoutFrom
///
/// "_" in a key counts as "-", and names are compared without regard to case. The names of custom
/// settings are the switch's, so a resolution that is none of the presets stays open until
/// atSwitch().
class SettingValues
{
public:
    /// Takes one "KEY=VALUE". Throws std::invalid_argument with a sentence for people: a key that
    /// there is not or that stands twice, a value that is none of its key's.
    void add(const QString &assignment);

    /// The keys in the order in which they were given.
    const std::vector<SettingKey> &keys() const { return keys_; }
    /// What the switch has to tell of itself before anything can be sent: the keys, the number of
    /// ports for a layout, the custom settings for a name that may be one's.
    std::vector<SettingKey> needed() const;

    /// The values at a switch that is as `now` says. Throws std::invalid_argument where a
    /// resolution's name is not there or stands twice, and where a custom setting's name is that of
    /// another entry of the resolution list.
    SwitchConfiguration atSwitch(const SwitchConfiguration &now) const;

private:
    void read(SettingKey key, const QString &value);
    void readResolution(SettingKey key, const QString &value);
    void readCustom(SettingKey key, const QString &value);

    std::vector<SettingKey> keys_;
    SwitchConfiguration values_;
    std::array<QString, channelCount> resolutionNames_; ///< still to be found; empty otherwise
};
