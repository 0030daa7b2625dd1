#pragma once

#include <QNetworkDatagram>
#include <QUdpSocket>
#include <functional>

/// Reads what arrives at a UDP socket without letting a peer that floods take the event loop for
/// itself.
class DatagramBursts
{
public:
    using Take = std::function<void(const QNetworkDatagram &)>;
    /// `take` gets each datagram. It may close the socket, or delete it together with this object.
    DatagramBursts(QUdpSocket &socket, Take take);

    /// For readyRead(): takes the datagrams that wait, a burst of them at most. The rest follows
    /// after a rest in which the socket asks for nothing: Windows puts its requests before all
    /// timers, painting and input.
    void read();

private:
    QUdpSocket &socket_;
    Take take_;
    bool rests_ = false;
};
