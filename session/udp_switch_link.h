#pragma once

#include "session/datagram_bursts.h"
#include "session/switch_link.h"

#include <QHostAddress>
#include <QUdpSocket>
#include <chrono>
#include <memory>

/// The UDP port on which a network module takes the switch's traffic.
inline constexpr quint16 switchUdpPort = 23;

/// A UDP socket to the network module that a switch hangs on. A module that is away for a moment
/// does not break it: what its host or the network reports of that is read and forgotten, and the
/// socket goes on listening.
class UdpSwitchLink : public SwitchLink
{
    Q_OBJECT

public:
    UdpSwitchLink(const QHostAddress &address, quint16 port,
                  std::unique_ptr<QUdpSocket> socket = std::make_unique<QUdpSocket>());
    ~UdpSwitchLink() override;

    Road road() const override { return Road::Network; }
    void open() override;
    bool isOpen() const override;
    void write(const QByteArray &bytes) override;
    void close() override;

    /// Blocks until the socket is connected to its peer, at most `wait`; no events are handled
    /// meanwhile. Returns whether it is.
    bool waitForOpened(std::chrono::milliseconds wait);

private:
    QHostAddress address_;
    quint16 port_;
    std::unique_ptr<QUdpSocket> udpSocket;
    DatagramBursts bursts_{
        *udpSocket, [this](const QNetworkDatagram &datagram) { Q_EMIT received(datagram.data()); }};
};
