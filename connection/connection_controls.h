#pragma once

#include "log/plain_tool_tip.h"

#include <QList>
#include <QSet>
#include <QString>

class QComboBox;
class QPushButton;
class QWidget;

/// What the window shows of the connection, and the controls that come and go with it.
///
/// Owns `handlersArmed` (the settings controls act on changes; false while the program itself fills
/// them).
class ConnectionControls
{
public:
    struct Widgets
    {
        QPushButton *indicator;
        QPushButton *on;
        QPushButton *off;
        QPushButton *beepOn;
        QPushButton *beepOff;
        QList<QWidget *> deviceControls; ///< switched together, in this order
        QList<QComboBox *> settingsCombos;
        QList<QWidget *> heldWhileLoading; ///< those that would collide with a settings file
    };

    explicit ConnectionControls(Widgets widgets);

    /// How every road to "disconnected" ends: red indicator, ON enabled, OFF, the device controls
    /// and the settings combos disabled.
    void showDisconnected();
    /// Red indicator, ON enabled, OFF disabled.
    void setDisconnected();
    /// Green indicator, ON disabled, OFF enabled.
    void setConnected();

    void enableDeviceControls();
    void disableDeviceControls();
    void enableSettingsCombos();
    void disableSettingsCombos();
    /// Enables or disables "Beep On" and "Beep Off"; the button of the state in force is disabled.
    void setBeepButtonsEnabled(bool onEnabled, bool offEnabled);
    bool isBeepOnEnabled() const;
    /// One of the controls that may be held.
    void setControlEnabled(QWidget &control, bool enabled);
    /// Between the two halves of a settings file: the controls that would collide with it are
    /// disabled, whatever enables them meanwhile, and then stand as they would without it.
    void holdWhileLoading(bool hold);

    /// Whether the ON button is disabled, which is how the window tells a link that counts as up.
    bool countsAsConnected() const;

    bool areHandlersArmed() const { return handlersArmed; }
    void setHandlersArmed(bool armed) { handlersArmed = armed; }

    /// Why the link is down, or what the user may do about it: on the indicator's tool tip and the
    /// ON button's until the next setConnected or setDisconnected.
    void explain(const QString &text);

private:
    void describeIndicator(const QString &state);

    Widgets widgets_;
    PlainToolTip plainToolTips_;          ///< the indicator's own sheet would colour its tool tip
    QSet<const QWidget *> wantedEnabled_; ///< of those that are held
    bool isHolding_ = false;
    bool handlersArmed = false;
};

/// Clears `handlersArmed` while it lives and puts back what stood before.
class DisarmedHandlers
{
public:
    explicit DisarmedHandlers(ConnectionControls &controls)
        : controls_(controls), before_(controls.areHandlersArmed())
    {
        controls_.setHandlersArmed(false);
    }
    ~DisarmedHandlers() { controls_.setHandlersArmed(before_); }
    DisarmedHandlers(const DisarmedHandlers &) = delete;
    DisarmedHandlers &operator=(const DisarmedHandlers &) = delete;

private:
    ConnectionControls &controls_;
    bool before_;
};
