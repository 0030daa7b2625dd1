#include "simulator/console.h"

#include "simulator/simulation.h"

#include <charconv>
#include <exception>
#include <optional>

namespace {

const char *const helpText =
    "state              show the state\n"
    "press N [UNIT]     press the front panel's button N (1 to 4)\n"
    "fault              show the faults that are on\n"
    "fault NAME [VALUE] turn a fault on\n"
    "fault NAME off     turn it off; \"fault none\" turns all off\n"
    "faults             list all faults there are\n"
    "flood N [UNIT]     say N bytes of text at once\n"
    "unplug             pull the serial cable\n"
    "plug               plug it in again\n"
    "reset              restore the factory settings, and modules as at the start\n"
    "help               show this\n"
    "quit               end\n"
    "UNIT is the number of a switch, 1 without it.\n";

std::optional<int> numberFrom(const std::string &text, int lowest, int highest)
{
    int number = 0;
    const char *const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || stop != end || number < lowest || number > highest)
        return std::nullopt;
    return number;
}

/// `text` without blanks at both ends.
std::string trimmed(const std::string &text)
{
    const std::size_t first = text.find_first_not_of(" \t\r");
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

/// Cuts `text` at its first blank: the word before, the trimmed rest behind.
std::pair<std::string, std::string> firstWord(const std::string &text)
{
    const std::size_t blank = text.find_first_of(" \t");
    if (blank == std::string::npos)
        return {text, {}};
    return {text.substr(0, blank), trimmed(text.substr(blank))};
}

} // namespace

Console::Result Console::obey(const std::string &line)
{
    const auto [word, argument] = firstWord(trimmed(line));
    if (word.empty())
        return {};
    if (word == "press")
        return {press(argument)};
    if (word == "flood")
        return {flood(argument)};
    if (word == "fault")
        return {fault(argument)};
    if (!argument.empty())
        return {"\"" + word + "\" takes nothing behind it, or is no command; try help\n"};
    if (word == "state")
        return {simulation_.stateText()};
    if (word == "faults")
        return {faultHelp()};
    if (word == "plug")
        return {plug()};
    if (word == "unplug")
        return {unplug()};
    if (word == "reset") {
        simulation_.reset();
        return {};
    }
    if (word == "help")
        return {helpText};
    if (word == "quit")
        return {{}, true};
    return {"there is no command \"" + word + "\"; try help\n"};
}

SimulatedSwitch *Console::unit(const std::string &argument)
{
    const int count = static_cast<int>(simulation_.switchCount());
    const auto number = argument.empty() ? std::optional<int>(1) : numberFrom(argument, 1, count);
    return number ? &simulation_.switchAt(static_cast<std::size_t>(*number - 1)) : nullptr;
}

std::string Console::press(const std::string &arguments)
{
    const auto [button, which] = firstWord(arguments);
    const auto channel = numberFrom(button, 1, 4);
    if (!channel)
        return "press needs a button, 1 to 4\n";
    SimulatedSwitch *const theSwitch = unit(which);
    if (theSwitch == nullptr)
        return "there is no unit \"" + which + "\"\n";
    theSwitch->press(*channel);
    return {};
}

std::string Console::flood(const std::string &arguments)
{
    const auto [amount, which] = firstWord(arguments);
    const auto bytes = numberFrom(amount, 1, 30000000);
    if (!bytes)
        return "flood needs a number of bytes, at most 30000000\n";
    SimulatedSwitch *const theSwitch = unit(which);
    if (theSwitch == nullptr)
        return "there is no unit \"" + which + "\"\n";
    theSwitch->flood(*bytes);
    return {};
}

std::string Console::fault(const std::string &argument)
{
    Faults faults = simulation_.faults();
    if (argument.empty()) {
        const std::string text = faultsText(faults);
        return text.empty() ? "no faults\n" : text;
    }
    const bool asAssignment = argument.find('=') != std::string::npos;
    const auto [name, value] = firstWord(argument);
    const std::string mistake =
        asAssignment ? setFault(faults, argument) : setFault(faults, name, value);
    if (!mistake.empty())
        return mistake + "\n";
    simulation_.setFaults(faults);
    return {};
}

std::string Console::plug()
{
    SerialFace *const face = simulation_.serialFace();
    if (face == nullptr)
        return "there is no serial face\n";
    if (face->isPlugged())
        return "the cable is plugged in\n";
    try {
        simulation_.plug();
        return {};
    } catch (const std::exception &error) {
        return std::string(error.what()) + "\n";
    }
}

std::string Console::unplug()
{
    SerialFace *const face = simulation_.serialFace();
    if (face == nullptr)
        return "there is no serial face\n";
    if (!face->isPlugged())
        return "the cable is not plugged in\n";
    face->unplug();
    return {};
}
