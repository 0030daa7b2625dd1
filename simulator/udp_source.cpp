#include "simulator/udp_source.h"

#ifdef Q_OS_LINUX
#include <array>
#include <cstring>
#include <netinet/in.h>
#include <sys/socket.h>
#else
#include <QNetworkDatagram>
#endif

namespace {

#ifdef Q_OS_LINUX
// QNetworkDatagram::setSender would be the way, but Qt 6.4 hands the address over in the field that
// the kernel ignores, and even takes a bound socket's own address away with that.
bool sendNatively(const QUdpSocket &socket, const QHostAddress &source, QByteArray datagram,
                  const QHostAddress &receiver, quint16 port)
{
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_addr.s_addr = htonl(receiver.toIPv4Address());
    to.sin_port = htons(port);
    in_pktinfo from{};
    from.ipi_spec_dst.s_addr = htonl(source.toIPv4Address());

    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(in_pktinfo))> control{};
    iovec payload{datagram.data(), static_cast<std::size_t>(datagram.size())};
    msghdr message{};
    message.msg_name = &to;
    message.msg_namelen = sizeof(to);
    message.msg_iov = &payload;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    cmsghdr *const header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = IPPROTO_IP;
    header->cmsg_type = IP_PKTINFO;
    header->cmsg_len = CMSG_LEN(sizeof(from));
    std::memcpy(CMSG_DATA(header), &from, sizeof(from));
    return ::sendmsg(static_cast<int>(socket.socketDescriptor()), &message, 0) >= 0;
}
#else
bool sendNatively(QUdpSocket &socket, const QHostAddress &source, const QByteArray &bytes,
                  const QHostAddress &receiver, quint16 port)
{
    QNetworkDatagram datagram(bytes, receiver, port);
    datagram.setSender(source);
    return socket.writeDatagram(datagram) >= 0;
}
#endif

} // namespace

void sendFrom(QUdpSocket &socket, const QHostAddress &source, const QByteArray &datagram,
              const QHostAddress &receiver, quint16 port)
{
    const bool canSay = socket.socketDescriptor() >= 0 && !source.isNull();
    if (!canSay || !sendNatively(socket, source, datagram, receiver, port))
        socket.writeDatagram(datagram, receiver, port);
}
