#pragma once

#include "device/custom_setting.h"

#include <QList>
#include <QString>
#include <bitset>
#include <chrono>
#include <string>

class ConnectionControls;
class DeviceLink;
class QComboBox;
class QLabel;
class QLineEdit;
class QObject;

/// The mouse page: a resolution per channel and four custom movement settings, which are further
/// choices of the resolution selectors.
///
/// Channels are numbered 1 to 4; settings are zero-based, 0 to 3, like the items of their selector.
class MouseSettings
{
public:
    struct Timing
    {
        std::chrono::milliseconds readAfterSubmit{800};
    };

    struct Widgets
    {
        QList<QComboBox *> resolutions; ///< one per channel, in channel order
        QList<QLabel *> dataLabels;     ///< one per setting, in setting order
        QComboBox *setting;             ///< chooses the setting that is edited
        QLineEdit *name;
        QLineEdit *x;
        QLineEdit *y;
    };

    /// `window` has the slot refresh_UI(), which is called some time after a setting was sent.
    MouseSettings(QObject &window, Widgets widgets, DeviceLink &link, ConnectionControls &controls,
                  Timing timing);

    /// A resolution selector has changed: sends "//CE", channel 1 to 4, number of the item. Only
    /// while the settings handlers are armed.
    void resolutionChanged(int channel);
    /// Validates and sends the custom setting in the edit fields. Ignored without a word while the
    /// last one is still under way.
    void submitCustomSetting();
    /// Fills the edit fields from the data label of the chosen setting. A label that is too short
    /// fills the fields that it reaches and is worth a line in the event log, no more.
    void fillEditFields();

    /// Another switch: what the page knows of the last one's custom settings counts no more.
    void startOver();
    /// Removes the custom settings, items 12 down to 9, from all resolution selectors, if the first
    /// of them has them. The settings handlers are disarmed meanwhile.
    void trimCustomEntries();
    /// Whether custom settings are to come: they were removed and neither an answer nor a file has
    /// brought all of them back.
    bool areCustomEntriesAwaited() const { return awaitedEntries_.any(); }
    /// Makes the name in `value`, behind its first `skip` bytes, the item of `setting` in all
    /// resolution selectors. A value without a name makes an empty item, so that positions hold.
    void setCustomEntry(int setting, const std::string &value, std::size_t skip);
    /// Shows `text` (UTF-8, "100 250 OFFICE") as the data of `setting`.
    void setDataLabel(int setting, const std::string &text);
    /// Selects the resolutions that the value of "Channels resolution:" gives by number or by name;
    /// what has no item leaves its selector.
    void setChannelResolutions(const std::string &value);

    /// Whether the next custom setting may be sent: cleared by sending one, set when the switch has
    /// been read back.
    void setReady(bool ready) { ready_ = ready; }
    bool isReady() const { return ready_; }

    /// Whether the edit fields are being filled by the program rather than by the user.
    bool isFillingEditFields() const { return fillingEditFields_; }

    QComboBox &resolutionSelector(int channel) const;
    QString dataLabel(int setting) const;
    /// The resolution command of `channel` as selected: "//CE 2 5".
    std::string selectedResolutionCommand(int channel) const;
    /// The command that stores `setting` as the page shows it: "//MM C1 100 250 OFFICE". Empty when
    /// the page does not know X, Y and the name.
    std::string knownSettingCommand(int setting) const;

private:
    QObject &window_;
    Widgets widgets_;
    DeviceLink &link_;
    ConnectionControls &controls_;
    Timing timing_;
    bool ready_ = true;
    std::bitset<customSettings> awaitedEntries_;
    bool fillingEditFields_ = false;
};
