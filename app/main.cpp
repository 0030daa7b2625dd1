#include "app/main_window.h"
#include "log/window_dress.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    useLightPalette();
    KM_Configuration_Tool_Norvik window;
    window.show();
    return QApplication::exec();
}
