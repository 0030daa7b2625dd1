#pragma once

#include <string>

class ConnectionControls;
class LayoutGrid;
class MouseSettings;
class QComboBox;
class QLabel;

/// Turns reply texts of the switch into the state of the window's controls.
///
/// Nothing here sends a command: while a control is filled, the settings handlers are disarmed.
class ReplyApplication
{
public:
    struct Widgets
    {
        QLabel *hotkeyTrigger;
        QComboBox *kmControl;
        QComboBox *usbControl;
        QComboBox *activePorts;
        QComboBox *cursorRolling;
        QComboBox *mouseMode;
    };

    ReplyApplication(Widgets widgets, ConnectionControls &controls, MouseSettings &mouse,
                     LayoutGrid &grid);

    /// The status text's hotkey trigger, KM control and USB control.
    void applyStatus(const std::string &reply);
    /// The configuration listing. Throws std::invalid_argument or std::out_of_range when the number
    /// of active ports is no number.
    void applyConfiguration(const std::string &reply);

    /// The rules that run on everything received. Each returns whether it found its value.
    /// "**M" and a port number: a press on the switch's own button moved both controls.
    bool applyFrontPanel(const std::string &text);
    /// "**C" or "Current KM Control: ", unless the text carries a resolution echo ("**CE").
    bool applyKmControl(const std::string &text);
    /// "**U" or "Current USB Control: ".
    bool applyUsbControl(const std::string &text);

private:
    void applyPortLimit(const std::string &value);

    Widgets widgets_;
    ConnectionControls &controls_;
    MouseSettings &mouse_;
    LayoutGrid &grid_;
};
