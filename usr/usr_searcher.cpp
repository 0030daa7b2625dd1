#include "usr/usr_searcher.h"

#include "device/usr_frame.h"
#include "log/notices.h"

#include <QDeadlineTimer>
#include <QDebug>
#include <QGuiApplication>
#include <algorithm>
#include <thread>
#include <utility>

namespace {
constexpr std::chrono::milliseconds pollPause{5};
constexpr int burst = 256; ///< datagrams taken in one go: a flood must not hold the thread
constexpr qint32 loginAttempts = 100;

class WaitCursor
{
public:
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    Q_DISABLE_COPY_MOVE(WaitCursor)
};
} // namespace

USR_searcher::USR_searcher(QObject *parent, UsrNetwork network)
    : QUdpSocket(parent), network_(std::move(network)), targetRoad_{0, network_.broadcast}
{
}

USR_searcher::USR_searcher(const QString &target, const QString &user, const QString &secret,
                           UsrNetwork network)
    : targetIP(target), username(user), password(secret), newUsername(user), newPassword(secret),
      network_(std::move(network)), targetRoad_{0, network_.broadcast}
{
}

USR_searcher::USR_searcher(const QString &target, const QString &ip, const QString &subnetMask,
                           const QString &gateway, const QString &allocation, const QString &user,
                           const QString &secret, UsrNetwork network)
    : USR_searcher(target, user, secret, std::move(network))
{
    newIP = ip;
    newSubnetMask = subnetMask;
    newGateway = gateway;
    ipAllocation = allocation;
}

int USR_searcher::search_USR()
{
    bool found = false;
    const bool cameThrough = guarded("Search USR error", [this, &found] {
        found = discover();
        // Deliberate: one datagram of another size voids the search, however often that happens.
        while (hasOddReply()) {
            replies.clear();
            found = discover();
        }
    });
    if (!cameThrough)
        close();
    return cameThrough && found ? 1 : -1;
}

void USR_searcher::get_data_from_USR()
{
    search_USR();
    guarded("Error in getting data from the USR", [this] {
        for (qsizetype i = 0; i < replies.size(); ++i) {
            const usr_frame::DiscoveryReply reply = usr_frame::readDiscoveryReply(replies.at(i));
            if (reply.ip != targetIP)
                continue;
            mac = reply.mac;
            nameHex = reply.nameHex;
            name = reply.name;
            targetRoad_ = roadsOfReplies_.at(i);
        }
    });
}

QString USR_searcher::get_IP_after_hanging()
{
    search_USR();
    QString ip;
    guarded("Get IP after hanging error", [this, &ip] {
        for (const QString &hexText : std::as_const(replies)) {
            const usr_frame::DiscoveryReply reply = usr_frame::readDiscoveryReply(hexText);
            if (reply.mac == mac) {
                ip = reply.ip;
                return;
            }
        }
    });
    return ip;
}

QString USR_searcher::check_credentials()
{
    bool isFirstAttempt = true;
    while (true) {
        attemptLogin();
        ++retryCount;
        const QString reply = QString::fromStdString(lastReply);
        if (usr_frame::isRefusal(reply)) {
            showNoticeModal(QStringLiteral("Bad credentials"), QMessageBox::Warning);
            // Deliberate: only the first attempt's refusal counts; one that follows lost answers
            // ends the login like any other answer and leaves the verdict to the reader.
            if (isFirstAttempt)
                return failed;
            break;
        }
        if (usr_frame::isConfiguration(reply) || retryCount >= loginAttempts)
            break;
        isFirstAttempt = false;
    }
    retryCount = 0;
    // Deliberate: also after a hundred attempts without an answer. Readers find nothing to read.
    return QStringLiteral("1");
}

QString USR_searcher::get_IP_allocation()
{
    return readField("Get ip allocation error", [](const QString &reply) {
        return usr_frame::readConfigurationReply(reply).ipAllocation;
    });
}

QString USR_searcher::get_static_IP()
{
    return readField("Get static IP error", [](const QString &reply) {
        return usr_frame::readConfigurationReply(reply).staticIp;
    });
}

QString USR_searcher::get_gateway()
{
    return readField("Get gateway error", [](const QString &reply) {
        return usr_frame::readConfigurationReply(reply).gateway;
    });
}

QString USR_searcher::get_subnet_mask()
{
    return readField("Get subnet mask error", [](const QString &reply) {
        return usr_frame::readConfigurationReply(reply).subnetMask;
    });
}

QString USR_searcher::get_name()
{
    check_credentials();
    return name;
}

int USR_searcher::setup_USR()
{
    const bool written = guarded("Error in the setup of USR", [this] {
        get_data_from_USR();
        bindConfigSocket();
        const QString nameField = std::exchange(useNewName, quint8{0}) != 0 ? newNameHex : nameHex;
        const QString setup =
            usr_frame::setupRequest({mac, username, password, ipAllocation, newIP, newGateway,
                                     newSubnetMask, nameField, newUsername, newPassword});
        const QString commit = usr_frame::commitRequest(mac, username, password);
        send(configSocket, setup, targetRoad_);
        send(configSocket, commit, targetRoad_);
        leaveConfigSocket();
    });
    return written ? 1 : -1;
}

