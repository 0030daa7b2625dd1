#pragma once

#include "cli/task.h"
#include "session/switch_session.h"

/// A task that converses with the switch.
class SwitchTask : public DeviceTask
{
    Q_OBJECT

public:
    SwitchTask(const FoundDevice &found, const TaskWorld &world);

    void start() override;
    DeviceReport interrupt() override;

protected:
    /// The road is open.
    virtual void begin() = 0;
    /// What can be said in the middle; nothing but that it was interrupted, unless told otherwise.
    virtual DeviceReport interrupted();

    SwitchSession &session() { return *session_; }
    const Options &options() const { return options_; }

    /// Closes the road and reports.
    void finish(const DeviceReport &report);
    /// Reports what went wrong with the conversation.
    static DeviceReport reportOf(const SessionError &error);
    /// Reports that the switch did not tell `missing`.
    static DeviceReport reportOf(const std::vector<SettingKey> &missing);

private:
    Options options_;
    Device device_;
    std::unique_ptr<SwitchSession> session_;
};

/// The keys' names, joined.
QString namesOf(const std::vector<SettingKey> &keys);
