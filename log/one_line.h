#pragma once

#include <string>
#include <string_view>

/// `text` (UTF-8) as one line that a viewer or a terminal shows and does not obey: control
/// characters are written as `\n`, `\r`, `\t` or `\x1b`, controls, separators and marks of
/// direction beyond ASCII as `\u0085`, `\u2028` or `\u202e`, and bytes that are no UTF-8 as `\xff`.
/// A backslash stands for itself.
std::string asOneLine(std::string_view text);
