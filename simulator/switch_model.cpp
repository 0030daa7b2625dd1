#include "simulator/switch_model.h"

#include "simulator/switch_answers.h"

#include <algorithm>
#include <utility>

namespace {

const std::string duringRestart = "the switch is restarting";

/// A NUL, bytes that are no UTF-8, an escape sequence.
const std::string junk("\x00\xff\xfe\x80#?\x1b[31m~\n", 13);

/// How many columns of the grid the displays span.
int horizontalDimension(const std::array<int, 4> &layout)
{
    const auto column = [](int cell) { return (cell - 1) % 4; };
    const auto [first, last] =
        std::minmax_element(layout.begin(), layout.end(),
                            [&](int left, int right) { return column(left) < column(right); });
    return column(*last) - column(*first) + 1;
}

std::string withCarriageReturns(const std::string &text)
{
    std::string result;
    result.reserve(text.size() + text.size() / 16);
    for (const char character : text) {
        if (character == '\n')
            result += '\r';
        result += character;
    }
    return result;
}

} // namespace

QByteArray joined(const std::vector<Piece> &pieces)
{
    QByteArray all;
    for (const Piece &piece : pieces)
        all += piece.bytes;
    return all;
}

std::vector<Piece> SwitchModel::receive(const QByteArray &bytes, int line)
{
    Line &input = lines_[line];
    std::string answers;
    for (const char byte : bytes) {
        if (byte != '\r') {
            if (input.collected.size() < longestCommand)
                input.collected += byte;
            else
                input.overflowing = true;
            continue;
        }
        const Line whole = std::exchange(input, Line{});
        if (restarting_)
            reject(whole.collected, duringRestart);
        else if (whole.overflowing)
            reject(whole.collected, "command too long");
        else
            answers += handle(whole.collected);
    }
    return say(answers);
}

std::vector<Piece> SwitchModel::press(int channel)
{
    if (channel < 1 || channel > 4) {
        reject("press " + std::to_string(channel), "the front panel has buttons 1 to 4");
        return {};
    }
    if (restarting_) {
        reject("press " + std::to_string(channel), duringRestart);
        return {};
    }
    SwitchState pressed = state_;
    pressed.kmControl = channel;
    pressed.usbControl = channel;
    setState(pressed);
    return say("**M" + std::to_string(channel) + "\n");
}

std::vector<Piece> SwitchModel::pressNext()
{
    return press(state_.kmControl < state_.activePorts ? state_.kmControl + 1 : 1);
}

std::vector<Piece> SwitchModel::flood(int bytes)
{
    if (restarting_) {
        reject("flood " + std::to_string(bytes), duringRestart);
        return {};
    }
    return say(fillerText(bytes));
}

void SwitchModel::finishRestart()
{
    if (!restarting_)
        return;
    loseUnfinished();
    restarting_ = false;
    tell(SwitchEvent::Kind::Restarted);
}

void SwitchModel::loseUnfinished()
{
    for (auto &[number, line] : lines_) {
        const Line lost = std::exchange(line, Line{});
        if (!lost.collected.empty())
            reject(lost.collected, duringRestart);
    }
}

void SwitchModel::setState(const SwitchState &state)
{
    if (state == state_)
        return;
    state_ = state;
    tell(SwitchEvent::Kind::StateChanged);
}

std::string SwitchModel::handle(const std::string &text)
{
    const auto decoded = decodeCommand(text);
    if (const auto *rejection = std::get_if<Rejection>(&decoded)) {
        reject(text, rejection->reason);
        return {};
    }
    const auto &command = std::get<SwitchCommand>(decoded);
    LayoutOutcome arranged{};
    if (command.kind == SwitchCommand::Kind::Layout) {
        arranged = carriedOut(command.layout, state_.layout);
        if (arranged.placed == 0) {
            reject(text, arranged.remark);
            return {};
        }
    }
    ++obeyedCount_;
    tell(SwitchEvent::Kind::Obeyed, text);
    if (!arranged.remark.empty())
        tell(SwitchEvent::Kind::TakenInPart, text, arranged.remark);
    const std::string answer = obey(command);
    tell(SwitchEvent::Kind::Said, answer);
    const bool resets = command.kind == SwitchCommand::Kind::SoftReset ||
                        command.kind == SwitchCommand::Kind::FactoryReset;
    if (resets && restartsAfterReset_) {
        restarting_ = true;
        loseUnfinished();
    }
    return faults_.garbage ? junk + answer : answer;
}

