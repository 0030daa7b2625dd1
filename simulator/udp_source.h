#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QUdpSocket>

/// Sends `datagram` from a socket that listens at all addresses, with `source` (an IPv4 address) as
/// its sender where this machine has that address and the system allows to say so; otherwise from
/// the address that the system picks. Whoever asked one address often listens to that one alone.
void sendFrom(QUdpSocket &socket, const QHostAddress &source, const QByteArray &datagram,
              const QHostAddress &receiver, quint16 port);
