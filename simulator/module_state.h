#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

/// An IPv4 address a.b.c.d, octets in that order.
using Ipv4 = std::array<std::uint8_t, 4>;
/// A MAC address, octets in writing order.
using Mac = std::array<std::uint8_t, 6>;

/// "192.0.2.7".
std::string toText(const Ipv4 &address);
/// "02:00:00:00:00:01".
std::string toText(const Mac &mac);
/// Four decimal octets and nothing else; otherwise nothing.
std::optional<Ipv4> ipv4From(const std::string &text);
/// Six pairs of hexadecimal digits between colons; otherwise nothing.
std::optional<Mac> macFrom(const std::string &text);

/// Everything that a simulated network module remembers.
struct ModuleState
{
    Mac mac{0x02, 0x00, 0x00, 0x00, 0x00, 0x01};
    bool dhcp = false;                ///< false: static allocation
    Ipv4 staticAddress{127, 0, 0, 1}; ///< held while the allocation is static
    Ipv4 leasedAddress{127, 0, 0, 1}; ///< what its network's DHCP server gives it
    Ipv4 subnetMask{255, 255, 255, 0};
    Ipv4 gateway{127, 0, 0, 254};
    std::string name = "PELORA-SIM"; ///< at most 16 bytes
    std::string username = "admin";  ///< at most 6 bytes
    std::string password = "admin";  ///< at most 6 bytes

    /// The address in force.
    const Ipv4 &address() const { return dhcp ? leasedAddress : staticAddress; }

    bool operator==(const ModuleState &) const = default;
};

/// The state in lines that stay the same from version to version, one property each, ended by LF.
/// Equal states give equal texts. First line: "Module MAC: 02:00:00:00:00:01".
std::string stateText(const ModuleState &state);
