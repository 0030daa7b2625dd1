#include "simulator_process.h"

#include <QHostAddress>
#include <QNetworkDatagram>
#include <QSet>
#include <QTest>
#include <QUdpSocket>
#include <sys/resource.h>

namespace {
/// What this program, and with it each that it starts, may have open until the end of the scope.
class OpenFiles
{
public:
    OpenFiles() { ::getrlimit(RLIMIT_NOFILE, &before_); }
    ~OpenFiles() { ::setrlimit(RLIMIT_NOFILE, &before_); }
    Q_DISABLE_COPY_MOVE(OpenFiles)

    bool allows(rlim_t count) const { return before_.rlim_max >= count; }
    void lower(rlim_t soft)
    {
        rlimit limit = before_;
        limit.rlim_cur = soft;
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }

private:
    rlimit before_{};
};

/// Ports that were free a moment ago.
QStringList freePorts()
{
    QUdpSocket management;
    QUdpSocket traffic;
    for (QUdpSocket *socket : {&management, &traffic})
        socket->bind(QHostAddress(QHostAddress::AnyIPv4), 0);
    return {QString::number(management.localPort()), QString::number(traffic.localPort())};
}
} // namespace

/// A thousand modules on loopback.
class FleetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// The limit that most systems begin with does not suffice and is raised.
    void eachAnswersAtItsOwnAddress()
    {
        OpenFiles files;
        if (!files.allows(1100))
            QSKIP("this system allows too few open files");
        files.lower(256);
        SimulatorProcess simulator;
        const QStringList printed = simulator.start(fleet(), 1000);
        QCOMPARE(printed.size(), 1000);
        QCOMPARE(printed.at(0), QStringLiteral("module 127.1.0.1 PELORA-SIM 02:00:00:00:00:01"));
        QCOMPARE(printed.at(255),
                 QStringLiteral("module 127.1.1.0 PELORA-SIM-256 02:00:00:00:01:00"));
        QCOMPARE(printed.at(999),
                 QStringLiteral("module 127.1.3.232 PELORA-SIM-1000 02:00:00:00:03:E8"));

        QUdpSocket asker;
        QVERIFY(asker.bind(QHostAddress(QHostAddress::LocalHost), 0));
        constexpr quint32 first = 0x7F010001;
        constexpr quint32 atOnce = 50; // what a socket's buffer holds for sure
        QSet<quint32> answered;
        for (quint32 i = 0; i < 1000; ++i) {
            asker.writeDatagram("//c3\r", QHostAddress(first + i), ports_.at(1).toUShort());
            const auto haveAnswered = [&] {
                while (asker.hasPendingDatagrams()) {
                    const QNetworkDatagram answer = asker.receiveDatagram();
                    if (answer.data() == "**C3\n")
                        answered.insert(answer.senderAddress().toIPv4Address());
                }
                return answered.size() == i + 1;
            };
            if ((i + 1) % atOnce == 0)
                QVERIFY(QTest::qWaitFor(haveAnswered));
        }
        for (quint32 i = 0; i < 1000; ++i)
            QVERIFY(answered.contains(first + i));
        QCOMPARE(simulator.end(), 0);
        QCOMPARE(simulator.reports(), QByteArray());
    }

    void allAnswerASearch()
    {
        SimulatorProcess simulator;
        QCOMPARE(simulator.start(fleet(), 1000).size(), 1000);
        QUdpSocket asker;
        QVERIFY(asker.bind(QHostAddress(QHostAddress::LocalHost), 0));
        QSet<QByteArray> macs;
        connect(&asker, &QUdpSocket::readyRead, &asker, [&] {
            while (asker.hasPendingDatagrams())
                macs.insert(asker.receiveDatagram().data().mid(9, 6));
        });
        asker.writeDatagram(QByteArray("\xff\x01\x01\x02", 4),
                            QHostAddress(QHostAddress::LocalHost), ports_.at(0).toUShort());
        QTRY_COMPARE(macs.size(), 1000);
    }

    void anAnswerToOneQuestionIsOneDatagram()
    {
        SimulatorProcess simulator;
        simulator.start(fleet(1));
        QUdpSocket asker;
        QVERIFY(asker.bind(QHostAddress(QHostAddress::LocalHost), 0));
        asker.writeDatagram("//rl\r", QHostAddress(QStringLiteral("127.1.0.1")),
                            ports_.at(1).toUShort());
        QTRY_VERIFY(asker.hasPendingDatagrams());
        const QByteArray answer = asker.receiveDatagram().data();
        QVERIFY(answer.startsWith("//RL"));
        QVERIFY(answer.endsWith("C4\t100 100 CUSTOM4\n"));
    }

    void aSystemThatAllowsTooFewIsNamed()
    {
        QProcess shell;
        shell.start(QStringLiteral("/bin/sh"),
                    QStringList{QStringLiteral("-c"), QStringLiteral("ulimit -n 200; exec \"$@\""),
                                QStringLiteral("sh"), QStringLiteral(SIMULATOR_PROGRAM)} +
                        fleet());
        shell.closeWriteChannel();
        QVERIFY(shell.waitForFinished(20'000));
        QCOMPARE(shell.exitCode(), 1);
        QCOMPARE(shell.readAllStandardError(),
                 QByteArray("pelora-simulator: this needs 1032 open files, and the system allows "
                            "200 (ulimit -Hn shows it): simulate fewer modules\n"));
    }

private:
    QStringList fleet(int size = 1000) const
    {
        return {QStringLiteral("module"),
                QStringLiteral("--address"),
                QStringLiteral("127.1.0.1"),
                QStringLiteral("--fleet"),
                QString::number(size),
                QStringLiteral("--management-port"),
                ports_.at(0),
                QStringLiteral("--switch-port"),
                ports_.at(1),
                QStringLiteral("--quiet-gap"),
                QStringLiteral("0")};
    }

    const QStringList ports_ = freePorts();
};

QTEST_GUILESS_MAIN(FleetTest)
#include "tst_fleet.moc"
