#pragma once

#include "session/switch_session.h"

#include <QTest>
#include <optional>

/// A session and everything that it has said.
class SessionWatch : public QObject
{
public:
    SessionWatch(std::unique_ptr<SwitchLink> link, SwitchSession::Timing timing)
        : session(std::move(link), timing)
    {
        connect(&session, &SwitchSession::opened, this, [this] { ++opened; });
        connect(&session, &SwitchSession::answered, this, [this](const ConfigurationReading &read) {
            ++answered;
            reading = read;
        });
        connect(&session, &SwitchSession::sent, this, [this] { ++sent; });
        connect(&session, &SwitchSession::commandSent, this,
                [this](const SettingCommand &command) { commands.append(command.text.c_str()); });
        connect(&session, &SwitchSession::failed, this, [this](const SessionError &error) {
            ++failed;
            lastError = error;
        });
    }

    /// Opens the road and waits for it.
    bool open()
    {
        session.open();
        return QTest::qWaitFor([this] { return opened == 1; });
    }

    /// Asks and waits for whatever comes of it. True when it is an answer.
    bool ask(const std::vector<SettingKey> &needed = allSettingKeys())
    {
        const int before = answered;
        const int ends = answered + failed;
        session.ask(needed);
        return QTest::qWaitFor([&] { return answered + failed > ends; }, 20000) &&
               answered > before;
    }

    bool send(const std::vector<SettingCommand> &toSend)
    {
        const int before = sent;
        session.send(toSend);
        return QTest::qWaitFor([&] { return sent > before || failed > 0; }, 20000) && sent > before;
    }

    int opened = 0;
    int answered = 0;
    int sent = 0;
    int failed = 0;
    ConfigurationReading reading;
    std::optional<SessionError> lastError;
    QByteArrayList commands;
    SwitchSession session; ///< last: it goes first and says nothing of it
};

/// Times that let nothing but an answer's end count: whatever else is waited for is too long for a
/// test.
inline SwitchSession::Timing noHurry()
{
    using namespace std::chrono_literals;
    return {60s, 60s, 60s, 2, 60s, 60s};
}
