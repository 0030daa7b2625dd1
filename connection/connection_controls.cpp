#include "connection/connection_controls.h"

#include <QComboBox>
#include <QPushButton>
#include <utility>

ConnectionControls::ConnectionControls(Widgets widgets) : widgets_(std::move(widgets))
{
    widgets_.indicator->installEventFilter(&plainToolTips_);
    widgets_.on->installEventFilter(&plainToolTips_);
}

void ConnectionControls::showDisconnected()
{
    disableDeviceControls();
    disableSettingsCombos();
    setDisconnected();
}

void ConnectionControls::setDisconnected()
{
    widgets_.indicator->setStyleSheet(
        QStringLiteral("background-color: red; border-radius: 10px; height: 20px; width: 20px;"));
    widgets_.off->setEnabled(false);
    widgets_.on->setEnabled(true);
    describeIndicator(QStringLiteral("Disconnected"));
}

void ConnectionControls::setConnected()
{
    widgets_.indicator->setStyleSheet(
        QStringLiteral("background-color: green; border-radius: 10px; height: 20px; width: 20px;"));
    widgets_.on->setEnabled(false);
    widgets_.off->setEnabled(true);
    describeIndicator(QStringLiteral("Connected"));
}

void ConnectionControls::enableDeviceControls()
{
    for (QWidget *control : std::as_const(widgets_.deviceControls))
        setControlEnabled(*control, true);
}

void ConnectionControls::disableDeviceControls()
{
    for (QWidget *control : std::as_const(widgets_.deviceControls))
        setControlEnabled(*control, false);
}

void ConnectionControls::setControlEnabled(QWidget &control, bool enabled)
{
    if (!isHolding_ || !widgets_.heldWhileLoading.contains(&control))
        control.setEnabled(enabled);
    else if (enabled)
        wantedEnabled_.insert(&control);
    else
        wantedEnabled_.remove(&control);
}

void ConnectionControls::holdWhileLoading(bool hold)
{
    if (hold == isHolding_)
        return;
    isHolding_ = hold;
    for (QWidget *control : std::as_const(widgets_.heldWhileLoading)) {
        if (hold && control->isEnabled())
            wantedEnabled_.insert(control);
        control->setEnabled(!hold && wantedEnabled_.contains(control));
    }
    if (!hold)
        wantedEnabled_.clear();
}

void ConnectionControls::enableSettingsCombos()
{
    for (QComboBox *combo : std::as_const(widgets_.settingsCombos))
        combo->setEnabled(true);
}

void ConnectionControls::disableSettingsCombos()
{
    for (QComboBox *combo : std::as_const(widgets_.settingsCombos))
        combo->setEnabled(false);
}

void ConnectionControls::setBeepButtonsEnabled(bool onEnabled, bool offEnabled)
{
    widgets_.beepOn->setEnabled(onEnabled);
    widgets_.beepOff->setEnabled(offEnabled);
}

bool ConnectionControls::isBeepOnEnabled() const
{
    return widgets_.beepOn->isEnabled();
}

bool ConnectionControls::countsAsConnected() const
{
    return !widgets_.on->isEnabled();
}

void ConnectionControls::explain(const QString &text)
{
    widgets_.indicator->setToolTip(text);
    widgets_.on->setToolTip(text);
}

void ConnectionControls::describeIndicator(const QString &state)
{
    widgets_.indicator->setToolTip(state);
    widgets_.indicator->setAccessibleName(state);
    widgets_.on->setToolTip(QString());
}
