#pragma once

#include "simulator/rejection.h"
#include "simulator/switch_layout.h"
#include "simulator/switch_state.h"

#include <string>
#include <variant>

/// A command as the switch has understood it.
struct SwitchCommand
{
    enum class Kind {
        ReportConfiguration, ///< "//rl"
        ReportStatus,        ///< "//??"
        ReportLayout,        ///< "//BP"
        AbsoluteMouse,       ///< "//ks"
        RelativeMouse,       ///< "//km"
        CursorRollingOff,    ///< "//o0"
        CursorRollingOn,     ///< "//o1"
        KmControl,           ///< "//c1" to "//c4": number
        UsbControl,          ///< "//u1" to "//u4": number
        PortLimit,           ///< "//D2" to "//D4": number
        SoftReset,           ///< "//R"
        FactoryReset,        ///< "//F"
        BuzzerOn,            ///< "//B1"
        BuzzerOff,           ///< "//B0"
        Resolution,          ///< "//CE 2 5": number = channel, value = resolution
        Layout,              ///< "//FF01B01FF02B02FF03B03FF04B04": layout
        Custom,              ///< "//MM C2 120 80 DESK ": number = setting, custom
    };

    Kind kind;
    int number = 0;
    int value = 0;
    LayoutOrder layout{};
    CustomSetting custom{};
};

/// Reads one command without its carriage return. Strict: nothing before the slashes, single blanks
/// between arguments, every number in its range, nothing behind the last argument (but one blank
/// behind a custom setting's name). X and Y of a custom setting may be filled up from the left to
/// three characters, with zeros or with blanks. What a layout may be is decodeLayout()'s to say. A
/// name longer than 24 bytes is cut, never inside a character.
std::variant<SwitchCommand, Rejection> decodeCommand(const std::string &text);
