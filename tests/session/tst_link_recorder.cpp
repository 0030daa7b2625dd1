#include "network_scene.h"
#include "session/device_link.h"
#include "session/link_recorder.h"
#include "session/module_session.h"
#include "udp_module.h"

#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace std::chrono_literals;
using Direction = LinkRecorder::Direction;
using Road = LinkRecorder::Road;

namespace {
/// A file on a disk that is full after `room` bytes.
class SmallFile : public QFile
{
public:
    SmallFile(const QString &name, qint64 room) : QFile(name), room_(room) {}

protected:
    qint64 writeData(const char *data, qint64 size) override
    {
        const qint64 fits = std::min(size, room_);
        room_ -= fits;
        const qint64 written = QFile::writeData(data, fits);
        if (fits < size)
            setErrorString(QStringLiteral("No space left on device"));
        return written;
    }

private:
    qint64 room_;
};

const QByteArray loginRequest("\xff\x13\x03\x9c\xa5\x25\x1a\x2b\x3c"
                              "admin\0secret\x8c",
                              22);
/// A line of a record; `text` as JSON has it.
QByteArray line(const char *bytes, const char *direction, const char *name, const char *road,
                const char *text)
{
    return QByteArray("{\"bytes\":\"") + bytes + "\",\"direction\":\"" + direction +
           "\",\"name\":\"" + name + "\",\"road\":\"" + road + "\",\"text\":\"" + text +
           "\",\"time\":T}";
}
} // namespace

