#include "simulator/module_fleet.h"

#include <stdexcept>

namespace {

Ipv4 addressOf(const FleetPlan &plan, std::size_t index)
{
    if (index < plan.addresses.size())
        return plan.addresses[index];
    const bool named = !plan.addresses.empty();
    Ipv4 address = named ? plan.addresses.back() : plan.first.staticAddress;
    const std::size_t step = named ? index - (plan.addresses.size() - 1) : index;
    if (address[3] + step > 254)
        throw std::runtime_error("the addresses from " + toText(address) +
                                 " on do not suffice for all modules");
    address[3] = static_cast<std::uint8_t>(address[3] + step);
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
        module.mac[5] = static_cast<std::uint8_t>(module.mac[5] + i);
        module.name = nameOf(plan.first.name, i);
        modules.push_back(module);
    }
    return modules;
}
