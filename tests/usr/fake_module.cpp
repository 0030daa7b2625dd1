#include "tests/usr/fake_module.h"

#include <QMutexLocker>
#include <QTest>
#include <QTimer>

FakeModule::FakeModule()
    : searchAnswers_([](int) { return Answers(); }), loginAnswers_([](int) { return Answers(); })
{
    start();
    isReady_.acquire();
}

FakeModule::~FakeModule()
{
    quit();
    wait();
}

void FakeModule::answerSearches(std::function<Answers(int)> answers)
{
    const QMutexLocker lock(&mutex_);
    searchAnswers_ = std::move(answers);
    searches_ = 0;
}

void FakeModule::answerLogins(std::function<Answers(int)> answers)
{
    const QMutexLocker lock(&mutex_);
    loginAnswers_ = std::move(answers);
    logins_ = 0;
}

void FakeModule::answerSearches(const Answers &answers)
{
    answerSearches([answers](int) { return answers; });
}

void FakeModule::answerLogins(const Answers &answers)
{
    answerLogins([answers](int) { return answers; });
}

QList<QByteArray> FakeModule::frames() const
{
    const QMutexLocker lock(&mutex_);
    return frames_;
}

QStringList FakeModule::order() const
{
    QStringList order;
    for (const QByteArray &frame : frames()) {
        switch (frame.size() > 2 ? frame[2] : 0) {
        case 1:
            order.append(QStringLiteral("search"));
            break;
        case 3:
            order.append(QStringLiteral("login"));
            break;
        case 4:
            order.append(QStringLiteral("commit"));
            break;
        case 5:
            order.append(QStringLiteral("setup"));
            break;
        default:
            order.append(QStringLiteral("?"));
        }
    }
    return order;
}

bool FakeModule::waitForFrames(int count) const
{
    return QTest::qWaitFor([this, count] { return frames().size() >= count; });
}

void FakeModule::forgetFrames()
{
    const QMutexLocker lock(&mutex_);
    frames_.clear();
}

UsrNetwork FakeModule::network(std::chrono::milliseconds afterBroadcast,
                               std::chrono::milliseconds collection) const
{
    const QHostAddress loopback(QHostAddress::LocalHost);
    return {loopback, 0, loopback, port_, afterBroadcast, collection};
}

QByteArray FakeModule::discoveryReply(const QByteArray &ip, const QByteArray &mac,
                                      const QByteArray &name)
{
    QByteArray reply("\xff\x24\x01\x00\x00", 5);
    reply += ip + mac + QByteArray(4, '\0') + name.leftJustified(16, '\0') + QByteArray(1, '\0');
    return reply;
}

QByteArray FakeModule::configuration(char flags)
{
    QByteArray reply("\xff\x00\x00", 3);
    reply += flags;
    reply += QByteArray("\x00\x00\x00\x00\x00"
                        "\x07\x01\xa8\xc0"
                        "\x01\x01\xa8\xc0"
                        "\x00\xff\xff\xff",
                        17);
    return reply.leftJustified(260, '\0');
}

void FakeModule::run()
{
    QUdpSocket socket;
    socket.bind(QHostAddress(QHostAddress::LocalHost));
    port_ = socket.localPort();
    const auto receive = [this, &socket] {
        while (socket.hasPendingDatagrams()) {
            QByteArray frame(socket.pendingDatagramSize(), '\0');
            QHostAddress address;
            quint16 port = 0;
            socket.readDatagram(frame.data(), frame.size(), &address, &port);
            for (const Answer &answer : answersTo(frame)) {
                if (answer.delay.count() == 0) {
                    socket.writeDatagram(answer.bytes, address, port);
                    continue;
                }
                QTimer::singleShot(answer.delay, &socket, [&socket, answer, address, port] {
                    socket.writeDatagram(answer.bytes, address, port);
                });
            }
        }
    };
    QObject::connect(&socket, &QUdpSocket::readyRead, &socket, receive);
    isReady_.release();
    exec();
}

FakeModule::Answers FakeModule::answersTo(const QByteArray &frame)
{
    const QMutexLocker lock(&mutex_);
    frames_.append(frame);
    if (frame.size() > 2 && frame[2] == 1)
        return searchAnswers_(++searches_);
    if (frame.size() > 2 && frame[2] == 3)
        return loginAnswers_(++logins_);
    return {};
}

quint16 freePort()
{
    QUdpSocket socket;
    socket.bind(QHostAddress(QHostAddress::LocalHost));
    return socket.localPort();
}
