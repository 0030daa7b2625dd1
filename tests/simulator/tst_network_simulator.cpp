#include "simulator_process.h"

#include <QElapsedTimer>
#include <QHostAddress>
#include <QNetworkDatagram>
#include <QTest>
#include <QUdpSocket>
#include <QVariant>

namespace {

const char *const search = "FF 01 01 02";
const char *const login = "FF 13 03 02 00 00 00 00 01 61 64 6D 69 6E 00 61 64 6D 69 6E 00 2B";
const char *const loginAsRoot = "FF 13 03 02 00 00 00 00 01 72 6F 6F 74 00 00 73 65 63 72 65 74 63";
const char *const commit = "FF 13 04 02 00 00 00 00 01 61 64 6D 69 6E 00 61 64 6D 69 6E 00 2C";
/// Static 127.0.0.9, gateway 192.0.2.1, mask 255.255.255.0, name "DESK", "root" and "secret".
const char *const setup =
    "FF 56 05 02 00 00 00 00 01 61 64 6D 69 6E 00 61 64 6D 69 6E 00 09 38 03 80 20 19 50 00 02"
    "09 00 00 7F 01 02 00 C0 00 FF FF FF 44 45 53 4B"
    "72 6F 6F 74 00 00 73 65 63 72 65 74 02 01 00 00 02 00 00 00 00 01 10 0E 00 00 01 00 00 00 9D";
/// The same with the address 203.0.113.9, which no machine of ours has.
const char *const farSetup =
    "FF 56 05 02 00 00 00 00 01 61 64 6D 69 6E 00 61 64 6D 69 6E 00 09 38 03 80 20 19 50 00 02"
    "09 71 00 CB 01 02 00 C0 00 FF FF FF 44 45 53 4B"
    "72 6F 6F 74 00 00 73 65 63 72 65 74 02 01 00 00 02 00 00 00 00 01 10 0E 00 00 01 00 00 00 5A";

const QByteArray threeAnswers = "//RL Pelora KM switch\n"
                                "KM Port Limit: 4\n"
                                "KM Cursor Rolling: Disabled\n"
                                "KM tracking mode: Absolute Mouse Mode\n"
                                "Channels resolution: 1 1 1 1\n"
                                "Buzzer: on\n"
                                "C1\t100 100 CUSTOM1\n"
                                "C2\t100 100 CUSTOM2\n"
                                "C3\t100 100 CUSTOM3\n"
                                "C4\t100 100 CUSTOM4\n"
                                "Current Hotkey Trigger: Left Ctrl\n"
                                "Current KM Control: 1\n"
                                "Current USB Control 1\n"
                                "//FF01B01FF02B02FF03B03FF04B04\n";

QByteArray bytes(const char *hex)
{
    return QByteArray::fromHex(hex);
}

/// A UDP port that was free a moment ago.
quint16 freePort()
{
    QUdpSocket socket;
    socket.bind(QHostAddress(QHostAddress::AnyIPv4), 0);
    return socket.localPort();
}

/// A socket of a utility: sends requests, keeps what comes back.
class Asker
{
public:
    Asker() { socket_.bind(QHostAddress(QHostAddress::AnyIPv4), 0); }

    void ask(const QByteArray &datagram, quint16 port)
    {
        socket_.writeDatagram(datagram, QHostAddress(QStringLiteral("127.0.0.1")), port);
    }
    /// All datagrams so far, with the sender's address in each.
    const QList<QNetworkDatagram> &got()
    {
        while (socket_.hasPendingDatagrams())
            got_ << socket_.receiveDatagram();
        return got_;
    }
    void forget() { got_.clear(); }

private:
    QUdpSocket socket_;
    QList<QNetworkDatagram> got_;
};

/// The utility's link: a connected socket, which hears the one address alone.
class Link
{
public:
    Link(const char *address, quint16 port)
    {
        socket_.connectToHost(QHostAddress(QLatin1String(address)), port);
        socket_.waitForConnected(3000);
    }
    void say(const QByteArray &command) { socket_.write(command); }
    const QList<QByteArray> &got()
    {
        while (socket_.hasPendingDatagrams())
            got_ << socket_.receiveDatagram().data();
        return got_;
    }
    void forget() { got_.clear(); }

private:
    QUdpSocket socket_;
    QList<QByteArray> got_;
};

} // namespace

