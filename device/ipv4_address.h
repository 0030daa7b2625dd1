#pragma once

#include <QString>
#include <QtGlobal>
#include <optional>

/// The IPv4 address that `dotted` stands for, first octet highest: "192.168.1.7" gives 0xC0A80107.
/// Nothing unless it is four decimal numbers from 0 to 255. Zeros in front make no octal number,
/// as QHostAddress reads them: "010.0.0.1" is 10.0.0.1. Blanks around a number do not count.
std::optional<quint32> ipv4From(const QString &dotted);

/// The same the other way round, and without zeros in front: 0xC0A80107 gives "192.168.1.7".
QString ipv4Text(quint32 address);
