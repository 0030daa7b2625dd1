#include "simulator/network_face.h"

#include "simulator/open_files.h"
#include "simulator/udp_source.h"

#include <QTimer>
#include <stdexcept>

namespace {

QHostAddress hostAddress(const Ipv4 &address)
{
    return QHostAddress(quint32{address[0]} << 24 | quint32{address[1]} << 16 |
                        quint32{address[2]} << 8 | quint32{address[3]});
}

} // namespace

NetworkFace::NetworkFace(const NetworkSettings &settings) : settings_(settings)
{
    connect(&management_, &QUdpSocket::readyRead, this, &NetworkFace::readManagement);
}

NetworkFace::~NetworkFace() = default;

void NetworkFace::addModule(const ModuleState &initial, SimulatedSwitch &theSwitch)
{
    modules_.push_back(std::make_unique<Module>(initial, theSwitch, settings_));
    modules_.back()->model.setSharedAddress(modules_.front()->model.state().address());
}

void NetworkFace::start()
{
    constexpr std::size_t others = 32; // what the program has open besides its modules' sockets
    allowOpenFiles(modules_.size() + others);
    const QHostAddress everywhere(QHostAddress::AnyIPv4);
    if (!management_.bind(everywhere, settings_.managementPort, QAbstractSocket::DontShareAddress))
        throw std::runtime_error(listenFailure(management_, everywhere, settings_.managementPort));
    std::vector<std::pair<int, std::string>> failures;
    for (std::size_t i = 0; i < modules_.size(); ++i) {
        const std::string failure = listenForTraffic(*modules_[i]);
        if (!failure.empty())
            failures.emplace_back(static_cast<int>(i), failure);
    }
    if (failures.size() == modules_.size())
        throw std::runtime_error(failures.front().second);
    for (const auto &[module, failure] : failures)
        Q_EMIT refused(module, QString::fromStdString(failure));
}

const ModuleState &NetworkFace::state(std::size_t index) const
{
    return modules_.at(index)->model.state();
}

const ModuleFaults &NetworkFace::faults() const
{
    return modules_.front()->model.faults();
}

void NetworkFace::setFaults(const ModuleFaults &faults)
{
    for (const auto &module : modules_) {
        module->model.setFaults(faults);
        module->traffic.setSplit(faults.splitBytes);
    }
}

void NetworkFace::reset()
{
    for (std::size_t i = 0; i < modules_.size(); ++i) {
        modules_[i]->model.reset();
        followAddress(static_cast<int>(i));
        Q_EMIT stateChanged(static_cast<int>(i));
    }
}

void NetworkFace::readManagement()
{
    while (management_.hasPendingDatagrams()) {
        const QNetworkDatagram datagram = management_.receiveDatagram();
        if (datagram.isValid())
            onRequest(datagram);
    }
}

void NetworkFace::onRequest(const QNetworkDatagram &datagram)
{
    const auto decoded = decodeRequest(datagram.data());
    if (const auto *rejection = std::get_if<Rejection>(&decoded)) {
        Q_EMIT refused(
            -1,
            QStringLiteral("frame rejected: %1").arg(QString::fromStdString(rejection->reason)));
        return;
    }
    bool addressed = false;
    for (std::size_t i = 0; i < modules_.size(); ++i) {
        Module &module = *modules_[i];
        const ModuleOutcome outcome = module.model.handle(std::get<ModuleRequest>(decoded));
        const int index = static_cast<int>(i);
        addressed = addressed || outcome.addressed;
        if (!outcome.rejection.empty())
            Q_EMIT refused(index, QString::fromStdString(outcome.rejection));
        if (!outcome.note.empty())
            Q_EMIT obeyed(index, QString::fromStdString(outcome.note));
        answer(i, outcome, datagram);
        if (outcome.restarts)
            restart(index);
    }
    if (!addressed)
        Q_EMIT refused(-1, QStringLiteral("frame rejected: no module has this MAC address"));
}

void NetworkFace::answer(std::size_t index, const ModuleOutcome &outcome,
                         const QNetworkDatagram &request)
{
    // All at once, the answers of a large fleet would overrun the asker's socket.
    constexpr std::size_t answersInAMillisecond = 4;
    const Module &module = *modules_[index];
    std::chrono::milliseconds due(index / answersInAMillisecond);
    for (const ModuleAnswer &part : outcome.answers) {
        due += part.wait;
        const auto send = [this, part, request,
                           source = hostAddress(module.model.state().address())] {
            sendFrom(management_, source, part.datagram, request.senderAddress(),
                     static_cast<quint16>(request.senderPort()));
        };
        if (due.count() == 0)
            send();
        else
            QTimer::singleShot(due, Qt::PreciseTimer, this, send);
    }
}

void NetworkFace::restart(int index)
{
    modules_.at(static_cast<std::size_t>(index))->traffic.setDeaf(true);
    Q_EMIT stateChanged(index);
    QTimer::singleShot(settings_.restartTime, Qt::PreciseTimer, this, [this, index] {
        Module &module = *modules_.at(static_cast<std::size_t>(index));
        module.model.finishRestart();
        module.traffic.setDeaf(false);
        followAddress(index);
        Q_EMIT obeyed(index, QStringLiteral("restarted"));
    });
}

std::string NetworkFace::listenForTraffic(Module &module)
{
    module.listeningAt = module.model.state().address();
    const std::string failure = module.traffic.listen(hostAddress(module.listeningAt));
    if (failure.empty())
        return {};
    // Alone, a module may answer for whatever address the traffic comes to.
    if (modules_.size() == 1 &&
        module.traffic.listen(QHostAddress(QHostAddress::AnyIPv4)).empty()) {
        Q_EMIT refused(0, QString::fromStdString(
                              failure + "; listening at all addresses of this machine instead"));
        return {};
    }
    return failure;
}

void NetworkFace::followAddress(int index)
{
    Module &module = *modules_.at(static_cast<std::size_t>(index));
    if (module.traffic.isListening() && module.listeningAt == module.model.state().address())
        return;
    const std::string failure = listenForTraffic(module);
    if (!failure.empty())
        Q_EMIT refused(index, QString::fromStdString(failure));
}
