#include "module_scene.h"

#include <QElapsedTimer>
#include <QNetworkInterface>
#include <QSignalSpy>
#include <QTest>

using namespace std::chrono_literals;

namespace {
const QByteArray deskMac("\x9c\xa5\x25\x1a\x2b\x3c", 6);
const QByteArray otherMac("\x9c\xa5\x25\x1a\x2b\x3d", 6);

const QByteArray searchRequest("\xff\x01\x01\x02", 4);
const QByteArray loginRequest("\xff\x13\x03\x9c\xa5\x25\x1a\x2b\x3c"
                              "admin\0admin\0\x0f",
                              22);
const QByteArray commitRequest("\xff\x13\x04\x9c\xa5\x25\x1a\x2b\x3c"
                               "admin\0admin\0\x10",
                               22);

/// Static 192.168.1.7 behind 192.168.1.1, as the example of the setup request has it.
ModuleSettings settings()
{
    return {QStringLiteral("80"),
            QStringLiteral("192.168.1.7"),
            QStringLiteral("192.168.1.1"),
            QStringLiteral("255.255.255.0"),
            std::nullopt,
            admin()};
}

ModuleSearchResult search(const ModuleNetwork &network)
{
    ModuleSearch moduleSearch(network);
    ModuleSearchResult found;
    int ends = 0;
    QObject::connect(&moduleSearch, &ModuleSearch::finished, &moduleSearch,
                     [&](const ModuleSearchResult &result) {
                         ++ends;
                         found = result;
                     });
    moduleSearch.start();
    (void)QTest::qWaitFor([&] { return ends > 0; });
    if (ends != 1)
        qFatal("a search ends once");
    return found;
}

ModuleLoginResult logIn(const ModuleNetwork &network)
{
    ModuleSession session(desk(), admin(), network);
    ModuleLoginResult answer;
    int ends = 0;
    QObject::connect(&session, &ModuleSession::loggedIn, &session,
                     [&](const ModuleLoginResult &result) {
                         ++ends;
                         answer = result;
                     });
    session.logIn();
    (void)QTest::qWaitFor([&] { return ends > 0; });
    QTest::qWait(0);
    if (ends != 1)
        qFatal("a login ends once");
    return answer;
}
} // namespace

Q_DECLARE_METATYPE(ModuleLoginResult::Outcome)

