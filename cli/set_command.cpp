#include "cli/change_task.h"
#include "cli/commands.h"
#include "device/setting_values.h"

#include <stdexcept>

namespace {
SettingValues valuesFrom(const std::vector<std::string> &assignments)
{
    SettingValues values;
    QStringList mistakes;
    for (const std::string &assignment : assignments) {
        try {
            values.add(QString::fromStdString(assignment));
        } catch (const std::invalid_argument &error) {
            mistakes.append(QString::fromStdString(error.what()));
        }
    }
    if (!mistakes.isEmpty())
        throw UsageError(mistakes);
    return values;
}
} // namespace

TaskMaker setTasks(const TaskWorld &world)
{
    const SettingValues values = valuesFrom(world.options.assignments);
    const auto wanted = [values](const SwitchConfiguration &now) {
        return WantedSettings{values.atSwitch(now), values.keys(), {}};
    };
    return [=, &world](const FoundDevice &found) {
        return std::make_unique<ChangeTask>(
            found, world, ChangeTask::Plan{ChangeTask::Kind::Change, values.needed(), wanted});
    };
}
