#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QNetworkDatagram>
#include <QObject>
#include <QUdpSocket>
#include <functional>

/// A network module on loopback: notes every request and answers what the test tells it to. It
/// builds and reads nothing with the code under test.
class UdpModule : public QObject
{
public:
    explicit UdpModule(const QHostAddress &address = QHostAddress(QHostAddress::LocalHost),
                       quint16 port = 0)
    {
        if (!socket_.bind(address, port, QAbstractSocket::DontShareAddress))
            qFatal("no port to be had");
        connect(&socket_, &QUdpSocket::readyRead, this, [this] { listen(); });
    }

    quint16 port() const { return socket_.localPort(); }
    const QByteArrayList &requests() const { return requests_; }
    /// On which interface each request came.
    const QList<uint> &interfaces() const { return interfaces_; }

    /// What it says to the search and to the login, and how often it stays silent before that.
    QByteArrayList searchAnswers;
    QByteArrayList loginAnswers;
    int silentLogins = 0;

    /// An answer to a search, 36 bytes: 192.168.1.7, this MAC (6 bytes), "Desk".
    static QByteArray discoveryReply(const QByteArray &mac)
    {
        return QByteArray("\xff\x24\x01\x00\x00\xc0\xa8\x01\x07", 9) + mac + QByteArray(4, '\0') +
               QByteArray("Desk").leftJustified(16, '\0') + QByteArray(1, '\0');
    }
    /// An answer to a login, 260 bytes: static 192.168.1.7 behind 192.168.1.1, 255.255.255.0.
    static QByteArray configuration()
    {
        return QByteArray("\xff\x00\x00\x80\x00\x00\x00\x00\x00"
                          "\x07\x01\xa8\xc0\x01\x01\xa8\xc0\x00\xff\xff\xff",
                          21)
            .leftJustified(260, '\0');
    }
    static QByteArray refusal() { return QByteArray("\xff\x01\x03\x04", 4); }

private:
    void listen()
    {
        while (socket_.hasPendingDatagrams()) {
            const QNetworkDatagram request = socket_.receiveDatagram();
            requests_.append(request.data());
            interfaces_.append(request.interfaceIndex());
            for (const QByteArray &answer : answersTo(request.data()))
                socket_.writeDatagram(answer, request.senderAddress(),
                                      static_cast<quint16>(request.senderPort()));
        }
    }

    QByteArrayList answersTo(const QByteArray &request)
    {
        const char command = request.size() > 2 ? request[2] : '\0';
        if (command == 1)
            return searchAnswers;
        return command == 3 && silentLogins-- <= 0 ? loginAnswers : QByteArrayList();
    }

    QUdpSocket socket_;
    QByteArrayList requests_;
    QList<uint> interfaces_;
};
