#include "cli/configuration_json.h"

namespace {
template <typename Value>
QJsonValue valueOf(const std::optional<Value> &known)
{
    return known ? QJsonValue(*known) : QJsonValue();
}

QJsonValue resolutionJson(const SwitchConfiguration &configuration, int channel)
{
    const std::optional<int> number =
        configuration.resolutions.at(static_cast<std::size_t>(channel - 1));
    if (!number)
        return {};
    const QString name = resolutionNames(configuration).value(*number - 1);
    return QJsonObject{{QStringLiteral("number"), *number},
                       {QStringLiteral("name"), name.isEmpty() ? QJsonValue() : QJsonValue(name)}};
}

QJsonValue customJson(const SwitchConfiguration &configuration, int number)
{
    const auto &custom = configuration.custom.at(static_cast<std::size_t>(number - 1));
    if (!custom)
        return {};
    return QJsonObject{{QStringLiteral("x"), custom->x},
                       {QStringLiteral("y"), custom->y},
                       {QStringLiteral("name"), custom->name}};
}
} // namespace

QString jsonName(QString key)
{
    return key.replace(QLatin1Char('-'), QLatin1Char('_'));
}

QJsonValue settingJson(const SwitchConfiguration &configuration, SettingKey key)
{
    switch (key) {
    case SettingKey::KmControl:
        return valueOf(configuration.kmControl);
    case SettingKey::UsbControl:
        return valueOf(configuration.usbControl);
    case SettingKey::ActivePorts:
        return valueOf(configuration.activePorts);
    case SettingKey::CursorRolling:
        return valueOf(configuration.cursorRolling);
    case SettingKey::Buzzer:
        return valueOf(configuration.buzzerOn);
    case SettingKey::MouseMode:
    case SettingKey::Layout:
    case SettingKey::Hotkey:
        return valueOf(settingText(configuration, key));
    default:
        return isResolution(key) ? resolutionJson(configuration, settingNumber(key))
                                 : customJson(configuration, settingNumber(key));
    }
}

QJsonObject configurationJson(const SwitchConfiguration &configuration,
                              const std::vector<SettingKey> &keys)
{
    QJsonObject object;
    for (const SettingKey key : keys) {
        if (settingNumber(key) == 0) {
            object.insert(jsonName(settingName(key)), settingJson(configuration, key));
            continue;
        }
        const QString group =
            isResolution(key) ? QStringLiteral("resolution") : QStringLiteral("custom");
        QJsonArray four = object.value(group).toArray({{}, {}, {}, {}});
        four.replace(settingNumber(key) - 1, settingJson(configuration, key));
        object.insert(group, four);
    }
    return object;
}

QJsonArray changesJson(const std::vector<SettingDifference> &found, const SwitchConfiguration &from,
                       const SwitchConfiguration &to)
{
    QJsonArray changes;
    for (const SettingDifference &difference : found)
        changes.append(QJsonObject{{QStringLiteral("key"), jsonName(settingName(difference.key))},
                                   {QStringLiteral("from"), settingJson(from, difference.key)},
                                   {QStringLiteral("to"), settingJson(to, difference.key)}});
    return changes;
}

QJsonArray commandsJson(const std::vector<SettingCommand> &commands)
{
    QJsonArray texts;
    for (const SettingCommand &command : commands)
        texts.append(QString::fromStdString(command.text));
    return texts;
}
