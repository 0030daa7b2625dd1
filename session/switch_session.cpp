#include "session/switch_session.h"

#include "device/command_frame.h"
#include "device/read_back_commands.h"

#include <algorithm>
#include <utility>

namespace {
/// Bytes of an answer that are kept; a whole one has less than a thousand. A peer that floods does
/// not fill the memory.
constexpr std::size_t mostText = 65536;
} // namespace

SwitchSession::SwitchSession(std::unique_ptr<SwitchLink> link, QObject *parent)
    : SwitchSession(std::move(link), Timing(), parent)
{
}

SwitchSession::SwitchSession(std::unique_ptr<SwitchLink> link, Timing timing, QObject *parent)
    : QObject(parent), link_(std::move(link)), timing_(timing)
{
    for (QTimer *timer : {&clock_, &silence_}) {
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer); // never early: the switch needs the time
    }
    connect(&clock_, &QTimer::timeout, this, &SwitchSession::onTimeUp);
    connect(&silence_, &QTimer::timeout, this, &SwitchSession::endAttempt);
    connect(link_.get(), &SwitchLink::opened, this, &SwitchSession::onOpened);
    connect(link_.get(), &SwitchLink::written, this, &SwitchSession::written);
    connect(link_.get(), &SwitchLink::received, this, &SwitchSession::onReceived);
    connect(link_.get(), &SwitchLink::failed, this,
            [this](const QString &reason) { fail(SessionError::Kind::CannotOpen, reason); });
    connect(link_.get(), &SwitchLink::broken, this, [this](const QString &reason) {
        fail(SessionError::Kind::Broken, QStringLiteral("the connection was lost: ") + reason);
    });
}

SwitchSession::~SwitchSession()
{
    close();
}

void SwitchSession::open()
{
    state_ = State::Opening;
    link_->open();
}

bool SwitchSession::isOpen() const
{
    return link_->isOpen();
}

void SwitchSession::close()
{
    state_ = State::Idle;
    clock_.stop();
    silence_.stop();
    link_->disconnect(this);
    link_->close();
}

void SwitchSession::ask(const std::vector<SettingKey> &needed)
{
    if (isBusy() || !isStillOpen())
        return;
    needed_ = needed;
    attemptsLeft_ = timing_.retries;
    settleOrAttempt();
}

void SwitchSession::send(const std::vector<SettingCommand> &commands)
{
    if (isBusy() || !isStillOpen())
        return;
    commands_ = commands;
    nextCommand_ = 0;
    state_ = State::Sending;
    sendNext();
}

bool SwitchSession::isStillOpen()
{
    if (!isOpen())
        fail(SessionError::Kind::Broken, QStringLiteral("the connection is not open"));
    return isOpen();
}

void SwitchSession::write(const std::string &command)
{
    std::string text = command;
    link_->write(frameCommand(text));
}

void SwitchSession::onOpened()
{
    if (state_ != State::Opening)
        return;
    state_ = State::Idle;
    Q_EMIT opened();
}

void SwitchSession::onReceived(const QByteArray &bytes)
{
    Q_EMIT received(bytes);
    const bool mayAnswer = unanswered_ > 0;
    if (mayAnswer) {
        text_.append(bytes.constData(), static_cast<std::size_t>(bytes.size()));
        if (text_.size() > mostText)
            text_.erase(0, text_.size() - mostText / 2);
    }
    // An answer is whole at the end of a line, which spares looking at each byte of one.
    const bool endsLine = mayAnswer && bytes.contains('\n');
    if (state_ == State::Asking) {
        watchAnswer();
        if (endsLine && isWholeAnswer(text_))
            endAttempt();
    } else if (endsLine && takeWholeAnswer() && state_ == State::Settling) {
        settleOrAttempt();
    }
}

void SwitchSession::onTimeUp()
{
    if (state_ == State::Settling) {
        unanswered_ = 0;
        settleOrAttempt();
    } else if (state_ == State::Pausing) {
        attempt();
    } else if (state_ == State::Asking) {
        endAttempt();
    } else if (state_ == State::Sending) {
        sendNext();
    }
}

/// Waits for answers that are late and for the switch to store a custom setting; then asks.
void SwitchSession::settleOrAttempt()
{
    if (unanswered_ > 0) {
        wait(State::Settling, timing_.firstByte + timing_.silence);
        return;
    }
    const std::chrono::milliseconds passed(sinceCustomSetting_.isValid()
                                               ? sinceCustomSetting_.elapsed()
                                               : timing_.afterCustomSetting.count());
    if (passed < timing_.afterCustomSetting)
        wait(State::Pausing, timing_.afterCustomSetting - passed);
    else
        attempt();
}

void SwitchSession::attempt()
{
    text_.clear();
    hasBegun_ = false;
    ++unanswered_;
    wait(State::Asking, timing_.firstByte);
    for (const char *question : {readConfigurationCommand, readStatusCommand, readLayoutCommand}) {
        if (state_ == State::Asking) // a broken road ends it
            write(question);
    }
}

/// More of an answer has come, or its first piece.
void SwitchSession::watchAnswer()
{
    if (!hasBegun_ && holdsPartOfAnswer(text_)) {
        hasBegun_ = true;
        clock_.start(timing_.rest);
    }
    if (hasBegun_)
        silence_.start(timing_.silence);
}

/// Takes an answer out that is whole, if there is one. Nobody waits for it any more.
bool SwitchSession::takeWholeAnswer()
{
    if (!isWholeAnswer(text_))
        return false;
    text_.clear();
    --unanswered_;
    return true;
}

void SwitchSession::endAttempt()
{
    clock_.stop();
    silence_.stop();
    const bool cameAnything = !text_.empty();
    const ConfigurationReading reading = readConfiguration(text_);
    if (hasBegun_) {
        --unanswered_;
        text_.clear();
    }
    if (!suffices(reading) && attemptsLeft_ > 0) {
        --attemptsLeft_;
        attempt();
        return;
    }
    state_ = State::Idle;
    if (hasBegun_ && reading.problems.size() < allSettingKeys().size())
        Q_EMIT answered(reading);
    else if (cameAnything)
        fail(SessionError::Kind::NotUnderstood, QStringLiteral("the answer cannot be understood"));
    else
        fail(SessionError::Kind::NoAnswer, QStringLiteral("no answer from the switch"));
}

bool SwitchSession::suffices(const ConfigurationReading &reading) const
{
    return hasBegun_ && std::all_of(needed_.begin(), needed_.end(), [&](SettingKey key) {
               return hasSetting(reading.configuration, key);
           });
}

void SwitchSession::sendNext()
{
    while (state_ == State::Sending && nextCommand_ < commands_.size()) {
        const SettingCommand command = commands_[nextCommand_++];
        write(command.text);
        if (isCustomSetting(command.key))
            sinceCustomSetting_.start();
        Q_EMIT commandSent(command);
        const bool isFirstHalf = !isInSecondHalf(command.key);
        if (state_ == State::Sending && nextCommand_ < commands_.size() && isFirstHalf &&
            isInSecondHalf(commands_[nextCommand_].key)) {
            wait(State::Sending, timing_.betweenHalves);
            return;
        }
    }
    if (state_ != State::Sending)
        return;
    state_ = State::Idle;
    Q_EMIT sent();
}

void SwitchSession::wait(State state, std::chrono::milliseconds time)
{
    state_ = state;
    clock_.start(time);
}

void SwitchSession::fail(SessionError::Kind kind, const QString &message)
{
    state_ = State::Idle;
    clock_.stop();
    silence_.stop();
    Q_EMIT failed({kind, message});
}
