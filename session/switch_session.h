#pragma once

#include "device/configuration_commands.h"
#include "device/configuration_reply.h"
#include "session/switch_link.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

/// Why a session could not do what it was asked for.
struct SessionError
{
    enum class Kind {
        CannotOpen,   ///< the road could not be opened
        Broken,       ///< the open road is gone
        NoAnswer,     ///< nothing has come that belongs to an answer
        NotUnderstood ///< something has come, and it is no answer
    };

    Kind kind = Kind::NoAnswer;
    QString message; ///< a clause for people; it holds nothing that the switch has said
};

/// A conversation with one switch, for programs without a window: open, ask, send, one at a time.
///
/// Everything happens in the caller's event loop; nothing blocks and no thread is made, so hundreds
/// of sessions live side by side. Each operation ends with exactly one of its signals, which may
/// come from within the call; a road that breaks is told by failed() at any time. In a slot of its
/// own a session is deleted by deleteLater() only.
class SwitchSession : public QObject
{
    Q_OBJECT

public:
    struct Timing
    {
        std::chrono::milliseconds firstByte{3000}; ///< longest wait until an answer begins
        std::chrono::milliseconds rest{3000};      ///< longest wait, once begun, for the rest of it
        std::chrono::milliseconds silence{1000};   ///< so long after its last byte it is at its end
        int retries = 2;                           ///< further attempts after the first
        std::chrono::milliseconds betweenHalves{2000};
        std::chrono::milliseconds afterCustomSetting{800}; ///< from "//MM" to the next question
    };

    explicit SwitchSession(std::unique_ptr<SwitchLink> link, QObject *parent = nullptr);
    SwitchSession(std::unique_ptr<SwitchLink> link, Timing timing, QObject *parent = nullptr);
    ~SwitchSession() override;

    /// Opens the road. opened() or failed() follows; only once.
    void open();
    bool isOpen() const;
    /// Ends whatever is under way and closes the road; no signal comes afterwards.
    void close();

    /// Whether an operation is under way; another one is not begun then.
    bool isBusy() const { return state_ != State::Idle; }

    /// Asks the three questions. The answer is complete when every key's line has come; where some
    /// stay away, when the switch has been silent or the time is up. It is asked again, as often as
    /// `retries` says, while there is no answer or one of `needed` is not told; answered() follows
    /// with what the last attempt gave, or failed().
    ///
    /// What the switch says on its own, noise and pieces of an earlier answer begin no answer. An
    /// answer that came too late for its question is awaited before the next one is asked, so that
    /// it is not taken for the new one; that takes at most `firstByte` and `silence`.
    void ask(const std::vector<SettingKey> &needed = allSettingKeys());

    /// Sends `commands` one behind the other, with a rest between the halves where both have some.
    /// commandSent() follows for each and sent() at the end, or failed(). Nothing is awaited: what
    /// the switch took is told by the next answer.
    void send(const std::vector<SettingCommand> &commands);

    /// Sends `command` now, whatever is under way: a reset, or a question whose answer the caller
    /// reads from received().
    void write(const std::string &command);

Q_SIGNALS:
    void opened();
    void answered(const ConfigurationReading &reading);
    void commandSent(const SettingCommand &command);
    void sent();
    void failed(const SessionError &error);

    /// Everything that passes, for a record: each written frame with its carriage return, each
    /// piece or datagram that arrives.
    void written(const QByteArray &frame);
    void received(const QByteArray &bytes);

private:
    enum class State { Idle, Opening, Settling, Pausing, Asking, Sending };

    bool isStillOpen();
    void onOpened();
    void onReceived(const QByteArray &bytes);
    void onTimeUp();
    void settleOrAttempt();
    void attempt();
    void watchAnswer();
    bool takeWholeAnswer();
    void endAttempt();
    bool suffices(const ConfigurationReading &reading) const;
    void sendNext();
    void wait(State state, std::chrono::milliseconds time);
    void fail(SessionError::Kind kind, const QString &message);

    std::unique_ptr<SwitchLink> link_;
    Timing timing_;
    State state_ = State::Idle;
    QTimer clock_;   ///< what the state waits for at the longest
    QTimer silence_; ///< since the answer's last byte

    std::vector<SettingKey> needed_;
    std::string text_; ///< since the last question, as far as it can be an answer
    bool hasBegun_ = false;
    int attemptsLeft_ = 0;
    int unanswered_ = 0; ///< questions whose whole answer has not come and may still do so

    std::vector<SettingCommand> commands_; ///< to be sent
    std::size_t nextCommand_ = 0;
    QElapsedTimer sinceCustomSetting_;
};
