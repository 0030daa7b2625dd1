#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

/// Standard input, whose reading Ctrl+C ends: it throws Interrupted then. On Windows the console
/// ends the reading itself, as if that were the end of what there is.

/// The next line, without its end; none at the end of what there is.
std::optional<QString> inputLine();

/// All that there is. Throws std::runtime_error where it cannot be read, in the system's words.
QByteArray wholeInput();
