#include "session/datagram_bursts.h"

#include <QTest>
#include <QTimer>
#include <memory>

namespace {
constexpr int many = 200; // several bursts, and fewer than any system holds for a socket
}

/// Datagrams that wait when the event loop turns to them.
class DatagramBurstsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        socket_ = std::make_unique<QUdpSocket>();
        QVERIFY(socket_->bind(QHostAddress::LocalHost));
        for (int number = 0; number < many; ++number) {
            const QByteArray bytes = QByteArray::number(number);
            QCOMPARE(peer_.writeDatagram(bytes, QHostAddress::LocalHost, socket_->localPort()),
                     bytes.size());
        }
    }

    void allComeInTheirOrder()
    {
        QByteArrayList come;
        DatagramBursts bursts(
            *socket_, [&](const QNetworkDatagram &datagram) { come.append(datagram.data()); });
        connect(socket_.get(), &QUdpSocket::readyRead, this, [&] { bursts.read(); });
        QTRY_COMPARE(come.size(), many);
        for (int number = 0; number < many; ++number)
            QCOMPARE(come.at(number), QByteArray::number(number));
        peer_.writeDatagram("later", QHostAddress::LocalHost, socket_->localPort());
        QTRY_COMPARE(come.last(), QByteArray("later"));
    }

    void timersHaveTheirTurnBetween()
    {
        QList<int> comeAtTurns;
        int come = 0;
        DatagramBursts bursts(*socket_, [&](const QNetworkDatagram &) { ++come; });
        connect(socket_.get(), &QUdpSocket::readyRead, this, [&] { bursts.read(); });
        QTimer turn;
        connect(&turn, &QTimer::timeout, this, [&] { comeAtTurns.append(come); });
        turn.start(0);
        QTRY_COMPARE(come, many);
        for (const int burst : {64, 128, 192})
            QVERIFY2(comeAtTurns.contains(burst), qPrintable(QString::number(burst)));
    }

    void nothingIsTakenOfAClosedSocket()
    {
        int come = 0;
        DatagramBursts bursts(*socket_, [&](const QNetworkDatagram &) {
            if (++come == 64)
                QTimer::singleShot(0, socket_.get(), [this] { socket_->close(); });
        });
        connect(socket_.get(), &QUdpSocket::readyRead, this, [&] { bursts.read(); });
        QTRY_VERIFY(!socket_->isValid());
        QTest::qWait(20); // past the rest
        QCOMPARE(come, 64);
    }

    void theReaderMayBeGoneWithItsSocket()
    {
        struct Owner
        {
            std::unique_ptr<QUdpSocket> socket;
            std::unique_ptr<DatagramBursts> bursts;
        };
        auto owner = std::make_unique<Owner>();
        owner->socket = std::move(socket_);
        int come = 0;
        owner->bursts =
            std::make_unique<DatagramBursts>(*owner->socket, [&](const QNetworkDatagram &) {
                ++come;
                owner.reset();
            });
        while (owner) // as a slot of its readyRead() would, without the socket beneath it
            owner->bursts->read();
        QCOMPARE(come, 1);
    }

private:
    QUdpSocket peer_;
    std::unique_ptr<QUdpSocket> socket_;
};

QTEST_GUILESS_MAIN(DatagramBurstsTest)
#include "tst_datagram_bursts.moc"
