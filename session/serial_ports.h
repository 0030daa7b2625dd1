#pragma once

#include <QStringList>

/// Names of the ports that the user may choose from: the device paths in the environment variable
/// PELORA_EXTRA_SERIAL_PORTS (separated by ":", on Windows by ";"; for ports that the system does
/// not list, such as pseudo-terminals) before the system's own, in the system's order.
QStringList serialPortNames();
