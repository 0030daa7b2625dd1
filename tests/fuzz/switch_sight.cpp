#include "switch_sight.h"

#include "device/custom_setting.h"
#include "property.h"

#include <variant>

namespace {
using Kind = SwitchCommand::Kind;

/// A name as it is read.
QString readable(const std::string &name)
{
    QString text = QString::fromStdString(name);
    text.removeIf([](QChar character) {
        return character == QLatin1Char(' ') || character == QChar(0xfeff) ||
               character.category() == QChar::Other_Control;
    });
    return text;
}

int cellNumber(GridPosition place)
{
    return place.row * 4 + place.column + 1;
}

void requireNumber(const SwitchCommand &command, Kind kind, std::optional<int> wanted,
                   const std::string &text)
{
    require(command.kind == kind && command.number == wanted,
            "the switch reads the number that is wanted", text);
}

void requireChoice(const SwitchCommand &command, Kind off, Kind on, std::optional<bool> wanted,
                   const std::string &text)
{
    require(wanted && command.kind == (*wanted ? on : off),
            "the switch reads the choice that is wanted", text);
}

void requireLayout(const SwitchCommand &command, const std::optional<DisplayLayout> &wanted,
                   const std::string &text)
{
    require(command.kind == Kind::Layout && command.layout.isWhole() && wanted.has_value(),
            "the switch reads a whole layout", text);
    for (std::size_t at = 0; at < wanted->size(); ++at)
        require(command.layout.cells.at(at) == cellNumber(wanted->at(at)),
                "the switch reads the cells that are wanted", text);
}

void requireCustom(const SwitchCommand &command, int number,
                   const std::optional<MouseMovement> &wanted, const std::string &text)
{
    require(command.kind == Kind::Custom && command.number == number && wanted.has_value(),
            "the switch reads the custom setting that is meant", text);
    require(command.custom.x == wanted->x && command.custom.y == wanted->y,
            "the switch reads the speeds that are wanted", text);
    require(command.custom.name == keptName(wanted->name),
            "the switch reads the name that is wanted", text);
}
} // namespace

std::string keptName(const QString &sent)
{
    constexpr std::size_t longestName = 24;
    std::string bytes = sent.toStdString();
    if (bytes.size() <= longestName)
        return bytes;
    std::size_t end = longestName;
    while (end > 0 && (static_cast<unsigned char>(bytes[end]) & 0xc0U) == 0x80U)
        --end;
    return bytes.substr(0, end);
}

bool hasUnreadableName(const SwitchState &state, SettingKey key)
{
    return isCustomSetting(key) &&
           readable(state.custom.at(static_cast<std::size_t>(settingNumber(key) - 1)).name)
               .isEmpty();
}

std::optional<SwitchCommand> requireUnderstood(const std::string &command)
{
    require(!hasControlCharacter(command), "no command holds a control character", command);
    require(command.size() <= longestCustomCommand, "no command is longer than 99 bytes", command);
    const auto decoded = decodeCommand(command);
    if (const auto *rejection = std::get_if<Rejection>(&decoded)) {
        require(rejection->reason == "the name holds a mark of the switch's own answers",
                "the switch understands every command: " + rejection->reason, command);
        return std::nullopt;
    }
    return std::get<SwitchCommand>(decoded);
}

void requireSets(const SettingCommand &command, const SwitchConfiguration &wanted)
{
    const std::string &text = command.text;
    const std::optional<SwitchCommand> read = requireUnderstood(text);
    if (!read)
        return;
    switch (command.key) {
    case SettingKey::KmControl:
        return requireNumber(*read, Kind::KmControl, wanted.kmControl, text);
    case SettingKey::UsbControl:
        return requireNumber(*read, Kind::UsbControl, wanted.usbControl, text);
    case SettingKey::ActivePorts:
        return requireNumber(*read, Kind::PortLimit, wanted.activePorts, text);
    case SettingKey::CursorRolling:
        return requireChoice(*read, Kind::CursorRollingOff, Kind::CursorRollingOn,
                             wanted.cursorRolling, text);
    case SettingKey::Buzzer:
        return requireChoice(*read, Kind::BuzzerOff, Kind::BuzzerOn, wanted.buzzerOn, text);
    case SettingKey::MouseMode:
        return requireChoice(*read, Kind::AbsoluteMouse, Kind::RelativeMouse, wanted.relativeMouse,
                             text);
    case SettingKey::Layout:
        if (read->kind != Kind::PortLimit)
            requireLayout(*read, wanted.layout, text);
        return;
    case SettingKey::Hotkey:
        return require(false, "no command sets the hotkey", text);
    default:
        break;
    }
    const auto at = static_cast<std::size_t>(settingNumber(command.key) - 1);
    if (isCustomSetting(command.key))
        return requireCustom(*read, settingNumber(command.key), wanted.custom.at(at), text);
    require(read->kind == Kind::Resolution && read->number == settingNumber(command.key) &&
                read->value == wanted.resolutions.at(at),
            "the switch reads the resolution that is wanted", text);
}

void requireTells(const SwitchConfiguration &configuration, const SwitchState &state)
{
    require(configuration.kmControl == state.kmControl, "KM control is read as it is");
    require(configuration.usbControl == state.usbControl, "USB control is read as it is");
    require(configuration.activePorts == state.activePorts, "active ports are read as they are");
    require(configuration.cursorRolling == state.cursorRolling, "cursor rolling is read as it is");
    require(configuration.relativeMouse == state.relativeMouse, "mouse mode is read as it is");
    require(configuration.buzzerOn == state.buzzer, "the buzzer is read as it is");
    require(configuration.hotkeyTrigger == QString::fromStdString(state.hotkeyTrigger),
            "the hotkey is read as it is", state.hotkeyTrigger);
    require(configuration.layout.has_value(), "the layout is read");
    for (std::size_t at = 0; at < state.layout.size(); ++at) {
        require(cellNumber(configuration.layout->at(at)) == state.layout.at(at),
                "the layout is read as it is");
        require(configuration.resolutions.at(at) == state.resolutions.at(at),
                "resolutions are read as they are");
        const std::optional<MouseMovement> &custom = configuration.custom.at(at);
        const CustomSetting &stored = state.custom.at(at);
        if (readable(stored.name).isEmpty()) {
            require(!custom, "a setting of which no name is left is not read", stored.name);
            continue;
        }
        require(custom.has_value(), "custom settings are read", stored.name);
        require(custom->x == stored.x && custom->y == stored.y, "speeds are read as they are");
        require(custom->name == readable(stored.name), "names are read as they are", stored.name);
    }
}
