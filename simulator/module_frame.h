#pragma once

#include "simulator/module_state.h"
#include "simulator/rejection.h"

#include <QByteArray>
#include <string>
#include <variant>

/// The module's management frames, seen from the module. Each request is FF, a length byte (the
/// count of bytes between the command and the checksum, the command included), the command, its
/// fields, and a checksum: the sum of all bytes behind FF, modulo 256.

/// What a setup request wants to be written.
struct ModuleSetup
{
    bool dhcp = false;
    Ipv4 address{};
    Ipv4 gateway{};
    Ipv4 subnetMask{};
    std::string name{};
    std::string username{};
    std::string password{};
};

/// A request as the module has understood it. Credentials come without the zeros that fill them up.
struct ModuleRequest
{
    enum class Kind {
        Search, ///< FF 01 01 02
        Login,  ///< FF 13 03, MAC, user name, password, checksum: 22 bytes
        Setup,  ///< FF 56 05 ...: 89 bytes, fewer with a shortened name
        Commit, ///< FF 13 04, as Login: 22 bytes
    };

    Kind kind;
    Mac mac{};
    std::string username{};
    std::string password{};
    ModuleSetup setup{};
};

/// Reads one datagram that came from a utility.
///
/// Setup: offset 3 MAC, 9 user name (6), 15 password (6), 21 `09 38 03`, 24 allocation (00 DHCP,
/// 80 static), 25 `20 19 50 00 02`, 30 address, 34 gateway, 38 mask (each with its last octet
/// first), 42 name (16), 58 new user name (6), 64 new password (6), 70 `02 01 00 00`, 74 MAC again,
/// 80 `10 0E 00 00 01 00 00 00`, 88 checksum. The name may be shorter, and then so is the frame;
/// its length byte stays 56.
std::variant<ModuleRequest, Rejection> decodeRequest(const QByteArray &datagram);

/// The answer to a search, 36 bytes to the asker: offset 5 address (first octet first), 9 MAC,
/// 19 name (16 bytes, zero-filled).
/// Example: FF 21 01 00 00 C0 00 02 07 02 00 00 00 00 01 ...
QByteArray discoveryAnswer(const ModuleState &state);

/// The answer to a good login, 260 bytes: offset 3 allocation (40 DHCP, 80 static), 9 static
/// address, 13 gateway, 17 mask, each with its last octet first.
/// Example: FF 01 03 80 00 00 00 00 00 07 02 00 C0 ...
QByteArray configurationAnswer(const ModuleState &state);

/// The answer to a login with wrong credentials: FF 01 03 04.
QByteArray refusalAnswer();
