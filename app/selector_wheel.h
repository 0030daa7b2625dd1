#pragma once

class QWidget;

/// Lets the selectors (combo boxes) below `window` take the mouse wheel only while they have the
/// focus, which a click or Tab gives them and the wheel does not. Turned over one on the way past,
/// it would change the switch at once. What it turns over instead is what lies below the selector.
void takeWheelOnlyWithFocus(QWidget &window);