int USR_searcher::change_username_password_and_name(const QString &user, const QString &secret,
                                                    const QString &moduleName)
{
    if (user.size() > usr_frame::longestCredential ||
        secret.size() > usr_frame::longestCredential || moduleName.size() > usr_frame::longestName)
        return -1;
    int result = -1;
    guarded("Error changing username, password and name of USR", [&] {
        newUsername = user;
        newPassword = secret;
        newNameHex = usr_frame::textField(moduleName, usr_frame::nameSize);
        useNewName = 1;
        result = setup_USR();
    });
    return result;
}

/// One run of the search, from binding the discovery socket to closing it. Returns whether
/// anything was received.
bool USR_searcher::discover()
{
    const WaitCursor cursor;
    if (!bind(network_.localAddress, network_.discoveryPort)) {
        qDebug().noquote() << "Error binding to port:" << errorString();
        return false;
    }
    replies.clear();
    senders.clear();
    roadsOfReplies_.clear();
    macs_.clear();
    roads_ = searchRoads();
    for (const ModuleRoad &road : std::as_const(roads_))
        send(*this, usr_frame::searchRequest(), road);
    std::this_thread::sleep_for(network_.afterBroadcast);
    collectReplies();
    close();
    return !replies.isEmpty();
}

/// Takes what arrives until the window ends. It looks and rests in turn: waiting on the socket
/// would end at once, and close it, when the network reports an unreachable peer.
void USR_searcher::collectReplies()
{
    const QDeadlineTimer windowEnd(network_.collection);
    while (true) {
        const bool isLastLook = windowEnd.hasExpired();
        for (int i = 0; i < burst && hasPendingDatagrams(); ++i)
            keepNextDatagram();
        if (isLastLook)
            return;
        std::this_thread::sleep_for(
            std::min(pollPause, std::chrono::milliseconds(windowEnd.remainingTime())));
    }
}

void USR_searcher::keepNextDatagram()
{
    const QNetworkDatagram datagram = receiveDatagram();
    if (!datagram.isValid())
        return;
    note(LinkRecorder::Direction::Received, datagram.senderAddress().toString(), datagram.data());
    const QString reply = usr_frame::toHexText(datagram.data());
    if (isAnsweredAgain(reply))
        return;
    roadsOfReplies_.append(roadOf(datagram, roads_));
    senders.append(datagram.senderAddress());
    replies.append(reply);
}

/// Whether a module that has answered already was asked by several interfaces and answers once
/// more. With one interface every answer counts.
bool USR_searcher::isAnsweredAgain(const QString &reply)
{
    if (roads_.size() < 2 || !usr_frame::isDiscoveryReply(reply))
        return false;
    const QString answering = usr_frame::readDiscoveryReply(reply).mac;
    const bool isKnown = macs_.contains(answering);
    macs_.insert(answering);
    return isKnown;
}

QList<ModuleRoad> USR_searcher::searchRoads() const
{
    if (network_.broadcast == QHostAddress(QHostAddress::Broadcast))
        return broadcastRoads();
    return {{0, network_.broadcast}};
}

bool USR_searcher::hasOddReply() const
{
    return !std::all_of(replies.cbegin(), replies.cend(), usr_frame::isDiscoveryReply);
}

void USR_searcher::attemptLogin()
{
    get_data_from_USR();
    bindConfigSocket();
    const WaitCursor cursor;
    send(configSocket, usr_frame::loginRequest(mac, username, password), targetRoad_);
    std::this_thread::sleep_for(network_.afterBroadcast);

    lastReply.clear();
    QByteArray buffer(std::max<qint64>(configSocket.pendingDatagramSize(), 0), '\0');
    for (int i = 0; i < burst && configSocket.hasPendingDatagrams(); ++i) {
        QHostAddress sender;
        const qint64 size = configSocket.readDatagram(buffer.data(), buffer.size(), &sender);
        if (size <= 0)
            continue;
        note(LinkRecorder::Direction::Received, sender.toString(), buffer.left(size));
        lastReply += usr_frame::toHexText(buffer.left(size)).toStdString();
    }
    leaveConfigSocket();
}

void USR_searcher::bindConfigSocket()
{
    if (configSocket.state() != QAbstractSocket::BoundState)
        configSocket.bind(network_.localAddress);
}

/// Deliberate: the socket is bound and never connected, so it stays open from one login to the
/// next, and an answer that came late is read by the next attempt. That lets a slow module in.
void USR_searcher::leaveConfigSocket()
{
    if (configSocket.state() == QAbstractSocket::ConnectedState)
        configSocket.close();
}

void USR_searcher::send(QUdpSocket &socket, const QString &request, const ModuleRoad &road)
{
    const QByteArray frame = usr_frame::toBytes(request);
    if (!sendThrough(socket, requestOn(road, network_.modulePort, frame)).isEmpty())
        return;
    note(LinkRecorder::Direction::Sent, &socket == this ? network_.broadcast.toString() : targetIP,
         frame);
}

void USR_searcher::note(LinkRecorder::Direction direction, const QString &address,
                        const QByteArray &frame)
{
    if (network_.recorder != nullptr)
        network_.recorder->note(direction, address, LinkRecorder::Road::Module, frame);
}

QString USR_searcher::readField(const char *failure, QString (*field)(const QString &reply))
{
    QString value = failed;
    guarded(failure, [&] {
        if (check_credentials() != failed)
            value = field(QString::fromStdString(lastReply));
    });
    return value;
}
