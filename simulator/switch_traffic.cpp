#include "simulator/switch_traffic.h"

#include "simulator/udp_source.h"

#include <QNetworkDatagram>

using namespace std::chrono_literals;

SwitchTraffic::SwitchTraffic(SimulatedSwitch &theSwitch, quint16 port,
                             std::chrono::milliseconds quietGap)
    : switch_(theSwitch), port_(port)
{
    quiet_.setSingleShot(true);
    quiet_.setTimerType(Qt::PreciseTimer);
    quiet_.setInterval(quietGap);
    // A long text leaves with small pauses, as it would behind a serial line: sent at once it would
    // overrun the receiver's socket.
    sending_.setSingleShot(true);
    sending_.setTimerType(Qt::PreciseTimer);
    sending_.setInterval(1ms);
    connect(&quiet_, &QTimer::timeout, this, &SwitchTraffic::endDatagram);
    connect(&sending_, &QTimer::timeout, this, &SwitchTraffic::sendNext);
    connect(&pacer_, &ReplyPacer::due, this, &SwitchTraffic::collect);
    connect(&switch_, &SimulatedSwitch::announced, this, [this](const std::vector<Piece> &pieces) {
        if (socket_ && peerPort_ != 0)
            pacer_.enqueue(pieces);
    });
}

std::string SwitchTraffic::listen(const QHostAddress &address)
{
    socket_ = std::make_unique<QUdpSocket>();
    if (!socket_->bind(address, port_, QAbstractSocket::DontShareAddress)) {
        const std::string failure = listenFailure(*socket_, address, port_);
        socket_.reset();
        return failure;
    }
    connect(socket_.get(), &QUdpSocket::readyRead, this, &SwitchTraffic::readAll);
    return {};
}

void SwitchTraffic::setSplit(int bytes)
{
    limit_ = bytes > 0 ? bytes : AnswerPacker::largestDatagram;
}

void SwitchTraffic::readAll()
{
    while (socket_->hasPendingDatagrams()) {
        const QNetworkDatagram datagram = socket_->receiveDatagram();
        if (!datagram.isValid() || deaf_)
            continue;
        peer_ = datagram.senderAddress();
        peerPort_ = static_cast<quint16>(datagram.senderPort());
        ownAddress_ = datagram.destinationAddress();
        pacer_.enqueue(switch_.receive(datagram.data(), line));
        if (quiet_.interval() == 0)
            endDatagram();
    }
}

void SwitchTraffic::endDatagram()
{
    quiet_.stop();
    queue(packer_.flush(limit_));
}

void SwitchTraffic::collect(const QByteArray &bytes)
{
    queue(packer_.add(bytes, limit_));
    quiet_.start();
}

void SwitchTraffic::queue(const std::vector<QByteArray> &datagrams)
{
    outgoing_.insert(outgoing_.end(), datagrams.begin(), datagrams.end());
    if (!sending_.isActive())
        sendNext();
}

void SwitchTraffic::sendNext()
{
    if (outgoing_.empty())
        return;
    // The asker listens to the address that it sent to, and to no other of this machine.
    if (socket_)
        sendFrom(*socket_, ownAddress_, outgoing_.front(), peer_, peerPort_);
    outgoing_.pop_front();
    if (!outgoing_.empty())
        sending_.start();
}

std::string listenFailure(const QUdpSocket &socket, const QHostAddress &address, quint16 port)
{
    std::string text =
        "cannot listen on UDP port " + std::to_string(port) + " at " +
        (address == QHostAddress(QHostAddress::AnyIPv4) ? std::string("all addresses")
                                                        : address.toString().toStdString()) +
        ": " + socket.errorString().toStdString();
    if (socket.error() == QAbstractSocket::SocketAccessError)
        text += " (ports below 1024 need the right to listen there; run as root, or name others "
                "with --management-port and --switch-port)";
    return text;
}
