#include "cli/change_task.h"
#include "cli/commands.h"
#include "cli/configuration_json.h"
#include "cli/file_names.h"
#include "device/configuration_file.h"
#include "device/settings_storage.h"

#include <QFileInfo>
#include <QHash>
#include <QSaveFile>

namespace {
class SaveTask : public SwitchTask
{
public:
    SaveTask(const FoundDevice &found, const TaskWorld &world, QString file)
        : SwitchTask(found, world), file_(std::move(file))
    {
    }

protected:
    void begin() override
    {
        connect(&session(), &SwitchSession::answered, this,
                [this](const ConfigurationReading &reading) { finish(saved(reading)); });
        session().ask();
    }

private:
    DeviceReport saved(const ConfigurationReading &reading) const
    {
        const SwitchConfiguration &configuration = reading.configuration;
        std::vector<SettingKey> missing;
        for (const SettingKey key : allSettingKeys()) {
            if (key != SettingKey::Hotkey && !hasSetting(configuration, key))
                missing.push_back(key);
        }
        if (!missing.empty())
            return failureReport(ExitStatus::NotUnderstood,
                                 QStringLiteral("the switch did not tell %1, so nothing was saved; "
                                                "--record FILE keeps what it said")
                                     .arg(namesOf(missing)));
        QSaveFile output(file_);
        QString problem = writeSettingsFile(output, settingsText(configuration));
        if (problem.isEmpty() && !output.commit())
            problem = output.errorString();
        if (!problem.isEmpty())
            return failureReport(ExitStatus::Usage,
                                 QStringLiteral("%1 cannot be written: %2").arg(file_, problem));
        DeviceReport report;
        report.lines.append({QString(), QStringLiteral("saved to ") + file_});
        report.members.insert(QStringLiteral("file"), file_);
        report.members.insert(QStringLiteral("configuration"), configurationJson(configuration));
        return report;
    }

    QString file_;
};

/// What a settings file wants. Throws UsageError with a line for each bad one.
SettingsReading settingsOf(const QString &file)
{
    const SettingsFileText text = readSettingsFile(file);
    if (!text.problem.isEmpty())
        throw UsageError(text.problem);
    SettingsReading reading = readSettings(text.text);
    QStringList mistakes;
    for (const SettingsLineError &error : reading.errors)
        mistakes.append(QStringLiteral("%1, line %2: \"%3\" is no value of \"%4\"")
                            .arg(file, QString::number(error.line),
                                 QString::fromStdString(error.value),
                                 QString::fromStdString(error.key).trimmed()));
    if (!mistakes.isEmpty())
        throw UsageError(mistakes);
    return reading;
}

ChangeTask::Plan planFor(ChangeTask::Kind kind, const SettingsReading &reading)
{
    WantedSettings wanted{reading.configuration, {}, reading.commands};
    for (const SettingKey key : allSettingKeys()) {
        if (hasSetting(reading.configuration, key))
            wanted.keys.push_back(key);
    }
    std::vector<SettingKey> needed = wanted.keys;
    if (reading.configuration.layout && !reading.configuration.activePorts)
        needed.push_back(SettingKey::ActivePorts);
    return {kind, needed, [wanted](const SwitchConfiguration & /*now*/) { return wanted; }};
}

/// A change task that first says which settings its file does not have.
class FileTask : public ChangeTask
{
public:
    FileTask(const FoundDevice &found, const TaskWorld &world, Plan plan, QString warning)
        : ChangeTask(found, world, std::move(plan)), warning_(std::move(warning))
    {
    }

    void start() override
    {
        if (!warning_.isEmpty())
            Q_EMIT warned(warning_);
        ChangeTask::start();
    }

private:
    QString warning_;
};

/// What is to be said of a file without some of the settings; empty where it has all.
QString gapsOf(const QString &file, const SettingsReading &reading)
{
    QStringList names;
    for (const SettingKey key : allSettingKeys()) {
        if (key != SettingKey::Hotkey && !hasSetting(reading.configuration, key))
            names.append(settingName(key));
    }
    return names.isEmpty() ? QString()
                           : QStringLiteral("%1 does not set %2, which stays as it is")
                                 .arg(file, names.join(QStringLiteral(", ")));
}

void requireFolders(const QStringList &files)
{
    QStringList missing;
    for (const QString &file : files) {
        const QString folder = QFileInfo(file).path();
        if (!QFileInfo(folder).isDir() && !missing.contains(folder))
            missing.append(folder);
    }
    if (!missing.isEmpty())
        throw UsageError(QStringLiteral("there is no folder %1; make it first")
                             .arg(missing.join(QStringLiteral(", "))));
}

/// All files are read before anything is sent anywhere.
TaskMaker fileTasks(ChangeTask::Kind kind, const TaskWorld &world,
                    const std::vector<Device> &devices)
{
    const QStringList files = filesFor(QString::fromStdString(world.options.file), devices);
    QHash<QString, SettingsReading> readings; // by file
    QHash<QString, QString> fileOf;           // by device
    QStringList mistakes;
    for (std::size_t at = 0; at < devices.size(); ++at) {
        const QString &file = files.at(static_cast<qsizetype>(at));
        fileOf.insert(devices.at(at).name, file);
        if (readings.contains(file))
            continue;
        try {
            readings.insert(file, settingsOf(file));
        } catch (const UsageError &error) {
            readings.insert(file, {});
            mistakes += error.lines();
        }
    }
    if (!mistakes.isEmpty())
        throw UsageError(mistakes);
    return [=, &world](const FoundDevice &found) {
        const QString file = fileOf.value(found.device.name);
        const SettingsReading reading = readings.value(file);
        return std::make_unique<FileTask>(found, world, planFor(kind, reading),
                                          gapsOf(file, reading));
    };
}
} // namespace

TaskMaker saveTasks(const TaskWorld &world, const std::vector<Device> &devices)
{
    const QString pattern = QString::fromStdString(world.options.file);
    if (devices.size() > 1 && !namesEachDevice(pattern))
        throw UsageError(QStringLiteral("several devices cannot be saved to one file; put {name} "
                                        "into its name, such as backup/{name}.txt"));
    const QStringList files = filesFor(pattern, devices);
    requireFolders(files);
    QHash<QString, QString> fileOf;
    for (std::size_t at = 0; at < devices.size(); ++at)
        fileOf.insert(devices.at(at).name, files.at(static_cast<qsizetype>(at)));
    return [=, &world](const FoundDevice &found) {
        return std::make_unique<SaveTask>(found, world, fileOf.value(found.device.name));
    };
}

TaskMaker diffTasks(const TaskWorld &world, const std::vector<Device> &devices)
{
    return fileTasks(ChangeTask::Kind::Comparison, world, devices);
}

TaskMaker applyTasks(const TaskWorld &world, const std::vector<Device> &devices)
{
    return fileTasks(ChangeTask::Kind::Change, world, devices);
}
