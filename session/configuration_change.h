#pragma once

#include "session/switch_session.h"

#include <functional>

/// What is wanted of a switch.
struct WantedSettings
{
    SwitchConfiguration configuration;
    std::vector<SettingKey> keys; ///< those of `configuration` that count
    WrittenCommands asWritten;    ///< as in commandsFor
};

/// What came of a change.
struct ChangeResult
{
    enum class Outcome {
        Done,        ///< the switch is as wanted, or would be sent `commands`
        MissingKeys, ///< it does not tell what has to be known first; nothing was sent
        BadValue,    ///< what is wanted cannot be at this switch; nothing was sent
        Failed,      ///< the conversation failed
        NotTaken     ///< `refused` stayed as it was
    };

    Outcome outcome = Outcome::Done;
    std::vector<SettingDifference> changes; ///< between what the switch had and what is wanted
    std::vector<SettingCommand> commands;   ///< what is, or would be, sent for them
    std::vector<SettingCommand> sent;       ///< what has gone out, with all repetitions
    std::vector<SettingKey> missing;        ///< of MissingKeys
    std::vector<SettingDifference> refused; ///< of NotTaken: from what the switch has
    QString message;                        ///< of BadValue: a sentence
    SessionError error;                     ///< of Failed
    SwitchConfiguration before;
    SwitchConfiguration wanted; ///< `before` with all that is wanted
    SwitchConfiguration after;  ///< equals `before` where nothing was sent
};

/// Brings one switch to what is wanted of it: asks what it has, sends what differs, asks again and
/// compares. What it did not take is sent again. Where nothing differs nothing is sent.
class ConfigurationChange : public QObject
{
    Q_OBJECT

public:
    /// What is wanted of a switch that is as it is told; throws std::invalid_argument with a
    /// sentence where that cannot be.
    using Wanted = std::function<WantedSettings(const SwitchConfiguration &now)>;

    struct Manner
    {
        bool force = false;  ///< send everything, whether it differs or not
        bool dryRun = false; ///< send nothing but the questions
        int repetitions = 2; ///< how often what was not taken is sent again
    };

    /// `session` is open and idle, and outlives this object. `needed` are the keys that the switch
    /// has to tell before anything is sent.
    ConfigurationChange(SwitchSession &session, std::vector<SettingKey> needed, Wanted wanted,
                        Manner manner, QObject *parent = nullptr);

    /// finished() follows, once.
    void start();

    /// What has come of it so far, for somebody who cannot wait.
    const ChangeResult &result() const { return result_; }

Q_SIGNALS:
    void finished(const ChangeResult &result);

private:
    void onAnswered(const ConfigurationReading &reading);
    void begin(const ConfigurationReading &reading);
    void keepPorts(const SwitchConfiguration &now);
    void compare(const ConfigurationReading &reading);
    void finish(ChangeResult::Outcome outcome);

    SwitchSession &session_;
    std::vector<SettingKey> needed_;
    Wanted wantedOf_;
    Manner manner_;
    WantedSettings wanted_;
    ChangeResult result_;
    bool hasBegun_ = false;
};
