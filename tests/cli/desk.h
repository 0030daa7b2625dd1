#pragma once

#include "ctl_process.h"
#include "device/configuration_examples.h"
#include "session/udp_switch.h"
#include "simulator_process.h"

#include <QTemporaryDir>

/// A switch that gives the example answer whatever it is told, and the option that names it.
struct Desk : UdpSwitch
{
    Desk()
    {
        answers["//rl\r"] = {exampleListing};
        answers["//??\r"] = {exampleStatus};
        answers["//BP\r"] = {exampleLayout};
    }

    QString option() const { return QStringLiteral("-d udp:127.0.0.1:%1 ").arg(port()); }

    void replace(const char *question, const char *before, const char *after)
    {
        QByteArray &answer = answers[question].first();
        if (!answer.contains(before))
            qFatal("the answer has no such text");
        answer.replace(before, after);
    }

    /// What it was sent beside the three questions.
    QByteArrayList sentCommands() const
    {
        QByteArrayList sent = commands();
        sent.removeAll("//rl\r");
        sent.removeAll("//??\r");
        sent.removeAll("//BP\r");
        return sent;
    }
};

/// A simulated switch with state, on a virtual serial port.
class SimulatedDesk
{
public:
    explicit SimulatedDesk(const QStringList &more = {})
    {
        const QStringList arguments = {QStringLiteral("serial"), QStringLiteral("--console"),
                                       QStringLiteral("--link"), link()};
        if (simulator.start(arguments + more).isEmpty())
            qFatal("the simulator did not start");
    }

    QString link() const { return folder.filePath(QStringLiteral("switch")); }
    QString file(const char *name) const { return folder.filePath(QLatin1String(name)); }

    CtlRun ctl(const QString &arguments, const QStringList &more = {})
    {
        return ::ctl(QStringLiteral("-d serial:") + link() + QLatin1Char(' ') + arguments, more);
    }

    /// The line of its printed state that begins with `key`, without the line's end.
    QByteArray state(const QByteArray &key)
    {
        simulator.type("state");
        const QByteArray lines = simulator.linesUpTo("Hotkey trigger");
        const qsizetype at = lines.lastIndexOf('\n' + key);
        const QByteArray from = at >= 0 ? lines.mid(at + 1) : lines;
        return from.startsWith(key) ? from.left(from.indexOf('\n')) : QByteArray();
    }

    QTemporaryDir folder;
    SimulatorProcess simulator;
};
