// Runs the main window into one of the failures that end the process, with the user's part played
// by a script. Prints each message box as "title|text". tst_exits starts it and looks at its end.
//   exit_scenario no-port | no-module | no-connection | no-answer

#include "app/main_window.h"
#include "connection/select_hardware_dialog.h"
#include "support/dialog_recorder.h"
#include "tests/connection/device_link_fixture.h"
#include "tests/usr/fake_module.h"
#include "usr/credentials_dialog.h"
#include "usr/ip_settings_dialog.h"

#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QUdpSocket>
#include <cstdio>

namespace {
/// A socket that never gets connected.
class UnreachableSocket : public QUdpSocket
{
public:
    bool waitForConnected(int /*milliseconds*/) override { return false; }
};

void press(QWidget &dialog, const char *button)
{
    dialog.findChild<QPushButton *>(QString::fromLatin1(button))->click();
}

/// The network link alone, opened to a module that cannot be reached.
void openUnreachable()
{
    LinkFactories factories;
    factories.udpSocket = [] { return std::make_unique<UnreachableSocket>(); };
    openLog();
    LinkFixture fixture(factories);
    fixture.link.setModule(QStringLiteral("127.0.0.1"), QString());
    fixture.link.openNetworkLink();
}

/// A user who goes through the wizard's network dialogs.
void passNetworkDialogs(DialogRecorder &user)
{
    user.on<Select_hardware_Dialog>(
        [](Select_hardware_Dialog &dialog) { press(dialog, "pushButton_Continue"); });
    user.on<Credentials_Dialog>([](Credentials_Dialog &dialog) {
        for (const char *field : {"lineEdit_username", "lineEdit_password"})
            dialog.findChild<QLineEdit *>(QString::fromLatin1(field))
                ->setText(QStringLiteral("admin"));
        press(dialog, "pushButton_ip_allocation");
    });
    user.on<IP_Settings_Dialog>(
        [](IP_Settings_Dialog &dialog) { press(dialog, "pushButton_Connect"); });
}

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

    if (scenario == QStringLiteral("no-connection")) {
        openUnreachable();
        return 0;
    }

    WindowSettings settings;
    settings.wizard.portNames = [] { return QStringList(); };
    FakeModule module;
    QUdpSocket silentSwitch;
    settings.wizard.network.broadcast = QHostAddress(QHostAddress::LocalHost);
    settings.wizard.network.discoveryPort = 0;
    settings.wizard.network.afterBroadcast = std::chrono::milliseconds(1);
    settings.wizard.network.collection = std::chrono::milliseconds(20);
    if (scenario == QStringLiteral("no-answer")) {
        module.answerSearches(
            {{FakeModule::discoveryReply(QByteArray("\x7f\x00\x00\x01", 4),
                                         QByteArray("\x9c\xa5\x25\0\0\x02", 6), "Meeting Room"),
              {}}});
        module.answerLogins({{FakeModule::configuration('\x80'), {}}});
        settings.wizard.network =
            module.network(std::chrono::milliseconds(30), std::chrono::milliseconds(30));
        silentSwitch.bind(QHostAddress::LocalHost, 0);
        settings.networkLink.switchPort = silentSwitch.localPort();
        settings.panel.handshakeWatchdog = std::chrono::milliseconds(100);
        passNetworkDialogs(user);
    }
    KM_Configuration_Tool_Norvik window(nullptr, settings);
    window.show();
    if (scenario == QStringLiteral("no-answer")) {
        window.on_pushButton_ON_Connection_clicked();
        return QApplication::exec();
    }
    std::puts("the window is up");
    return 0;
}
