#pragma once

#include "cli/device.h"

#include <QStringList>

/// The file for each of `devices`, in their order: `pattern` with {name} replaced by the device's
/// name. Throws UsageError where a name leads out of the folder or is none that every system takes:
/// with "/", "\", ":" or a control character in it, ".", "..", or reserved as "CON" is on Windows.
QStringList filesFor(const QString &pattern, const std::vector<Device> &devices);

/// Whether both names lead to one file, also to one that is not there yet. An empty name leads to
/// none.
bool isSameFile(const QString &one, const QString &other);

/// Whether `pattern` makes a file of its own for each device.
bool namesEachDevice(const QString &pattern);
