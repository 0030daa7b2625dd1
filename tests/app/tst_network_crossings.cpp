#include "support/canned_reply.h"
#include "support/network_window.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>
#include <atomic>
#include <thread>

namespace {
const QList<QByteArray> readCommands = {"//rl\r", "//??\r", "//BP\r"};

// A wizard's run takes Wine several seconds.
#ifdef Q_OS_WIN
constexpr std::chrono::milliseconds longerThanAWizardsRun(10'000);
#else
constexpr std::chrono::milliseconds longerThanAWizardsRun(1500);
#endif
constexpr int pastIt = static_cast<int>(longerThanAWizardsRun.count()) + 100;
} // namespace

/// Where roads cross on the network: modules that go and come, and connections that end.
class NetworkCrossingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theWizardAgainSendsNoResolution()
    {
        NetworkWindow n;
        n.answers = {
            QByteArray(cannedReply).replace("resolution: 1 2 3 10", "resolution: 1 11 3 4")};
        n.start();
        QTRY_COMPARE(n.combo("comboBox_mouse_movement_resolution_setting_2")->currentIndex(), 10);
        n.commands.clear();
        n.button("pushButton_Connection_Settings")->click();
        QTRY_COMPARE(n.commands, readCommands);
        QTRY_COMPARE(n.combo("comboBox_mouse_movement_resolution_setting_2")->currentIndex(), 10);
        QCOMPARE(n.commands, readCommands);
    }

    void aModuleThatWasAwayIsHeardAgain()
    {
#ifdef Q_OS_WIN
        QSKIP("Wine tells of no datagram that comes after a host was not reachable");
#endif
        NetworkWindow n;
        n.start();
        QVERIFY(n.waitForRead());
        const quint16 port = n.switchPort.localPort();
        n.switchPort.close(); // its host answers "port unreachable" from here on
        for (const int index : {3, 0, 2}) {
            n.combo("comboBox_KM_Control")->setCurrentIndex(index);
            QTest::qWait(20);
        }
        QVERIFY(n.switchPort.bind(QHostAddress::LocalHost, port));
        n.commands.clear();
        n.button("pushButton_Refresh")->click();
        QTRY_COMPARE(n.commands, readCommands);
        QTRY_COMPARE(n.combo("comboBox_KM_Control")->currentIndex(), 1);
        QVERIFY(n.isGreen());
        n.say("**C4\n");
        QTRY_COMPARE(n.combo("comboBox_KM_Control")->currentIndex(), 3);
        QVERIFY(n.user.seen().isEmpty());
    }

    void theFirstCommandAfterAnUnreachableModuleIsNotLost()
    {
        NetworkWindow n;
        n.start();
        QVERIFY(n.waitForRead());
        const quint16 port = n.switchPort.localPort();
        n.switchPort.close();
        n.combo("comboBox_KM_Control")->setCurrentIndex(3); // draws the report
        QVERIFY(n.switchPort.bind(QHostAddress::LocalHost, port));
        n.commands.clear();
        n.combo("comboBox_KM_Control")->setCurrentIndex(2);
        QTRY_COMPARE(n.commands, QList<QByteArray>{"//c3\r"});
    }

    void offAfterAnUnansweredRefreshLeavesOn()
    {
        NetworkWindow n;
        n.start();
        QVERIFY(n.waitForRead());
        n.answers.clear();
        n.button("pushButton_Refresh")->click();
        n.button("pushButton_OFF_Connection")->click();
        QVERIFY(!n.isGreen());
        QVERIFY(n.button("pushButton_ON_Connection")->isEnabled());
        QVERIFY(!n.button("pushButton_OFF_Connection")->isEnabled());
    }

    void theFormerSwitchsConfigurationIsNotAppliedToTheNext()
    {
        NetworkWindow n;
        n.start();
        QVERIFY(n.waitForRead());
        QCOMPARE(n.combo("comboBox_Select_active_port")->currentIndex(), 2);
        n.button("pushButton_OFF_Connection")->click();
        // The next switch's first datagram is no listing, and complete enough to be applied.
        n.answers = {"Current Hotkey Trigger: F1\n//FF01B13FF02B14FF03B15FF04B16\n"};
        n.label("label_Custom_1")->clear();
        n.button("pushButton_ON_Connection")->click();
        QTRY_COMPARE(n.label("label_Current_Hotkey_Trigger_Data")->text(), QStringLiteral("F1"));
        QCOMPARE(n.label("label_Custom_1")->text(), QString());
        QCOMPARE(n.combo("comboBox_mouse_movement_resolution_setting_1")->count(), 9);
    }

    void aFileIsDroppedWhenTheWizardConnectsAnew()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("desk.txt"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) &&
                file.write("KM Control: //c3\nUSB Control: //u4\n") > 0);
        file.close();
        NetworkWindow n;
        WindowSettings settings = n.settings();
        settings.settingsFile.secondPart = longerThanAWizardsRun;
        n.WindowBench::start(
            settings, SettingsFile::Dialogs{[] { return QString(); }, [path] { return path; }});
        QVERIFY(n.waitForRead());
        n.commands.clear();
        n.button("pushButton_Load_Settings_File")->click();
        n.button("pushButton_Connection_Settings")->click();
        const auto incomplete =
            QStringLiteral("Settings file not applied completely: the connection ended");
        QTRY_VERIFY(n.user.sawText(incomplete));
        QTRY_COMPARE(n.commands, QList<QByteArray>{"//c3\r"} + readCommands);
        QTest::qWait(pastIt); // and so past the second half
        QCOMPARE(n.commands, QList<QByteArray>{"//c3\r"} + readCommands);
        QCOMPARE(n.user.seen().size(), 1);
    }

    void aFloodLeavesTheWindowItsTurn()
    {
        NetworkWindow n;
        n.start();
        QVERIFY(n.waitForRead());
        std::atomic<bool> enough = false;
        const quint16 from = n.switchPort.localPort();
        const quint16 to = n.peerPort;
        n.switchPort.close(); // the flood comes from the module's own port
        std::thread flood([&enough, from, to] {
            QUdpSocket source;
            source.bind(QHostAddress::LocalHost, from);
            QElapsedTimer clock;
            clock.start();
            while (!enough && clock.elapsed() < 10'000)
                source.writeDatagram("flood\n", QHostAddress::LocalHost, to);
        });
        int turns = 0;
        QTimer turn;
        connect(&turn, &QTimer::timeout, this, [&turns] { ++turns; });
        turn.start(1);
        const bool hadItsTurn = QTest::qWaitFor([&turns] { return turns >= 20; }, 8000);
        enough = true;
        flood.join();
        QVERIFY(hadItsTurn);
        QVERIFY(n.terminal().contains(QStringLiteral("flood\n")));
    }

    void theWatchdogOfAnEarlierConnectionLeavesTheNextAlone()
    {
        NetworkWindow n;
        n.answers.clear();
        WindowSettings settings = n.settings();
        settings.panel.handshakeWatchdog = longerThanAWizardsRun;
        n.WindowBench::start(settings);
        QTRY_COMPARE(n.commands, readCommands);
        n.button("pushButton_ON_Connection")->click();       // its watchdog would end the program
        n.button("pushButton_Connection_Settings")->click(); // red when the old one would look
        QTest::qWait(pastIt);
        QVERIFY(n.user.seen().isEmpty());
    }
};

QTEST_MAIN(NetworkCrossingsTest)
#include "tst_network_crossings.moc"
