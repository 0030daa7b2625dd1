#include "simulator/module_fleet.h"

#include <stdexcept>

namespace {

/// The last `count` octets as a number.
template <typename Octets>
std::size_t lastOctets(const Octets &octets, std::size_t count)
{
    std::size_t number = 0;
    for (std::size_t i = octets.size() - count; i < octets.size(); ++i)
        number = number << 8 | octets[i];
    return number;
}

/// The other way round; of a number too large the lower part.
template <typename Octets>
void setLastOctets(Octets &octets, std::size_t count, std::size_t number)
{
    for (std::size_t i = 0; i < count; ++i, number >>= 8)
        octets[octets.size() - 1 - i] = static_cast<std::uint8_t>(number & 0xFF);
}

Ipv4 addressOf(const FleetPlan &plan, std::size_t index)
{
    if (index < plan.addresses.size())
        return plan.addresses[index];
    const bool named = !plan.addresses.empty();
    Ipv4 address = named ? plan.addresses.back() : plan.first.staticAddress;
    const std::size_t step = named ? index - (plan.addresses.size() - 1) : index;
    const bool loopback = address[0] == 127;
    const std::uint32_t last = loopback ? 0xFFFFFE : 254;
    const std::size_t next = lastOctets(address, loopback ? 3 : 1) + step;
    if (next > last)
        throw std::runtime_error("the addresses from " + toText(address) +
                                 " on do not suffice for all modules");
    setLastOctets(address, loopback ? 3 : 1, next);
    return address;
}

std::string nameOf(const std::string &first, std::size_t index)
{
    constexpr std::size_t longestName = 16;
    if (index == 0)
        return first;
    const std::string suffix = "-" + std::to_string(index + 1);
    return first.substr(0, longestName - suffix.size()) + suffix;
}

} // namespace

std::vector<ModuleState> modulesOf(const FleetPlan &plan)
{
    const auto size = static_cast<std::size_t>(plan.size);
    if (plan.addresses.size() > size)
        throw std::runtime_error("there are more addresses than modules");
    std::vector<ModuleState> modules;
    for (std::size_t i = 0; i < size; ++i) {
        ModuleState module = plan.first;
        module.staticAddress = addressOf(plan, i);
        module.leasedAddress = module.staticAddress;
        module.gateway = plan.gateway.value_or(module.staticAddress);
        if (!plan.gateway)
            module.gateway[3] = 254;
        setLastOctets(module.mac, 3, lastOctets(module.mac, 3) + i);
        module.name = nameOf(plan.first.name, i);
        modules.push_back(module);
    }
    return modules;
}
