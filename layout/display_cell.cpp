#include "layout/display_cell.h"

#include <array>

namespace {
constexpr std::array<Qt::GlobalColor, channelCount> channelColours = {Qt::yellow, Qt::green,
                                                                      Qt::blue, Qt::red};
}

QBrush channelBrush(int channel)
{
    return QBrush(channelColours.at(static_cast<std::size_t>(channel - 1)));
}

QBrush inactiveBrush()
{
    return QBrush(Qt::gray);
}

PlacedDisplay placedDisplay(const DisplayCell &cell)
{
    PlacedDisplay display{{cell.row, cell.column}, 0, cell.brush != inactiveBrush()};
    for (int channel = 1; channel <= channelCount; ++channel) {
        if (cell.brush == channelBrush(channel))
            display.channel = channel;
    }
    return display;
}

QString channelLabel(int channel)
{
    return QStringLiteral("Channel %1").arg(channel);
}
