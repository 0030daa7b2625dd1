#pragma once

#include "connection/connection_controls.h"
#include "connection/connection_presenter.h"
#include "log/event_log.h"
#include "log/terminal_view.h"
#include "session/device_link.h"

#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QTextEdit>
#include <QWidget>

/// A link with just the widgets that it touches.
struct LinkFixture
{
    explicit LinkFixture(LinkFactories factories = {}, DeviceLinkSettings settings = {})
        : link(settings, std::move(factories)), presenter(link, controls, terminal, {&ip, &name})
    {
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
    bool tcpIp = false;
    ConnectionControls controls{
        {&indicator, &on, &off, &beepOn, &beepOff, {&device, &beepOn, &beepOff}, {&combo}, {}}};
    TerminalView terminal{text};
    DeviceLink link;
    ConnectionPresenter presenter;
};
