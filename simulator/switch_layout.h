#pragma once

#include "simulator/rejection.h"

#include <array>
#include <string>
#include <variant>

/// A layout command as read, by channel, and what it makes of the layout that the switch has. Grid
/// cells count from 1 (top left) to 16.
struct LayoutOrder
{
    std::array<int, 4> cells{};      ///< for each channel; 0 unless exactly one group names it
    std::array<int, 4> timesNamed{}; ///< how many groups name each channel

    bool isWhole() const { return timesNamed == std::array<int, 4>{1, 1, 1, 1}; }
};

/// Reads the command without its slashes: four groups of seven characters, "FF0", channel, "B", two
/// digits. Channels may be named twice and others not at all, as in a settings file that was saved
/// with inactive ports; a rejection unless at least one channel is named once, and when two of
/// those are to have one cell.
/// Example: "FF01B05FF02B06FF03B10FF03B14" gives the cells 5, 6, 0, 0; named 1, 1, 2, 0 times.
std::variant<LayoutOrder, Rejection> decodeLayout(const std::string &groups);

/// What became of a layout command.
struct LayoutOutcome
{
    std::array<int, 4> layout; ///< the cell of each channel afterwards
    int placed;                ///< how many channels have been put where the command says
    std::string remark;        ///< what was and what was not taken; empty when all was
};

/// Carries `order` out on the layout `held`. A channel that is not named exactly once stays; so
/// does one whose new cell is held by a channel that stays, since a cell shows one display. In
/// `held` no two channels share a cell, and then none do in the result.
/// Example: 1, 2, 3, 4 and the order above give 5, 6, 3, 4 with the remark "channels 1 and 2
/// placed; channel 3 stays, it is named twice; channel 4 stays, it is not named".
LayoutOutcome carriedOut(const LayoutOrder &order, const std::array<int, 4> &held);
