#pragma once

#include <string>

class SimulatedSwitch;
class Simulation;

/// The commands that a person types at the simulator.
class Console
{
public:
    explicit Console(Simulation &simulation) : simulation_(simulation) {}

    /// What came of a command: lines for the person (each ended by LF, or nothing), and whether it
    /// was "quit".
    struct Result
    {
        std::string text;
        bool quit = false;
    };

    /// Obeys one line, such as "press 3" or "fault delay 300". A mistake is answered with words.
    Result obey(const std::string &line);

private:
    /// The switch that `argument` numbers, the first for an empty one; null when there is none.
    SimulatedSwitch *unit(const std::string &argument);
    std::string press(const std::string &arguments);
    std::string flood(const std::string &arguments);
    std::string fault(const std::string &argument);
    std::string plug();
    std::string unplug();

    Simulation &simulation_;
};
