#pragma once

#include <QList>
#include <QString>

class QComboBox;
class QPushButton;
class QWidget;

/// What the window shows of the connection, and the controls that come and go with it.
///
/// Owns `connected` (the switch has answered) and `handlersArmed` (the settings controls act on
/// changes; false while the program itself fills them).
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
    };

    explicit ConnectionControls(Widgets widgets);

    /// Red indicator, ON enabled, OFF disabled, `connected` cleared.
    void setDisconnected();
    /// Green indicator, ON disabled, OFF enabled. Leaves `connected` to the caller.
    void setConnected();

    void enableDeviceControls();
    void disableDeviceControls();
    void enableSettingsCombos();
    void disableSettingsCombos();
    /// Enables or disables "Beep On" and "Beep Off"; the button of the state in force is disabled.
    void setBeepButtonsEnabled(bool onEnabled, bool offEnabled);
    bool isBeepOnEnabled() const;

    /// Whether the ON button is disabled, which is how the window tells a link that counts as up.
    bool countsAsConnected() const;

    bool isConnected() const { return connected; }
    void markConnected(bool yes) { connected = yes; }

    bool areHandlersArmed() const { return handlersArmed; }
    void setHandlersArmed(bool armed) { handlersArmed = armed; }

    /// Adds why the link is down to the red indicator's tool tip; setConnected drops it.
    void explainDisconnection(const QString &reason);

private:
    void describeIndicator(const QString &state);

    Widgets widgets_;
    bool connected = false;
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
