#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QElapsedTimer>
#include <QHash>
#include <QList>
#include <QNetworkDatagram>
#include <QObject>
#include <QUdpSocket>

/// A switch behind a network module on loopback: notes every datagram that it gets, and says what
/// `answers` has for it. Holds no state and knows no rules.
class UdpSwitch : public QObject
{
public:
    UdpSwitch()
    {
        appear();
        clock_.start();
        connect(&socket_, &QUdpSocket::readyRead, this, [this] { listen(); });
    }

    quint16 port() const { return port_; }

    /// What it says to each command, its carriage return included.
    QHash<QByteArray, QByteArrayList> answers;

    /// All datagrams so far, oldest first.
    const QByteArrayList &commands() const { return commands_; }
    /// When the datagram at `index` came, in milliseconds.
    qint64 timeOf(qsizetype index) const { return times_.at(index); }
    void forget()
    {
        commands_.clear();
        times_.clear();
    }

    void say(const QByteArray &text) { socket_.writeDatagram(text, peer_, peerPort_); }

    /// Nobody listens at the port; its host answers so.
    void vanish() { socket_.close(); }
    void appear()
    {
        if (!socket_.bind(QHostAddress::LocalHost, port_))
            qFatal("no port to be had on the loopback interface");
        port_ = socket_.localPort();
    }

private:
    void listen()
    {
        while (socket_.hasPendingDatagrams()) {
            const QNetworkDatagram datagram = socket_.receiveDatagram();
            if (!datagram.isValid())
                return;
            peer_ = datagram.senderAddress();
            peerPort_ = static_cast<quint16>(datagram.senderPort());
            commands_.append(datagram.data());
            times_.append(clock_.elapsed());
            for (const QByteArray &answer : answers.value(datagram.data()))
                say(answer);
        }
    }

    QUdpSocket socket_;
    quint16 port_ = 0;
    QHostAddress peer_;
    quint16 peerPort_ = 0;
    QByteArrayList commands_;
    QList<qint64> times_;
    QElapsedTimer clock_;
};
