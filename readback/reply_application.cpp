#include "readback/reply_application.h"

#include "connection/connection_controls.h"
#include "device/custom_setting.h"
#include "device/ports.h"
#include "device/reply.h"
#include "device/reply_words.h"
#include "layout/layout_grid.h"
#include "mouse/mouse_settings.h"
#include "readback/combo_setting.h"

#include <QComboBox>
#include <QLabel>

namespace {
/// Selects by the value of `echoKey` first and of `statusKey` then; true when either is there.
bool applyEither(QComboBox &combo, const std::string &text, std::string_view echoKey,
                 std::string_view statusKey)
{
    const std::string echoed = replyValue(text, echoKey);
    const std::string stated = replyValue(text, statusKey);
    if (echoed == absentValue && stated == absentValue)
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
    widgets_.hotkeyTrigger->setText(QString::fromStdString(replyValue(reply, hotkeyReplyKey)));
    selectItem(*widgets_.kmControl, replyValue(reply, kmControlReplyKey));
    // Deliberate: the status text's key has no colon, unlike the one that is looked for in
    // everything received. Where the switch prints one, the value (": 3") is no number, which is
    // logged, and the other rule selects the port.
    selectItem(*widgets_.usbControl, replyValue(reply, usbControlReplyKey));
}

void ReplyApplication::applyConfiguration(const std::string &reply)
{
    // Deliberate: where a step throws, what the steps before it have shown stays.
    const DisarmedHandlers disarmed(controls_);
    applyPortLimit(replyValue(reply, portLimitReplyKey));

    // Deliberate: the window takes the words as they stand, a CR included, and reads a setting that
    // is missing as off.
    const bool rolling = saysCursorRollingOn(replyValue(reply, cursorRollingReplyKey));
    widgets_.cursorRolling->setCurrentIndex(rolling ? 1 : 0);

    const bool relative = saysRelativeMouse(replyValue(reply, mouseModeReplyKey));
    widgets_.mouseMode->setCurrentIndex(relative ? 1 : 0);

    for (int setting = 0; setting < customSettings; ++setting)
        mouse_.setCustomEntry(setting, replyValue(reply, customSettingReplyKey(setting)),
                              reportedNameOffset);
    for (int setting = 0; setting < customSettings; ++setting)
        mouse_.setDataLabel(setting, replyValue(reply, customSettingReplyKey(setting)));

    mouse_.setChannelResolutions(replyValue(reply, resolutionsReplyKey));

    const bool buzzerOn = saysBuzzerOn(replyValue(reply, buzzerReplyKey));
    controls_.setBeepButtonsEnabled(!buzzerOn, buzzerOn);

    mouse_.fillEditFields();
}

void ReplyApplication::applyPortLimit(const std::string &value)
{
    const int activePorts = replyNumber(value);
    if (!isPortLimit(activePorts))
        return;
    widgets_.activePorts->setCurrentIndex(activePorts - fewestActivePorts);
    // Deliberate: the grid gets one more than the selected item's index, so a read-back leaves one
    // channel more active than the same selection made by the user does.
    grid_.repaintActivePorts(activePorts - 1);
}

bool ReplyApplication::applyFrontPanel(const std::string &text)
{
    const std::string port = replyValue(text, bothControlsEcho);
    if (port == absentValue)
        return false;
    const DisarmedHandlers disarmed(controls_);
    selectItem(*widgets_.usbControl, port);
    selectItem(*widgets_.kmControl, port);
    return true;
}

bool ReplyApplication::applyKmControl(const std::string &text)
{
    if (text.find(resolutionEcho) != std::string::npos)
        return false;
    const DisarmedHandlers disarmed(controls_);
    return applyEither(*widgets_.kmControl, text, kmControlEcho, kmControlReplyKey);
}

bool ReplyApplication::applyUsbControl(const std::string &text)
{
    const DisarmedHandlers disarmed(controls_);
    return applyEither(*widgets_.usbControl, text, usbControlEcho, usbControlNewsKey);
}
