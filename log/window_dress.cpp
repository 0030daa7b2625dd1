#include "log/window_dress.h"

#include <QWidget>

QString applicationTitle()
{
    return QStringLiteral("Norvik\u00ae Pelora Utility");
}

QIcon applicationIcon()
{
    return QIcon(QStringLiteral(":/img/logos/Pelora_app_icon.png"));
}

void dressWindow(QWidget &window, QSize size)
{
    window.setFixedSize(size);
    window.setWindowTitle(applicationTitle());
    window.setWindowIcon(applicationIcon());
}
