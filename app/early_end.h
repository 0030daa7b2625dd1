#pragma once

#include "app/command_line.h"

/// Says `end.text` where the user looks: on standard output, or standard error for a mistake. On
/// Windows a program with a window has neither unless somebody hands them over; there the console
/// that it was started from says it, and without one a box. Returns the status to end with: that of
/// `end`, or of a mistake where standard output cannot be written.
int show(const EarlyEnd &end);
