#include "session/module_search.h"

#include <utility>

namespace {
constexpr std::chrono::milliseconds betweenAttempts{50};
}

ModuleSearch::ModuleSearch(ModuleNetwork network, QObject *parent)
    : QObject(parent), network_(std::move(network))
{
    end_.setSingleShot(true);
    end_.setTimerType(Qt::PreciseTimer);
    connect(&end_, &QTimer::timeout, this, &ModuleSearch::finish);
    again_.setSingleShot(true);
    connect(&again_, &QTimer::timeout, this, &ModuleSearch::begin);
    connect(&socket_, &QUdpSocket::readyRead, this, [this] { bursts_.read(); });
}

ModuleSearch::~ModuleSearch()
{
    socket_.disconnect(this);
}

void ModuleSearch::start()
{
    result_ = {};
    known_.clear();
    sinceStart_.start();
    begin();
}

void ModuleSearch::begin()
{
    if (!socket_.bind(network_.localAddress, network_.discoveryPort)) {
        if (sinceStart_.elapsed() < network_.portPatience.count()) {
            again_.start(betweenAttempts);
            return;
        }
        result_.problem = socket_.errorString();
        result_.isPortTaken = true;
        Q_EMIT finished(result_);
        return;
    }
    const QByteArray request = usr_frame::toBytes(usr_frame::searchRequest());
    bool hasLeft = false;
    for (const ModuleRoad &road : std::as_const(network_.roads)) {
        const QString problem = sendThrough(socket_, requestOn(road, network_.modulePort, request));
        if (!problem.isEmpty()) {
            result_.problem = problem;
            continue;
        }
        hasLeft = true;
        Q_EMIT written(request);
    }
    if (hasLeft)
        result_.problem.clear();
    // Also where nothing has left, so that whoever searches again and again does so at leisure.
    end_.start(network_.collection);
}

void ModuleSearch::take(const QNetworkDatagram &datagram)
{
    Q_EMIT received(datagram.data());
    const QString reply = usr_frame::toHexText(datagram.data());
    if (!usr_frame::isDiscoveryReply(reply)) {
        ++result_.ignored;
        return;
    }
    const usr_frame::DiscoveryReply module = usr_frame::readDiscoveryReply(reply);
    if (known_.contains(module.mac))
        return;
    known_.insert(module.mac);
    result_.modules.append({module, roadOf(datagram, network_.roads)});
}

void ModuleSearch::finish()
{
    socket_.close();
    Q_EMIT finished(std::exchange(result_, {}));
}
