#pragma once

#include "simulator/switch_command.h"
#include "simulator/switch_faults.h"
#include "simulator/switch_state.h"

#include <QByteArray>
#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <vector>

/// Something that the switch says: `bytes`, `wait` after the piece before it (or after now).
struct Piece
{
    std::chrono::milliseconds wait{0};
    QByteArray bytes;
    /// Arrives in one go, once the line has carried all of it; other pieces arrive as they are
    /// carried.
    bool whole = false;
};

/// All bytes of `pieces` in order, their waits forgotten.
QByteArray joined(const std::vector<Piece> &pieces);

/// What happened inside the switch, for logs and tests.
struct SwitchEvent
{
    enum class Kind { Obeyed, Rejected, Said, StateChanged, TakenInPart, Restarted };

    Kind kind;
    /// The command (Obeyed, Rejected, TakenInPart) or the answer before faults (Said).
    std::string text;
    /// Rejected: why; TakenInPart, which follows Obeyed: what was taken and what was not.
    std::string reason;
};

/// The simulated switch: bytes in, bytes out, no sockets, no clock. It collects bytes up to a
/// carriage return, obeys the command, and answers in text lines.
///
/// Example: 2F 2F 63 33 0D ("//c3" CR, to the switch) sets the KM control and gives back
/// 2A 2A 43 33 0A ("**C3" LF, from the switch). What cannot be understood changes nothing, is
/// counted and reported, and is not answered.
class SwitchModel
{
public:
    /// Takes bytes from one of the lines that lead to the switch (each collects its own command)
    /// and returns what the switch says to that line in consequence, in order.
    std::vector<Piece> receive(const QByteArray &bytes, int line = 0);

    /// Somebody presses the front panel's button `channel` (1 to 4): both controls move there and
    /// the switch says "**M<channel>" to everybody. Another number is rejected.
    std::vector<Piece> press(int channel);
    /// A press of the next active port, as SwitchFaults::unsolicitedEvery asks for.
    std::vector<Piece> pressNext();

    /// `bytes` bytes of text out of the blue.
    std::vector<Piece> flood(int bytes);

    /// Whether "//R" and "//F" make the switch restart. A fresh model has no clock to end a restart
    /// with and hears on.
    void setRestartsAfterReset(bool restarts) { restartsAfterReset_ = restarts; }
    /// Between a reset and finishRestart() the switch hears and says nothing. What arrives then,
    /// what stands behind the reset and what has arrived of an unfinished command are lost, each
    /// of it reported as rejected; so are presses and floods.
    bool isRestarting() const { return restarting_; }
    void finishRestart();

    const SwitchState &state() const { return state_; }
    void setState(const SwitchState &state);
    /// As the front panel's reset: factory settings, without a word.
    void resetState() { setState(SwitchState{}); }
    std::string stateText() const { return ::stateText(state_); }

    const SwitchFaults &faults() const { return faults_; }
    void setFaults(const SwitchFaults &faults) { faults_ = faults; }

    int obeyedCount() const { return obeyedCount_; }
    int rejectedCount() const { return rejectedCount_; }
    int softResetCount() const { return softResetCount_; }
    /// Why the last rejected command was; empty before the first.
    const std::string &lastRejection() const { return lastRejection_; }

    /// Told of every event as it happens; may be empty.
    std::function<void(const SwitchEvent &)> onEvent;

    /// Longer commands are thrown away up to their carriage return and count as rejected.
    static constexpr std::size_t longestCommand = 256;

private:
    std::string handle(const std::string &text);
    std::string obey(const SwitchCommand &command);
    void loseUnfinished();
    void reject(const std::string &text, const std::string &reason);
    void tell(SwitchEvent::Kind kind, const std::string &text = {}, const std::string &reason = {});
    std::vector<Piece> say(const std::string &text);

    struct Line
    {
        std::string collected;
        bool overflowing = false;
    };

    SwitchState state_;
    SwitchFaults faults_;
    std::map<int, Line> lines_;
    int obeyedCount_ = 0;
    int rejectedCount_ = 0;
    int softResetCount_ = 0;
    std::string lastRejection_;
    bool restartsAfterReset_ = false;
    bool restarting_ = false;
};
