#pragma once

#include <QByteArray>
#include <vector>

/// Packs the switch's answers into datagrams as the module does: what comes without a pause goes
/// together, but never more than `limit` bytes. The pause is the caller's to notice.
class AnswerPacker
{
public:
    /// The most that one datagram carries.
    static constexpr qsizetype largestDatagram = 1400;

    /// Takes bytes from the switch; returns the datagrams that are full.
    std::vector<QByteArray> add(const QByteArray &bytes, qsizetype limit = largestDatagram);
    /// The switch has paused: the rest in datagrams of at most `limit` bytes, or none.
    std::vector<QByteArray> flush(qsizetype limit = largestDatagram);

private:
    QByteArray collected_;
};
