#pragma once

#include "simulator/switch_model.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <chrono>
#include <deque>
#include <vector>

/// Lets pieces go when they are due, one after the other, no faster than a line carries them. It
/// sleeps in between: on a busy line it wakes up every few milliseconds and lets go what the line
/// has carried by then.
class ReplyPacer : public QObject
{
    Q_OBJECT

public:
    /// Pieces take no time.
    static constexpr int unpaced = 0;

    /// `bytesPerSecond`: what the line carries, or `unpaced`.
    explicit ReplyPacer(int bytesPerSecond, QObject *parent = nullptr);

    /// Queues `pieces` behind those that still wait. A piece's wait is silence on the line: it
    /// begins when the piece before has gone. Without a wait, and unpaced, pieces go at once.
    void enqueue(const std::vector<Piece> &pieces);
    /// Forgets what has not gone yet.
    void clear();
    /// How many bytes have not gone yet.
    qsizetype waiting() const { return waiting_; }

Q_SIGNALS:
    void due(const QByteArray &bytes);

private:
    void begin(std::chrono::nanoseconds lineFree);
    void advance();
    void wakeUpIn(std::chrono::nanoseconds time);
    std::chrono::nanoseconds now() const { return std::chrono::nanoseconds(clock_.nsecsElapsed()); }
    /// How long the line takes for `bytes`, and how many it carries in `time`.
    std::chrono::nanoseconds timeFor(qsizetype bytes) const;
    qsizetype carriedIn(std::chrono::nanoseconds time) const;

    int bytesPerSecond_;
    std::deque<Piece> queue_;
    qsizetype waiting_ = 0;
    std::chrono::nanoseconds begins_{0}; ///< when the first piece's first byte is on the line
    qsizetype gone_ = 0;                 ///< how much of the first piece has been let go
    QElapsedTimer clock_;
    QTimer timer_;
};
