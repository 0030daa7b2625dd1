#pragma once

#include "simulator/switch_faults.h"
#include "simulator/switch_state.h"

#include <string>
#include <vector>

/// The three long answers of the switch, in lines ended by LF. Together they stay well under 1000
/// bytes for every state, since that is all that a reader on the serial line keeps. Lines with free
/// text (custom names, hotkey) come behind those whose keys they could imitate, and the letters
/// "//FF" and "01B" to "04B" stand in the layout line alone, since readers search the whole text.

/// Answer to "//rl". Example, with tabs behind C1 to C4:
///
///     //RL Pelora KM switch
///     KM Port Limit: 4
///     KM Cursor Rolling: Disabled
///     KM tracking mode: Absolute Mouse Mode
///     Channels resolution: 1 1 1 1
///     Buzzer: on
///     C1  100 100 CUSTOM1
///     ...
///     C4  100 100 CUSTOM4
std::string configurationAnswer(const SwitchState &state, const SwitchFaults &faults = {});

/// Answer to "//??": "Current Hotkey Trigger: Left Ctrl", "Current KM Control: 1",
/// "Current USB Control 1".
std::string statusAnswer(const SwitchState &state, const SwitchFaults &faults = {});

/// Answer to "//BP": "//FF01B01FF02B02FF03B03FF04B04".
std::string layoutAnswer(const SwitchState &state, const SwitchFaults &faults = {});

/// The keys that SwitchFaults::missingKeys may name: "//RL", "KM Port Limit", ..., "//FF".
const std::vector<std::string> &answerKeys();

/// Exactly `bytes` bytes of harmless text in lines.
std::string fillerText(int bytes);
