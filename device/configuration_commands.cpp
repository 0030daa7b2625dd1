#include "device/configuration_commands.h"

#include "device/command.h"

#include <algorithm>

namespace {
/// The order in which a settings file is applied.
const std::vector<SettingKey> &sendingOrder()
{
    static const std::vector<SettingKey> order = [] {
        std::vector<SettingKey> keys = {SettingKey::KmControl};
        for (int number = 1; number <= customSettings; ++number)
            keys.push_back(customSetting(number));
        for (int channel = 1; channel <= channelCount; ++channel)
            keys.push_back(resolutionSetting(channel));
        for (const SettingKey key :
             {SettingKey::UsbControl, SettingKey::ActivePorts, SettingKey::CursorRolling,
              SettingKey::Layout, SettingKey::Buzzer, SettingKey::MouseMode})
            keys.push_back(key);
        return keys;
    }();
    return order;
}

std::string activePortsText(int ports)
{
    return activePortsCommand(ports - fewestActivePorts);
}

std::string resolutionText(const SwitchConfiguration &configuration, int channel)
{
    const std::optional<int> number =
        configuration.resolutions.at(static_cast<std::size_t>(channel - 1));
    return number ? resolutionCommand(channel, *number - 1) : std::string();
}

std::string customText(const SwitchConfiguration &configuration, int setting)
{
    const std::optional<MouseMovement> &custom =
        configuration.custom.at(static_cast<std::size_t>(setting - 1));
    if (!custom)
        return {};
    return submittedCommand(setting,
                            {custom->name, QString::number(custom->x), QString::number(custom->y)});
}

/// Puts the commands together, each setting's as it is written or as it is built.
class Sending
{
public:
    Sending(const std::vector<SettingKey> &keys, const SwitchConfiguration &now,
            const SwitchConfiguration &wanted, const WrittenCommands &asWritten)
        : keys_(keys), now_(now), wanted_(wanted), asWritten_(asWritten)
    {
    }

    std::vector<SettingCommand> commands()
    {
        for (const SettingKey key : sendingOrder()) {
            if (isSent(key))
                add(key);
        }
        return std::move(commands_);
    }

private:
    bool isSent(SettingKey key) const
    {
        return std::find(keys_.begin(), keys_.end(), key) != keys_.end() && !text(key).empty();
    }

    std::string text(SettingKey key) const
    {
        const auto written = asWritten_.find(key);
        return written != asWritten_.end() ? written->second : settingCommand(wanted_, key);
    }

    void add(SettingKey key)
    {
        if (key == SettingKey::Layout)
            addLayout();
        else if (key != SettingKey::ActivePorts || !isLeftToLayout())
            commands_.push_back({text(key), key});
    }

    /// How many ports are to be active in the end; none where nobody knows.
    std::optional<int> portsInTheEnd() const
    {
        return isSent(SettingKey::ActivePorts) ? wanted_.activePorts : now_.activePorts;
    }

    /// Whether the port limit goes out behind the layout.
    bool isLeftToLayout() const
    {
        return isSent(SettingKey::Layout) &&
               portsInTheEnd().value_or(mostActivePorts) < mostActivePorts;
    }

    void addLayout()
    {
        const std::optional<int> ports = portsInTheEnd();
        const bool limitCame = isSent(SettingKey::ActivePorts) && !isLeftToLayout();
        if (ports && now_.activePorts != mostActivePorts && !limitCame)
            commands_.push_back({activePortsText(mostActivePorts), SettingKey::Layout});
        commands_.push_back({text(SettingKey::Layout), SettingKey::Layout});
        if (!isLeftToLayout())
            return;
        if (isSent(SettingKey::ActivePorts))
            commands_.push_back({text(SettingKey::ActivePorts), SettingKey::ActivePorts});
        else
            commands_.push_back({activePortsText(*ports), SettingKey::Layout});
    }

    const std::vector<SettingKey> &keys_;
    const SwitchConfiguration &now_;
    const SwitchConfiguration &wanted_;
    const WrittenCommands &asWritten_;
    std::vector<SettingCommand> commands_;
};
} // namespace

bool isInSecondHalf(SettingKey key)
{
    return key != SettingKey::KmControl && !isCustomSetting(key) && !isResolution(key);
}

std::string settingCommand(const SwitchConfiguration &configuration, SettingKey key)
{
    if (!hasSetting(configuration, key))
        return {};
    switch (key) {
    case SettingKey::KmControl:
        return kmControlCommand(*configuration.kmControl - 1);
    case SettingKey::UsbControl:
        return usbControlCommand(*configuration.usbControl - 1);
    case SettingKey::ActivePorts:
        return activePortsText(*configuration.activePorts);
    case SettingKey::CursorRolling:
        return cursorRollingCommand(*configuration.cursorRolling ? 1 : 0);
    case SettingKey::Buzzer:
        return buzzerCommand(*configuration.buzzerOn);
    case SettingKey::MouseMode:
        return mouseModeCommand(*configuration.relativeMouse ? 1 : 0);
    case SettingKey::Layout:
        return layoutCommand(*configuration.layout);
    case SettingKey::Hotkey:
        return {};
    default:
        return isResolution(key) ? resolutionText(configuration, settingNumber(key))
                                 : customText(configuration, settingNumber(key));
    }
}

std::vector<SettingCommand> commandsFor(const std::vector<SettingKey> &keys,
                                        const SwitchConfiguration &now,
                                        const SwitchConfiguration &wanted,
                                        const WrittenCommands &asWritten)
{
    return Sending(keys, now, wanted, asWritten).commands();
}
