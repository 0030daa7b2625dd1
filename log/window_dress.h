#pragma once

#include <QIcon>
#include <QSize>
#include <QString>

class QWidget;

/// The program's name as every title bar shows it: "Norvik® Pelora Utility".
QString applicationTitle();

/// The program's icon, ":/img/logos/Pelora_app_icon.png".
QIcon applicationIcon();

/// States the program's own light colours, whatever the desktop's are: its windows are drawn for
/// these, and a dark desktop's white text would stand on their light grounds. To be called once the
/// application object is there and before any window is.
void useLightPalette();

/// Gives `window` the program's title and icon and fixes it at `size` (pixels).
void dressWindow(QWidget &window, QSize size);
