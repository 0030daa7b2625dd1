#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <memory>

/// Turns SIGINT, SIGTERM and SIGHUP into an ordinary signal of the event loop, so that the program
/// ends in order. One per process. Does nothing where there are no such signals.
class QuitSignals : public QObject
{
    Q_OBJECT

public:
    explicit QuitSignals(QObject *parent = nullptr);

Q_SIGNALS:
    void raised();

private:
    std::unique_ptr<QSocketNotifier> notifier_;
};
