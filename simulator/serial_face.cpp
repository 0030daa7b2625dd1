#include "simulator/serial_face.h"

SerialFace::SerialFace(SimulatedSwitch &theSwitch, int bytesPerSecond)
    : switch_(theSwitch), pacer_(bytesPerSecond)
{
    connect(&pacer_, &ReplyPacer::due, this, [this](const QByteArray &bytes) { put(bytes); });
    connect(&switch_, &SimulatedSwitch::announced, this, [this](const std::vector<Piece> &pieces) {
        // With nobody reading, unasked lines would pile up for whoever opens the port next.
        if (isPlugged() && backlog() == 0)
            enqueue(pieces);
    });
}

void SerialFace::hear(const QByteArray &bytes)
{
    enqueue(switch_.receive(bytes, line));
}

void SerialFace::enqueue(const std::vector<Piece> &pieces)
{
    qsizetype waiting = pacer_.waiting();
    for (const Piece &piece : pieces)
        waiting += piece.bytes.size();
    const bool fits = waiting <= longestQueue;
    if (fits)
        pacer_.enqueue(pieces);
    else if (!overflowNoted_)
        Q_EMIT noted(QStringLiteral("the line cannot follow, so text is being dropped"));
    overflowNoted_ = !fits;
}
