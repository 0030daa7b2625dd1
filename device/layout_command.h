#pragma once

#include "device/ports.h"

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The layout command: where the display of each channel stands, as the switch reads and reports
/// it.

/// A cell of the grid. Row 0 is the top row and column 0 the left column. Values outside 0 to 3
/// come from position codes that name no cell.
struct GridPosition
{
    int row = 0;
    int column = 0;

    bool operator==(const GridPosition &) const = default;
};

/// The grid has this many rows and columns.
inline constexpr int gridSide = 4;

/// Whether there is such a cell.
bool isOnGrid(GridPosition position);

/// The display of a channel and where it stands.
struct PlacedDisplay
{
    GridPosition position;
    int channel = 0;    ///< 1 to 4; a display of any other is in no command
    bool active = true; ///< whether the channel's port is in use
};

/// Where the displays of channels 1 to 4 stand.
using DisplayLayout = std::array<GridPosition, channelCount>;

/// Whether all four stand on the grid, no two of them in one cell.
bool isArrangement(const DisplayLayout &layout);

/// The two-digit number of a cell in row-major order, "01" (top left) to "16" (bottom right).
/// A row other than 0 to 3 counts as row 1; a column outside the grid is added up all the same.
std::string positionCode(GridPosition position);

/// The cell that `code` names: a leading zero is dropped and the digits up to the first other
/// character count, so "1x" is the top left cell. Codes outside "01" to "16" give cells outside the
/// grid. A code without a number gives row -1, column -1 and a line on standard output.
GridPosition gridPosition(const std::string &code);

/// The cell that `code` names, taken strictly: two digits, "01" to "16"; none for anything else.
std::optional<GridPosition> cellOfCode(std::string_view code);

/// The digit '1' to '4' by which the display goes into the command: its channel's, and '3' for an
/// inactive one; none for a channel that there is not.
std::optional<char> channelDigit(const PlacedDisplay &display);

/// The layout command: "//" and one segment "FF0", channel digit, "B", position code per display,
/// ordered by channel digit and within a digit as in `displays`. Displays of no
/// channel are left out. Direction: utility to switch. Example: the four displays side by side in
/// the top row give
/// "//FF01B01FF02B02FF03B03FF04B04" (2F 2F 46 46 30 31 42 30 31 46 46 30 32 42 30 32 ...).
std::string layoutCommand(const std::vector<PlacedDisplay> &displays);
/// The same for four active channels.
std::string layoutCommand(const DisplayLayout &layout);

/// How many cells above, below, left and right of the displays hold an item, added up over all of
/// them.
int neighbourCount(const std::vector<GridPosition> &displays,
                   const std::function<bool(GridPosition)> &holdsItem);

/// Whether a neighbour count says that four displays touch edge to edge: 6 or 8.
bool isConnected(int neighbours);

/// The position codes of channels 1 to 4 in a layout text: the two characters behind the first
/// "01B", "02B", "03B" and "04B". Direction: switch to utility. Example:
/// "//FF01B05FF02B06FF03B07FF04B08" gives "05", "06", "07", "08".
/// Throws std::out_of_range("basic_string::erase") when a marker is missing or fewer than two
/// characters follow it on its line.
std::array<std::string, channelCount> layoutCodes(const std::string &reply);
