#pragma once

#include <QString>
#include <string>

/// Where passwords come from. None is taken from the command line or appears in any output. Where
/// somebody is asked, Ctrl+C throws Interrupted.

/// A module's password: the first line of `file` where one is named, else PELORA_PASSWORD, else a
/// prompt without echo.
/// Throws UsageError where there is none, or no terminal to ask at.
QString modulePassword(const std::string &file);

/// The same for a new one, with PELORA_NEW_PASSWORD; the prompt asks twice.
QString newModulePassword(const std::string &file);

/// Asks `question` on the terminal; true for an answer that begins with "y" or "Y".
bool askYesNo(const QString &question);
