#pragma once

/// Every QObject of the program, whoever owns it, counted from its making to its end.
namespace live_objects {

/// From here on. Objects that are there already are not counted.
void begin();
int objects();
/// The timers that they have running.
int timers();

} // namespace live_objects
