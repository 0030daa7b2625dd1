#pragma once

#include "connection/connection_controls.h"
#include "connection/connection_presenter.h"
#include "log/terminal_view.h"
#include "session/device_link.h"

#include <QByteArrayList>
#include <QHostAddress>
#include <QLabel>
#include <QNetworkDatagram>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>
#include <QUdpSocket>
#include <utility>

/// A device link over the loopback interface whose other end the test reads.
class LinkBench
{
public:
    /// `held` are the device controls, all of which a settings file holds.
    explicit LinkBench(const QList<QWidget *> &held = {}, LinkFactories factories = {})
        : terminal_(terminalView_),
          controls_({&indicator_, &on_, &off_, &beepOn_, &beepOff_, held, {}, held}),
          link_({boundPort(device_)}, std::move(factories)),
          presenter_(link_, controls_, terminal_, {&ip_, &name_})
    {
        link_.setModule(QStringLiteral("127.0.0.1"), QStringLiteral("bench"));
    }

    void open() { link_.openNetworkLink(); }

    ConnectionControls &controls() { return controls_; }
    DeviceLink &link() { return link_; }
    QPushButton &beepOn() { return beepOn_; }
    QPushButton &beepOff() { return beepOff_; }

    /// The commands that have arrived since the last call, each with its carriage return, once
    /// there are `count` of them; fewer when no more come.
    QByteArrayList commands(int count)
    {
        QByteArrayList commands;
        const auto take = [&] {
            while (device_.hasPendingDatagrams())
                commands.append(device_.receiveDatagram().data());
            return commands.size() >= count;
        };
        (void)QTest::qWaitFor(take, 2000);
        return commands;
    }

    /// Whether nothing has been sent: a mark sent now is the first thing to arrive.
    bool isSilent()
    {
        link_.writeDirectly("mark");
        return commands(1) == QByteArrayList{"mark"};
    }

private:
    static quint16 boundPort(QUdpSocket &socket)
    {
        if (!socket.bind(QHostAddress::LocalHost))
            qFatal("no port to be had on the loopback interface");
        return socket.localPort();
    }

    QTextEdit terminalView_;
    TerminalView terminal_;
    QPushButton indicator_;
    QPushButton on_;
    QPushButton off_;
    QPushButton beepOn_;
    QPushButton beepOff_;
    QLabel ip_;
    QLabel name_;
    ConnectionControls controls_;
    QUdpSocket device_;
    DeviceLink link_;
    ConnectionPresenter presenter_;
};
