#pragma once

#include <string>

/// What the program says to its user. Both write whole lines and flush, so that another program
/// reading them sees each at once.

/// One line on standard output: what was asked for.
void printLine(const std::string &line);

/// One line on standard error: what happens.
void reportLine(const std::string &line);
