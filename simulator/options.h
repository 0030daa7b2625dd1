#pragma once

#include "simulator/fault_settings.h"
#include "simulator/module_state.h"
#include "simulator/network_settings.h"

#include <QHostAddress>
#include <QString>
#include <QStringList>
#include <chrono>
#include <optional>
#include <variant>
#include <vector>

/// An IPv4 address and a UDP port; port 0 is any.
struct UdpPoint
{
    QHostAddress address;
    quint16 port;
};

/// A recording that is to be replayed.
struct ReplayOptions
{
    QString file;
    QString name; ///< of the recorded device; empty: the only one
    /// Symbolic link to the virtual port, which makes the face serial; empty: none.
    QString linkPath;
    std::optional<UdpPoint> udp; ///< makes the face UDP
    quint16 switchPort = 23;     ///< of a UDP face that nothing else is said of
    double speed = 1;            ///< divides the recorded waits; 0: none
};

/// What the command line asks for.
struct Options
{
    std::optional<ReplayOptions> replay; ///< instead of any simulation

    bool serial = false; ///< the serial face
    QString linkPath;    ///< symbolic link to the virtual port; empty: none
    QString portName;    ///< a real port instead of a virtual one; empty: virtual
    bool pacing = true;  ///< a virtual port is as slow as a line; a real one has its own speed

    std::vector<ModuleState> modules; ///< the network face; empty: none
    NetworkSettings network;

    /// How long a switch is deaf after a reset; 0: not at all.
    std::chrono::milliseconds switchRestartTime{300};

    Faults faults;

    bool console = false;          ///< read commands from standard input
    bool printState = false;       ///< print the state at the start and whenever it changes
    bool verbose = false;          ///< report every command and answer
    bool untilStdinCloses = false; ///< end with standard input
};

/// The command line ends the program before it begins: `text` for standard output (status 0) or
/// standard error (status 2, a mistake).
struct EarlyEnd
{
    QString text;
    int status;
};

/// Reads the command line; `arguments` starts with the program's name.
std::variant<Options, EarlyEnd> readOptions(const QStringList &arguments);
