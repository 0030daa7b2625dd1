#pragma once

/// The three commands that read the switch's configuration, without the carriage return that the
/// link appends. Direction: utility to switch.

/// Asks for the configuration listing: 2F 2F 72 6C.
inline constexpr char readConfigurationCommand[] = "//rl";
/// Asks for the status text: 2F 2F 3F 3F.
inline constexpr char readStatusCommand[] = "//??";
/// Asks for the layout: 2F 2F 42 50.
inline constexpr char readLayoutCommand[] = "//BP";
