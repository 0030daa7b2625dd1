#include "session/datagram_bursts.h"

#include <QPointer>
#include <QTimer>
#include <chrono>
#include <utility>

namespace {
constexpr int burst = 64;
constexpr std::chrono::milliseconds rest(1);
constexpr qint64 largest = 65535; // bytes
} // namespace

DatagramBursts::DatagramBursts(QUdpSocket &socket, Take take)
    : socket_(socket), take_(std::move(take))
{
}

void DatagramBursts::read()
{
    if (rests_)
        return;
    const QPointer<QUdpSocket> socket(&socket_);
    const Take take = take_; // which may delete this
    int taken = 0;
    // One is taken whatever the socket says of pending ones, and without asking how large it is:
    // where a report that a host is not reachable stands in front, the socket says that there are
    // none, and a readyRead() that nothing is read for is the last.
    do {
        const QNetworkDatagram datagram = socket->receiveDatagram(largest);
        if (datagram.isValid())
            take(datagram);
        if (!socket || !socket->isValid() || !socket->hasPendingDatagrams())
            return;
    } while (++taken < burst);
    rests_ = true;
    QTimer::singleShot(rest, &socket_, [this] {
        rests_ = false;
        if (socket_.isValid())
            read();
    });
}
