// Start: the method dialog is closed as soon as it is painted, then the main window is painted
// once.

#include "app/main_window.h"
#include "measure.h"

#include <QTimer>
#include <cstdio>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    std::unique_ptr<FirstPaint> dialogPainted;
    QTimer::singleShot(0, &application, [&] {
        if (QWidget *dialog = QApplication::activeModalWidget())
            dialogPainted = std::make_unique<FirstPaint>(*dialog, [dialog] { dialog->close(); });
    });
    KM_Configuration_Tool_Norvik window;
    const FirstPaint painted(window, [] { QApplication::quit(); });
    window.show();
    const int status = QApplication::exec();
    std::printf("%.1f\n", cpuMilliseconds());
    return status;
}
