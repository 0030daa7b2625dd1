#pragma once

#include <QNetworkDatagram>
#include <QPointer>
#include <QUdpSocket>

/// Gives `take` the datagrams that wait at `socket`, a burst of them at most, so that the event
/// loop has its turn while a peer floods; readyRead() comes again for the rest. For a readyRead()
/// slot; `take` may close or delete the socket.
template <typename Take>
void takeBurst(QUdpSocket &socket, Take take)
{
    constexpr int burst = 64;
    constexpr qint64 largest = 65535; // bytes
    const QPointer<QUdpSocket> self(&socket);
    int taken = 0;
    // One is taken whatever the socket says of pending ones, and without asking how large it is:
    // where a report that a host is not reachable stands in front, the socket says that there are
    // none, and a readyRead() that nothing is read for is the last.
    do {
        const QNetworkDatagram datagram = socket.receiveDatagram(largest);
        if (datagram.isValid())
            take(datagram);
    } while (self && socket.isValid() && ++taken < burst && socket.hasPendingDatagrams());
}
