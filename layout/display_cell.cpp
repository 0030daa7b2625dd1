#include "layout/display_cell.h"

#include <array>

namespace {
constexpr std::array channelColours = {Qt::yellow, Qt::green, Qt::blue, Qt::red};
}

QBrush channelBrush(int channel)
{
    return QBrush(channelColours.at(static_cast<std::size_t>(channel - 1)));
}

QBrush inactiveBrush()
{
    return QBrush(Qt::gray);
}

DisplayColour displayColour(const QBrush &brush)
{
    if (brush == channelBrush(1))
        return DisplayColour::Yellow;
    if (brush == channelBrush(2))
        return DisplayColour::Green;
    if (brush == channelBrush(3))
        return DisplayColour::Blue;
    if (brush == inactiveBrush())
        return DisplayColour::Gray;
    if (brush == channelBrush(4))
        return DisplayColour::Red;
    return DisplayColour::Other;
}

QString channelLabel(int channel)
{
    return QStringLiteral("Channel %1").arg(channel);
}
