#pragma once

#include "cli/options.h"

#include <QStringList>
#include <memory>
#include <string>
#include <variant>

namespace CLI {
class App;
}

/// The command line ends the program before it begins: `text` for standard output (status 0) or
/// standard error (status 2, a mistake).
struct EarlyEnd
{
    std::string text;
    int status = 0;
};

/// Reads the command line; `arguments` starts with the program's name.
std::variant<Options, EarlyEnd> readArguments(const QStringList &arguments);

/// The commands and options that there are, which fill `options` when they are parsed.
std::unique_ptr<CLI::App> commandLine(Options &options);
