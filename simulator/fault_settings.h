#pragma once

#include "simulator/module_faults.h"
#include "simulator/switch_faults.h"

#include <string>

/// All faults of one simulation.
struct Faults
{
    SwitchFaults ofSwitch{};
    ModuleFaults ofModule{};

    bool operator==(const Faults &) const = default;
};

/// Faults by name, as the command line ("--fault delay=300") and the console ("fault delay 300")
/// write them. Names and values are ASCII; times are milliseconds.

/// Turns the fault `name` on with `value`. An empty value stands for the fault's default, where it
/// has one; "off" turns it off; the name "none" turns all off. Returns what is wrong, or an empty
/// text; then `faults` has changed.
std::string setFault(Faults &faults, const std::string &name, const std::string &value);

/// The same for "NAME" or "NAME=VALUE".
std::string setFault(Faults &faults, const std::string &assignment);

/// The faults that are on, one "NAME=VALUE" line each, ended by LF; empty when all is well.
std::string faultsText(const Faults &faults);

/// All faults with their values and meaning, one line each, indented by two blanks.
std::string faultHelp();
