#include "session/configuration_change.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace {
bool isAmong(const std::vector<SettingKey> &keys, SettingKey key)
{
    return std::find(keys.begin(), keys.end(), key) != keys.end();
}

/// What of `wanted` the switch does not have.
std::vector<SettingDifference> outstanding(const SwitchConfiguration &now,
                                           const WantedSettings &wanted)
{
    // Named by the custom settings that it has and will have, not by those alone that change.
    std::vector<SettingDifference> found = differences(now, withChanges(now, wanted.configuration));
    const auto isOther = [&wanted](const SettingDifference &difference) {
        return !isAmong(wanted.keys, difference.key);
    };
    found.erase(std::remove_if(found.begin(), found.end(), isOther), found.end());
    return found;
}
} // namespace

ConfigurationChange::ConfigurationChange(SwitchSession &session, std::vector<SettingKey> needed,
                                         Wanted wanted, Manner manner, QObject *parent)
    : QObject(parent), session_(session), needed_(std::move(needed)), wantedOf_(std::move(wanted)),
      manner_(manner)
{
}

void ConfigurationChange::start()
{
    connect(&session_, &SwitchSession::answered, this, &ConfigurationChange::onAnswered);
    connect(&session_, &SwitchSession::commandSent, this,
            [this](const SettingCommand &command) { result_.sent.push_back(command); });
    connect(&session_, &SwitchSession::sent, this, [this] { session_.ask(wanted_.keys); });
    connect(&session_, &SwitchSession::failed, this, [this](const SessionError &error) {
        result_.error = error;
        finish(ChangeResult::Outcome::Failed);
    });
    session_.ask(needed_);
}

void ConfigurationChange::onAnswered(const ConfigurationReading &reading)
{
    if (hasBegun_)
        compare(reading);
    else
        begin(reading);
}

void ConfigurationChange::begin(const ConfigurationReading &reading)
{
    const SwitchConfiguration &now = reading.configuration;
    result_.before = now;
    result_.after = now;
    for (const SettingKey key : needed_) {
        if (!hasSetting(now, key))
            result_.missing.push_back(key);
    }
    if (!result_.missing.empty()) {
        finish(ChangeResult::Outcome::MissingKeys);
        return;
    }
    try {
        wanted_ = wantedOf_(now);
    } catch (const std::invalid_argument &error) {
        result_.message = QString::fromStdString(error.what());
        finish(ChangeResult::Outcome::BadValue);
        return;
    }
    result_.wanted = withChanges(now, wanted_.configuration);
    result_.changes = outstanding(now, wanted_);
    result_.commands = commandsFor(manner_.force ? wanted_.keys : keysOf(result_.changes), now,
                                   wanted_.configuration, wanted_.asWritten);
    if (manner_.dryRun || result_.commands.empty()) {
        finish(ChangeResult::Outcome::Done);
        return;
    }
    hasBegun_ = true;
    keepPorts(now);
    session_.send(result_.commands);
}

/// A layout goes out with all ports active, and their number has to be as before in the end.
void ConfigurationChange::keepPorts(const SwitchConfiguration &now)
{
    const bool sendsLayout = std::any_of(
        result_.commands.begin(), result_.commands.end(),
        [](const SettingCommand &command) { return command.key == SettingKey::Layout; });
    if (!sendsLayout || isAmong(wanted_.keys, SettingKey::ActivePorts))
        return;
    wanted_.configuration.activePorts = now.activePorts;
    wanted_.keys.push_back(SettingKey::ActivePorts);
}

void ConfigurationChange::compare(const ConfigurationReading &reading)
{
    result_.after = reading.configuration;
    result_.refused = outstanding(reading.configuration, wanted_);
    if (result_.refused.empty()) {
        finish(ChangeResult::Outcome::Done);
    } else if (manner_.repetitions > 0) {
        --manner_.repetitions;
        session_.send(commandsFor(keysOf(result_.refused), reading.configuration,
                                  wanted_.configuration, wanted_.asWritten));
    } else {
        finish(ChangeResult::Outcome::NotTaken);
    }
}

void ConfigurationChange::finish(ChangeResult::Outcome outcome)
{
    session_.disconnect(this);
    result_.outcome = outcome;
    Q_EMIT finished(result_);
}
