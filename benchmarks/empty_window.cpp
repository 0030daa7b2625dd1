// The yardstick for start.cpp: an empty main window, painted once, and out.

#include "measure.h"

#include <QMainWindow>
#include <cstdio>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QMainWindow window;
    window.resize(1305, 693);
    const FirstPaint painted(window, [] { QApplication::quit(); });
    window.show();
    const int status = QApplication::exec();
    std::printf("%.1f\n", cpuMilliseconds());
    return status;
}
