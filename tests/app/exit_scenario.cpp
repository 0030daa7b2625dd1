// Runs the main window into one of the failures that end the process, with the user's part played
// by a script. Prints each message box as "title|text". tst_exits starts it and looks at its end.
//   exit_scenario no-port | no-module | no-answer ADDRESS PORT

#include "app/main_window.h"
#include "support/dialog_recorder.h"

#include <QPushButton>
#include <QRadioButton>
#include <cstdio>

namespace {
void choose(Select_connection_method_Dialog &dialog, const char *radioButton)
{
    dialog.findChild<QRadioButton *>(QString::fromLatin1(radioButton))->setChecked(true);
    dialog.findChild<QPushButton *>(QStringLiteral("pushButton_continue"))->click();
}
} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    const QString scenario = arguments.value(1);
    const char *method =
        scenario == QStringLiteral("no-port") ? "radioButton_RS232" : "radioButton_TCP_IP";
    DialogRecorder user;
    user.on<Select_connection_method_Dialog>(
        [method](Select_connection_method_Dialog &dialog) { choose(dialog, method); });
    user.beforeOk([](QMessageBox &box) {
        std::printf("%s|%s\n", qPrintable(box.windowTitle()), qPrintable(box.text()));
        std::fflush(stdout);
    });

    WindowSettings settings;
    settings.wizard.network.broadcast = QHostAddress(QHostAddress::LocalHost);
    settings.wizard.network.discoveryPort = 0;
    settings.wizard.network.afterBroadcast = std::chrono::milliseconds(1);
    settings.wizard.network.collection = std::chrono::milliseconds(20);
    KM_Configuration_Tool_Norvik window(nullptr, settings);
    window.show();
    std::puts("the window is up");
    return 0;
}
