#include "simulator/module_state.h"

#include "simulator/text_form.h"

#include <charconv>
#include <sstream>
#include <vector>

namespace {

std::vector<std::string> split(const std::string &text, char separator)
{
    std::vector<std::string> parts(1);
    for (const char character : text) {
        if (character == separator)
            parts.emplace_back();
        else
            parts.back() += character;
    }
    return parts;
}

/// Fills `octets` from as many parts, each of one to `longest` digits of `base`.
template <std::size_t size>
bool readOctets(const std::vector<std::string> &parts, int base, std::size_t longest,
                std::array<std::uint8_t, size> &octets)
{
    if (parts.size() != size)
        return false;
    for (std::size_t i = 0; i < size; ++i) {
        const char *const end = parts[i].data() + parts[i].size();
        const auto [stop, error] = std::from_chars(parts[i].data(), end, octets[i], base);
        if (error != std::errc{} || stop != end || parts[i].size() > longest)
            return false;
    }
    return true;
}

} // namespace

std::string toText(const Ipv4 &address)
{
    std::string text = std::to_string(address[0]);
    for (std::size_t i = 1; i < address.size(); ++i)
        text.append(".").append(std::to_string(address[i]));
    return text;
}

std::string toText(const Mac &mac)
{
    static constexpr char hexDigits[] = "0123456789ABCDEF";
    std::string text;
    for (const std::uint8_t octet : mac) {
        text.append(text.empty() ? "" : ":");
        text.append(1, hexDigits[octet >> 4]).append(1, hexDigits[octet & 0x0f]);
    }
    return text;
}

std::optional<Ipv4> ipv4From(const std::string &text)
{
    Ipv4 address{};
    return readOctets(split(text, '.'), 10, 3, address) ? std::optional<Ipv4>(address)
                                                        : std::nullopt;
}

std::optional<Mac> macFrom(const std::string &text)
{
    Mac mac{};
    return readOctets(split(text, ':'), 16, 2, mac) ? std::optional<Mac>(mac) : std::nullopt;
}

std::string stateText(const ModuleState &state)
{
    std::ostringstream text;
    text << "Module MAC: " << toText(state.mac) << '\n'
         << "Module name: " << printable(state.name) << '\n'
         << "Module allocation: " << (state.dhcp ? "DHCP" : "static") << '\n'
         << "Module address: " << toText(state.address()) << '\n'
         << "Module static address: " << toText(state.staticAddress) << '\n'
         << "Module subnet mask: " << toText(state.subnetMask) << '\n'
         << "Module gateway: " << toText(state.gateway) << '\n'
         << "Module username: " << printable(state.username) << '\n'
         << "Module password: " << printable(state.password) << '\n';
    return text.str();
}
