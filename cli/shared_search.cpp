#include "cli/shared_search.h"

#include "cli/device.h"
#include "cli/failure.h"
#include "cli/listings.h"

#include <utility>

SharedSearch::SharedSearch(const ModuleNetwork &network, QObject *parent)
    : QObject(parent), search_(network)
{
    connect(&search_, &ModuleSearch::finished, this, &SharedSearch::onFinished);
}

void SharedSearch::search(QObject *context, Take take)
{
    next_.push_back({context, std::move(take)});
    if (!isRunning_)
        QMetaObject::invokeMethod(this, &SharedSearch::begin, Qt::QueuedConnection);
}

void SharedSearch::begin()
{
    if (isRunning_ || next_.empty())
        return;
    isRunning_ = true;
    running_ = std::exchange(next_, {});
    search_.start();
}

void SharedSearch::onFinished(const ModuleSearchResult &found)
{
    isRunning_ = false;
    for (const Request &request : std::exchange(running_, {})) {
        if (request.context)
            request.take(found);
    }
    QMetaObject::invokeMethod(this, &SharedSearch::begin, Qt::QueuedConnection);
}

ModuleOnLan moduleOf(const Device &device, const ModuleSearchResult &found)
{
    QList<ModuleOnLan> named;
    for (const ModuleOnLan &module : found.modules) {
        const usr_frame::DiscoveryReply &reply = module.reply;
        if (device.road == Device::Road::Udp ? QHostAddress(reply.ip) == device.address
                                             : reply.mac == device.module)
            return module;
        if (device.road == Device::Road::Module && reply.name == device.module)
            named.append(module);
    }
    if (named.size() == 1)
        return named.first();
    if (named.isEmpty() && found.modules.isEmpty())
        throw Failure{ExitStatus::NoDevice, emptySearch(found)};
    if (named.isEmpty())
        throw Failure{
            ExitStatus::NoDevice,
            QStringLiteral("no such module; peloractl discover shows those that there are")};
    QStringList macs;
    for (const ModuleOnLan &module : std::as_const(named))
        macs.append(module.reply.mac.toUpper());
    throw Failure{ExitStatus::NoDevice,
                  QStringLiteral("several modules have this name; name one by its MAC: ") +
                      macs.join(QStringLiteral(", "))};
}
