#include "simulator_process.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QNetworkDatagram>
#include <QSerialPort>
#include <QTemporaryDir>
#include <QTest>
#include <QUdpSocket>

namespace {
QByteArray line(int time, const char *direction, const char *text, const char *name,
                const char *road)
{
    return QByteArray("{\"bytes\":\"") + QByteArray(text).toHex() + "\",\"direction\":\"" +
           direction + "\",\"name\":\"" + name + "\",\"road\":\"" + road +
           "\",\"text\":\"\",\"time\":" + QByteArray::number(time) + "}\n";
}
} // namespace

/// pelora-simulator replay, run as a program and talked to through its face.
class ReplayTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSerialRecordingHasAVirtualPort()
    {
        write(conversation("serial"));
        SimulatorProcess simulator;
        const QStringList printed = simulator.start(replay({QStringLiteral("--no-pacing")}));
        QCOMPARE(printed.size(), 1);
        QCOMPARE(heardOn(printed.first(), "//c1\r", 9), QByteArray("**C1\nmore"));
        QCOMPARE(simulator.end(), 0);
        QCOMPARE(simulator.reports(), QByteArray());
    }

    void aLinkMakesAUdpRecordingSerial()
    {
        write(conversation("udp"));
        const QString link = dir_.filePath(QStringLiteral("switch"));
        SimulatorProcess simulator;
        const QStringList printed = simulator.start(
            replay({QStringLiteral("--link"), link, QStringLiteral("--no-pacing")}));
        QCOMPARE(QFileInfo(link).symLinkTarget(), printed.value(0));
        QCOMPARE(heardOn(link, "//c1\r", 9), QByteArray("**C1\nmore"));
        QCOMPARE(simulator.end(), 0);
        QVERIFY(!QFileInfo(link).isSymLink());
    }

    void aUdpRecordingKeepsItsDatagrams()
    {
        write(conversation("udp"));
        QUdpSocket probe;
        QVERIFY(probe.bind(QHostAddress(QHostAddress::LocalHost), 0));
        const quint16 port = probe.localPort();
        probe.close();
        SimulatorProcess simulator;
        QCOMPARE(simulator.start(replay({QStringLiteral("--switch-port"), QString::number(port)})),
                 QStringList{QStringLiteral("udp 127.0.0.1:%1").arg(port)});
        QCOMPARE(datagramsFrom(QHostAddress(QHostAddress::LocalHost), port, "//c1\r", 2),
                 (QByteArrayList{"**C1\n", "more"}));
    }

    void anAddressMakesASerialRecordingUdp()
    {
        write(conversation("serial"));
        SimulatorProcess simulator;
        const QStringList printed =
            simulator.start(replay({QStringLiteral("--udp"), QStringLiteral("127.0.0.9:0")}));
        QVERIFY(printed.value(0).startsWith(QStringLiteral("udp 127.0.0.9:")));
        const quint16 port = printed.first().section(QLatin1Char(':'), 1).toUShort();
        QCOMPARE(datagramsFrom(QHostAddress(QStringLiteral("127.0.0.9")), port, "//c1\r", 2),
                 (QByteArrayList{"**C1\n", "more"}));
    }

    void theRecordedWaitsPass()
    {
        write(line(0, "sent", "//c1\r", "desk", "udp") +
              line(300, "received", "late", "desk", "udp"));
        SimulatorProcess simulator;
        const QString any = QStringLiteral("127.0.0.1:0");
        const quint16 port = simulator.start(replay({QStringLiteral("--udp"), any}))
                                 .value(0)
                                 .section(QLatin1Char(':'), 1)
                                 .toUShort();
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(datagramsFrom(QHostAddress(QHostAddress::LocalHost), port, "//c1\r", 1),
                 QByteArrayList{"late"});
        QVERIFY(clock.elapsed() >= 290);
    }

    void aCommandThatWasNotRecordedIsReported()
    {
        write(conversation("udp"));
        SimulatorProcess simulator;
        const QString any = QStringLiteral("127.0.0.1:0");
        const quint16 port = simulator.start(replay({QStringLiteral("--udp"), any}))
                                 .value(0)
                                 .section(QLatin1Char(':'), 1)
                                 .toUShort();
        QCOMPARE(datagramsFrom(QHostAddress(QHostAddress::LocalHost), port, "//x\t1\r//c1\r", 2),
                 (QByteArrayList{"**C1\n", "more"}));
        QTRY_COMPARE(simulator.reports(), QByteArray("replay: not in the recording: //x\\t1\n"));
    }

    void badRecordingsEndWithStatus2()
    {
        write(line(0, "sent", "//c1\r", "desk", "udp") + "nonsense\n");
        const FinishedRun bad = runSimulator(replay({}));
        QCOMPARE(bad.status, 2);
        QCOMPARE(bad.reports,
                 "pelora-simulator: " + file().toUtf8() + ", line 2: no JSON object\n");
        QCOMPARE(runSimulator({QStringLiteral("replay"), QStringLiteral("/nowhere/r")}).status, 2);
    }

private:
    static QByteArray conversation(const char *road)
    {
        return line(0, "sent", "//c1\r", "desk", road) +
               line(3, "received", "**C1\n", "desk", road) +
               line(5, "received", "more", "desk", road) + line(9, "sent", "//b1\r", "desk", road);
    }

    QStringList replay(const QStringList &options) const
    {
        return QStringList{QStringLiteral("replay"), file()} + options;
    }

    static QByteArray heardOn(const QString &path, const QByteArray &command, int size)
    {
        QSerialPort port(path);
        if (!port.open(QIODevice::ReadWrite))
            return "cannot be opened";
        port.write(command);
        (void)QTest::qWaitFor([&] { return port.bytesAvailable() >= size; });
        return port.readAll();
    }

    static QByteArrayList datagramsFrom(const QHostAddress &address, quint16 port,
                                        const QByteArray &command, int count)
    {
        QUdpSocket socket;
        socket.connectToHost(address, port);
        socket.write(command);
        QByteArrayList datagrams;
        (void)QTest::qWaitFor([&] {
            while (socket.hasPendingDatagrams())
                datagrams.append(socket.receiveDatagram().data());
            return datagrams.size() >= count;
        });
        return datagrams;
    }

    QString file() const { return dir_.filePath(QStringLiteral("record.jsonl")); }
    void write(const QByteArray &contents) const
    {
        QFile recording(file());
        if (!recording.open(QIODevice::WriteOnly))
            qFatal("no place for a file");
        recording.write(contents);
    }

    QTemporaryDir dir_;
};

QTEST_GUILESS_MAIN(ReplayTest)
#include "tst_replay.moc"
