#pragma once

#include <QIcon>
#include <QSize>
#include <QString>

class QWidget;

/// The program's name as every title bar shows it: "Norvik® Pelora Utility".
QString applicationTitle();

/// The program's icon, ":/img/logos/Pelora_app_icon.png".
QIcon applicationIcon();

/// Gives `window` the program's title and icon and fixes it at `size` (pixels).
void dressWindow(QWidget &window, QSize size);
