#pragma once

#include "support/canned_reply.h"
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
        connect(&notifier_, &QSocketNotifier::activated, this, [this] { listen(); });
    }

    static QHash<QByteArray, QByteArray> cannedAnswers()
    {
        return {{"//rl", cannedListing}, {"//??", cannedStatus}, {"//BP", cannedLayout}};
    }

    /// What the switch says to each command.
    QHash<QByteArray, QByteArray> answers = cannedAnswers();

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
