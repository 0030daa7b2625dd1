#pragma once

/// The switch's serial line, for real ports and for the pace of virtual ones. 8N1: ten bits a byte.
inline constexpr int lineBaudRate = 115200;
inline constexpr int lineBytesPerSecond = lineBaudRate / 10;
