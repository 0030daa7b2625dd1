#include "simulator/reply_pacer.h"

#include <algorithm>

using namespace std::chrono_literals;

namespace {

/// How often a line at work lets bytes go.
constexpr std::chrono::nanoseconds slice = 4ms;

} // namespace

ReplyPacer::ReplyPacer(int bytesPerSecond, QObject *parent)
    : QObject(parent), bytesPerSecond_(bytesPerSecond)
{
    clock_.start();
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, &ReplyPacer::advance);
}

void ReplyPacer::enqueue(const std::vector<Piece> &pieces)
{
    const bool wasIdle = queue_.empty();
    queue_.insert(queue_.end(), pieces.begin(), pieces.end());
    for (const Piece &piece : pieces)
        waiting_ += piece.bytes.size();
    if (!wasIdle || queue_.empty())
        return;
    begin(now());
    advance();
}

void ReplyPacer::clear()
{
    timer_.stop();
    queue_.clear();
    waiting_ = 0;
}

void ReplyPacer::begin(std::chrono::nanoseconds lineFree)
{
    gone_ = 0;
    // Woken up late, the line has worked on meanwhile; but a wait must be seen in full.
    const auto wait = queue_.front().wait;
    begins_ = wait.count() > 0 ? now() + wait : lineFree;
}

void ReplyPacer::advance()
{
    while (!queue_.empty()) {
        const Piece &piece = queue_.front();
        const auto onTheLine = now() - begins_;
        if (onTheLine.count() < 0) {
            wakeUpIn(-onTheLine);
            return;
        }
        const auto needed = timeFor(piece.bytes.size());
        QByteArray bytes;
        if (onTheLine < needed) {
            const qsizetype carried = piece.whole ? gone_ : carriedIn(onTheLine);
            bytes = piece.bytes.mid(gone_, carried - gone_);
            gone_ = carried;
            wakeUpIn(piece.whole ? needed - onTheLine : std::min(slice, needed - onTheLine));
        } else {
            bytes = piece.bytes.mid(gone_);
            queue_.pop_front();
            if (!queue_.empty())
                begin(begins_ + needed);
        }
        waiting_ -= bytes.size();
        if (!bytes.isEmpty())
            Q_EMIT due(bytes);
        if (timer_.isActive())
            return;
    }
}

void ReplyPacer::wakeUpIn(std::chrono::nanoseconds time)
{
    timer_.start(std::chrono::ceil<std::chrono::milliseconds>(time));
}

std::chrono::nanoseconds ReplyPacer::timeFor(qsizetype bytes) const
{
    if (bytesPerSecond_ == unpaced)
        return 0ns;
    const std::chrono::nanoseconds second = 1s;
    return (bytes * second + std::chrono::nanoseconds(bytesPerSecond_ - 1)) / bytesPerSecond_;
}

qsizetype ReplyPacer::carriedIn(std::chrono::nanoseconds time) const
{
    const std::chrono::nanoseconds second = 1s;
    return static_cast<qsizetype>(time.count() * bytesPerSecond_ / second.count());
}
