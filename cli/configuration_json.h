#pragma once

#include "device/configuration_commands.h"
#include "device/switch_configuration.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <vector>

/// Settings as JSON. Keys are those of the command line with "_" for "-"; a port and a number of
/// ports is a number, cursor rolling and buzzer are true or false, the mouse mode is "absolute" or
/// "relative", the layout a text such as "12../34../..../....", a resolution {"number", "name"}, a
/// custom setting {"x", "y", "name"}. What is not known is null.

/// `key` as it stands in JSON: "km-control" is "km_control".
QString jsonName(QString key);

/// The value of one setting. A resolution's name is null where it has none.
QJsonValue settingJson(const SwitchConfiguration &configuration, SettingKey key);

/// Those of `keys`: "km_control" and so on, "resolution" and "custom" as arrays of four.
QJsonObject configurationJson(const SwitchConfiguration &configuration,
                              const std::vector<SettingKey> &keys = allSettingKeys());

/// {"key", "from", "to"} for each of `found`, values from `from` and `to`.
QJsonArray changesJson(const std::vector<SettingDifference> &found, const SwitchConfiguration &from,
                       const SwitchConfiguration &to);

/// The texts of `commands`.
QJsonArray commandsJson(const std::vector<SettingCommand> &commands);
