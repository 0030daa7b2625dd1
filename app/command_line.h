#pragma once

#include <QString>
#include <variant>

/// What the command line asks of the window.
struct CommandLine
{
    QString recordFile; ///< where to keep what passes on the link; empty: nowhere
};

/// What the program ends with after a mistake on the command line.
inline constexpr int mistakeStatus = 2;

/// The command line ends the program before a window opens: `text` for standard output (status 0)
/// or standard error (status 2, a mistake).
struct EarlyEnd
{
    QString text;
    int status;
};

/// Reads the command line as main() has it. Needs no application and no display; what Qt itself
/// takes ("-platform", "-style" ...) is left to it.
std::variant<CommandLine, EarlyEnd> readCommandLine(int argc, char **argv);

/// A mistake: `text` is a clause for people.
EarlyEnd mistake(const QString &text);
