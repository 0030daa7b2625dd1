#include "connection/connection_controls.h"

#include <QComboBox>
#include <QPushButton>
#include <utility>

ConnectionControls::ConnectionControls(Widgets widgets) : widgets_(std::move(widgets)) {}

void ConnectionControls::setDisconnected()
{
    connected = false;
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
        control->setEnabled(true);
}

void ConnectionControls::disableDeviceControls()
{
    for (QWidget *control : std::as_const(widgets_.deviceControls))
        control->setEnabled(false);
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

void ConnectionControls::explainDisconnection(const QString &reason)
{
    widgets_.indicator->setToolTip(QStringLiteral("Disconnected: %1").arg(reason));
}

void ConnectionControls::describeIndicator(const QString &state)
{
    widgets_.indicator->setToolTip(state);
    widgets_.indicator->setAccessibleName(state);
}
