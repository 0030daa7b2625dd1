#pragma once

#include <QtGlobal>
#include <chrono>

/// What the network face needs of the world; tests bend it.
struct NetworkSettings
{
    quint16 managementPort = 1901;
    quint16 switchPort = 23;
    std::chrono::milliseconds quietGap{50};      ///< pause of the switch that ends a datagram
    std::chrono::milliseconds restartTime{1000}; ///< how long a module is deaf after a commit
};
