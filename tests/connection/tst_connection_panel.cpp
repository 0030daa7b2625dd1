#include "connection/connection_panel.h"
#include "connection/initial_exchange.h"
#include "device_link_fixture.h"
#include "session/serial_ports.h"
#include "support/dialog_recorder.h"
#include "support/scripted_switch.h"

#include <QSerialPortInfo>
#include <QSignalSpy>
#include <QTest>
#include <QUdpSocket>

/// Stands for the window: has the slot that the watchdog's timer calls by name.
class Window : public QWidget
{
    Q_OBJECT

public:
    ConnectionPanel *panel = nullptr;
    int judged = 0;

public Q_SLOTS:
    void is_not_Connected_Message()
    {
        panel->judgeConnection();
        ++judged; // not reached when the judgement ends the process
    }
};

namespace {
struct PanelFixture : LinkFixture
{
    explicit PanelFixture(NetworkLinkSettings settings = {})
        : LinkFixture(LinkFactories::real(), settings), exchange(link),
          panel(timerTarget, link, controls, exchange, ports, {std::chrono::milliseconds(40)})
    {
        timerTarget.panel = &panel;
        controls.setDisconnected();
    }

    Window timerTarget;
    QComboBox ports;
    InitialExchange exchange;
    ConnectionPanel panel;
};
} // namespace

/// On, Off, the port selector and the watchdog.
class ConnectionPanelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(openLog(), 1); }
    void cleanupTestCase() { closeLog(); }

    void choosingAPortReopensItAndSendsTheThreeCommandsInOrder()
    {
        PtyPair first;
        PtyPair second;
        ScriptedSwitch device(second);
        PanelFixture f;
        f.ports.addItems({first.path(), second.path()});
        f.link.openSerialLink(first.path().toStdString());
        QSignalSpy startingOver(&f.panel, &ConnectionPanel::startingOver);
        f.controls.setConnected();
        f.controls.markConnected(true);

        f.ports.setCurrentIndex(1);
        f.panel.openSelectedPort();
        QTRY_COMPARE(device.commands().size(), 3);
        QCOMPARE(device.commands(), (QList<QByteArray>{"//rl", "//??", "//BP"}));
        QCOMPARE(startingOver.count(), 1);
        QVERIFY(f.controls.areHandlersArmed());
        QVERIFY(!f.controls.isConnected());
        QVERIFY(!f.device.isEnabled());
        QVERIFY(f.exchange.isAwaitingRlReply());
        QVERIFY(f.exchange.isAwaitingStatusReply());
        QVERIFY(f.exchange.isAwaitingBpReply());
        QCOMPARE(f.link.openSerialLinks(), 1);
        QVERIFY(first.read().isEmpty());
    }

    void onOpensTheSelectedPortAndAsksForAReadBack()
    {
        PtyPair cable;
        PanelFixture f;
        f.ports.addItem(cable.path());
        QSignalSpy wanted(&f.panel, &ConnectionPanel::readBackWanted);
        f.panel.switchOn();
        QCOMPARE(f.link.openSerialLinks(), 1);
        QCOMPARE(wanted.count(), 1);
    }

    void offClosesAndTurnsRedOnlyWhatWasConnected()
    {
        PtyPair cable;
        PanelFixture f;
        f.link.openSerialLink(cable.path().toStdString());
        f.controls.markConnected(true);
        f.controls.setConnected();
        f.panel.switchOff();
        QVERIFY(!f.link.hasSerialPort());
        QVERIFY(!f.controls.isConnected());
        QVERIFY(f.on.isEnabled());
        f.controls.setConnected(); // without having answered: Off leaves the look as it is
        f.panel.switchOff();
        QVERIFY(!f.on.isEnabled());
    }

    void theWatchdogIsSilentOnceTheSwitchHasAnswered()
    {
        QUdpSocket module;
        QVERIFY(module.bind(QHostAddress::LocalHost, 0));
        PanelFixture f({module.localPort(), std::chrono::seconds(3)});
        f.tcpIp = true;
        f.link.setModule(QStringLiteral("127.0.0.1"), QString());
        DialogRecorder dialogs;
        f.panel.switchOn();
        f.controls.setConnected();
        QTRY_COMPARE(f.timerTarget.judged, 1);
        QVERIFY(dialogs.seen().isEmpty());
    }

    void theWatchdogOfAConnectionThatWasSwitchedOffSaysNothing()
    {
        QUdpSocket module;
        QVERIFY(module.bind(QHostAddress::LocalHost, 0));
        PanelFixture f({module.localPort(), std::chrono::seconds(3)});
        f.tcpIp = true;
        f.link.setModule(QStringLiteral("127.0.0.1"), QString());
        DialogRecorder dialogs;
        f.panel.switchOn();
        f.panel.switchOff();
        QTRY_COMPARE(f.timerTarget.judged, 1);
        QVERIFY(dialogs.seen().isEmpty());
        QVERIFY(!f.link.hasUdpSocket());
    }

    void extraPortsComeBeforeTheSystemsOwn()
    {
        QStringList systems;
        const QList<QSerialPortInfo> infos = QSerialPortInfo::availablePorts();
        for (const QSerialPortInfo &info : infos)
            systems.append(info.portName());

        qunsetenv("PELORA_EXTRA_SERIAL_PORTS");
        QCOMPARE(serialPortNames(), systems);
        qputenv("PELORA_EXTRA_SERIAL_PORTS", "/tmp/one:/dev/pts/7::");
        QCOMPARE(serialPortNames(),
                 QStringList({QStringLiteral("/tmp/one"), QStringLiteral("/dev/pts/7")}) + systems);
        qunsetenv("PELORA_EXTRA_SERIAL_PORTS");
    }
};

QTEST_MAIN(ConnectionPanelTest)
#include "tst_connection_panel.moc"
