#pragma once

#include "device/layout_command.h"

#include <QBrush>
#include <QString>

/// One display on the layout grid. Its colour tells its channel, or that the channel is inactive.
struct DisplayCell
{
    int row = 0;    ///< 0 to 3; another value is kept but shown nowhere
    int column = 0; ///< likewise
    QString label;  ///< "Channel 1" to "Channel 4"
    QBrush brush;
};

/// The solid brush of `channel` 1 to 4: yellow, green, blue, red.
QBrush channelBrush(int channel);
/// The solid gray brush of a channel that is not in use.
QBrush inactiveBrush();
/// What `cell` means to the switch. Its brush alone tells, not its label: the channel of one of the
/// four brushes, active; inactive for the gray one, whose channel is 0, as it is for any other.
PlacedDisplay placedDisplay(const DisplayCell &cell);
/// "Channel 1" to "Channel 4".
QString channelLabel(int channel);
