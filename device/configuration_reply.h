#pragma once

#include "device/switch_configuration.h"

#include <string>
#include <string_view>
#include <vector>

/// A configuration out of the texts of the switch's replies. Direction: switch to utility.

/// A setting that a reply does not tell.
struct ReplyProblem
{
    enum class Kind {
        Missing,  ///< its key is not there, or stands alone
        Malformed ///< its value cannot be one
    };

    SettingKey key = SettingKey::KmControl;
    Kind kind = Kind::Missing;
    std::string
        value; ///< what stands there, without the line's end; as it came, so make it visible

    bool operator==(const ReplyProblem &) const = default;
};

/// What could be read and, for each setting that could not, why.
struct ConfigurationReading
{
    SwitchConfiguration configuration;
    std::vector<ReplyProblem> problems; ///< in the order of the keys

    bool operator==(const ConfigurationReading &) const = default;
};

/// Reads the answers to the three questions: the configuration listing, the status, the layout.
/// Each value is what follows the first occurrence of its key up to the line's end; a CR and blanks
/// before that end do not count. The status key of USB control is read with a colon and without.
///
/// A number counts up to the first character that is no digit, as in the window. Malformed are: a
/// number that no port, limit or resolution has, a word with a control character, speeds outside of
/// 1 to 500, a layout that names no cell of the grid or one cell twice. A custom setting's line
/// that is too short for X, Y and a name counts as missing.
ConfigurationReading readConfiguration(std::string_view configurationReply,
                                       std::string_view statusReply, std::string_view layoutReply);
/// The same where one text holds the three answers.
ConfigurationReading readConfiguration(std::string_view reply);

/// Whether a key is there that only an answer has, so that one has begun. Who has control is told
/// by the switch on its own as well.
bool holdsPartOfAnswer(std::string_view reply);

/// Whether every key is there with its line ended, so that no more is to come of an answer.
bool isWholeAnswer(std::string_view reply);
