#include "support/dialog_recorder.h"
#include "support/link_bench.h"
#include "support/pty_pair.h"

#include <QSignalSpy>
#include <QTest>
#include <QUdpSocket>
#include <stdexcept>
#include <sys/fsuid.h>
#include <sys/stat.h>

namespace {
/// A port that throws from one of its operations, as a failing driver's wrapper might.
class ThrowingPort : public QSerialPort
{
public:
    enum Where { Nowhere, OnOpen, OnWrite, OnClose };
    explicit ThrowingPort(const QString &name, Where where) : QSerialPort(name), where_(where) {}

    bool open(OpenMode mode) override
    {
        if (where_ == OnOpen)
            throw std::runtime_error("open");
        return QSerialPort::open(mode);
    }
    void close() override
    {
        QSerialPort::close();
        if (std::exchange(where_, where_ == OnClose ? Nowhere : where_) == OnClose)
            throw std::runtime_error("close");
    }

protected:
    qint64 writeData(const char *data, qint64 size) override
    {
        if (where_ == OnWrite)
            throw std::runtime_error("write");
        return QSerialPort::writeData(data, size);
    }

private:
    Where where_;
};

LinkFactories withPort(ThrowingPort::Where where)
{
    LinkFactories factories = LinkFactories();
    factories.serialPort = [where](const QString &name) {
        return std::make_unique<ThrowingPort>(name, where);
    };
    return factories;
}

/// A socket whose closing throws, once.
class ThrowingSocket : public QUdpSocket
{
public:
    void close() override
    {
        QUdpSocket::close();
        if (std::exchange(armed_, false))
            throw std::runtime_error("close");
    }

private:
    bool armed_ = true;
};
} // namespace

