#include "cli/commands.h"
#include "cli/configuration_json.h"
#include "cli/switch_task.h"
#include "device/command.h"

#include <QTimer>

namespace {
/// Sends the reset, waits for the switch to come back and asks what it has.
class ResetTask : public SwitchTask
{
public:
    ResetTask(const FoundDevice &found, const TaskWorld &world)
        : SwitchTask(found, world),
          command_(world.options.command == Options::Command::ResetFactory ? factoryResetCommand
                                                                           : softResetCommand),
          rest_(found.device.road == Device::Road::Serial ? serialRestAfterReset
                                                          : networkRestAfterReset)
    {
    }

protected:
    void begin() override
    {
        connect(&session(), &SwitchSession::answered, this,
                [this](const ConfigurationReading &reading) {
                    DeviceReport report;
                    report.lines.append({QString(), QStringLiteral("reset, and it answers again")});
                    report.members.insert(QStringLiteral("configuration"),
                                          configurationJson(reading.configuration));
                    finish(report);
                });
        session().write(command_);
        isSent_ = true;
        QTimer::singleShot(rest_, Qt::PreciseTimer, this, [this] { session().ask({}); });
    }

    DeviceReport interrupted() override
    {
        DeviceReport report = SwitchTask::interrupted();
        report.failure->message +=
            isSent_ ? QStringLiteral("; the reset was sent") : QStringLiteral("; nothing was sent");
        return report;
    }

private:
    std::string command_;
    std::chrono::milliseconds rest_;
    bool isSent_ = false;
};
} // namespace

TaskMaker resetTasks(const TaskWorld &world)
{
    return [&world](const FoundDevice &found) { return std::make_unique<ResetTask>(found, world); };
}
