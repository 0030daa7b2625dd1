#include "app/command_line.h"
#include "app/early_end.h"
#include "app/main_window.h"
#include "app/screen_fit.h"
#include "app/window_ghosting.h"
#include "log/window_dress.h"
#include "session/link_recorder.h"

#include <QApplication>
#include <memory>

int main(int argc, char *argv[])
{
    const auto asked = readCommandLine(argc, argv);
    if (const auto *early = std::get_if<EarlyEnd>(&asked))
        return show(*early);
    const QString recordFile = std::get<CommandLine>(asked).recordFile;
    std::unique_ptr<LinkRecorder> recorder;
    if (!recordFile.isEmpty()) {
        recorder = std::make_unique<LinkRecorder>(recordFile);
        if (!recorder->problem().isEmpty())
            return show(mistake(QStringLiteral("cannot write the record %1: %2")
                                    .arg(recordFile, recorder->problem())));
    }

    switchWindowGhostingOff();
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("pelora-utility"));
    QCoreApplication::setApplicationVersion(QStringLiteral(PELORA_VERSION));
    // By this name a Wayland desktop finds the icon and the title of its windows.
    QGuiApplication::setDesktopFileName(QStringLiteral("pelora-utility"));
    useLightPalette();
    WindowSettings settings;
    settings.recorder = recorder.get();
    settings.scale = scaleOnPrimaryScreen(KM_Configuration_Tool_Norvik::windowSize);
    KM_Configuration_Tool_Norvik window(nullptr, settings);
    window.show();
    return QApplication::exec();
}