/// pelora-simulator module, run as a program and talked to over loopback.
class NetworkSimulatorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        managementPort_ = freePort();
        do
            switchPort_ = freePort();
        while (switchPort_ == managementPort_);
    }

    void itPrintsItsModules()
    {
        SimulatorProcess simulator;
        QCOMPARE(simulator.start(arguments({QStringLiteral("--fleet"), QStringLiteral("2")}), 2),
                 QStringList({QStringLiteral("module 127.0.0.1 PELORA-SIM 02:00:00:00:00:01"),
                              QStringLiteral("module 127.0.0.2 PELORA-SIM-2 02:00:00:00:00:02")}));
        QCOMPARE(simulator.end(), 0);
    }

    void aSearchFindsEveryModuleAtItsAddress()
    {
        SimulatorProcess simulator;
        simulator.start(arguments({QStringLiteral("--fleet"), QStringLiteral("3")}), 3);
        Asker asker;
        asker.ask(bytes(search), managementPort_);
        QTRY_COMPARE(asker.got().size(), qsizetype(3));
        for (int i = 0; i < 3; ++i) {
            const QNetworkDatagram datagram = asker.got().at(i);
            QCOMPARE(datagram.data().size(), qsizetype(36));
            QCOMPARE(datagram.data().mid(5, 4).toHex(), "7f00000" + QByteArray::number(i + 1));
            QCOMPARE(datagram.data().mid(9, 6).toHex(), "02000000000" + QByteArray::number(i + 1));
            QCOMPARE(datagram.senderPort(), int(managementPort_));
#ifdef Q_OS_LINUX
            QCOMPARE(datagram.senderAddress(), QHostAddress(0x7f000001U + quint32(i)));
#endif
        }
    }

    void loginsAreAnsweredOrRefused()
    {
        SimulatorProcess simulator;
        simulator.start(arguments());
        Asker asker;
        asker.ask(bytes(login), managementPort_);
        QTRY_COMPARE(asker.got().size(), qsizetype(1));
        QCOMPARE(asker.got().first().data().size(), qsizetype(260));
        asker.forget();
        asker.ask(bytes(loginAsRoot), managementPort_);
        QTRY_COMPARE(asker.got().size(), qsizetype(1));
        QCOMPARE(asker.got().first().data(), bytes("FF 01 03 04"));
        QTRY_VERIFY(
            simulator.reports().contains("module: login with wrong credentials, refused\n"));
    }

    void brokenFramesAreReported()
    {
        SimulatorProcess simulator;
        simulator.start(arguments());
        Asker asker;
        asker.ask(bytes("FF 01 01 03"), managementPort_);
        asker.ask(bytes("FF 13 03 02 00 00 00 00 02 61 64 6D 69 6E 00 61 64 6D 69 6E 00 2C"),
                  managementPort_);
        QTRY_COMPARE(simulator.reports(),
                     QByteArray("module: frame rejected: the checksum is 03, not 02\n"
                                "module: frame rejected: no module has this MAC address\n"));
        QVERIFY(asker.got().isEmpty());
    }

    void aSetupMovesTheModuleAfterADeafTime()
    {
        SimulatorProcess simulator;
        simulator.start(arguments({QStringLiteral("--restart-time"), QStringLiteral("300"),
                                   QStringLiteral("--verbose"), QStringLiteral("--console")}));
        Asker asker;
        asker.ask(bytes(setup), managementPort_);
        asker.ask(bytes(commit), managementPort_);
        asker.ask(bytes(search), managementPort_);
        QTRY_VERIFY(simulator.reports().contains("module: search while restarting\n"));
        QVERIFY(asker.got().isEmpty());
        QTRY_VERIFY(simulator.reports().contains("module: restarted\n"));

        asker.ask(bytes(search), managementPort_);
        QTRY_COMPARE(asker.got().size(), qsizetype(1));
        QCOMPARE(asker.got().first().data().mid(5, 4), bytes("7F 00 00 09"));
        QCOMPARE(asker.got().first().data().mid(19, 5), QByteArray("DESK\0", 5));
        asker.forget();
        asker.ask(bytes(loginAsRoot), managementPort_);
        QTRY_COMPARE(asker.got().size(), qsizetype(1));
        QCOMPARE(asker.got().first().data().size(), qsizetype(260));
        Link link("127.0.0.9", switchPort_);
        link.say("//c2\r");
        QTRY_COMPARE(link.got(), QList<QByteArray>{"**C2\n"});

        simulator.type("reset"); // as it left the factory
        simulator.type("state");
        QVERIFY(simulator.linesUpTo("Module name").endsWith("Module name: PELORA-SIM\n"));
    }

    void anAddressThatTheMachineLacksIsReported()
    {
        SimulatorProcess simulator;
        simulator.start(arguments({QStringLiteral("--restart-time"), QStringLiteral("0")}));
        Asker asker;
        asker.ask(bytes(farSetup), managementPort_);
        asker.ask(bytes(commit), managementPort_);
        QTRY_VERIFY2(simulator.reports().contains("listening at all addresses of this machine"),
                     simulator.reports().constData());
        QVERIFY(simulator.reports().contains("203.0.113.9"));
        asker.ask(bytes(search), managementPort_);
        QTRY_COMPARE(asker.got().size(), qsizetype(1));
        QCOMPARE(asker.got().first().data().mid(5, 4), bytes("CB 00 71 09"));
        Link link("127.0.0.5", switchPort_);
        link.say("//c2\r");
        QTRY_COMPARE(link.got(), QList<QByteArray>{"**C2\n"});
    }

    void theThreeAnswersComeInOneDatagram()
    {
        SimulatorProcess simulator;
        // Longer than the real one, so that a busy machine does not make a pause of its own.
        simulator.start(arguments({QStringLiteral("--quiet-gap"), QStringLiteral("300")}));
        Link link("127.0.0.1", switchPort_);
        link.say("//rl\r");
        link.say("//??\r");
        link.say("//BP\r");
        QTRY_COMPARE(link.got(), QList<QByteArray>{threeAnswers});
    }

    void everyModuleHasASwitchOfItsOwn()
    {
        SimulatorProcess simulator;
        simulator.start(arguments({QStringLiteral("--fleet"), QStringLiteral("2"),
                                   QStringLiteral("--console")}),
                        2);
        Link second("127.0.0.2", switchPort_);
        second.say("//c3\r");
        QTRY_COMPARE(second.got(), QList<QByteArray>{"**C3\n"});
        simulator.type("state");
        const QByteArray first = simulator.linesUpTo("Unit 2:");
        QVERIFY2(first.startsWith("Unit 1:\nKM control: 1\n"), first.constData());
        QVERIFY(simulator.linesUpTo("USB control").startsWith("KM control: 3\n"));
        simulator.type("press 2 2");
        second.forget();
        QTRY_COMPARE(second.got(), QList<QByteArray>{"**M2\n"});
    }

    void behindTheModuleTheSwitchIsDeafAfterAReset()
    {
        SimulatorProcess simulator;
        simulator.start(arguments({QStringLiteral("--verbose"), QStringLiteral("--restart-time"),
                                   QStringLiteral("400")}));
        Link link("127.0.0.1", switchPort_);
        link.say("//F\r//c2\r");
        QTRY_VERIFY(simulator.reports().contains("switch: restarted\n"));
        QVERIFY2(simulator.reports().contains("switch: rejected //c2: the switch is restarting\n"),
                 simulator.reports().constData());
        link.say("//c3\r");
        QTRY_COMPARE(link.got(), (QList<QByteArray>{"Factory settings restored\n", "**C3\n"}));
    }

    void longTextsComeInDatagramsOf1400Bytes()
    {
        SimulatorProcess simulator;
        simulator.start(arguments({QStringLiteral("--fault"), QStringLiteral("flood=200000")}));
        Link link("127.0.0.1", switchPort_);
        link.say("//BP\r");
        // 31 + 200000 bytes: 142 full datagrams and one of 1231.
        QTRY_COMPARE_WITH_TIMEOUT(link.got().size(), qsizetype(143), 20000);
        QCOMPARE(link.got().first().size(), qsizetype(1400));
        QCOMPARE(link.got().last().size(), qsizetype(1231));
    }

    void answersCanBeSplitOverDatagrams()
    {
        SimulatorProcess simulator;
        simulator.start(arguments({QStringLiteral("--fault"), QStringLiteral("split=3")}));
        Link link("127.0.0.1", switchPort_);
        link.say("//c2\r");
        QTRY_COMPARE(link.got(), (QList<QByteArray>{"**C", "2\n"}));
    }

    void discoveryFaultsReachTheWire()
    {
        SimulatorProcess simulator;
        simulator.start(arguments({QStringLiteral("--fault"), QStringLiteral("discovery-size=37:1"),
                                   QStringLiteral("--fault"), QStringLiteral("duplicates=1"),
                                   QStringLiteral("--fault"), QStringLiteral("late=100")}));
        Asker asker;
        QElapsedTimer time;
        time.start();
        asker.ask(bytes(search), managementPort_);
        QTRY_COMPARE(asker.got().size(), qsizetype(2));
        QVERIFY(time.elapsed() >= 100);
        QCOMPARE(asker.got().at(0).data().size(), qsizetype(37));
        QCOMPARE(asker.got().at(1).data().size(), qsizetype(37));
        asker.forget();
        asker.ask(bytes(search), managementPort_);
        QTRY_COMPARE(asker.got().size(), qsizetype(2));
        QCOMPARE(asker.got().at(0).data().size(), qsizetype(36));
    }

    void modulesCanShareOneAddress()
    {
        SimulatorProcess simulator;
        simulator.start(arguments({QStringLiteral("--fleet"), QStringLiteral("2"),
                                   QStringLiteral("--fault"), QStringLiteral("same-address")}),
                        2);
        Asker asker;
        asker.ask(bytes(search), managementPort_);
        QTRY_COMPARE(asker.got().size(), qsizetype(2));
        for (const QNetworkDatagram &datagram : asker.got())
            QCOMPARE(datagram.data().mid(5, 4), bytes("7F 00 00 01"));
    }

    void reportsNameTheSwitchOfSeveral()
    {
        SimulatorProcess simulator;
        simulator.start(arguments({QStringLiteral("--fleet"), QStringLiteral("2")}), 2);
        for (const char *address : {"127.0.0.1", "127.0.0.2"})
            Link(address, switchPort_).say("//q9\r");
        const auto areBothNamed = [&simulator] {
            const QByteArray reports = simulator.reports();
            return reports.contains("switch 1: rejected //q9: unknown command\n") &&
                   reports.contains("switch 2: rejected //q9: unknown command\n");
        };
        QVERIFY2(QTest::qWaitFor(areBothNamed), simulator.reports().constData());
        QCOMPARE(simulator.reports().count("//q9"), 2);
    }

    void bothFacesLeadToOneSwitch()
    {
        SimulatorProcess simulator;
        QStringList all = arguments({QStringLiteral("--console")});
        all.first() = QStringLiteral("all");
        QCOMPARE(simulator.start(all, 2).size(), 2);
        Link link("127.0.0.1", switchPort_);
        link.say("//u4\r");
        QTRY_COMPARE(link.got(), QList<QByteArray>{"**U4\n"});
        simulator.type("state");
        QVERIFY(
            simulator.linesUpTo("Module password").startsWith("KM control: 1\nUSB control: 4\n"));
    }

    void aTakenPortIsAFailure()
    {
        QUdpSocket taken;
        QVERIFY(taken.bind(QHostAddress(QHostAddress::AnyIPv4), managementPort_,
                           QAbstractSocket::DontShareAddress));
        const FinishedRun run = runSimulator(arguments());
        QCOMPARE(run.status, 1);
        QVERIFY2(run.reports.contains("cannot listen on UDP port " +
                                      QByteArray::number(managementPort_) + " at all addresses: "),
                 run.reports.constData());
        QVERIFY(run.output.isEmpty());
    }

    void aTakenSwitchPortIsAFailure()
    {
        QUdpSocket taken;
        QVERIFY(taken.bind(QHostAddress(QHostAddress::AnyIPv4), switchPort_,
                           QAbstractSocket::DontShareAddress));
        const FinishedRun run = runSimulator(arguments());
        QCOMPARE(run.status, 1);
        QVERIFY2(run.reports.contains("cannot listen on UDP port " +
                                      QByteArray::number(switchPort_) + " at 127.0.0.1: "),
                 run.reports.constData());
    }

private:
    QStringList arguments(const QStringList &more = {}) const
    {
        return QStringList{QStringLiteral("module"), QStringLiteral("--management-port"),
                           QString::number(managementPort_), QStringLiteral("--switch-port"),
                           QString::number(switchPort_)} +
               more;
    }

    quint16 managementPort_ = 0;
    quint16 switchPort_ = 0;
};

QTEST_GUILESS_MAIN(NetworkSimulatorTest)
#include "tst_network_simulator.moc"
