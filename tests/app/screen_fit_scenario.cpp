#include "app/screen_fit.h"
#include "log/window_dress.h"
#include "support/serial_window.h"

#include <QApplication>
#include <QScreen>
#include <QStackedWidget>

/// The program's start on the screen that it finds, up to a window full of a switch's settings.
/// Leaves a picture of the whole screen: screen_fit_scenario PICTURE PAGE, where PAGE is the name
/// of the button in the menu.
int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 3)
        return 2;
    useLightPalette();
    WindowSettings settings = SerialWindow::quick();
    settings.scale = scaleOnPrimaryScreen(KM_Configuration_Tool_Norvik::windowSize);
    SerialWindow bench;
    (void)bench.startAndRead(settings); // it only makes a better picture
    bench.find<QStackedWidget>("stackedWidget")->setCurrentIndex(arguments.at(2).toInt());
    bench.window->move(0, 0);
    if (!QTest::qWaitForWindowExposed(bench.window.get()))
        return 3;
    QCoreApplication::processEvents(); // lays the page out
    bench.window->repaint();           // and what is painted is there before the screen is asked
    const QImage screen = QGuiApplication::primaryScreen()->grabWindow().toImage();
    return screen.save(arguments.at(1)) ? 0 : 4;
}
