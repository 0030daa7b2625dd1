#pragma once

#include <string>

/// `number` in decimal with at least `width` digits, zero-filled: (7, 2) gives "07".
std::string padded(int number, int width);

/// `bytes` for a log line: printable ASCII as it stands, CR, LF and tab as "\r", "\n", "\t",
/// anything else as "\xHH". "//rl" CR gives `//rl\r`.
std::string printable(const std::string &bytes);
