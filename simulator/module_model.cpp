#include "simulator/module_model.h"

namespace {

const char *nameOf(ModuleRequest::Kind kind)
{
    switch (kind) {
    case ModuleRequest::Kind::Search:
        return "search";
    case ModuleRequest::Kind::Login:
        return "login";
    case ModuleRequest::Kind::Setup:
        return "setup";
    case ModuleRequest::Kind::Commit:
        return "commit";
    }
    return "";
}

ModuleOutcome rejected(const std::string &reason)
{
    return {.addressed = true, .rejection = reason};
}

} // namespace

ModuleOutcome ModuleModel::receive(const QByteArray &datagram)
{
    const auto decoded = decodeRequest(datagram);
    if (const auto *rejection = std::get_if<Rejection>(&decoded))
        return {.rejection = rejection->reason};
    ModuleOutcome outcome = handle(std::get<ModuleRequest>(decoded));
    if (!outcome.addressed)
        outcome.rejection = "no module has this MAC address";
    return outcome;
}

ModuleOutcome ModuleModel::handle(const ModuleRequest &request)
{
    using Kind = ModuleRequest::Kind;
    if (request.kind != Kind::Search && request.mac != state_.mac)
        return {};
    if (restarting_)
        return rejected(std::string(nameOf(request.kind)) + " while restarting");
    if (request.kind == Kind::Search)
        return answerSearch();
    const bool trusted = request.username == state_.username && request.password == state_.password;
    if (request.kind == Kind::Login)
        return login(trusted && !faults_.refuse);
    if (!trusted)
        return rejected(std::string(nameOf(request.kind)) + " with wrong credentials");
    return request.kind == Kind::Setup ? keepSetup(request.setup) : commit();
}

void ModuleModel::setState(const ModuleState &state)
{
    state_ = state;
    kept_.reset();
}

ModuleOutcome ModuleModel::answerSearch()
{
    QByteArray datagram = discoveryAnswer(reported());
    if (faults_.discoverySize > 0) {
        datagram = datagram.leftJustified(faults_.discoverySize, '\0', true);
        if (faults_.discoverySizeTimes > 0 && --faults_.discoverySizeTimes == 0)
            faults_.discoverySize = 0;
    }
    return {.addressed = true, .answers = send(datagram), .note = "search"};
}

ModuleOutcome ModuleModel::login(bool trusted)
{
    if (!trusted)
        return {.addressed = true,
                .answers = send(refusalAnswer()),
                .rejection = "login with wrong credentials, refused"};
    QByteArray datagram = configurationAnswer(state_);
    if (faults_.truncatedBytes > 0)
        datagram.truncate(faults_.truncatedBytes);
    return {.addressed = true, .answers = send(datagram), .note = "login"};
}

ModuleOutcome ModuleModel::keepSetup(const ModuleSetup &setup)
{
    kept_ = setup;
    return {.addressed = true, .note = "setup kept for the commit"};
}

ModuleOutcome ModuleModel::commit()
{
    if (!kept_)
        return rejected("commit without a setup before it");
    if (!faults_.keepOld)
        take(*kept_);
    kept_.reset();
    restarting_ = true;
    return {.addressed = true, .note = "commit", .restarts = true};
}

void ModuleModel::take(const ModuleSetup &setup)
{
    state_.dhcp = setup.dhcp;
    state_.staticAddress = setup.address;
    state_.gateway = setup.gateway;
    state_.subnetMask = setup.subnetMask;
    state_.name = setup.name;
    state_.username = setup.username;
    state_.password = setup.password;
}

ModuleState ModuleModel::reported() const
{
    ModuleState state = state_;
    if (faults_.longName)
        state.name = "SIXTEEN-BYTES-16";
    if (faults_.rawName)
        state.name = "\xFF\xFE\x80RAW";
    if (faults_.sameAddress && sharedAddress_) {
        state.staticAddress = *sharedAddress_;
        state.leasedAddress = *sharedAddress_;
    }
    return state;
}

std::vector<ModuleAnswer> ModuleModel::send(const QByteArray &datagram) const
{
    if (faults_.silent)
        return {};
    std::vector<ModuleAnswer> answers(1, {faults_.late, datagram});
    answers.resize(1 + static_cast<std::size_t>(faults_.duplicates), {{}, datagram});
    return answers;
}
