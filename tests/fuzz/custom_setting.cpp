#include "device/custom_setting.h"
#include "device/command_frame.h"
#include "property.h"
#include "switch_sight.h"

namespace {
void requireHarmless(const std::string &command)
{
    require(!hasControlCharacter(command), "no command holds a control character", command);
    require(command.size() <= longestCustomCommand, "no command is longer than 99 bytes", command);
    std::string framed = command;
    const QByteArray frame = frameCommand(framed);
    require(frame.toStdString() == command + '\r', "the command and its end are sent", command);
}

/// Whether the name begins with so many blanks that the switch, which keeps 24 bytes, may have
/// nothing else of it.
bool isBlankInSwitch(QString name)
{
    name.removeIf([](QChar character) { return character.category() == QChar::Other_Control; });
    constexpr int keptForSure = 21; // the next character may be of four bytes
    return name.startsWith(QString(keptForSure, QLatin1Char(' ')));
}
} // namespace

/// Three lines as they are typed: name, X and Y, behind a byte that says which setting it is.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Choices choices(data, size);
    const int setting = choices.number(1, 4);
    MovementSetting typed;
    typed.name = choices.textLine();
    typed.x = choices.textLine();
    typed.y = choices.textLine();

    const std::string submitted = submittedCommand(setting, typed);
    const std::string stored = storedCommand(setting, typed);
    requireHarmless(submitted);
    requireHarmless(stored);
    require(submitted.ends_with(' '), "the blank that the switch requires is there", submitted);
    if (!customSettingProblem(typed, setting - 1, presetNames()).isEmpty() ||
        isBlankInSwitch(typed.name))
        return 0;

    const std::optional<SwitchCommand> read = requireUnderstood(submitted);
    if (!read)
        return 0;
    require(read->kind == SwitchCommand::Kind::Custom && read->number == setting,
            "the switch reads the setting that is meant", submitted);
    require(read->custom.x == typed.x.toInt() && read->custom.y == typed.y.toInt(),
            "the switch reads the speeds that were typed", submitted);
    return 0;
}
