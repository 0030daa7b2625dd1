#include "cli/commands.h"
#include "cli/module_values.h"
#include "cli/passwords.h"
#include "cli/shared_search.h"
#include "session/link_recorder.h"

#include <QDeadlineTimer>
#include <QJsonArray>

namespace {
using Outcome = ModuleLoginResult::Outcome;

/// How users call the ways in which a module comes by its address.
QString allocationName(const QString &code)
{
    return code == usr_frame::dhcpAllocation ? QStringLiteral("dhcp") : QStringLiteral("static");
}

/// What a module says of itself, in the order in which it is shown.
QList<ReportLine> describe(const usr_frame::DiscoveryReply &found,
                           const usr_frame::ConfigurationReply &stored)
{
    return {{QStringLiteral("mac"), found.mac.toUpper()},
            {QStringLiteral("name"), found.name},
            {QStringLiteral("address"), found.ip},
            {QStringLiteral("allocation"), allocationName(stored.ipAllocation)},
            {QStringLiteral("ip"), stored.staticIp},
            {QStringLiteral("mask"), stored.subnetMask},
            {QStringLiteral("gateway"), stored.gateway}};
}

DeviceReport reportOn(const QList<ReportLine> &said)
{
    DeviceReport report;
    QJsonObject module;
    for (const ReportLine &line : said)
        module.insert(line.key, line.value);
    report.lines = said;
    report.members.insert(QStringLiteral("module"), module);
    return report;
}

Failure loginFailure(const ModuleLoginResult &result)
{
    switch (result.outcome) {
    case Outcome::Refused:
        return {ExitStatus::BadCredentials,
                QStringLiteral("the module refuses this user name and password")};
    case Outcome::NotUnderstood:
        return {ExitStatus::NotUnderstood,
                QStringLiteral("the module's answer to the login cannot be understood")};
    case Outcome::NotSent:
        return {ExitStatus::NoDevice,
                QStringLiteral("the login cannot be sent to the module (%1); check the network")
                    .arg(result.problem)};
    default:
        return {ExitStatus::NoDevice,
                QStringLiteral("the module does not answer the login; check the network")};
    }
}

/// Logs in to a module that was found and says what it has stored.
class ModuleShowTask : public DeviceTask
{
public:
    ModuleShowTask(const FoundDevice &found, const TaskWorld &world, ModuleCredentials credentials)
        : world_(world), name_(found.device.name), module_(*found.module),
          credentials_(std::move(credentials))
    {
    }

    void start() override { logIn(credentials_); }

    DeviceReport interrupt() override
    {
        login_.reset();
        return failureReport(ExitStatus::Interrupted, QStringLiteral("interrupted; ") + progress());
    }

protected:
    virtual void onLoggedIn(const ModuleLoginResult &result)
    {
        finish(result.outcome == Outcome::Accepted
                   ? reportOn(describe(module_.reply, result.configuration))
                   : DeviceReport{loginFailure(result), {}, {}, {}});
    }
    virtual QString progress() const { return QStringLiteral("nothing was changed"); }

    void logIn(const ModuleCredentials &credentials)
    {
        login_ = std::make_unique<ModuleSession>(module_, credentials, world_.network);
        if (world_.recorder != nullptr)
            record(*login_, *world_.recorder, name_);
        // Through the event loop, so that the next login may replace this one.
        connect(login_.get(), &ModuleSession::loggedIn, this, &ModuleShowTask::onLoggedIn,
                Qt::QueuedConnection);
        login_->logIn();
    }

    void finish(const DeviceReport &report) { Q_EMIT finished(report); }

    const TaskWorld &world() const { return world_; }
    ModuleSession &login() { return *login_; }
    ModuleOnLan &module() { return module_; }
    const ModuleCredentials &credentials() const { return credentials_; }

private:
    TaskWorld world_;
    QString name_; ///< the device's
    ModuleOnLan module_;
    ModuleCredentials credentials_;
    std::unique_ptr<ModuleSession> login_;
};

/// Writes what differs into a module and waits until it says so itself.
class ModuleSetTask : public ModuleShowTask
{
public:
    ModuleSetTask(const FoundDevice &found, const TaskWorld &world, ModuleCredentials credentials,
                  ModuleValues values)
        : ModuleShowTask(found, world, std::move(credentials)), values_(std::move(values))
    {
    }

protected:
    void onLoggedIn(const ModuleLoginResult &result) override
    {
        if (isWritten_)
            compare(result);
        else if (result.outcome == Outcome::Accepted)
            write(result.configuration);
        else
            finish({loginFailure(result), {}, {}, {}});
    }

    QString progress() const override
    {
        return isWritten_ ? QStringLiteral("the new settings were sent")
                          : QStringLiteral("nothing was changed");
    }

private:
    void write(const usr_frame::ConfigurationReply &stored)
    {
        before_ = describe(module().reply, stored);
        wanted_ = settingsFor(values_, stored, credentials());
        if (!values_.changesCredentials() && outstanding(before_).isEmpty()) {
            DeviceReport report = reportOn(before_);
            report.lines = {{QString(), QStringLiteral("already so")}};
            report.members.insert(QStringLiteral("changes"), QJsonArray());
            finish(report);
            return;
        }
        const QString problem = login().setUp(wanted_);
        if (!problem.isEmpty()) {
            finish(failureReport(
                ExitStatus::NoDevice,
                QStringLiteral("the settings cannot be sent to the module (%1); check the network")
                    .arg(problem)));
            return;
        }
        isWritten_ = true;
        deadline_ = QDeadlineTimer(searchesForReturn * world().network.collection);
        search();
    }

