#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Reading the switch's replies. A reply is free text in lines that end with LF; direction: switch
/// to utility. Values are found by key and never trimmed.

/// The text behind the first occurrence of `key` up to its line's LF or the end of `text`; none
/// when the key is absent.
std::optional<std::string_view> findReplyValue(std::string_view text, std::string_view key);

/// What stands for a value that is not there.
inline constexpr std::string_view absentValue = "0";

/// The text behind the first occurrence of `key` up to its line's LF or the end of `text`; "0" when
/// the key is absent or nothing stands behind it. A CR before the LF stays in the value.
/// Example: key "Buzzer: " in "Buzzer: on\nC1\t" (42 75 7A 7A 65 72 3A 20 6F 6E 0A ...) gives "on".
std::string replyValue(std::string_view text, std::string_view key);

/// `value` as a decimal number; leading blanks are skipped and it ends at the first non-digit.
/// Throws std::invalid_argument when no digit is found, std::out_of_range beyond an int.
int replyNumber(const std::string &value);

/// The zero-based item that the one-based number in `value` names. Throws like replyNumber.
int itemIndex(const std::string &value);
