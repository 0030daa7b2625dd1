#pragma once

#include <QByteArray>

/// What the switch of the tests says to the three questions, typed once. Everything in it differs
/// from what the window shows before it has read anything.
inline const QByteArray cannedListing = "//RL\n"
                                        "KM Port Limit: 4\n"
                                        "KM Cursor Rolling: Enabled\n"
                                        "KM tracking mode: Relative Mouse Mode\n"
                                        "C1\t100 250 OFFICE\n"
                                        "C2\t120 080 DESK\n"
                                        "C3\t010 010 SLOW\n"
                                        "C4\t500 500 FAST\n"
                                        "Channels resolution: 1 2 3 10\n"
                                        "Buzzer: on\n";
inline const QByteArray cannedStatus = "Current Hotkey Trigger: Scroll Lock\n"
                                       "Current KM Control: 2\n"
                                       "Current USB Control 3\n";
inline const QByteArray cannedLayout = "//FF01B05FF02B06FF03B07FF04B08\n";
/// All three in one, as a network module passes them on.
inline const QByteArray cannedReply = cannedListing + cannedStatus + cannedLayout;
