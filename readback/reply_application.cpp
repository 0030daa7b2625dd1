#include "readback/reply_application.h"

#include "connection/connection_controls.h"
#include "device/command.h"
#include "device/reply.h"
#include "layout/layout_grid.h"
#include "mouse/mouse_settings.h"
#include "readback/combo_setting.h"

#include <QComboBox>
#include <QLabel>
#include <array>

namespace {
const std::string absent = "0";

/// How many characters of a custom setting's value (X, Y and their separators) precede its name.
constexpr std::size_t customNameOffset = 8;

/// Selects by the value of `echoKey` first and of `statusKey` then; true when either is there.
bool applyEither(QComboBox &combo, const std::string &text, const char *echoKey,
                 const char *statusKey)
{
    const std::string echoed = replyValue(text, echoKey);
    const std::string stated = replyValue(text, statusKey);
    if (echoed == absent && stated == absent)
        return false;
    selectItem(combo, echoed);
    selectItem(combo, stated);
    return true;
}
} // namespace

ReplyApplication::ReplyApplication(Widgets widgets, ConnectionControls &controls,
                                   MouseSettings &mouse, LayoutGrid &grid)
    : widgets_(widgets), controls_(controls), mouse_(mouse), grid_(grid)
{
}

void ReplyApplication::applyStatus(const std::string &reply)
{
    const DisarmedHandlers disarmed(controls_);
    widgets_.hotkeyTrigger->setText(
        QString::fromStdString(replyValue(reply, "Current Hotkey Trigger: ")));
    selectItem(*widgets_.kmControl, replyValue(reply, "Current KM Control: "));
    // Deliberate: the status text's key has no colon, unlike the one that is looked for in
    // everything received. Where the switch prints one, the value (": 3") is no number, which is
    // logged, and the other rule selects the port.
    selectItem(*widgets_.usbControl, replyValue(reply, "Current USB Control"));
}

void ReplyApplication::applyConfiguration(const std::string &reply)
{
    const DisarmedHandlers disarmed(controls_);
    applyPortLimit(replyValue(reply, "KM Port Limit: "));

    const std::string rolling = replyValue(reply, "KM Cursor Rolling: ");
    widgets_.cursorRolling->setCurrentIndex(rolling == "Enabled" || rolling == "//o1" ? 1 : 0);

    const std::string mode = replyValue(reply, "KM tracking mode: ");
    widgets_.mouseMode->setCurrentIndex(mode == "Relative Mouse Mode" || mode == "//km" ? 1 : 0);

    static constexpr std::array customKeys = {"C1\t", "C2\t", "C3\t", "C4\t"};
    for (int setting = 0; setting < 4; ++setting)
        mouse_.setCustomEntry(setting, replyValue(reply, customKeys.at(setting)), customNameOffset);
    for (int setting = 0; setting < 4; ++setting)
        mouse_.setDataLabel(setting, replyValue(reply, customKeys.at(setting)));

    mouse_.setChannelResolutions(replyValue(reply, "Channels resolution:"));

    const std::string buzzer = replyValue(reply, "Buzzer: ");
    const bool buzzerOn = buzzer == "on" || buzzer == beepOnCommand;
    controls_.setBeepButtonsEnabled(!buzzerOn, buzzerOn);

    mouse_.fillEditFields();
}

void ReplyApplication::applyPortLimit(const std::string &value)
{
    const int activePorts = replyNumber(value);
    constexpr int fewestPorts = 2;
    const int last = fewestPorts + widgets_.activePorts->count() - 1;
    if (activePorts < fewestPorts || activePorts > last)
        return;
    selectItem(*widgets_.activePorts, std::to_string(activePorts - 1));
    // Deliberate: the grid gets one more than the selected item's index, so a read-back leaves one
    // channel more active than the same selection made by the user does.
    grid_.repaintActivePorts(activePorts - 1);
}

bool ReplyApplication::applyFrontPanel(const std::string &text)
{
    const std::string port = replyValue(text, "**M");
    if (port == absent)
        return false;
    const DisarmedHandlers disarmed(controls_);
    selectItem(*widgets_.usbControl, port);
    selectItem(*widgets_.kmControl, port);
    return true;
}

bool ReplyApplication::applyKmControl(const std::string &text)
{
    if (text.find("**CE") != std::string::npos)
        return false;
    const DisarmedHandlers disarmed(controls_);
    return applyEither(*widgets_.kmControl, text, "**C", "Current KM Control: ");
}

bool ReplyApplication::applyUsbControl(const std::string &text)
{
    const DisarmedHandlers disarmed(controls_);
    return applyEither(*widgets_.usbControl, text, "**U", "Current USB Control: ");
}