/// What a record holds.
class LinkRecorderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { (void)QFile::remove(file()); }

    void aLineOfEachKind()
    {
        LinkRecorder recorder(file());
        QCOMPARE(recorder.problem(), QString());
        recorder.note(Direction::Sent, QStringLiteral("desk-1"), Road::Serial, "//rl\r");
        recorder.note(Direction::Received, QStringLiteral("192.0.2.7"), Road::Udp, "//RL\nC1\t1");
        recorder.note(Direction::Received, QString::fromUtf8("Büro"), Road::Serial,
                      QByteArray("\0\x1b\xff\"\\\xc3\xbc", 7));
        recorder.note(Direction::Sent, QStringLiteral("192.0.2.7"), Road::Module,
                      QByteArray("\xff\x01\x01\x02", 4));
        const QByteArrayList expected = {
            line("2f2f726c0d", "sent", "desk-1", "serial", "//rl\\r"),
            line("2f2f524c0a43310931", "received", "192.0.2.7", "udp", "//RL\\nC1\\t1"),
            line("001bff225cc3bc", "received", "Büro", "serial", "\\u0000\\u001b�\\\"\\\\ü"),
            line("ff010102", "sent", "192.0.2.7", "module", "�\\u0001\\u0001\\u0002")};
        QCOMPARE(lines(), expected);
    }

    void theTimeRunsFromTheRecordersStart()
    {
        QElapsedTimer clock;
        clock.start();
        LinkRecorder recorder(file());
        QVERIFY(QTest::qWaitFor([&] { return clock.elapsed() >= 50; }));
        recorder.note(Direction::Sent, QStringLiteral("a"), Road::Serial, "x");
        const QRegularExpressionMatch time =
            QRegularExpression(QStringLiteral("\"time\":(\\d+)}\n$"))
                .match(QString::fromUtf8(contents()));
        QVERIFY(time.hasMatch());
        QVERIFY(time.captured(1).toInt() >= 40);
        QVERIFY(time.captured(1).toInt() <= clock.elapsed());
    }

    void whatTheFileHeldBeforeIsGone()
    {
        QFile old(file());
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write("something else\n");
        old.close();
        const LinkRecorder recorder(file());
        QCOMPARE(contents(), QByteArray());
    }

    void aFileThatCannotBeWritten()
    {
        LinkRecorder recorder(dir_.filePath(QStringLiteral("missing/record.jsonl")));
#ifdef Q_OS_WIN
        QVERIFY(!recorder.problem().isEmpty()); // in the words of the system's language
#else
        QCOMPARE(recorder.problem(), QStringLiteral("No such file or directory"));
#endif
        const QSignalSpy failures(&recorder, &LinkRecorder::failed);
        recorder.note(Direction::Sent, QStringLiteral("a"), Road::Serial, "x");
        QCOMPARE(failures.count(), 0);
    }

    void aFullDiskIsToldOnceAndLeavesWholeLines()
    {
        LinkRecorder recorder(std::make_unique<SmallFile>(file(), 150));
        const QSignalSpy failures(&recorder, &LinkRecorder::failed);
        for (int i = 0; i < 5; ++i)
            recorder.note(Direction::Sent, QStringLiteral("a"), Road::Serial, "x");
        QCOMPARE(failures.count(), 1);
        QCOMPARE(failures.first().first().toString(), QStringLiteral("No space left on device"));
        QCOMPARE(recorder.problem(), QStringLiteral("No space left on device"));
        const QByteArrayList expected = {line("78", "sent", "a", "serial", "x")};
        QCOMPARE(lines(), expected);
    }

    void theSystemsFullDevice()
    {
        const QString full = QStringLiteral("/dev/full");
        if (!QFile::exists(full))
            QSKIP("this system has no /dev/full");
        LinkRecorder recorder(full);
        QCOMPARE(recorder.problem(), QString());
        const QSignalSpy failures(&recorder, &LinkRecorder::failed);
        recorder.note(Direction::Sent, QStringLiteral("a"), Road::Serial, "x");
        QCOMPARE(failures.count(), 1);
        QCOMPARE(recorder.problem(), QStringLiteral("No space left on device"));
    }

    void twoSessionsInOneFile()
    {
        LinkRecorder recorder(file());
        NetworkScene desk;
        NetworkScene hall;
        record(desk.watch.session, recorder, QStringLiteral("desk"), Road::Udp);
        record(hall.watch.session, recorder, QStringLiteral("hall"), Road::Udp);
        for (NetworkScene *scene : {&desk, &hall}) {
            QVERIFY(scene->watch.open());
            scene->watch.session.write("//c2");
            QTRY_COMPARE(scene->device.commands(), QByteArrayList{"//c2\r"});
            scene->device.say("**C2\n");
            QTRY_VERIFY(contents().endsWith("}\n") && contents().contains("2a2a43320a"));
        }
        const QByteArrayList expected = {line("2f2f63320d", "sent", "desk", "udp", "//c2\\r"),
                                         line("2a2a43320a", "received", "desk", "udp", "**C2\\n"),
                                         line("2f2f63320d", "sent", "hall", "udp", "//c2\\r"),
                                         line("2a2a43320a", "received", "hall", "udp", "**C2\\n")};
        QTRY_COMPARE(lines(), expected);
    }

    void theWindowsLink()
    {
        UdpSwitch device;
        device.answers["//c2\r"] = {"**C2\n"};
        LinkRecorder recorder(file());
        DeviceLink link({device.port()});
        record(link, recorder);
        // Whoever answers from within the news of an arrival stands behind it.
        connect(&link, &DeviceLink::socketReadyRead, &link, [&] {
            if (link.connection().takeArrived() == "**C2\n")
                link.forwardCommand("//b2");
        });
        link.writeDirectly("lost\r");
        link.openSerialLink("/nowhere/switch");
        link.writeDirectly("lost\r");
        link.setModule(QStringLiteral("127.0.0.1"), QStringLiteral("Desk"));
        link.openNetworkLink();
        link.writeDirectly(QByteArray(70000, 'x')); // more than a datagram holds
        link.forwardCommand("//c2");
        QTRY_COMPARE(device.commands(), (QByteArrayList{"//c2\r", "//b2\r"}));
        link.closeActiveLink();
        link.writeDirectly("lost\r");
        const QByteArrayList expected = {
            line("2f2f63320d", "sent", "127.0.0.1", "udp", "//c2\\r"),
            line("2a2a43320a", "received", "127.0.0.1", "udp", "**C2\\n"),
            line("2f2f62320d", "sent", "127.0.0.1", "udp", "//b2\\r")};
        QCOMPARE(lines(), expected);
    }

    void aSearch()
    {
        UdpModule module;
        const QByteArray mac("\x9c\xa5\x25\x1a\x2b\x3c", 6);
        module.searchAnswers = {UdpModule::discoveryReply(mac)};
        ModuleSearch search(networkOf(module));
        LinkRecorder recorder(file());
        record(search, recorder, QStringLiteral("search"));
        QSignalSpy ends(&search, &ModuleSearch::finished);
        search.start();
        QVERIFY(ends.wait());
        QCOMPARE(lines().size(), 2);
        const QByteArray sent = "{\"bytes\":\"ff010102\",\"direction\":\"sent\",\"name\":"
                                "\"search\",\"road\":\"module\",";
        const QByteArray received =
            "{\"bytes\":"
            "\"ff24010000c0a801079ca5251a2b3c000000004465736b00000000000000000000000000\","
            "\"direction\":\"received\",\"name\":\"search\",";
        QVERIFY(lines().first().startsWith(sent));
        QVERIFY(lines().last().startsWith(received));
    }

    void aLoginWithoutThePassword()
    {
        UdpModule module;
        module.loginAnswers = {UdpModule::configuration()};
        ModuleSession session({{QStringLiteral("192.168.1.7"), QStringLiteral("9ca5251a2b3c"),
                                QStringLiteral("4465736b"), QStringLiteral("Desk")},
                               {0, QHostAddress(QHostAddress::LocalHost)}},
                              {QStringLiteral("admin"), QStringLiteral("secret")},
                              networkOf(module));
        LinkRecorder recorder(file());
        record(session, recorder, QStringLiteral("Desk"));
        QSignalSpy answers(&session, &ModuleSession::loggedIn);
        session.logIn();
        QVERIFY(answers.wait());
        QCOMPARE(module.requests(), QByteArrayList{loginRequest});
        QCOMPARE(session.setUp({QStringLiteral("80"),
                                QStringLiteral("192.168.1.7"),
                                QStringLiteral("192.168.1.1"),
                                QStringLiteral("255.255.255.0"),
                                std::nullopt,
                                {QStringLiteral("admin"), QStringLiteral("newone")}}),
                 QString());
        QTRY_COMPARE(module.requests().size(), 3);
        QCOMPARE(lines().size(), 4);
        QVERIFY(lines().at(0).contains("\"ff13039ca5251a2b3c61646d696e002a2a2a2a2a2a00\""));
        QVERIFY(lines().at(1).contains("\"received\""));
        QVERIFY(lines().at(3).contains("\"ff13049ca5251a2b3c61646d696e002a2a2a2a2a2a00\""));
        QVERIFY(!contents().contains("secret"));
        QVERIFY(!contents().contains("736563726574"));
        QVERIFY(!contents().contains("newone"));
        QVERIFY(!contents().contains("6e65776f6e65"));
        QVERIFY(!contents().contains("8c\""));
    }

private:
    static ModuleNetwork networkOf(const UdpModule &module)
    {
        const QHostAddress loopback(QHostAddress::LocalHost);
        ModuleNetwork network;
        network.localAddress = loopback;
        network.discoveryPort = 0;
        network.modulePort = module.port();
        network.roads = {{0, loopback}};
        network.collection = 100ms;
        return network;
    }

    QString file() const
    {
        return dir_.filePath(QStringLiteral("record.jsonl"));
    }

    QByteArray contents() const
    {
        QFile record(file());
        return record.open(QIODevice::ReadOnly) ? record.readAll() : QByteArray("no file");
    }

    /// The record's lines, with T for every time.
    QByteArrayList lines() const
    {
        QString text = QString::fromUtf8(contents());
        text.replace(QRegularExpression(QStringLiteral("\"time\":\\d+}\n")),
                     QStringLiteral("\"time\":T}\n"));
        QByteArrayList lines = text.toUtf8().split('\n');
        if (!lines.takeLast().isEmpty())
            qFatal("the last line is not whole");
        return lines;
    }

    QTemporaryDir dir_;
};

QTEST_GUILESS_MAIN(LinkRecorderTest)
#include "tst_link_recorder.moc"
