#pragma once

#include <chrono>

/// What goes wrong with a network module, on purpose. A fresh value is a healthy module.
struct ModuleFaults
{
    /// Hears and obeys, but answers nothing on the management port.
    bool silent = false;
    /// Discovery answers of so many bytes instead of 36; 0: 36.
    int discoverySize = 0;
    /// How many more discovery answers have that size; 0: all.
    int discoverySizeTimes = 0;
    /// Wait before every management answer.
    std::chrono::milliseconds late{0};
    /// Every management answer comes so many times more.
    int duplicates = 0;
    /// Configuration answers are cut to so many bytes; 0: whole.
    int truncatedBytes = 0;
    /// Refuses every login, with the right credentials as well.
    bool refuse = false;
    /// Restarts when it is set up, with the settings that it had.
    bool keepOld = false;
    /// Reports a name that fills its 16 bytes, without a zero byte behind it.
    bool longName = false;
    /// Reports a name whose bytes are no UTF-8.
    bool rawName = false;
    /// All modules report the address of the first.
    bool sameAddress = false;
    /// The switch's answers leave in datagrams of at most so many bytes; 0: as they come.
    int splitBytes = 0;

    bool operator==(const ModuleFaults &) const = default;
};
