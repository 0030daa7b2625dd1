#pragma once

#include <QByteArray>
#include <QtGlobal>

/// What a walk did, in numbers.
struct Figures
{
    int steps = 0;
    int leftOut = 0; ///< of them, what the user could not do, with no switch at hand or so
    int checks = 0;
    int commands = 0;
    int faults = 0;
    int dialogs = 0;
    int connections = 0;    ///< times the indicator turned green
    int ends = 0;           ///< programs that ended as they should, before their window was closed
    qint64 longestGap = 0;  ///< ms that the event loop did not turn, waits for modules included
    qint64 firstMemory = 0; ///< KiB resident after the first legs
    qint64 mostMemory = 0;
    qint64 lastMemory = 0;
    int firstFiles = 0; ///< open files after the first legs
    int mostFiles = 0;
    int lastFiles = 0;

    /// On one line, and back.
    QByteArray text() const;
    static Figures from(const QByteArray &text);
    /// What `next` did comes on top of this.
    void add(const Figures &next);
    void print() const;
};