/// Opening, closing and writing to either link, over a real pseudo-terminal and real sockets.
class DeviceLinkTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QCOMPARE(openLog(), 1); }
    void cleanup() { closeLog(); }

    void aCommandWithoutALinkIsLostSilently()
    {
        LinkBench f;
        DialogRecorder dialogs;
        f.link.forwardCommand("//rl");
        f.link.forwardCommand("//rl");
        QCoreApplication::processEvents();
        QVERIFY(dialogs.seen().isEmpty());
        QCOMPARE(f.log(), QByteArray("Start.........\n"));
    }

    void aCommandIsItsBytesAndACarriageReturn()
    {
        PtyPair cable;
        LinkBench f;
        f.link.openSerialLink(cable.path().toStdString());
        QCOMPARE(f.link.serialOpenCount(), 1);
        std::string command = "//??";
        f.link.sendCommand(command);
        QCOMPARE(cable.waitForBytes(5), QByteArray("\x2F\x2F\x3F\x3F\x0D"));
        QCOMPARE(command, std::string("//??\r"));
    }

    void theLineIs115200With8N1AndNoFlowControl()
    {
        PtyPair cable;
        LinkFactories factories = LinkFactories();
        QSerialPort *made = nullptr;
        factories.serialPort = [&](const QString &name) {
            auto port = std::make_unique<QSerialPort>(name);
            made = port.get();
            return port;
        };
        LinkBench f(factories);
        f.link.openSerialLink(cable.path().toStdString());
        QCOMPARE(made->baudRate(QSerialPort::Input), 115200);
        QCOMPARE(made->baudRate(QSerialPort::Output), 115200);
        QCOMPARE(made->dataBits(), QSerialPort::Data8);
        QCOMPARE(made->parity(), QSerialPort::NoParity);
        QCOMPARE(made->stopBits(), QSerialPort::OneStop);
        QCOMPARE(made->flowControl(), QSerialPort::NoFlowControl);
    }

    void withSendingOffNothingIsWrittenOnEitherLink()
    {
        PtyPair cable;
        LinkBench f;
        f.link.setModule(QStringLiteral("127.0.0.1"), QStringLiteral("DESK"));
        f.link.openSerialLink(cable.path().toStdString());
        f.link.setSendEnabled(false);
        f.link.forwardCommand("//c1");
        f.link.setSendEnabled(true);
        f.link.forwardCommand("//c2");
        QCOMPARE(cable.waitForBytes(5), QByteArray("//c2\r"));

        f.link.openNetworkLink();
        f.link.setSendEnabled(false);
        f.link.forwardCommand("//c3");
        f.link.setSendEnabled(true);
        f.link.forwardCommand("//c4");
        QCOMPARE(f.commands(1), QByteArrayList{"//c4\r"});
        QVERIFY(f.isSilent());
    }

    void oneCommandIsOneDatagram()
    {
        LinkBench f;
        f.link.setModule(QStringLiteral("127.0.0.1"), QStringLiteral("DESK"));
        f.link.openNetworkLink();
        f.link.forwardCommand("//rl");
        f.link.forwardCommand("//??");
        QCOMPARE(f.commands(2), (QByteArrayList{"//rl\r", "//??\r"}));
        QCOMPARE(f.ip.text(), QStringLiteral("  IP: 127.0.0.1"));
        QCOMPARE(f.name.text(), QStringLiteral("  Name: DESK"));
    }

    void openingOneLinkClosesTheOther()
    {
        PtyPair cable;
        LinkBench f;
        f.link.openNetworkLink();
        QCOMPARE(f.link.socketOpenCount(), 1);
        f.device.setEnabled(true);

        f.link.openSerialLink(cable.path().toStdString());
        QCOMPARE(f.link.socketOpenCount(), 0);
        QVERIFY(!f.link.hasUdpSocket());
        QCOMPARE(f.link.serialOpenCount(), 1);
        QVERIFY(!f.device.isEnabled());

        f.link.openNetworkLink();
        QVERIFY(!f.link.hasSerialPort());
        QCOMPARE(f.link.serialOpenCount(), 0);
        QCOMPARE(f.link.socketOpenCount(), 1);
    }

    void reopeningTheNetworkLinkClearsTheTerminalAndDisconnects()
    {
        LinkBench f;
        f.link.openNetworkLink();
        f.terminal.append(QStringLiteral("old text"));
        f.link.connection().markConnected(true);
        f.controls.setConnected();
        f.link.openNetworkLink();
        QCOMPARE(f.text.toPlainText(), QString());
        QVERIFY(!f.link.connection().isConnected());
        QCOMPARE(f.link.socketOpenCount(), 1);
    }

    void closingLeavesNoLinkAndNoControls()
    {
        PtyPair cable;
        LinkBench f;
        f.link.openSerialLink(cable.path().toStdString());
        f.link.closeActiveLink();
        QVERIFY(!f.link.hasSerialPort());
        QCOMPARE(f.link.serialOpenCount(), 0);
        QVERIFY(!f.device.isEnabled());
        QVERIFY(!f.combo.isEnabled());
        f.link.closeActiveLink();
        QCOMPARE(f.link.serialOpenCount(), 0);
    }

    void aPortThatDoesNotOpenIsLoggedAndShownNowhereElse()
    {
        LinkBench f;
        DialogRecorder dialogs;
        f.link.openSerialLink("/dev/no_such_port");
        QCoreApplication::processEvents();
        QVERIFY(dialogs.seen().isEmpty());
        QCOMPARE(f.link.serialOpenCount(), 0);
        QVERIFY2(f.log().contains("/dev/no_such_port could not be opened: "), f.log().constData());
        QVERIFY(f.indicator.toolTip().startsWith(
            QStringLiteral("Disconnected: /dev/no_such_port could not be opened: ")));
        QVERIFY(f.on.toolTip() == f.indicator.toolTip());
        QVERIFY(!f.device.isEnabled() && !f.combo.isEnabled());
        f.link.closeSerialLink();
        PtyPair cable;
        f.link.openSerialLink(cable.path().toStdString());
        QCOMPARE(f.link.serialOpenCount(), 1);
    }

    void missingPermissionNamesTheDevicesGroup()
    {
        PtyPair cable;
        const QByteArray path = cable.path().toLocal8Bit();
        QCOMPARE(::chmod(path.constData(), 0), 0);
        LinkBench f;
        // Without root's pass for a moment: a file-system user of nobody.
        const int before = ::setfsuid(65534);
        f.link.openSerialLink(cable.path().toStdString());
        ::setfsuid(static_cast<uid_t>(before));
        QCOMPARE(f.link.serialOpenCount(), 0);
        const QString group = QFileInfo(cable.path()).group();
        QVERIFY(!group.isEmpty());
        const QString expected = QStringLiteral("(the device belongs to the group %1)").arg(group);
        QVERIFY2(f.log().contains(expected.toUtf8()), f.log().constData());
        QVERIFY(f.indicator.toolTip().contains(expected));
    }

    void aPulledCableClosesOnceLogsOnceAndTellsOnce()
    {
        auto cable = std::make_unique<PtyPair>();
        LinkBench f;
        const QString path = cable->path();
        f.link.openSerialLink(path.toStdString());
        f.link.connection().markConnected(true);
        f.controls.setConnected();
        QSignalSpy broken(&f.link, &DeviceLink::broken);
        DialogRecorder dialogs;
        cable->pull();
        QTRY_COMPARE(broken.count(), 1);
        QVERIFY(!f.link.hasSerialPort());
        QCOMPARE(f.link.serialOpenCount(), 0);
        QVERIFY(!f.link.connection().isConnected());
        QVERIFY(f.indicator.styleSheet().contains(QStringLiteral("red")));
        QVERIFY(!f.device.isEnabled());
        QTRY_COMPARE(dialogs.seen().size(), 1);
        QCOMPARE(dialogs.seen().constFirst().icon, QMessageBox::Warning);
        QVERIFY(!dialogs.seen().constFirst().modal);
        QVERIFY(dialogs.seen().constFirst().text.startsWith(
            QStringLiteral("The connection to %1 was lost: ").arg(path)));
        QTest::qWait(100); // long enough for a repeated report to show
        QCOMPARE(broken.count(), 1);
        QCOMPARE(dialogs.seen().size(), 1);
        QCOMPARE(f.log().count("was lost"), 1);
    }

    void aWriteToAPulledCableIsTheSameBreak()
    {
        auto cable = std::make_unique<PtyPair>();
        LinkBench f;
        f.link.openSerialLink(cable->path().toStdString());
        QSignalSpy broken(&f.link, &DeviceLink::broken);
        DialogRecorder dialogs;
        cable->pull();
        f.link.forwardCommand("//rl");
        QTRY_COMPARE(broken.count(), 1);
        QTRY_COMPARE(dialogs.seen().size(), 1);
        f.link.forwardCommand("//rl");
        QCOMPARE(broken.count(), 1);
    }

    void failuresThatThrowAreLoggedAndShown_data()
    {
        QTest::addColumn<int>("where");
        QTest::addColumn<QString>("message");
        QTest::newRow("open") << int(ThrowingPort::OnOpen)
                              << QStringLiteral("Connection to serial port error");
        QTest::newRow("write") << int(ThrowingPort::OnWrite) << QStringLiteral("Write data error");
        QTest::newRow("close") << int(ThrowingPort::OnClose)
                               << QStringLiteral("Close serial error");
    }

    void failuresThatThrowAreLoggedAndShown()
    {
        QFETCH(int, where);
        QFETCH(QString, message);
        PtyPair cable;
        LinkBench f(withPort(ThrowingPort::Where(where)));
        DialogRecorder dialogs;
        f.link.openSerialLink(cable.path().toStdString());
        f.link.forwardCommand("//rl");
        f.link.closeSerialLink();
        expectFailure(f, dialogs, message);
    }

    void aSocketThatCannotBeClosedIsReported()
    {
        LinkFactories factories = LinkFactories();
        factories.udpSocket = [] { return std::make_unique<ThrowingSocket>(); };
        LinkBench f(factories);
        f.link.openNetworkLink();
        DialogRecorder dialogs;
        f.link.closeNetworkLink();
        expectFailure(f, dialogs, QStringLiteral("Close socket error"));
    }

    void aSocketThatCannotBeMadeIsReported()
    {
        LinkFactories factories = LinkFactories();
        factories.udpSocket = []() -> std::unique_ptr<QUdpSocket> {
            throw std::runtime_error("socket");
        };
        LinkBench f(factories);
        DialogRecorder dialogs;
        f.link.openNetworkLink();
        expectFailure(f, dialogs, QStringLiteral("Connection to socket error"));
        QCOMPARE(f.link.socketOpenCount(), 0);
    }

    void writingPastTheGateWithoutALinkIsHarmless()
    {
        LinkBench f;
        f.link.writeDirectly("//FF01B01\r");
        f.link.writeDirectly("//FF01B01\r");
        QVERIFY(!f.link.hasSerialPort() && !f.link.hasUdpSocket());
    }

private:
    static void expectFailure(LinkBench &fixture, const DialogRecorder &dialogs,
                              const QString &message)
    {
        QCOMPARE(dialogs.seen().size(), 1);
        QCOMPARE(dialogs.seen().constFirst().title, QStringLiteral("Information"));
        QCOMPARE(dialogs.seen().constFirst().text, message);
        QCOMPARE(dialogs.seen().constFirst().icon, QMessageBox::Warning);
        QVERIFY(dialogs.seen().constFirst().modal);
        QVERIFY(LinkBench::log().contains(message.toUtf8() + "   "));
        Q_UNUSED(fixture)
    }
};

QTEST_MAIN(DeviceLinkTest)
#include "tst_device_link.moc"
