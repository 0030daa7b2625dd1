#pragma once

#include "device/custom_setting.h"
#include "device/ports.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <chrono>
#include <functional>
#include <string>

class ConnectionControls;
class DeviceLink;
class LayoutGrid;
class LayoutSubmission;
class MouseSettings;
class QComboBox;
class QWidget;
class SettingsFileHandler;
struct SettingsValues;

/// How one entry of a settings file is applied. Entries below FirstDataLabel are sent to the
/// switch.
enum class EntryType {
    KmControl = 0,
    UsbControl = 1,
    MouseMode = 2,
    LimitPorts = 3,
    CursorRolling = 4,
    FirstCustomSetting,                                    ///< and those behind it, by number
    FirstResolution = FirstCustomSetting + customSettings, ///< and those behind it, by channel
    Grid = FirstResolution + channelCount,
    Buzzer,
    FirstDataLabel, ///< and those behind it, by number
    LastDataLabel = FirstDataLabel + customSettings - 1
};

/// Saves the switch's configuration, as the window shows it, to a text file, and applies such a
/// file to a switch in two halves, so that the switch can follow.
///
/// A load belongs to the connection that it began on: when that one ends, what is left of the file
/// is dropped, and the user is told.
class SettingsFile : public QObject
{
    Q_OBJECT

public:
    struct Timing
    {
        std::chrono::milliseconds secondPart{2000}; ///< between the two halves of a load
    };

    struct Widgets
    {
        QComboBox *kmControl;
        QComboBox *usbControl;
        QComboBox *activePorts;
        QComboBox *cursorRolling;
        QComboBox *mouseMode;
    };

    struct Parts
    {
        SettingsFileHandler &handler;
        DeviceLink &link;
        ConnectionControls &controls;
        MouseSettings &mouse;
        LayoutGrid &grid;
        LayoutSubmission &layout;
    };

    /// How the user is asked for file names; an empty answer is a cancelled dialog.
    struct Dialogs
    {
        std::function<QString()> saveName;
        std::function<QString()> openName;

        /// The real ones, over `window`: a name to save under gets ".txt" where it has no suffix,
        /// a name to open is that of an existing file.
        static Dialogs real(QWidget &window);
    };

    /// `window` has the slot load_second_part_of_settings(). `kmType` answers the chosen model's
    /// key, `plainRead` reads the switch back.
    SettingsFile(QObject &window, Widgets widgets, Parts parts, std::function<std::string()> kmType,
                 std::function<void()> plainRead, Timing timing, Dialogs dialogs);

    /// Asks for a name and writes the file, whole or not at all. While the custom settings are
    /// still to come from the switch, before the user is asked or behind it, it says so instead.
    void create();
    /// Asks for a file and applies its first half; the second follows some time later. Without a
    /// usable file the switch is read back instead.
    void load();
    /// Applies the second half of the file under way; does nothing when there is none.
    void loadSecondPart();

    /// Shows `value` in the window without sending anything, then sends it to the switch as it
    /// stands, unless it is a data label's. The settings handlers are armed and sending is enabled
    /// afterwards, whatever stood before.
    void applyEntry(EntryType type, const std::string &value);

private:
    bool isReadCompletely() const;
    SettingsValues shownValues() const;
    std::string shownCoordinates(int channel) const;
    bool isZen() const;
    void applyKey(EntryType type);
    void beginLoad();
    void applyFirstPart();
    void applySecondPart();
    void endLoad();
    void abandonLoad();
    void sayIncomplete();
    void show(EntryType type, const std::string &value);
    void showMouseMode(const std::string &value);
    void showLimitPorts(const std::string &value);
    void showGrid();

    QObject &window_;
    Widgets widgets_;
    Parts parts_;
    std::function<std::string()> kmType_;
    std::function<void()> plainRead_;
    Timing timing_;
    Dialogs dialogs_;
    QPointer<QTimer> secondPart_; ///< the connection's; the second half of one load at a time
    bool isLoading_ = false;      ///< from the first half's beginning to the second one's end
};
