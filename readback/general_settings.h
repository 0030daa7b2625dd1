#pragma once

#include "device/command.h"

#include <chrono>
#include <string>

class ConnectionControls;
class DeviceLink;
class LayoutGrid;
class QComboBox;
class QObject;
class QWidget;

/// The general settings: each control sends its command the moment it changes.
///
/// The combos send only while the settings handlers are armed, so that filling them from a reply
/// sends nothing back. No answer is waited for.
class GeneralSettings
{
public:
    struct Timing
    {
        std::chrono::milliseconds networkReadAfterReset = networkRestAfterReset;
        std::chrono::milliseconds serialReadAfterReset = serialRestAfterReset;
    };

    struct Widgets
    {
        QComboBox *kmControl;
        QComboBox *usbControl;
        QComboBox *mouseMode;
        QComboBox *activePorts;
        QComboBox *cursorRolling;
    };

    /// `window` is the parent of the confirmation dialog and has the slot refresh_UI().
    GeneralSettings(QWidget &window, Widgets widgets, DeviceLink &link,
                    ConnectionControls &controls, LayoutGrid &grid, Timing timing);

    void kmControlChanged();
    void usbControlChanged();
    void mouseModeChanged();
    /// Also greys the channels beyond the chosen number in the layout grid.
    void activePortsChanged();
    void cursorRollingChanged();
    void softReset();
    /// Asks first; then resets and schedules a read-back.
    void factoryReset();
    void beepOn();
    void beepOff();

private:
    void sendIfArmed(const std::string &command);

    QWidget &window_;
    Widgets widgets_;
    DeviceLink &link_;
    ConnectionControls &controls_;
    LayoutGrid &grid_;
    Timing timing_;
};
