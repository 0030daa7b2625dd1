#pragma once

#include <string>

class DeviceLink;
class LayoutGrid;
class QComboBox;

/// Sends the current layout to the switch and fills the grid from the switch's report.
class LayoutSubmission
{
public:
    /// `activePorts` is the Active Ports selector, whose own handler repaints the grid.
    LayoutSubmission(LayoutGrid &grid, DeviceLink &link, QComboBox &activePorts);

    /// The Submit button: says whether all displays touch and sends the layout either way, with all
    /// channels shown as active meanwhile. It is the layout of the press that is sent, and shown
    /// again, whatever the switch reports until the user has read the notice.
    void submit();

    /// Fills the grid from `reply`, in which the switch reports its layout as segments "FF0",
    /// channel, "B", position code. Direction: switch to utility. Example:
    /// "//FF01B05FF02B06FF03B07FF04B08" puts the four channels side by side into the second row.
    /// Throws std::out_of_range("basic_string::erase") for a malformed reply and leaves the grid as
    /// it is.
    void load(const std::string &reply);

    /// The layout command of the current layout.
    std::string buildLayoutCommand() const;

private:
    bool areAllConnected() const;

    LayoutGrid &grid_;
    DeviceLink &link_;
    QComboBox &activePorts_;
};
