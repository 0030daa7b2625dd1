#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <QTimer>

/// Lines from standard input, without blocking the event loop. Unix only.
class StdinLines : public QObject
{
    Q_OBJECT

public:
    explicit StdinLines(QObject *parent = nullptr);

    /// Whether somebody can type: standard input is a terminal.
    static bool isInteractive();

Q_SIGNALS:
    void entered(const QString &line);
    /// Standard input has ended; the last line has been delivered.
    void closed();

private:
    void readSome();

    QSocketNotifier notifier_;
    QTimer backgroundPause_;
    QByteArray collected_;
};
