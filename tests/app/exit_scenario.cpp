// Runs the main window into one of the failures that end the process, with the user's part played
// by a script. Prints each message box as "title|text". tst_exits starts it and looks at its end.
//   exit_scenario no-port | no-module | no-connection | no-answer

#include "support/link_bench.h"
#include "support/network_window.h"

#include <cstdio>

namespace {
/// A socket that never gets connected.
class UnreachableSocket : public QUdpSocket
{
public:
    bool waitForConnected(int /*milliseconds*/) override { return false; }
};

void printBoxes(DialogRecorder &user)
{
    user.beforeButton([](QMessageBox &box) {
        std::printf("%s|%s\n", qPrintable(box.windowTitle()), qPrintable(box.text()));
        std::fflush(stdout);
    });
}

/// The network link alone, opened to a module that cannot be reached.
void openUnreachable()
{
    DialogRecorder user;
    printBoxes(user);
    LinkFactories factories;
    factories.udpSocket = [] { return std::make_unique<UnreachableSocket>(); };
    openLog();
    LinkBench bench(factories);
    bench.open();
}
} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QString scenario = QApplication::arguments().value(1);
    if (scenario == QStringLiteral("no-connection")) {
        openUnreachable();
        return 0;
    }

    NetworkWindow s;
    printBoxes(s.user);
    WindowSettings settings = s.settings();
    if (scenario == QStringLiteral("no-port")) {
        settings.wizard.portNames = [] { return QStringList(); };
        s.user.on<Select_connection_method_Dialog>([](Select_connection_method_Dialog &dialog) {
            WindowBench::choose(dialog, "radioButton_RS232");
        });
    }
    if (scenario == QStringLiteral("no-module"))
        s.module.answerSearches([](int) { return FakeModule::Answers(); });
    if (scenario == QStringLiteral("no-answer")) {
        s.answers.clear();
        settings.panel.handshakeWatchdog = std::chrono::milliseconds(300);
    }
    s.WindowBench::start(settings);
    if (scenario == QStringLiteral("no-answer")) {
        s.window->on_pushButton_ON_Connection_clicked();
        return QApplication::exec();
    }
    std::puts("the window is up");
    return 0;
}
