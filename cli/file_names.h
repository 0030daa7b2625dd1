#pragma once

#include "cli/device.h"

#include <QStringList>

/// The file for each of `devices`, in their order: `pattern` with {name} replaced by the device's
/// name. Throws UsageError where a name leads out of the folder or is none that every system takes:
/// with "/", "\", ":" or a control character in it, ".", "..", or reserved as "CON" is on Windows.
QStringList filesFor(const QString &pattern, const std::vector<Device> &devices);

/// Whether `pattern` makes a file of its own for each device.
bool namesEachDevice(const QString &pattern);
