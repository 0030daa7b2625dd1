#pragma once

#include <optional>
#include <string_view>

/// What the switch says on its own, line by line. Direction: switch to utility.

/// Who has control now. What a line does not tell is none.
struct ControlNews
{
    std::optional<int> kmPort; ///< 1 to 4, as is the next
    std::optional<int> usbPort;

    bool operator==(const ControlNews &) const = default;
};

/// Reads one line, without its line feed: "**C3" and "Current KM Control: 3" tell of keyboard and
/// mouse, "**U2", "Current USB Control: 2" and the same without the colon of USB, "**M1" of both.
/// Neither is told by any other line, "**CE 1 3" among them, nor by a port that there is not.
/// Example: "**M4" (2A 2A 4D 34).
ControlNews controlNews(std::string_view line);
