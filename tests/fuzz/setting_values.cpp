#include "device/setting_values.h"
#include "device/command_frame.h"
#include "device/configuration_reply.h"
#include "property.h"
#include "simulator/switch_answers.h"
#include "simulator/switch_model.h"
#include "switch_sight.h"

#include <stdexcept>

namespace {
SwitchConfiguration told(const SwitchState &state)
{
    return readConfiguration(configurationAnswer(state), statusAnswer(state), layoutAnswer(state))
        .configuration;
}

/// What the switch has of `wanted` after all of its commands.
void requireTaken(const std::vector<SettingCommand> &commands, const SwitchConfiguration &wanted)
{
    SwitchModel device;
    bool allTaken = true;
    for (const SettingCommand &command : commands) {
        requireSets(command, wanted);
        std::string text = command.text;
        device.receive(frameCommand(text));
        allTaken = allTaken && device.rejectedCount() == 0;
    }
    if (!allTaken)
        return; // a name that the switch does not take
    const SwitchConfiguration now = told(device.state());
    for (const SettingDifference &left : differences(now, wanted))
        require(isCustomSetting(left.key), "the switch has what was wanted",
                settingName(left.key).toStdString());
}
} // namespace

/// Each line is one KEY=VALUE, as a user gives them.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Choices choices(data, size);
    SettingValues values;
    while (!choices.isAtEnd()) {
        try {
            values.add(choices.textLine());
        } catch (const std::invalid_argument &refusal) {
            require(*refusal.what() != '\0', "a refusal says why");
        }
    }
    static const SwitchConfiguration now = told(SwitchState()); // as it left the factory
    SwitchConfiguration wanted;
    try {
        wanted = values.atSwitch(now);
    } catch (const std::invalid_argument &) {
        return 0; // a name that the switch does not have
    }
    for (const SettingKey key : values.keys())
        require(hasSetting(wanted, key), "what is asked for is wanted");
    const SwitchConfiguration whole = withChanges(now, wanted);
    requireTaken(commandsFor(values.keys(), now, wanted), whole);
    for (const SettingCommand &command : commandsFor(keysOf(differences(now, wanted)), now, wanted))
        requireSets(command, whole);
    return 0;
}
