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

/// A name as it is sent.
QString withoutControls(QString name)
{
    name.removeIf([](QChar character) {
        return character.category() == QChar::Other_Control || character == QChar(0xfeff);
    });
    return name;
}

/// Whether the name begins with so many blanks that the switch, which keeps 24 bytes, may have
/// nothing else of it.
bool isBlankInSwitch(const QString &sent)
{
    constexpr int keptForSure = 21; // the next character may be of four bytes
    return sent.startsWith(QString(keptForSure, QLatin1Char(' ')));
}

void requireReads(const std::string &command, int setting, const MovementSetting &typed,
                  const QString &name)
{
    const std::optional<SwitchCommand> read = requireUnderstood(command);
    if (!read)
        return;
    require(read->kind == SwitchCommand::Kind::Custom && read->number == setting,
            "the switch reads the setting that is meant", command);
    require(read->custom.x == typed.x.toInt() && read->custom.y == typed.y.toInt(),
            "the switch reads the speeds that were typed", command);
    require(read->custom.name == keptName(name), "the switch reads the name that was typed",
            command);
}

/// A speed as a settings file has it.
QString inThreeDigits(const QString &speed)
{
    return QString::number(speed.toInt()).rightJustified(3, QLatin1Char('0'));
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
    const QString sent = withoutControls(typed.name);
    if (!customSettingProblem(typed, setting - 1, presetNames()).isEmpty() || isBlankInSwitch(sent))
        return 0;

    requireReads(submitted, setting, typed, sent);
    // A blank at its end is, in a file, the one that the switch requires behind a name.
    requireReads(
        storedCommand(setting, {typed.name, inThreeDigits(typed.x), inThreeDigits(typed.y)}),
        setting, typed, sent.endsWith(QLatin1Char(' ')) ? sent.chopped(1) : sent);
    return 0;
}
