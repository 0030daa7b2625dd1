#pragma once

#include "connection/connection_controls.h"
#include "connection/connection_presenter.h"
#include "log/event_log.h"
#include "log/terminal_view.h"
#include "session/device_link.h"

#include <QByteArrayList>
#include <QComboBox>
#include <QFile>
#include <QHostAddress>
#include <QLabel>
#include <QNetworkDatagram>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>
#include <QUdpSocket>
#include <utility>

/// A device link with just the widgets that it touches. Its module is a socket on loopback, which
/// the test reads.
struct LinkBench
{
    /// `held` are further device controls, all of which a settings file holds.
    explicit LinkBench(LinkFactories factories = {}, const QList<QWidget *> &held = {})
        : controls({&indicator,
                    &on,
                    &off,
                    &beepOn,
                    &beepOff,
                    QList<QWidget *>{&device, &beepOn, &beepOff} + held,
                    {&combo},
                    held}),
          link({boundPort(module)}, std::move(factories)),
          presenter(link, controls, terminal, {&ip, &name})
    {
        link.setModule(QStringLiteral("127.0.0.1"), QStringLiteral("bench"));
    }

    void open() { link.openNetworkLink(); }

    /// The commands that have arrived at the module since the last call, each with its carriage
    /// return, once there are `count` of them; fewer when no more come.
    QByteArrayList commands(int count)
    {
        QByteArrayList commands;
        const auto take = [&] {
            while (module.hasPendingDatagrams())
                commands.append(module.receiveDatagram().data());
            return commands.size() >= count;
        };
        (void)QTest::qWaitFor(take, 2000);
        return commands;
    }

    /// Whether nothing has been sent: a mark sent now is the first thing to arrive.
    bool isSilent()
    {
        link.writeDirectly("mark");
        return commands(1) == QByteArrayList{"mark"};
    }

    static QByteArray log()
    {
        QFile file(eventLogPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QWidget window;
    QPushButton indicator{&window};
    QPushButton on{&window};
    QPushButton off{&window};
    QPushButton beepOn{&window};
    QPushButton beepOff{&window};
    QPushButton device{&window};
    QComboBox combo{&window};
    QTextEdit text{&window};
    QLabel ip{&window};
    QLabel name{&window};
    ConnectionControls controls;
    TerminalView terminal{text};
    QUdpSocket module;
    DeviceLink link;
    ConnectionPresenter presenter;

private:
    static quint16 boundPort(QUdpSocket &socket)
    {
        if (!socket.bind(QHostAddress::LocalHost))
            qFatal("no port to be had on the loopback interface");
        return socket.localPort();
    }
};