    void search()
    {
        const Device byMac{{}, {}, Device::Road::Module, {}, {}, 0, module().reply.mac};
        world().search->search(this, [this, byMac](const ModuleSearchResult &found) {
            try {
                module() = moduleOf(byMac, found);
                logIn(wanted_.newCredentials);
            } catch (const Failure & /*none yet*/) {
                searchAgain({ExitStatus::NoDevice,
                             QStringLiteral("the settings were sent, and the module has not come "
                                            "back; look for it with peloractl discover")});
            }
        });
    }

    void searchAgain(const Failure &ifTooLate)
    {
        if (deadline_.hasExpired())
            finish({ifTooLate, {}, {}, {}});
        else
            search();
    }

    void compare(const ModuleLoginResult &result)
    {
        if (result.outcome != Outcome::Accepted) {
            searchAgain(result.outcome == Outcome::Refused && values_.changesCredentials()
                            ? Failure{ExitStatus::NotTaken,
                                      QStringLiteral("the module did not take the new user name or "
                                                     "password")}
                            : loginFailure(result));
            return;
        }
        const QList<ReportLine> now = describe(module().reply, result.configuration);
        const QStringList refused = outstanding(now);
        if (!refused.isEmpty()) { // it may still be about to restart
            searchAgain({ExitStatus::NotTaken, QStringLiteral("the module did not take ") +
                                                   refused.join(QStringLiteral(", "))});
            return;
        }
        DeviceReport report = reportOn(now);
        report.members.insert(QStringLiteral("changes"), changes(now));
        finish(report);
    }

    /// What of the wanted settings a module that says `said` does not have.
    QStringList outstanding(const QList<ReportLine> &said) const
    {
        const QHash<QString, QString> wanted = {
            {QStringLiteral("allocation"), allocationName(wanted_.ipAllocation)},
            {QStringLiteral("ip"), wanted_.ip},
            {QStringLiteral("mask"), wanted_.subnetMask},
            {QStringLiteral("gateway"), wanted_.gateway},
            {QStringLiteral("name"), wanted_.name.value_or(QString())}};
        QStringList keys;
        for (const ReportLine &line : said) {
            const QString value = wanted.value(line.key);
            if (!value.isEmpty() && value != line.value)
                keys.append(line.key);
        }
        return keys;
    }

    QJsonArray changes(const QList<ReportLine> &now) const
    {
        QJsonArray found;
        for (qsizetype at = 0; at < now.size(); ++at) {
            if (now.at(at).value != before_.at(at).value)
                found.append(QJsonObject{{QStringLiteral("key"), now.at(at).key},
                                         {QStringLiteral("from"), before_.at(at).value},
                                         {QStringLiteral("to"), now.at(at).value}});
        }
        for (const auto &[key, isChanged] : {std::pair("username", values_.username.has_value()),
                                             std::pair("password", values_.password.has_value())}) {
            if (isChanged) // what they are is nobody's business
                found.append(QJsonObject{{QStringLiteral("key"), QLatin1String(key)}});
        }
        return found;
    }

    /// How many searches long a module may take to come back: 18 s, unless --wait says otherwise.
    static constexpr int searchesForReturn = 12;

    ModuleValues values_;
    ModuleSettings wanted_;
    QList<ReportLine> before_;
    QDeadlineTimer deadline_;
    bool isWritten_ = false;
};

ModuleCredentials credentialsFrom(const Options &options)
{
    ModuleCredentials credentials{QString::fromStdString(options.user),
                                  modulePassword(options.passwordFile)};
    requirePassword(credentials.password);
    return credentials;
}
} // namespace

TaskMaker moduleShowTasks(const TaskWorld &world)
{
    return [&world, credentials = credentialsFrom(world.options)](const FoundDevice &found) {
        return std::make_unique<ModuleShowTask>(found, world, credentials);
    };
}

TaskMaker moduleSetTasks(const TaskWorld &world, const std::vector<Device> &devices)
{
    const Options &options = world.options;
    ModuleValues values = moduleValuesFrom(options.assignments);
    if (devices.size() > 1 && (values.ip || values.name))
        throw UsageError(QStringLiteral("several modules cannot have one address or one name; name "
                                        "one device"));
    const ModuleCredentials credentials = credentialsFrom(options);
    if (options.newPassword || !options.newPasswordFile.empty()) {
        values.password = newModulePassword(options.newPasswordFile);
        requirePassword(*values.password);
    }
    const bool changes = values.dhcp || values.ip || values.mask || values.gateway || values.name ||
                         values.changesCredentials();
    if (!changes)
        throw UsageError(QStringLiteral("nothing to set; give dhcp, ip=, mask=, gateway=, name=, "
                                        "username= or --new-password"));
    return [=, &world](const FoundDevice &found) {
        return std::make_unique<ModuleSetTask>(found, world, credentials, values);
    };
}
