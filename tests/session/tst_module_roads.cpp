#include "session/module_search.h"
#include "udp_module.h"

#include <QNetworkInterface>
#include <QProcess>
#include <QTest>

using namespace std::chrono_literals;

namespace {
bool ip(const char *arguments)
{
    return QProcess::execute(QStringLiteral("ip"),
                             QString::fromUtf8(arguments).split(QLatin1Char(' '))) == 0;
}

uint indexOf(const char *name)
{
    return static_cast<uint>(QNetworkInterface::interfaceIndexFromName(QString::fromUtf8(name)));
}

/// One more network that leads nowhere.
bool addInterface()
{
    return (ip("link add second0 type dummy") ||
            (ip("link add second0 type veth peer name second1") && ip("link set second1 up"))) &&
           ip("address add 198.51.100.1/24 brd + dev second0") && ip("link set second0 up");
}
} // namespace

/// By which interfaces a search leaves, on networks of its own. The steps build on one another.
class ModuleRoadsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withOneInterfaceTheSystemChooses()
    {
        QVERIFY(indexOf("pelora0") != 0);
        QCOMPARE(broadcastRoads(), QList<ModuleRoad>{ModuleRoad()});
        QCOMPARE(searchedInterfaces(), QList<uint>{indexOf("pelora0")});
    }

    void withTwoEachIsSearched()
    {
        QVERIFY(addInterface());
        QTRY_COMPARE(broadcastRoads().size(), 2); // until the system says that it runs
        const QList<ModuleRoad> expected = {
            {indexOf("pelora0"), QHostAddress(QStringLiteral("255.255.255.255"))},
            {indexOf("second0"), QHostAddress(QStringLiteral("255.255.255.255"))}};
        QCOMPARE(broadcastRoads(), expected);
        QCOMPARE(searchedInterfaces(), (QList<uint>{indexOf("pelora0"), indexOf("second0")}));
    }

private:
    /// On which interfaces a module hears a search, with the real ports and addresses.
    static QList<uint> searchedInterfaces()
    {
        UdpModule module(QHostAddress(QHostAddress::AnyIPv4), 1901);
        ModuleNetwork network;
        network.roads = broadcastRoads();
        network.collection = 200ms;
        ModuleSearch search(network);
        bool hasEnded = false;
        connect(&search, &ModuleSearch::finished, &search, [&] { hasEnded = true; });
        search.start();
        (void)QTest::qWaitFor([&] { return hasEnded; });
        return module.interfaces();
    }
};

QTEST_GUILESS_MAIN(ModuleRoadsTest)
#include "tst_module_roads.moc"
