#pragma once

#include "device/configuration_examples.h"
#include "session/udp_switch_link.h"
#include "session_watch.h"
#include "udp_switch.h"

/// A session with a switch on loopback that gives the example answer.

inline const QByteArrayList questions = {"//rl\r", "//??\r", "//BP\r"};

inline QByteArrayList questionsTimes(int times)
{
    QByteArrayList all;
    for (int i = 0; i < times; ++i)
        all += questions;
    return all;
}

inline std::unique_ptr<SwitchLink> linkTo(const UdpSwitch &device)
{
    return std::make_unique<UdpSwitchLink>(QHostAddress(QHostAddress::LocalHost), device.port());
}

/// Times for a switch that leaves something open.
inline SwitchSession::Timing hurry()
{
    using namespace std::chrono_literals;
    return {400ms, 5s, 150ms, 2, 150ms, 150ms};
}

inline QByteArray answerWith(const char *before, const char *after)
{
    const QByteArray answer = QByteArray::fromStdString(exampleAnswer());
    if (!answer.contains(before))
        qFatal("the example has no such text");
    return QByteArray(answer).replace(before, after);
}

inline QStringList problemsOf(const ConfigurationReading &reading)
{
    QStringList names;
    for (const ReplyProblem &problem : reading.problems)
        names.append(settingName(problem.key));
    return names;
}

struct NetworkScene
{
    explicit NetworkScene(SwitchSession::Timing timing = noHurry()) : watch(linkTo(device), timing)
    {
        device.answers["//rl\r"] = {exampleListing};
        device.answers["//??\r"] = {exampleStatus};
        device.answers["//BP\r"] = {exampleLayout};
    }

    UdpSwitch device;
    SessionWatch watch;
};
