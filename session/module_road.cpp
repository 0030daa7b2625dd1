#include "session/module_road.h"

#include <QNetworkInterface>
#include <algorithm>
#include <cerrno>

namespace {
bool canBroadcast(const QNetworkInterface &candidate)
{
    constexpr QNetworkInterface::InterfaceFlags needed =
        QNetworkInterface::IsUp | QNetworkInterface::IsRunning | QNetworkInterface::CanBroadcast;
    if ((candidate.flags() & needed) != needed ||
        candidate.flags().testFlag(QNetworkInterface::IsLoopBack))
        return false;
    const QList<QNetworkAddressEntry> entries = candidate.addressEntries();
    return std::any_of(entries.cbegin(), entries.cend(), [](const QNetworkAddressEntry &entry) {
        return entry.ip().protocol() == QAbstractSocket::IPv4Protocol;
    });
}
} // namespace

QList<ModuleRoad> broadcastRoads()
{
    QList<ModuleRoad> roads;
    const QList<QNetworkInterface> interfaces = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface &candidate : interfaces) {
        if (canBroadcast(candidate))
            roads.append({static_cast<uint>(candidate.index()), QHostAddress::Broadcast});
    }
    return roads.size() > 1 ? roads : QList<ModuleRoad>{ModuleRoad()};
}

QNetworkDatagram requestOn(const ModuleRoad &road, quint16 port, const QByteArray &request)
{
    QNetworkDatagram datagram(request, road.broadcast, port);
    datagram.setInterfaceIndex(road.interfaceIndex);
    return datagram;
}

QString sendThrough(QUdpSocket &socket, const QNetworkDatagram &datagram)
{
    errno = 0;
    if (socket.writeDatagram(datagram) == datagram.data().size())
        return {};
#ifndef Q_OS_WIN
    if (errno != 0) // Qt has the same words for most failures
        return qt_error_string(errno);
#endif
    return socket.errorString();
}

ModuleRoad roadOf(const QNetworkDatagram &answer, const QList<ModuleRoad> &roads)
{
    for (const ModuleRoad &road : roads) {
        if (road.interfaceIndex == answer.interfaceIndex())
            return road;
    }
    return roads.value(0);
}
