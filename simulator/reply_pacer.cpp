#include "simulator/reply_pacer.h"

ReplyPacer::ReplyPacer(QObject *parent) : QObject(parent)
{
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, [this] {
        deliver();
        deliverDue();
    });
}

void ReplyPacer::enqueue(const std::vector<Piece> &pieces)
{
    queue_.insert(queue_.end(), pieces.begin(), pieces.end());
    if (!timer_.isActive())
        deliverDue();
}

void ReplyPacer::clear()
{
    timer_.stop();
    queue_.clear();
}

void ReplyPacer::deliver()
{
    const Piece piece = queue_.front();
    queue_.pop_front();
    Q_EMIT due(piece.bytes);
}

void ReplyPacer::deliverDue()
{
    while (!queue_.empty() && queue_.front().wait.count() == 0)
        deliver();
    if (!queue_.empty())
        timer_.start(queue_.front().wait);
}
