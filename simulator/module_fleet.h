#pragma once

#include "simulator/module_state.h"

#include <optional>
#include <vector>

/// What several modules have in common, and where they differ.
struct FleetPlan
{
    int size = 1; ///< 1 to 1000
    /// The first module; the others count up from it: the MAC address, of which the first three
    /// octets stay (past FF:FF:FF it goes on at 00:00:00), the network address, and a name with
    /// "-2", "-3" ... behind it, cut before that where it would pass 16 bytes.
    ModuleState first;
    /// Addresses of the first modules; the modules beyond count up from the last of them. Empty:
    /// from the first module's own. The last octet goes up to 254; in 127/8, where this machine has
    /// every address, they go on from 127.1.0.255 to 127.1.1.0 and so on.
    std::vector<Ipv4> addresses;
    /// The gateway of all; without one, each module's own address with the last octet 254.
    std::optional<Ipv4> gateway;
};

/// The modules in order. Throws std::runtime_error with a text for the user when there are more
/// addresses than modules, or when counting up passes the last address.
std::vector<ModuleState> modulesOf(const FleetPlan &plan);
