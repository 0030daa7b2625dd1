#pragma once

#include <QObject>

/// Ctrl+C and the wish to end: the first is told from the event loop, the second ends the program
/// at once. One of these lives at a time.
class Interrupts : public QObject
{
    Q_OBJECT

public:
    explicit Interrupts(QObject *parent = nullptr);
    ~Interrupts() override;

Q_SIGNALS:
    void interrupted();
};

#ifndef Q_OS_WIN
/// Waits, without the event loop, until standard input has something or is at its end. False where
/// an interrupt comes first, or has come before and the event loop has not told it yet.
bool waitForInput();
#endif
