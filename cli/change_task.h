#pragma once

#include "cli/switch_task.h"
#include "session/configuration_change.h"

/// A task that changes a switch, or says what it would change.
class ChangeTask : public SwitchTask
{
    Q_OBJECT

public:
    enum class Kind {
        Change,
        Comparison ///< differences are what is asked for: nothing is sent, the status tells
    };

    struct Plan
    {
        Kind kind = Kind::Change;
        std::vector<SettingKey> needed;
        ConfigurationChange::Wanted wanted;
    };

    ChangeTask(const FoundDevice &found, const TaskWorld &world, Plan plan);

protected:
    void begin() override;
    DeviceReport interrupted() override;

private:
    DeviceReport reportOn(const ChangeResult &result) const;
    void describe(DeviceReport &report, const ChangeResult &result) const;
    void onFinished(const ChangeResult &result);

    Plan plan_;
    std::unique_ptr<ConfigurationChange> change_;
};
