#pragma once

#include "device/switch_configuration.h"

/// Settings of a switch for tests, typed by hand: a whole answer and what it says.

inline const char exampleListing[] = "//RL Pelora KM switch\n"
                                     "KM Port Limit: 3\n"
                                     "KM Cursor Rolling: Enabled\n"
                                     "KM tracking mode: Relative Mouse Mode\n"
                                     "Channels resolution: 1 10 3 13\n"
                                     "Buzzer: on\n"
                                     "C1\t100 250 OFFICE\n"
                                     "C2\t120 080 DESK\n"
                                     "C3\t001 500 HOME\n"
                                     "C4\t300 300 LAB\n";
inline const char exampleStatus[] = "Current Hotkey Trigger: Scroll Lock\n"
                                    "Current KM Control: 2\n"
                                    "Current USB Control 3\n";
inline const char exampleLayout[] = "//FF01B05FF02B06FF03B10FF04B14\n";

inline std::string exampleAnswer()
{
    return std::string(exampleListing) + exampleStatus + exampleLayout;
}

inline SwitchConfiguration exampleConfiguration()
{
    SwitchConfiguration configuration;
    configuration.kmControl = 2;
    configuration.usbControl = 3;
    configuration.activePorts = 3;
    configuration.cursorRolling = true;
    configuration.relativeMouse = true;
    configuration.buzzerOn = true;
    configuration.resolutions = {1, 10, 3, 13};
    configuration.custom = {MouseMovement{100, 250, QStringLiteral("OFFICE")},
                            MouseMovement{120, 80, QStringLiteral("DESK")},
                            MouseMovement{1, 500, QStringLiteral("HOME")},
                            MouseMovement{300, 300, QStringLiteral("LAB")}};
    configuration.layout = DisplayLayout{{{1, 0}, {1, 1}, {2, 1}, {3, 1}}};
    configuration.hotkeyTrigger = QStringLiteral("Scroll Lock");
    return configuration;
}
