#pragma once

#include "simulator/recording.h"
#include "simulator/switch_model.h"

#include <QByteArray>
#include <functional>
#include <vector>

/// A switch that says what a recorded one has said: bytes in, bytes out, no sockets, no clock.
///
/// Each command is looked for in the recording from where the conversation stands, and from the
/// start where it does not come again; its answer is what the switch said before the next thing
/// that was sent. What it said before anything was sent is nobody's answer.
class RecordedSwitch
{
public:
    /// `speed` divides the recorded waits: 2 is twice as fast; 0 leaves them out.
    RecordedSwitch(const Recording &recording, double speed);

    /// Takes bytes as they arrive and answers the commands that they complete: the pieces as they
    /// were cut, each with its wait after what was before it.
    std::vector<Piece> receive(const QByteArray &bytes);

    /// Told of every command, without its carriage return: how many pieces its answer has, -1 when
    /// it was never recorded.
    std::function<void(const QByteArray &command, int pieces)> onCommand;

private:
    struct Exchange
    {
        QByteArray command; ///< without its carriage return
        std::vector<Piece> answer;
    };

    const Exchange *next(const QByteArray &command);

    std::vector<Exchange> exchanges_;
    std::size_t cursor_ = 0;
    QByteArray unfinished_;
};
