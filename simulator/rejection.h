#pragma once

#include <string>

/// Why a command or a frame was not obeyed, in words for the person at the simulator.
struct Rejection
{
    std::string reason;
};
