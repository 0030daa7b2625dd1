#pragma once

#include "connection/select_hardware_dialog.h"
#include "support/canned_reply.h"
#include "support/window_bench.h"
#include "tests/usr/fake_module.h"
#include "usr/credentials_dialog.h"
#include "usr/ip_settings_dialog.h"

#include <QLineEdit>
#include <QNetworkDatagram>
#include <QUdpSocket>

/// The window, a network module that finds, logs in and configures, and the switch behind it.
struct NetworkWindow : WindowBench
{
    NetworkWindow()
    {
        module.answerSearches(
            {{FakeModule::discoveryReply(QByteArray("\x7f\x00\x00\x01", 4),
                                         QByteArray("\x9c\xa5\x25\x00\x00\x02", 6), "Meeting Room"),
              {}}});
        module.answerLogins({{FakeModule::configuration('\x80'), {}}});
        switchPort.bind(QHostAddress::LocalHost, 0);
        QObject::connect(&switchPort, &QUdpSocket::readyRead, &switchPort, [this] { listen(); });

        user.on<Select_connection_method_Dialog>([](Select_connection_method_Dialog &dialog) {
            press(dialog, "pushButton_continue"); // TCP/IP is checked from the start
        });
        user.on<Select_hardware_Dialog>([this](Select_hardware_Dialog &dialog) {
            ++hardwareLists;
            if (closeHardware)
                dialog.close();
            else
                press(dialog, "pushButton_Continue");
        });
        user.on<Credentials_Dialog>([this](Credentials_Dialog &dialog) {
            ++logins;
            if (closeLogin) {
                dialog.close();
                return;
            }
            fieldsWereEmpty = dialog.findChild<QLineEdit *>(QStringLiteral("lineEdit_username"))
                                  ->text()
                                  .isEmpty();
            typeInto(dialog, "lineEdit_username", QStringLiteral("admin"));
            typeInto(dialog, "lineEdit_password", QStringLiteral("secret"));
            press(dialog, "pushButton_ip_allocation");
        });
        user.on<IP_Settings_Dialog>([this](IP_Settings_Dialog &dialog) {
            if (closeIpSettings)
                dialog.close();
            else
                press(dialog, "pushButton_Connect");
        });
    }

    WindowSettings settings() const
    {
        WindowSettings settings = quick();
        settings.networkLink.switchPort = switchPort.localPort();
        // Both end the program, on a busy machine as well; a test that is about one shortens it.
        settings.panel.handshakeWatchdog = std::chrono::seconds(10);
        settings.wizard.network =
            module.network(std::chrono::milliseconds(60), std::chrono::milliseconds(20));
        return settings;
    }

    void start(const std::optional<SettingsFile::Dialogs> &fileDialogs = std::nullopt)
    {
        WindowBench::start(settings(), fileDialogs);
    }

    void say(const QByteArray &text) { switchPort.writeDatagram(text, peer, peerPort); }

    void listen()
    {
        while (switchPort.hasPendingDatagrams()) {
            const QNetworkDatagram datagram = switchPort.receiveDatagram();
            peer = datagram.senderAddress();
            peerPort = static_cast<quint16>(datagram.senderPort());
            commands.append(datagram.data());
            if (datagram.data() == "//BP\r" && !answers.isEmpty()) {
                for (const QByteArray &reply : std::as_const(answers))
                    say(reply);
            }
        }
    }

    FakeModule module;
    QUdpSocket switchPort;
    QHostAddress peer;
    quint16 peerPort = 0;
    QList<QByteArray> commands;
    QList<QByteArray> answers{cannedReply};
    bool closeHardware = false;
    bool closeLogin = false;
    bool closeIpSettings = false;
    bool fieldsWereEmpty = false;
    int hardwareLists = 0;
    int logins = 0;
};
