#pragma once

#include <QHostAddress>
#include <QList>
#include <QNetworkDatagram>
#include <QUdpSocket>
#include <chrono>

/// The way by which requests to network modules leave this machine.
struct ModuleRoad
{
    uint interfaceIndex = 0; ///< 0: whichever the system chooses
    QHostAddress broadcast{QHostAddress::Broadcast};

    bool operator==(const ModuleRoad &) const = default;
};

/// What the module protocol needs of the world; tests bend it.
struct ModuleNetwork
{
    QHostAddress localAddress{QHostAddress::AnyIPv4}; ///< where the sockets are bound
    quint16 discoveryPort = 4242;                     ///< where modules answer a search; 0 is any
    /// How long a search waits for the discovery port while another program has it.
    std::chrono::milliseconds portPatience{0};
    quint16 modulePort = 1901;                   ///< where modules listen
    QList<ModuleRoad> roads = {ModuleRoad()};    ///< by which a search leaves
    std::chrono::milliseconds collection{1500};  ///< how long answers to a search are taken
    std::chrono::milliseconds loginAnswer{1000}; ///< longest wait for the answer to a login
    int loginRetries = 2;                        ///< further logins after the first
};

/// One road for each interface that is up and can broadcast over IPv4, loopback aside. Where there
/// is at most one, the single road that leaves the choice to the system.
QList<ModuleRoad> broadcastRoads();

/// `request` on its way to all modules on `road`, port `port`.
QNetworkDatagram requestOn(const ModuleRoad &road, quint16 port, const QByteArray &request);

/// Sends `datagram`. Returns why it has not left, in the system's words; empty where it has.
QString sendThrough(QUdpSocket &socket, const QNetworkDatagram &datagram);

/// The one of `roads` by which `answer` came; the first where it came by none of them.
ModuleRoad roadOf(const QNetworkDatagram &answer, const QList<ModuleRoad> &roads);
