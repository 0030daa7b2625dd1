#include "connection/connection_panel.h"
#include "session/initial_exchange.h"
#include "session/serial_ports.h"
#include "support/dialog_recorder.h"
#include "support/link_bench.h"
#include "support/scripted_switch.h"

#include <QPointer>
#include <QSerialPortInfo>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

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
struct PanelFixture : LinkBench
{
    PanelFixture()
        : exchange(link), panel(timerTarget, link, controls, exchange, ports,
                                [this] { return tcpIp; }, {std::chrono::milliseconds(40)})
    {
        timerTarget.panel = &panel;
        controls.setDisconnected();
    }

    bool tcpIp = false;
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
        const QPointer<Connection> former(&f.link.connection());
        f.controls.setConnected();
        f.link.connection().markConnected(true);

        f.ports.setCurrentIndex(1);
        f.panel.openSelectedPort();
        QTRY_COMPARE(device.commands().size(), 3);
        QCOMPARE(device.commands(), (QList<QByteArray>{"//rl", "//??", "//BP"}));
        QVERIFY(!former);
        QVERIFY(f.controls.areHandlersArmed());
        QVERIFY(!f.link.connection().isConnected());
        QVERIFY(!f.device.isEnabled());
        QVERIFY(f.link.connection().awaited().awaitingRlReply);
        QVERIFY(f.link.connection().awaited().awaitingStatusReply);
        QVERIFY(f.link.connection().awaited().awaitingBpReply);
        QCOMPARE(f.link.serialOpenCount(), 1);
        QVERIFY(first.read().isEmpty());
    }

    void onOpensTheSelectedPortAndAsksForAReadBack()
    {
        PtyPair cable;
        PanelFixture f;
        f.ports.addItem(cable.path());
        QSignalSpy wanted(&f.panel, &ConnectionPanel::readBackWanted);
        f.panel.switchOn();
        QCOMPARE(f.link.serialOpenCount(), 1);
        QCOMPARE(wanted.count(), 1);
    }

    void offEndsTheConnectionWhetherOrNotItHasAnswered()
    {
        for (const bool answered : {true, false}) {
            PtyPair cable;
            PanelFixture f;
            f.link.openSerialLink(cable.path().toStdString());
            f.controls.enableDeviceControls();
            f.controls.setConnected();
            f.link.connection().markConnected(answered); // a refresh takes it back for a while
            f.panel.switchOff();
            QVERIFY(!f.link.hasSerialPort());
            QVERIFY(!f.link.connection().isConnected());
            QVERIFY(f.on.isEnabled() && !f.off.isEnabled());
            QVERIFY(!f.device.isEnabled() && !f.combo.isEnabled());
        }
    }

    void theWatchdogIsSilentOnceTheSwitchHasAnswered()
    {
        PanelFixture f;
        f.tcpIp = true;
        DialogRecorder dialogs;
        f.panel.switchOn();
        f.controls.setConnected();
        QTRY_COMPARE(f.timerTarget.judged, 1);
        QVERIFY(dialogs.seen().isEmpty());
    }

    void theWatchdogOfAConnectionThatWasSwitchedOffSaysNothing()
    {
        PanelFixture f;
        f.tcpIp = true;
        DialogRecorder dialogs;
        f.panel.switchOn();
        f.panel.switchOff();
        QVERIFY(!f.link.hasUdpSocket());
        bool later = false;
        QTimer::singleShot(80, this, [&] { later = true; }); // the watchdog would have been first
        QTRY_VERIFY(later);
        QCOMPARE(f.timerTarget.judged, 0);
        f.timerTarget.is_not_Connected_Message(); // and has nothing to say by itself
        QVERIFY(dialogs.seen().isEmpty());
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

    void aPortsNoteIsDescriptionAndManufacturerInOneLine()
    {
        const auto text = [](const char *latin1) { return QString::fromLatin1(latin1); };
        QCOMPARE(serialPortNote(text("USB Serial Port"), text("FTDI")),
                 text("USB Serial Port, FTDI"));
        QCOMPARE(serialPortNote(text(" USB\nSerial \t Port"), text(" ")), text("USB Serial Port"));
        QCOMPARE(serialPortNote(QString(), text("FTDI")), text("FTDI"));
        QCOMPARE(serialPortNote(QString(), QString()), QString());
    }
};

QTEST_MAIN(ConnectionPanelTest)
#include "tst_connection_panel.moc"
