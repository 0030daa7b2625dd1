#include "layout/layout_submission.h"

#include "device/layout_command.h"
#include "layout/layout_grid.h"
#include "log/event_log.h"
#include "log/notices.h"
#include "session/device_link.h"

#include <QComboBox>
#include <algorithm>

namespace {
constexpr int allPortsActive = mostActivePorts - fewestActivePorts; // "Ports 1, 2, 3, and 4"

/// Whether both have the same displays at the same places, in whatever colours and order.
bool isSameArrangement(const std::vector<DisplayCell> &left, const std::vector<DisplayCell> &right)
{
    return std::is_permutation(left.begin(), left.end(), right.begin(), right.end(),
                               [](const DisplayCell &one, const DisplayCell &other) {
                                   return one.label == other.label && one.row == other.row &&
                                          one.column == other.column;
                               });
}
} // namespace

LayoutSubmission::LayoutSubmission(LayoutGrid &grid, DeviceLink &link, QComboBox &activePorts)
    : grid_(grid), link_(link), activePorts_(activePorts)
{
}

void LayoutSubmission::submit()
{
    const bool connected = areAllConnected();
    const std::vector<DisplayCell> submitted = grid_.layout();
    if (connected)
        showNoticeModal(QStringLiteral("Display topology has been updated"),
                        QMessageBox::Information);
    else
        showNoticeModal(QStringLiteral("Failed to update, connect all displays"),
                        QMessageBox::Warning);
    // A read-back that ended under the notice has drawn what the switch had until now.
    if (!isSameArrangement(submitted, grid_.layout()))
        grid_.show(submitted, activePorts_.currentIndex());
    // Deliberate: the notice only informs; the switch gets the layout in both cases.
    const int chosen = activePorts_.currentIndex();
    activePorts_.setCurrentIndex(allPortsActive);
    std::string command = buildLayoutCommand();
    link_.writeDirectly(link_.frame(command));
    if (!connected && link_.connection().isOpen()) // it may have ended under the notice
        writeLog("The displays do not touch; the layout was sent as it is");
    activePorts_.setCurrentIndex(chosen);
}

void LayoutSubmission::load(const std::string &reply)
{
    const std::array<std::string, channelCount> codes = layoutCodes(reply);
    DisplayLayout channels;
    for (std::size_t channel = codes.size(); channel > 0; --channel)
        channels.at(channel - 1) = gridPosition(codes.at(channel - 1));
    grid_.place(channels, activePorts_.currentIndex());
}

std::string LayoutSubmission::buildLayoutCommand() const
{
    std::vector<PlacedDisplay> displays;
    for (const DisplayCell &cell : grid_.layout())
        displays.push_back(placedDisplay(cell));
    return layoutCommand(displays);
}

bool LayoutSubmission::areAllConnected() const
{
    std::vector<GridPosition> displays;
    for (const DisplayCell &cell : grid_.layout())
        displays.push_back({cell.row, cell.column});
    const int neighbours =
        neighbourCount(displays, [this](GridPosition cell) { return grid_.holdsDisplay(cell); });
    return isConnected(neighbours);
}
