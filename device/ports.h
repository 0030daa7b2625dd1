#pragma once

/// The switch's ports, each the channel of one computer and its display.

/// Channels are numbered from 1 to this.
inline constexpr int channelCount = 4;

/// How many ports may be active. They are always the first ones.
inline constexpr int fewestActivePorts = 2;
inline constexpr int mostActivePorts = channelCount;

/// Whether a switch can have this many active ports: 2, 3 and 4 are what it takes.
constexpr bool isPortLimit(int ports)
{
    return ports >= fewestActivePorts && ports <= mostActivePorts;
}