/// The module protocol without blocking: results are values. Frames are typed by hand.
class ModuleSessionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSearchFindsModules()
    {
        UdpModule module;
        module.searchAnswers = {UdpModule::discoveryReply(deskMac),
                                UdpModule::discoveryReply(otherMac)};
        const ModuleSearchResult result = search(networkOf(module));
        QCOMPARE(module.requests(), QByteArrayList{searchRequest});
        QVERIFY(result.problem.isEmpty());
        QCOMPARE(result.modules.size(), 2);
        QCOMPARE(result.modules[0].reply.mac, QStringLiteral("9ca5251a2b3c"));
        QCOMPARE(result.modules[0].reply.ip, QStringLiteral("192.168.1.7"));
        QCOMPARE(result.modules[0].reply.name, QStringLiteral("Desk"));
        QCOMPARE(result.modules[1].reply.mac, QStringLiteral("9ca5251a2b3d"));
        QCOMPARE(result.ignored, 0);
    }

    void aModuleThatAnswersTwiceIsOne()
    {
        UdpModule module;
        module.searchAnswers = {UdpModule::discoveryReply(deskMac),
                                UdpModule::discoveryReply(deskMac)};
        QCOMPARE(search(networkOf(module)).modules.size(), 1);
    }

    void anAnswerOfAnotherSizeIsLeftAside()
    {
        UdpModule module;
        module.searchAnswers = {UdpModule::discoveryReply(otherMac) + '\0', QByteArray(),
                                UdpModule::discoveryReply(deskMac)};
        const ModuleSearchResult result = search(networkOf(module));
        QCOMPARE(result.modules.size(), 1);
        QCOMPARE(result.modules[0].reply.mac, QStringLiteral("9ca5251a2b3c"));
        QCOMPARE(result.ignored, 2);
        QCOMPARE(module.requests().size(), 1);
    }

    void nobodyAnswers()
    {
        UdpModule module;
        QElapsedTimer clock;
        clock.start();
        const ModuleSearchResult result = search(networkOf(module));
        QVERIFY(clock.elapsed() >= 95);
        QVERIFY(result.modules.isEmpty());
        QVERIFY(result.problem.isEmpty());
    }

    void nobodyListens()
    {
        ModuleNetwork network;
        {
            UdpModule module;
            network = networkOf(module);
        }
        QVERIFY(search(network).modules.isEmpty());
    }

    void aDiscoveryPortInUseIsTold()
    {
        UdpModule module;
        QUdpSocket other;
        QVERIFY(other.bind(QHostAddress(QHostAddress::LocalHost), 0,
                           QAbstractSocket::DontShareAddress));
        ModuleNetwork network = networkOf(module);
        network.discoveryPort = other.localPort();
        const ModuleSearchResult result = search(network);
        QVERIFY(!result.problem.isEmpty());
        QVERIFY(result.isPortTaken);
        QVERIFY(module.requests().isEmpty());
    }

    void aDiscoveryPortInUseIsWaitedFor()
    {
        UdpModule module;
        module.searchAnswers = {UdpModule::discoveryReply(deskMac)};
        QUdpSocket other;
        QVERIFY(other.bind(QHostAddress(QHostAddress::LocalHost), 0,
                           QAbstractSocket::DontShareAddress));
        ModuleNetwork network = networkOf(module);
        network.discoveryPort = other.localPort();
        network.portPatience = 1min;
        ModuleSearch moduleSearch(network);
        QList<ModuleSearchResult> results;
        connect(&moduleSearch, &ModuleSearch::finished, this,
                [&](const ModuleSearchResult &result) { results.append(result); });
        moduleSearch.start();
        QCoreApplication::processEvents();
        QVERIFY(results.isEmpty());
        other.close();
        QTRY_COMPARE(results.size(), 1);
        QVERIFY(results.first().problem.isEmpty());
        QCOMPARE(results.first().modules.size(), 1);
    }

    void aSearchCanBeginAgain()
    {
        UdpModule module;
        module.searchAnswers = {UdpModule::discoveryReply(deskMac)};
        ModuleSearch moduleSearch(networkOf(module));
        int found = 0;
        connect(&moduleSearch, &ModuleSearch::finished, this,
                [&](const ModuleSearchResult &result) { found += result.modules.size(); });
        moduleSearch.start();
        QTRY_COMPARE(found, 1);
        moduleSearch.start();
        QTRY_COMPARE(found, 2);
        QCOMPARE(module.requests().size(), 2);
    }

    void everyRoadIsSearchedAndKept()
    {
        UdpModule module;
        module.searchAnswers = {UdpModule::discoveryReply(deskMac)};
        const auto loopback = QNetworkInterface::interfaceFromName(QStringLiteral("lo"));
        if (!loopback.isValid())
            QSKIP("the loopback interface has another name here");
        const auto index = static_cast<uint>(loopback.index());
        ModuleNetwork network = networkOf(module);
        network.roads = {{0, QHostAddress(QHostAddress::LocalHost)},
                         {index, QHostAddress(QHostAddress::LocalHost)}};
        const ModuleSearchResult result = search(network);
        QCOMPARE(module.requests(), (QByteArrayList{searchRequest, searchRequest}));
        QCOMPARE(result.modules.size(), 1);
        QCOMPARE(result.modules[0].road.interfaceIndex, index);
    }

    void aLoginReadsTheConfiguration()
    {
        UdpModule module;
        module.loginAnswers = {UdpModule::configuration()};
        const ModuleLoginResult result = logIn(networkOf(module));
        QCOMPARE(module.requests(), QByteArrayList{loginRequest});
        QCOMPARE(result.outcome, ModuleLoginResult::Outcome::Accepted);
        QCOMPARE(result.configuration.ipAllocation, QStringLiteral("80"));
        QCOMPARE(result.configuration.staticIp, QStringLiteral("192.168.1.7"));
        QCOMPARE(result.configuration.gateway, QStringLiteral("192.168.1.1"));
        QCOMPARE(result.configuration.subnetMask, QStringLiteral("255.255.255.0"));
    }

    void otherLogins_data()
    {
        QTest::addColumn<QByteArrayList>("answers");
        QTest::addColumn<int>("silentLogins");
        QTest::addColumn<ModuleLoginResult::Outcome>("outcome");
        QTest::addColumn<int>("logins");
        using Outcome = ModuleLoginResult::Outcome;
        QTest::newRow("refused") << QByteArrayList{UdpModule::refusal()} << 0 << Outcome::Refused
                                 << 1;
        QTest::newRow("answered at the third")
            << QByteArrayList{UdpModule::configuration()} << 2 << Outcome::Accepted << 3;
        QTest::newRow("silent") << QByteArrayList() << 0 << Outcome::Silent << 3;
        QTest::newRow("of another size") << QByteArrayList{UdpModule::configuration().left(259)}
                                         << 0 << Outcome::NotUnderstood << 3;
        QTest::newRow("another size first")
            << QByteArrayList{QByteArray(37, 'x'), UdpModule::configuration()} << 0
            << Outcome::Accepted << 1;
        QTest::newRow("twice") << QByteArrayList{UdpModule::refusal(), UdpModule::configuration()}
                               << 0 << Outcome::Refused << 1;
    }

    void otherLogins()
    {
        QFETCH(QByteArrayList, answers);
        QFETCH(int, silentLogins);
        QFETCH(ModuleLoginResult::Outcome, outcome);
        QFETCH(int, logins);
        UdpModule module;
        module.loginAnswers = answers;
        module.silentLogins = silentLogins;
        QCOMPARE(logIn(networkOf(module)).outcome, outcome);
        QCOMPARE(module.requests().size(), logins);
    }

    void aSetupAndItsCommit()
    {
        UdpModule module;
        ModuleSession session(desk(), admin(), networkOf(module));
        QCOMPARE(session.setUp(settings()), QString());
        QTRY_COMPARE(module.requests().size(), 2);
        const QByteArray setup("\xff\x56\x05\x9c\xa5\x25\x1a\x2b\x3c"
                               "admin\0admin\0\x09\x38\x03\x80\x20\x19\x50\x00\x02"
                               "\x07\x01\xa8\xc0\x01\x01\xa8\xc0\x00\xff\xff\xff"
                               "Desk\0\0\0\0\0\0\0\0\0\0\0\0admin\0admin\0\x02\x01\x00\x00"
                               "\x9c\xa5\x25\x1a\x2b\x3c\x10\x0e\x00\x00\x01\x00\x00\x00\x1c",
                               89);
        QCOMPARE(module.requests(), (QByteArrayList{setup, commitRequest}));
    }

    void aNewNameAndNewCredentials()
    {
        UdpModule module;
        ModuleSession session(desk(), admin(), networkOf(module));
        ModuleSettings wanted = settings();
        wanted.name = QStringLiteral("Floor-3-North-16");
        wanted.newCredentials = {QStringLiteral("root"), QStringLiteral("secret")};
        QCOMPARE(session.setUp(wanted), QString());
        QTRY_COMPARE(module.requests().size(), 2);
        QCOMPARE(module.requests()[0].size(), 89);
        QCOMPARE(module.requests()[0].mid(9, 12), QByteArray("admin\0admin\0", 12));
        QCOMPARE(module.requests()[0].mid(42, 28),
                 QByteArray("Floor-3-North-16root\0\0secret", 28));
        QCOMPARE(module.requests()[1], commitRequest);
    }

    void whatDoesNotFitIsNotSent_data()
    {
        QTest::addColumn<int>("field");
        QTest::addColumn<QString>("text");
        QTest::newRow("address") << 0 << QStringLiteral("192.168.1.256");
        QTest::newRow("gateway") << 1 << QStringLiteral("192.168.1");
        QTest::newRow("mask") << 2 << QString();
        QTest::newRow("name") << 3 << QStringLiteral("SEVENTEEN-LETTERS");
        QTest::newRow("name in bytes") << 3 << QStringLiteral("\u00DCberblicksraum-1");
        QTest::newRow("user name") << 4 << QStringLiteral("sevenUp");
        QTest::newRow("password") << 5 << QStringLiteral("secrets");
    }

    void whatDoesNotFitIsNotSent()
    {
        QFETCH(int, field);
        QFETCH(QString, text);
        UdpModule module;
        ModuleSession session(desk(), admin(), networkOf(module));
        ModuleSettings wanted = settings();
        wanted.name = QString();
        const std::array<QString *, 6> fields = {&wanted.ip,
                                                 &wanted.gateway,
                                                 &wanted.subnetMask,
                                                 &*wanted.name,
                                                 &wanted.newCredentials.username,
                                                 &wanted.newCredentials.password};
        *fields.at(static_cast<std::size_t>(field)) = text;
        QCOMPARE(session.setUp(wanted), QStringLiteral("they do not fit into a module"));
        QCOMPARE(session.setUp(settings()), QString()); // a mark: the first thing that arrives
        QTRY_COMPARE(module.requests().size(), 2);
    }

    void aSetupThatCannotLeaveSaysWhy()
    {
        UdpModule module;
        ModuleNetwork network = networkOf(module);
        network.localAddress = QHostAddress(QStringLiteral("203.0.113.9")); // nobody's here
        ModuleSession session(desk(), admin(), network);
        QCOMPARE(session.setUp(settings()), QStringLiteral("The address is not available"));
        QVERIFY(module.requests().isEmpty());
    }

    void manyAtATime()
    {
        UdpModule module;
        module.loginAnswers = {UdpModule::configuration()};
        constexpr int count = 100;
        int accepted = 0;
        std::vector<std::unique_ptr<ModuleSession>> sessions;
        for (int i = 0; i < count; ++i) {
            sessions.push_back(std::make_unique<ModuleSession>(desk(), admin(), networkOf(module)));
            connect(sessions.back().get(), &ModuleSession::loggedIn, this,
                    [&](const ModuleLoginResult &result) {
                        if (result.outcome == ModuleLoginResult::Outcome::Accepted)
                            ++accepted;
                    });
            sessions.back()->logIn();
        }
        QTRY_COMPARE(accepted, count);
    }
};

QTEST_GUILESS_MAIN(ModuleSessionTest)
#include "tst_module_session.moc"
