#pragma once

#include <QHostAddress>
#include <QString>
#include <vector>

/// How a device is named on the command line and in lists.
struct Device
{
    enum class Road {
        Serial, ///< serial:/dev/ttyUSB0, serial:COM3
        Udp,    ///< udp:192.0.2.7, udp:192.0.2.7:2300
        Module  ///< module:DESK-7, module:9CA5251A2B3C
    };

    QString name; ///< in front of what is said of it; `text` where it has none of its own
    QString text; ///< as it was given
    Road road = Road::Serial;
    QString port;         ///< Serial: the port's name or path
    QHostAddress address; ///< Udp
    quint16 udpPort = 0;  ///< Udp
    QString module;       ///< Module: its name, or its MAC as 12 digits in lower case
};

/// Reads "serial:PORT", "udp:ADDRESS[:PORT]" or "module:NAME-OR-MAC". Throws UsageError.
Device deviceFrom(const QString &text);

/// Reads a list: one device a line, "NAME DEVICE" or DEVICE alone; "#" at a line's start or behind
/// a blank begins a comment; lines may end in CR LF. `source` names the list in messages. Throws
/// UsageError with a line for each bad one.
std::vector<Device> devicesFrom(const QByteArray &list, const QString &source);

/// Throws UsageError where a port or a name stands twice.
void requireDistinct(const std::vector<Device> &devices);
