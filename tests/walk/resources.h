#pragma once

#include <QtGlobal>

/// What the process holds of the system at this moment.
qint64 residentKiB(); ///< 0 where the system does not say
int openFiles();      ///< 0 where the system does not say

/// Whether resident memory says what the program keeps: a sanitizer keeps what was freed, and looks
/// for leaks itself.
bool isResidentMemoryOurs();
