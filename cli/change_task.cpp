#include "cli/change_task.h"

#include "cli/configuration_json.h"
#include "device/setting_values.h"

#include <algorithm>

namespace {
QString known(const std::optional<QString> &value)
{
    return value.value_or(QStringLiteral("?"));
}

QString commandList(const std::vector<SettingCommand> &commands)
{
    QStringList texts;
    for (const SettingCommand &command : commands)
        texts.append(QString::fromStdString(command.text));
    return texts.join(QStringLiteral(", "));
}

Failure refusal(const std::vector<SettingDifference> &refused)
{
    QStringList parts;
    for (const SettingDifference &difference : refused)
        parts.append(QStringLiteral("%1 (wanted \"%2\", it has \"%3\")")
                         .arg(settingName(difference.key), difference.to, known(difference.from)));
    return {ExitStatus::NotTaken, QStringLiteral("the switch did not take ") +
                                      parts.join(QStringLiteral(", ")) +
                                      QStringLiteral("; look at the switch, or try again")};
}
} // namespace

ChangeTask::ChangeTask(const FoundDevice &found, const TaskWorld &world, Plan plan)
    : SwitchTask(found, world), plan_(std::move(plan))
{
}

void ChangeTask::begin()
{
    disconnect(&session(), &SwitchSession::failed, this, nullptr); // the change tells
    const bool onlyLooks = plan_.kind == Kind::Comparison;
    change_ = std::make_unique<ConfigurationChange>(
        session(), plan_.needed, plan_.wanted,
        ConfigurationChange::Manner{options().force, options().dryRun || onlyLooks, 2});
    connect(change_.get(), &ConfigurationChange::finished, this, &ChangeTask::onFinished);
    change_->start();
}

void ChangeTask::onFinished(const ChangeResult &result)
{
    const std::optional<DisplayLayout> &layout = result.wanted.layout;
    const bool sendsLayout = std::any_of(
        result.commands.begin(), result.commands.end(),
        [](const SettingCommand &command) { return command.key == SettingKey::Layout; });
    if (sendsLayout && layout && !touchEdgeToEdge(*layout))
        Q_EMIT warned(QStringLiteral("the displays of the layout do not all touch edge to edge"));
    finish(reportOn(result));
}

DeviceReport ChangeTask::reportOn(const ChangeResult &result) const
{
    DeviceReport report;
    switch (result.outcome) {
    case ChangeResult::Outcome::MissingKeys:
        return reportOf(result.missing);
    case ChangeResult::Outcome::BadValue:
        return failureReport(ExitStatus::Usage, result.message);
    case ChangeResult::Outcome::Failed:
        report = reportOf(result.error);
        if (!result.sent.empty()) {
            report.failure->message += QStringLiteral("; sent before: ") + commandList(result.sent);
            report.members.insert(QStringLiteral("sent"), commandsJson(result.sent));
        }
        break;
    case ChangeResult::Outcome::NotTaken:
        report.failure = refusal(result.refused);
        break;
    case ChangeResult::Outcome::Done:
        if (plan_.kind == Kind::Comparison && !result.changes.empty())
            report.status = ExitStatus::Differs;
        break;
    }
    describe(report, result);
    return report;
}

void ChangeTask::describe(DeviceReport &report, const ChangeResult &result) const
{
    std::vector<SettingDifference> made = result.changes;
    if (result.outcome == ChangeResult::Outcome::NotTaken) {
        const auto wasRefused = [&result](const SettingDifference &change) {
            return std::any_of(
                result.refused.begin(), result.refused.end(),
                [&](const SettingDifference &refused) { return refused.key == change.key; });
        };
        made.erase(std::remove_if(made.begin(), made.end(), wasRefused), made.end());
    } else if (result.outcome == ChangeResult::Outcome::Failed) {
        made.clear(); // nobody knows
    }
    for (const SettingDifference &change : made)
        report.lines.append(
            {settingName(change.key), known(change.from) + QStringLiteral(" -> ") + change.to});
    if (options().dryRun) {
        for (const SettingCommand &command : result.commands)
            report.lines.append(
                {QStringLiteral("would send"), QString::fromStdString(command.text)});
        report.members.insert(QStringLiteral("commands"), commandsJson(result.commands));
    }
    if (report.lines.isEmpty() && !report.failure)
        report.lines.append(
            {QString(), plan_.kind == Kind::Comparison ? QStringLiteral("no difference")
                        : result.sent.empty()          ? QStringLiteral("already so")
                                                       : QStringLiteral("sent again, as it was")});
    report.members.insert(QStringLiteral("changes"),
                          changesJson(made, result.before, result.wanted));
}

DeviceReport ChangeTask::interrupted()
{
    DeviceReport report = SwitchTask::interrupted();
    const ChangeResult result = change_ ? change_->result() : ChangeResult();
    report.failure->message += result.sent.empty()
                                   ? QStringLiteral("; nothing was sent")
                                   : QStringLiteral("; sent %1 of %2 commands: %3")
                                         .arg(std::min(result.sent.size(), result.commands.size()))
                                         .arg(result.commands.size())
                                         .arg(commandList(result.sent));
    report.members.insert(QStringLiteral("sent"), commandsJson(result.sent));
    return report;
}
