#include "simulator/serial_face.h"

SerialFace::SerialFace(SimulatedSwitch &theSwitch) : switch_(theSwitch)
{
    connect(&pacer_, &ReplyPacer::due, this, [this](const QByteArray &bytes) { put(bytes); });
    connect(&switch_, &SimulatedSwitch::announced, this, [this](const std::vector<Piece> &pieces) {
        // With nobody reading, unasked lines would pile up for whoever opens the port next.
        if (isPlugged() && backlog() == 0)
            pacer_.enqueue(pieces);
    });
}

void SerialFace::hear(const QByteArray &bytes)
{
    pacer_.enqueue(switch_.receive(bytes, line));
}
