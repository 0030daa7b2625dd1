#pragma once

/// How many devices can be spoken to at the same time, each of which takes an open file. Asks the
/// system for as many as it allows.
int mostDevicesAtOnce();
