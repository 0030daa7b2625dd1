#pragma once

#include "cli/printer.h"
#include "session/module_search.h"

/// What is there: listings of no device in particular.

/// The serial ports of this machine.
void printPorts(Printer &printer);

/// The modules that a search has found.
void printModules(Printer &printer, const ModuleSearchResult &found);

/// Why a search has found none, or could not be made; what to do stands behind it.
QString emptySearch(const ModuleSearchResult &found);
