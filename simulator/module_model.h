#pragma once

#include "simulator/module_faults.h"
#include "simulator/module_frame.h"
#include "simulator/module_state.h"

#include <QByteArray>
#include <chrono>
#include <optional>
#include <string>
#include <vector>

/// A datagram that the module sends, `wait` after the one before it (or after now).
struct ModuleAnswer
{
    std::chrono::milliseconds wait{0};
    QByteArray datagram;
};

/// What one request did to one module.
struct ModuleOutcome
{
    /// The request was for this module: a search, or its own MAC address.
    bool addressed = false;
    /// To the asker, in order.
    std::vector<ModuleAnswer> answers{};
    /// What happened, in words: "search", "login", "setup kept for the commit", "commit".
    std::string note{};
    /// Why nothing happened, or why a login was refused; empty when all went well.
    std::string rejection{};
    /// The module has taken a new configuration and is deaf until finishRestart().
    bool restarts = false;
};

/// The simulated network module's management side: datagrams in, datagrams out, no sockets, no
/// clock. Answers a search, answers a login with the configuration or a refusal, keeps a setup
/// until the commit comes, and then restarts with it. Setup and commit are not answered.
class ModuleModel
{
public:
    explicit ModuleModel(const ModuleState &initial = {}) : initial_(initial), state_(initial) {}

    /// Takes one datagram from the management port. A broken frame is a rejection.
    ModuleOutcome receive(const QByteArray &datagram);
    /// The same for a request already read, for modules that share a port.
    ModuleOutcome handle(const ModuleRequest &request);

    /// Between a commit and finishRestart() the module hears nothing.
    bool isRestarting() const { return restarting_; }
    void finishRestart() { restarting_ = false; }

    const ModuleState &state() const { return state_; }
    void setState(const ModuleState &state);
    /// As its reset button: the state of the start.
    void reset() { setState(initial_); }

    const ModuleFaults &faults() const { return faults_; }
    void setFaults(const ModuleFaults &faults) { faults_ = faults; }

    /// The address for discovery answers instead of the own one, while the fault "same address" is
    /// on.
    void setSharedAddress(const Ipv4 &address) { sharedAddress_ = address; }

private:
    ModuleOutcome answerSearch();
    ModuleOutcome login(bool trusted);
    ModuleOutcome keepSetup(const ModuleSetup &setup);
    void take(const ModuleSetup &setup);
    ModuleOutcome commit();
    ModuleState reported() const;
    std::vector<ModuleAnswer> send(const QByteArray &datagram) const;

    ModuleState initial_;
    ModuleState state_;
    ModuleFaults faults_;
    std::optional<ModuleSetup> kept_;
    std::optional<Ipv4> sharedAddress_;
    bool restarting_ = false;
};
