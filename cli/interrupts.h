#pragma once

#include <QObject>

/// Ctrl+C and the wish to end: the first is told, the second ends the program at once. One of these
/// lives at a time.
class Interrupts : public QObject
{
    Q_OBJECT

public:
    explicit Interrupts(QObject *parent = nullptr);
    ~Interrupts() override;

Q_SIGNALS:
    void interrupted();
};
