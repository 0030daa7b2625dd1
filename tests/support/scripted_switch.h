#pragma once

#include "support/pty_pair.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QSocketNotifier>

/// A switch with canned answers at the other end of a PtyPair. Notes every command it gets, without
/// the carriage return; says what `answers` has for it. Holds no state and knows no rules.
class ScriptedSwitch : public QObject
{
public:
    explicit ScriptedSwitch(PtyPair &cable)
        : cable_(cable), notifier_(cable.masterDescriptor(), QSocketNotifier::Read)
    {
        answers["//rl"] = "//RL\n"
                          "KM Port Limit: 4\n"
                          "KM Cursor Rolling: Enabled\n"
                          "KM tracking mode: Relative Mouse Mode\n"
                          "C1\t100 250 OFFICE\n"
                          "C2\t120 080 DESK\n"
                          "C3\t010 010 SLOW\n"
                          "C4\t500 500 FAST\n"
                          "Channels resolution: 1 2 3 10\n"
                          "Buzzer: on\n";
        answers["//??"] = "Current Hotkey Trigger: Scroll Lock\n"
                          "Current KM Control: 2\n"
                          "Current USB Control 3\n";
        answers["//BP"] = "//FF01B05FF02B06FF03B07FF04B08\n";
        connect(&notifier_, &QSocketNotifier::activated, this, [this] { listen(); });
    }

    /// What the switch says to each command.
    QHash<QByteArray, QByteArray> answers;

    /// All commands so far, oldest first.
    const QList<QByteArray> &commands() const { return commands_; }
    void forget() { commands_.clear(); }

    void say(const QByteArray &text) { cable_.write(text); }
    /// Stops listening; before the cable is pulled.
    void leave() { notifier_.setEnabled(false); }

private:
    void listen()
    {
        pending_ += cable_.read();
        for (qsizetype end = 0; (end = pending_.indexOf('\r')) >= 0;) {
            const QByteArray command = pending_.left(end);
            pending_.remove(0, end + 1);
            commands_.append(command);
            if (answers.contains(command))
                say(answers.value(command));
        }
    }

    PtyPair &cable_;
    QSocketNotifier notifier_;
    QByteArray pending_;
    QList<QByteArray> commands_;
};
