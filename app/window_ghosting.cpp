#include "app/window_ghosting.h"

#include <QtGlobal>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

void switchWindowGhostingOff()
{
#ifdef Q_OS_WIN
    DisableProcessWindowsGhosting();
#endif
}
