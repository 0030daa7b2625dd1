#include "cli/commands.h"
#include "cli/configuration_json.h"
#include "cli/switch_task.h"

namespace {
/// The layout as a drawing, a blank between the cells.
QString drawing(const QString &layout)
{
    QString drawn;
    for (const QChar cell : layout) {
        if (cell == QLatin1Char('/'))
            drawn.chop(1);
        drawn += cell == QLatin1Char('/') ? QStringLiteral("\n") : QString(cell) + QLatin1Char(' ');
    }
    drawn.chop(1);
    return drawn;
}

DeviceReport reportOn(const SwitchConfiguration &configuration, const std::vector<SettingKey> &keys)
{
    DeviceReport report;
    std::vector<SettingKey> missing;
    for (const SettingKey key : keys) {
        const std::optional<QString> value = settingText(configuration, key);
        if (!value)
            missing.push_back(key);
        const bool isDrawn = value && key == SettingKey::Layout;
        report.lines.append(
            {settingName(key), isDrawn ? drawing(*value) : value.value_or(QStringLiteral("?"))});
    }
    report.members.insert(QStringLiteral("configuration"), configurationJson(configuration, keys));
    if (!missing.empty())
        report.failure = Failure{ExitStatus::NotUnderstood,
                                 QStringLiteral("the switch did not tell %1; --record FILE keeps "
                                                "what it said")
                                     .arg(namesOf(missing))};
    return report;
}

class GetTask : public SwitchTask
{
public:
    GetTask(const FoundDevice &found, const TaskWorld &world, std::vector<SettingKey> keys)
        : SwitchTask(found, world), keys_(std::move(keys))
    {
    }

protected:
    void begin() override
    {
        connect(&session(), &SwitchSession::answered, this,
                [this](const ConfigurationReading &reading) {
                    finish(reportOn(reading.configuration, keys_));
                });
        session().ask(keys_);
    }

private:
    std::vector<SettingKey> keys_;
};

std::vector<SettingKey> keysFrom(const std::vector<std::string> &names)
{
    std::vector<SettingKey> keys;
    QStringList mistakes;
    for (const std::string &text : names) {
        QString name = QString::fromStdString(text);
        name.replace(QLatin1Char('_'), QLatin1Char('-'));
        const std::optional<SettingKey> key = settingOfName(name);
        if (key)
            keys.push_back(*key);
        else
            mistakes.append(QStringLiteral("there is no setting \"%1\"; there are %2")
                                .arg(name, namesOf(allSettingKeys())));
    }
    if (!mistakes.isEmpty())
        throw UsageError(mistakes);
    return keys.empty() ? allSettingKeys() : keys;
}
} // namespace

TaskMaker getTasks(const TaskWorld &world)
{
    return [&world, keys = keysFrom(world.options.keys)](const FoundDevice &found) {
        return std::make_unique<GetTask>(found, world, keys);
    };
}
