#pragma once

#include <string>

/// `number` in decimal, filled up from the left to at least `width` characters: (7, 2) gives "07",
/// and with a blank to fill " 7".
std::string padded(int number, int width, char fill = '0');

/// `bytes` for a log line: printable ASCII as it stands, CR, LF and tab as "\r", "\n", "\t",
/// anything else as "\xHH". "//rl" CR gives `//rl\r`.
std::string printable(const std::string &bytes);
