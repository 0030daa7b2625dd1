#pragma once

#include <string>

/// The completion for `shell` ("bash", "zsh", "fish"), to be read by it: commands, options, keys of
/// settings, and files where an option takes one. Made from the command line itself.
std::string completionFor(const std::string &shell);
