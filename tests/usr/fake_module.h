#pragma once

#include "usr/usr_searcher.h"

#include <QByteArray>
#include <QList>
#include <QMutex>
#include <QSemaphore>
#include <QStringList>
#include <QThread>
#include <chrono>
#include <functional>

/// A network module on loopback in a thread of its own: notes every frame it gets and answers what
/// the test tells it to. It builds and reads nothing with the code under test.
class FakeModule : public QThread
{
public:
    struct Answer
    {
        QByteArray bytes;
        std::chrono::milliseconds delay{0};
    };
    using Answers = QList<Answer>;

    FakeModule();
    ~FakeModule() override;

    /// Sets what the nth search or login (from 1) is answered with. From now on, in any thread.
    void answerSearches(std::function<Answers(int nth)> answers);
    void answerLogins(std::function<Answers(int nth)> answers);
    /// The same answer to each.
    void answerSearches(const Answers &answers);
    void answerLogins(const Answers &answers);

    /// Every frame that came, oldest first.
    QList<QByteArray> frames() const;
    /// The same by their command bytes: "search", "login", "setup", "commit", "?".
    QStringList order() const;
    /// Waits until `count` frames have come, at most five seconds.
    bool waitForFrames(int count) const;
    void forgetFrames();

    /// Loopback, this module and short waits; `discoveryPort` 0 takes any.
    UsrNetwork network(std::chrono::milliseconds afterBroadcast = std::chrono::milliseconds(100),
                       std::chrono::milliseconds collection = std::chrono::milliseconds(100)) const;

    /// An answer to a search: 36 bytes with `ip` (4 bytes), `mac` (6) and `name` (up to 16).
    static QByteArray discoveryReply(const QByteArray &ip, const QByteArray &mac,
                                     const QByteArray &name);
    /// An answer to a login: 260 bytes with these allocation flags, 192.168.1.7 behind
    /// 192.168.1.1 and the mask 255.255.255.0.
    static QByteArray configuration(char flags);
    static QByteArray refusal() { return QByteArray("\xff\x01\x03\x04", 4); }

protected:
    void run() override;

private:
    Answers answersTo(const QByteArray &frame);

    mutable QMutex mutex_; ///< guards everything below but the port
    std::function<Answers(int)> searchAnswers_;
    std::function<Answers(int)> loginAnswers_;
    int searches_ = 0;
    int logins_ = 0;
    QList<QByteArray> frames_;
    QSemaphore isReady_;
    quint16 port_ = 0;
};

/// A UDP port of loopback that nothing uses.
quint16 freePort();
