#include "session/udp_switch_link.h"

#include <utility>

UdpSwitchLink::UdpSwitchLink(const QHostAddress &address, quint16 port,
                             std::unique_ptr<QUdpSocket> socket)
    : address_(address), port_(port), udpSocket(std::move(socket))
{
}

UdpSwitchLink::~UdpSwitchLink()
{
    udpSocket->disconnect(this);
}

void UdpSwitchLink::open()
{
    connect(udpSocket.get(), &QUdpSocket::readyRead, this, [this] { bursts_.read(); });
    connect(udpSocket.get(), &QUdpSocket::errorOccurred, this, [this] {
        if (udpSocket->state() == QAbstractSocket::UnconnectedState)
            Q_EMIT failed(udpSocket->errorString());
    });
    connect(udpSocket.get(), &QUdpSocket::connected, this, &UdpSwitchLink::opened);
    udpSocket->connectToHost(address_, port_, QIODevice::ReadWrite);
}

bool UdpSwitchLink::isOpen() const
{
    return udpSocket->state() == QAbstractSocket::ConnectedState;
}

bool UdpSwitchLink::waitForOpened(std::chrono::milliseconds wait)
{
    return udpSocket->waitForConnected(static_cast<int>(wait.count()));
}

void UdpSwitchLink::write(const QByteArray &bytes)
{
    if (!isOpen())
        return;
    // The report that an earlier datagram found nobody comes out of the next write, which is then
    // not done at all.
    if (udpSocket->write(bytes) >= 0 || udpSocket->write(bytes) >= 0)
        Q_EMIT written(bytes);
}

void UdpSwitchLink::close()
{
    udpSocket->disconnect(this);
    udpSocket->close();
}
