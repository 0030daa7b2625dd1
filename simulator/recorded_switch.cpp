#include "simulator/recorded_switch.h"

#include <algorithm>

namespace {

/// Takes the commands that `text` completes out of it.
std::vector<QByteArray> takeCommands(QByteArray &text)
{
    std::vector<QByteArray> commands;
    for (qsizetype end = text.indexOf('\r'); end >= 0; end = text.indexOf('\r')) {
        commands.push_back(text.left(end));
        text.remove(0, end + 1);
    }
    return commands;
}

} // namespace

RecordedSwitch::RecordedSwitch(const Recording &recording, double speed)
{
    QByteArray text;
    std::chrono::milliseconds before{0};
    for (const RecordedPiece &piece : recording.pieces) {
        const auto wait = std::max(piece.time - before, std::chrono::milliseconds(0));
        before = piece.time;
        if (piece.sent) {
            text += piece.bytes;
            for (const QByteArray &command : takeCommands(text))
                exchanges_.push_back({command, {}});
        } else if (!exchanges_.empty()) {
            const auto scaled =
                speed > 0 ? std::chrono::duration_cast<std::chrono::milliseconds>(wait / speed)
                          : std::chrono::milliseconds(0);
            exchanges_.back().answer.push_back({scaled, piece.bytes, true});
        }
    }
}

std::vector<Piece> RecordedSwitch::receive(const QByteArray &bytes)
{
    constexpr qsizetype longestCommand = 65536;
    unfinished_ += bytes;
    std::vector<Piece> answers;
    for (const QByteArray &command : takeCommands(unfinished_)) {
        const Exchange *const exchange = next(command);
        if (exchange != nullptr)
            answers.insert(answers.end(), exchange->answer.begin(), exchange->answer.end());
        if (onCommand)
            onCommand(command,
                      exchange == nullptr ? -1 : static_cast<int>(exchange->answer.size()));
    }
    if (unfinished_.size() > longestCommand)
        unfinished_.clear();
    return answers;
}

const RecordedSwitch::Exchange *RecordedSwitch::next(const QByteArray &command)
{
    for (std::size_t i = 0; i < exchanges_.size(); ++i) {
        const std::size_t index = (cursor_ + i) % exchanges_.size();
        if (exchanges_[index].command != command)
            continue;
        cursor_ = index + 1;
        return &exchanges_[index];
    }
    return nullptr;
}
