#include "session/module_session.h"

#include <algorithm>
#include <utility>

namespace {
bool fits(const QString &text, int fieldSize)
{
    return text.toUtf8().size() <= fieldSize;
}

bool canBeWritten(const ModuleSettings &settings)
{
    const QStringList addresses = {settings.ip, settings.gateway, settings.subnetMask};
    return fits(settings.name.value_or(QString()), usr_frame::nameSize) &&
           fits(settings.newCredentials.username, usr_frame::credentialSize) &&
           fits(settings.newCredentials.password, usr_frame::credentialSize) &&
           std::none_of(addresses.cbegin(), addresses.cend(), [](const QString &address) {
               return usr_frame::ipv4Field(address).isEmpty();
           });
}
} // namespace

ModuleSession::ModuleSession(ModuleOnLan module, ModuleCredentials credentials,
                             ModuleNetwork network, QObject *parent)
    : QObject(parent), module_(std::move(module)), credentials_(std::move(credentials)),
      network_(std::move(network))
{
    answerWait_.setSingleShot(true);
    answerWait_.setTimerType(Qt::PreciseTimer);
    connect(&answerWait_, &QTimer::timeout, this, &ModuleSession::onTimeUp);
    connect(&socket_, &QUdpSocket::readyRead, this, [this] { bursts_.read(); });
}

ModuleSession::~ModuleSession()
{
    socket_.disconnect(this);
}

void ModuleSession::logIn()
{
    if (isAsking_)
        return;
    isAsking_ = true;
    cameAnything_ = false;
    hasLeft_ = false;
    attemptsLeft_ = network_.loginRetries;
    attempt();
}

QString ModuleSession::setUp(const ModuleSettings &settings)
{
    if (!canBeWritten(settings))
        return QStringLiteral("they do not fit into a module");
    const QString &mac = module_.reply.mac;
    const QString nameField =
        usr_frame::textField(settings.name.value_or(QString()), usr_frame::nameSize);
    const QString keptField = module_.reply.nameHex.leftJustified(nameField.size(), u'0');
    const bool hasLeft =
        bindSocket() &&
        send(usr_frame::setupRequest(
            {mac, credentials_.username, credentials_.password, settings.ipAllocation, settings.ip,
             settings.gateway, settings.subnetMask, settings.name ? nameField : keptField,
             settings.newCredentials.username, settings.newCredentials.password})) &&
        send(usr_frame::commitRequest(mac, credentials_.username, credentials_.password));
    return hasLeft ? QString() : problem_;
}

void ModuleSession::attempt()
{
    // The socket stays bound from one attempt to the next, so that a late answer counts as well.
    if (bindSocket() && send(usr_frame::loginRequest(module_.reply.mac, credentials_.username,
                                                     credentials_.password)))
        hasLeft_ = true;
    answerWait_.start(network_.loginAnswer);
}

void ModuleSession::take(const QNetworkDatagram &datagram)
{
    Q_EMIT received(datagram.data());
    if (!isAsking_)
        return;
    cameAnything_ = true;
    const QString reply = usr_frame::toHexText(datagram.data());
    if (usr_frame::isConfiguration(reply))
        finish(
            {ModuleLoginResult::Outcome::Accepted, usr_frame::readConfigurationReply(reply), {}});
    else if (usr_frame::isRefusal(reply))
        finish({ModuleLoginResult::Outcome::Refused, {}, {}});
}

void ModuleSession::onTimeUp()
{
    if (attemptsLeft_ > 0) {
        --attemptsLeft_;
        attempt();
        return;
    }
    if (cameAnything_)
        finish({ModuleLoginResult::Outcome::NotUnderstood, {}, {}});
    else if (hasLeft_)
        finish({ModuleLoginResult::Outcome::Silent, {}, {}});
    else
        finish({ModuleLoginResult::Outcome::NotSent, {}, problem_});
}

void ModuleSession::finish(const ModuleLoginResult &result)
{
    isAsking_ = false;
    answerWait_.stop();
    Q_EMIT loggedIn(result);
}

bool ModuleSession::bindSocket()
{
    if (socket_.state() == QAbstractSocket::BoundState || socket_.bind(network_.localAddress))
        return true;
    problem_ = socket_.errorString();
    return false;
}

bool ModuleSession::send(const QString &request)
{
    const QByteArray bytes = usr_frame::toBytes(request);
    problem_ = sendThrough(socket_, requestOn(module_.road, network_.modulePort, bytes));
    if (problem_.isEmpty())
        Q_EMIT written(bytes);
    return problem_.isEmpty();
}
