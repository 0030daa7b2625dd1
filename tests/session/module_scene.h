#pragma once

#include "session/module_session.h"
#include "udp_module.h"

/// A module on loopback, and what is known of it.

/// Loopback and short waits.
inline ModuleNetwork networkOf(const UdpModule &module)
{
    using namespace std::chrono_literals;
    const QHostAddress loopback(QHostAddress::LocalHost);
    ModuleNetwork network;
    network.localAddress = loopback;
    network.discoveryPort = 0;
    network.modulePort = module.port();
    network.roads = {{0, loopback}};
    network.collection = 100ms;
    network.loginAnswer = 100ms;
    return network;
}

/// The module that UdpModule is.
inline ModuleOnLan desk()
{
    return {{QStringLiteral("192.168.1.7"), QStringLiteral("9ca5251a2b3c"),
             QStringLiteral("4465736b"), QStringLiteral("Desk")},
            {0, QHostAddress(QHostAddress::LocalHost)}};
}

inline ModuleCredentials admin()
{
    return {QStringLiteral("admin"), QStringLiteral("admin")};
}
