#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QStringList>
#include <QtEndian>
#include <array>
#include <linux/if_packet.h>
#include <net/ethernet.h>
#include <net/if.h>
#include <sys/socket.h>
#include <unistd.h>

/// Sees what leaves by one network interface for network modules, as the cable would: UDP datagrams
/// to port 1901. Linux only, and only where the test may look at packets.
class SentRequests
{
public:
    explicit SentRequests(const char *interface)
        : socket_(::socket(AF_PACKET, SOCK_DGRAM | SOCK_NONBLOCK, qToBigEndian<quint16>(ETH_P_ALL)))
    {
        sockaddr_ll where{};
        where.sll_family = AF_PACKET;
        where.sll_protocol = qToBigEndian<quint16>(ETH_P_ALL);
        where.sll_ifindex = static_cast<int>(if_nametoindex(interface));
        if (where.sll_ifindex == 0 || ::bind(socket_, asAddress(where), sizeof where) != 0)
            qFatal("cannot look at what leaves by %s", interface);
    }
    ~SentRequests() { ::close(socket_); }
    Q_DISABLE_COPY_MOVE(SentRequests)

    /// Each request that has left since the last call, as "192.0.2.255 ff010102".
    QStringList take() const
    {
        QStringList requests;
        std::array<char, 2048> packet{};
        sockaddr_ll from{};
        socklen_t fromSize = sizeof from;
        while (true) {
            const ssize_t size =
                ::recvfrom(socket_, packet.data(), packet.size(), 0, asAddress(from), &fromSize);
            if (size < 0)
                return requests;
            if (from.sll_pkttype == PACKET_OUTGOING)
                requests += asRequest(QByteArray(packet.data(), size));
        }
    }

private:
    template <typename Address>
    static sockaddr *asAddress(Address &address)
    {
        return reinterpret_cast<sockaddr *>(&address);
    }

    /// Empty when `packet` is no UDP datagram over IPv4 to the modules' port.
    static QStringList asRequest(const QByteArray &packet)
    {
        constexpr int headerSize = 20; // an IPv4 header without options
        constexpr int udpHeaderSize = 8;
        constexpr char udp = 17;
        if (packet.size() < headerSize + udpHeaderSize || packet[0] != '\x45' || packet[9] != udp)
            return {};
        const char *const ports = packet.constData() + headerSize;
        if (qFromBigEndian<quint16>(ports + 2) != 1901)
            return {};
        const QHostAddress to(qFromBigEndian<quint32>(packet.constData() + 16));
        const QByteArray payload = packet.mid(headerSize + udpHeaderSize);
        return {to.toString() + QLatin1Char(' ') + QString::fromLatin1(payload.toHex())};
    }

    int socket_;
};
