#include "readback/general_settings.h"

#include "connection/connection_controls.h"
#include "device/command.h"
#include "layout/layout_grid.h"
#include "readback/yes_no_dialog.h"
#include "session/device_link.h"

#include <QComboBox>

GeneralSettings::GeneralSettings(QWidget &window, Widgets widgets, DeviceLink &link,
                                 ConnectionControls &controls, LayoutGrid &grid, Timing timing)
    : window_(window), widgets_(widgets), link_(link), controls_(controls), grid_(grid),
      timing_(timing)
{
}

void GeneralSettings::kmControlChanged()
{
    sendIfArmed(kmControlCommand(widgets_.kmControl->currentIndex()));
}

void GeneralSettings::usbControlChanged()
{
    sendIfArmed(usbControlCommand(widgets_.usbControl->currentIndex()));
}

void GeneralSettings::mouseModeChanged()
{
    sendIfArmed(mouseModeCommand(widgets_.mouseMode->currentIndex()));
}

void GeneralSettings::activePortsChanged()
{
    if (!controls_.areHandlersArmed())
        return;
    const int index = widgets_.activePorts->currentIndex();
    link_.forwardCommand(activePortsCommand(index));
    grid_.repaintActivePorts(index);
}

void GeneralSettings::cursorRollingChanged()
{
    sendIfArmed(cursorRollingCommand(widgets_.cursorRolling->currentIndex()));
}

void GeneralSettings::softReset()
{
    link_.forwardCommand(softResetCommand);
}

void GeneralSettings::factoryReset()
{
    Yes_No_Dialog question(QStringLiteral("Perform factory reset?"), QStringLiteral("Confirm"),
                           QStringLiteral("Cancel"), &window_);
    question.exec();
    if (question.answer() != QStringLiteral("OK"))
        return;
    link_.forwardCommand(factoryResetCommand);
    if (!link_.connection().road()) // it may have ended under the question
        return;
    link_.connection().later(link_.hasUdpSocket() ? timing_.networkReadAfterReset
                                                  : timing_.serialReadAfterReset,
                             window_, "refresh_UI");
}

void GeneralSettings::beepOn()
{
    controls_.setBeepButtonsEnabled(false, true);
    link_.forwardCommand(beepOnCommand);
}

void GeneralSettings::beepOff()
{
    controls_.setBeepButtonsEnabled(true, false);
    link_.forwardCommand(beepOffCommand);
}

void GeneralSettings::sendIfArmed(const std::string &command)
{
    if (controls_.areHandlersArmed())
        link_.forwardCommand(command);
}
