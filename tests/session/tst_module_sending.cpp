#include "module_scene.h"

#include <QSignalSpy>
#include <QTest>

namespace {
/// By an interface that no machine has nothing leaves.
const ModuleRoad noRoad = {99999, QHostAddress(QHostAddress::LocalHost)};
} // namespace

/// Requests to modules that cannot leave this machine.
class ModuleSendingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatDoesNotLeaveIsToldOf()
    {
        const UdpModule module;
        ModuleNetwork network = networkOf(module);
        network.roads = {noRoad, noRoad};
        ModuleSearch moduleSearch(network);
        const QSignalSpy written(&moduleSearch, &ModuleSearch::written);
        QList<ModuleSearchResult> results;
        connect(&moduleSearch, &ModuleSearch::finished, this,
                [&](const ModuleSearchResult &result) { results.append(result); });
        moduleSearch.start();
        QTRY_COMPARE(results.size(), 1);
        QVERIFY(!results.first().problem.isEmpty());
        QVERIFY(!results.first().isPortTaken);
        QCOMPARE(written.count(), 0);
    }

    void oneRoadIsEnough()
    {
        UdpModule module;
        module.searchAnswers = {
            UdpModule::discoveryReply(QByteArray("\x9c\xa5\x25\x1a\x2b\x3c", 6))};
        ModuleNetwork network = networkOf(module);
        network.roads = {network.roads.first(), noRoad};
        ModuleSearch moduleSearch(network);
        const QSignalSpy written(&moduleSearch, &ModuleSearch::written);
        QList<ModuleSearchResult> results;
        connect(&moduleSearch, &ModuleSearch::finished, this,
                [&](const ModuleSearchResult &result) { results.append(result); });
        moduleSearch.start();
        QTRY_COMPARE(results.size(), 1);
        QCOMPARE(results.first().problem, QString());
        QCOMPARE(results.first().modules.size(), 1);
        QCOMPARE(written.count(), 1);
    }

    void aLoginThatDoesNotLeaveIsNotSilence()
    {
        const UdpModule module;
        ModuleOnLan unreachable = desk();
        unreachable.road = noRoad;
        ModuleSession session(unreachable, admin(), networkOf(module));
        const QSignalSpy written(&session, &ModuleSession::written);
        QList<ModuleLoginResult> results;
        connect(&session, &ModuleSession::loggedIn, this,
                [&](const ModuleLoginResult &result) { results.append(result); });
        session.logIn();
        QTRY_COMPARE(results.size(), 1);
        QCOMPARE(results.first().outcome, ModuleLoginResult::Outcome::NotSent);
        QVERIFY(!results.first().problem.isEmpty());
        QCOMPARE(written.count(), 0);
    }

    void aLoginWithoutASocketIsNotSilence()
    {
        const UdpModule module;
        ModuleNetwork network = networkOf(module);
        network.localAddress = QHostAddress(QStringLiteral("192.0.2.1")); // not of this machine
        ModuleSession session(desk(), admin(), network);
        QList<ModuleLoginResult> results;
        connect(&session, &ModuleSession::loggedIn, this,
                [&](const ModuleLoginResult &result) { results.append(result); });
        session.logIn();
        QTRY_COMPARE(results.size(), 1);
        QCOMPARE(results.first().outcome, ModuleLoginResult::Outcome::NotSent);
        QVERIFY(!results.first().problem.isEmpty());
    }
};

QTEST_GUILESS_MAIN(ModuleSendingTest)
#include "tst_module_sending.moc"
