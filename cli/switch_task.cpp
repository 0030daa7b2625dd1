#include "cli/switch_task.h"

#include "session/link_recorder.h"
#include "session/serial_switch_link.h"
#include "session/udp_switch_link.h"

#include <algorithm>

namespace {
std::unique_ptr<SwitchLink> linkTo(const FoundDevice &found)
{
    const Device &device = found.device;
    if (found.module)
        return std::make_unique<UdpSwitchLink>(QHostAddress(found.module->reply.ip), switchUdpPort);
    if (device.road == Device::Road::Udp)
        return std::make_unique<UdpSwitchLink>(device.address, device.udpPort);
    return std::make_unique<SerialSwitchLink>(device.port);
}

SwitchSession::Timing timingOf(const Options &options)
{
    SwitchSession::Timing timing;
    timing.firstByte = std::chrono::milliseconds(options.timeout);
    timing.rest = timing.firstByte;
    timing.silence = std::min(timing.silence, timing.firstByte);
    timing.retries = options.retries;
    return timing;
}
} // namespace

SwitchTask::SwitchTask(const FoundDevice &found, const TaskWorld &world)
    : options_(world.options), device_(found.device),
      session_(std::make_unique<SwitchSession>(linkTo(found), timingOf(world.options)))
{
    if (world.recorder != nullptr)
        record(*session_, *world.recorder, device_.name,
               device_.road == Device::Road::Serial ? LinkRecorder::Road::Serial
                                                    : LinkRecorder::Road::Udp);
}

void SwitchTask::start()
{
    connect(session_.get(), &SwitchSession::opened, this, [this] { begin(); });
    connect(session_.get(), &SwitchSession::failed, this,
            [this](const SessionError &error) { finish(reportOf(error)); });
    session_->open();
}

DeviceReport SwitchTask::interrupt()
{
    session_->close();
    return interrupted();
}

DeviceReport SwitchTask::interrupted()
{
    return failureReport(ExitStatus::Interrupted, QStringLiteral("interrupted"));
}

void SwitchTask::finish(const DeviceReport &report)
{
    session_->disconnect(this);
    session_->close();
    Q_EMIT finished(report);
}

DeviceReport SwitchTask::reportOf(const SessionError &error)
{
    switch (error.kind) {
    case SessionError::Kind::CannotOpen:
        return failureReport(ExitStatus::NoDevice, error.message);
    case SessionError::Kind::Broken:
        return failureReport(ExitStatus::NoDevice,
                             error.message + QStringLiteral("; check the cable"));
    case SessionError::Kind::NoAnswer:
        return failureReport(
            ExitStatus::NoDevice,
            error.message + QStringLiteral("; check the cable, the address and that it is on"));
    case SessionError::Kind::NotUnderstood:
        break;
    }
    return failureReport(
        ExitStatus::NotUnderstood,
        error.message + QStringLiteral("; --record FILE keeps it, so that it can be looked at"));
}

DeviceReport SwitchTask::reportOf(const std::vector<SettingKey> &missing)
{
    return failureReport(ExitStatus::NotUnderstood,
                         QStringLiteral("the switch did not tell %1, so nothing was sent; "
                                        "--record FILE keeps what it said")
                             .arg(namesOf(missing)));
}

QString namesOf(const std::vector<SettingKey> &keys)
{
    QStringList names;
    for (const SettingKey key : keys)
        names.append(settingName(key));
    return names.join(QStringLiteral(", "));
}
