#pragma once

#include "simulator/switch_model.h"

#include <QObject>
#include <QTimer>
#include <deque>
#include <vector>

/// Lets pieces go when they are due, one after the other.
class ReplyPacer : public QObject
{
    Q_OBJECT

public:
    explicit ReplyPacer(QObject *parent = nullptr);

    /// Queues `pieces` behind those that still wait. Pieces without a wait go at once.
    void enqueue(const std::vector<Piece> &pieces);
    /// Forgets what has not gone yet.
    void clear();

Q_SIGNALS:
    void due(const QByteArray &bytes);

private:
    void deliver();
    void deliverDue();

    std::deque<Piece> queue_;
    QTimer timer_;
};