std::string SwitchModel::obey(const SwitchCommand &command)
{
    using Kind = SwitchCommand::Kind;
    SwitchState next = state_;
    std::string answer;
    const std::string number = std::to_string(command.number);
    const auto index = static_cast<std::size_t>(command.number - 1);
    switch (command.kind) {
    case Kind::ReportConfiguration:
        answer = configurationAnswer(state_, faults_);
        faults_.badPortLimitReads = std::max(0, faults_.badPortLimitReads - 1);
        return answer;
    case Kind::ReportStatus:
        return statusAnswer(state_, faults_);
    case Kind::ReportLayout:
        answer = layoutAnswer(state_, faults_) + fillerText(faults_.floodBytes);
        faults_.floodBytes = 0;
        return answer;
    case Kind::AbsoluteMouse:
    case Kind::RelativeMouse:
        next.relativeMouse = command.kind == Kind::RelativeMouse;
        answer = next.relativeMouse ? "Mouse mode relative" : "Mouse mode absolute";
        break;
    case Kind::CursorRollingOff:
    case Kind::CursorRollingOn:
        next.cursorRolling = command.kind == Kind::CursorRollingOn;
        answer = next.cursorRolling ? "Cursor rolling on" : "Cursor rolling off";
        break;
    case Kind::KmControl:
        next.kmControl = command.number;
        answer = "**C" + number;
        break;
    case Kind::UsbControl:
        next.usbControl = command.number;
        answer = "**U" + number;
        break;
    case Kind::PortLimit:
        next.activePorts = command.number;
        answer = "Active ports " + number;
        break;
    case Kind::SoftReset:
        ++softResetCount_;
        answer = "Soft reset";
        break;
    case Kind::FactoryReset:
        next = SwitchState{};
        answer = "Factory settings restored";
        break;
    case Kind::BuzzerOn:
    case Kind::BuzzerOff:
        next.buzzer = command.kind == Kind::BuzzerOn;
        answer = next.buzzer ? "Beep on" : "Beep off";
        break;
    case Kind::Resolution:
        next.resolutions.at(index) = command.value;
        answer = "**CE " + number + " " + std::to_string(command.value);
        break;
    case Kind::Layout:
        next.layout = carriedOut(command.layout, state_.layout).layout;
        answer =
            "Saving horizontal dimension as " + std::to_string(horizontalDimension(next.layout));
        break;
    case Kind::Custom:
        next.custom.at(index) = command.custom;
        answer = "Custom setting " + number + " saved";
        break;
    }
    setState(next);
    return answer + "\n";
}

void SwitchModel::reject(const std::string &text, const std::string &reason)
{
    ++rejectedCount_;
    lastRejection_ = reason;
    tell(SwitchEvent::Kind::Rejected, text, reason);
}

void SwitchModel::tell(SwitchEvent::Kind kind, const std::string &text, const std::string &reason)
{
    if (onEvent)
        onEvent(SwitchEvent{kind, text, reason});
}

std::vector<Piece> SwitchModel::say(const std::string &text)
{
    if (text.empty() || faults_.silent)
        return {};
    const QByteArray bytes =
        QByteArray::fromStdString(faults_.crlf ? withCarriageReturns(text) : text);
    const bool inChunks = faults_.chunkBytes > 0;
    const int chunk = inChunks ? faults_.chunkBytes : static_cast<int>(bytes.size());
    std::vector<Piece> pieces;
    for (int at = 0; at < bytes.size(); at += chunk)
        pieces.push_back(
            {at == 0 ? faults_.delay : faults_.chunkGap, bytes.mid(at, chunk), inChunks});
    return pieces;
}
