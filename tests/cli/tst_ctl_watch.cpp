#include "desk.h"

#include <QTest>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {
/// Whoever reads the output of a process. QProcess itself reads until the process ends.
class Reader
{
public:
    explicit Reader(CtlProcess &process)
    {
        if (::pipe2(ends_, O_CLOEXEC | O_NONBLOCK) != 0)
            qFatal("no pipe to be had");
        process.process.setChildProcessModifier([this] { ::dup2(ends_[1], STDOUT_FILENO); });
    }
    ~Reader() { go(); }
    Q_DISABLE_COPY_MOVE(Reader)

    bool hasRead(const QByteArray &text)
    {
        return QTest::qWaitFor(
            [&] {
                char bytes[1024];
                for (ssize_t count = 0; (count = ::read(ends_[0], bytes, sizeof bytes)) > 0;)
                    read_.append(bytes, count);
                return read_.contains(text);
            },
            20000);
    }

    void go()
    {
        for (int &end : ends_) {
            if (end >= 0)
                ::close(end);
            end = -1;
        }
    }

private:
    int ends_[2] = {-1, -1};
    QByteArray read_;
};
} // namespace

/// peloractl watch.
class CtlWatchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatTheSwitchSaysIsShownAsItSaysIt()
    {
        Desk desk;
        CtlProcess process;
        process.start(
            (desk.option() + QStringLiteral("watch")).split(QLatin1Char(' '), Qt::SkipEmptyParts));
        QVERIFY(process.hasSaid("usb-control 3\n"));
        QCOMPARE(desk.commands(), QByteArrayList{"//??\r"});
        desk.say("\n**C4\nBeep on\n**M1\r\n");
        QVERIFY(process.hasSaid("usb-control 1\n"));
        desk.say("no end of \x1b[2J");
        QVERIFY(process.hasSaid("text no end of \\x1b[2J\n"));
        ::kill(static_cast<pid_t>(process.process.processId()), SIGINT);
        const CtlRun run = process.wait();
        QCOMPARE(run.status, 130);
        QCOMPARE(run.output, QByteArray("text Current Hotkey Trigger: Scroll Lock\n"
                                        "km-control 2\n"
                                        "usb-control 3\n"
                                        "text \n"
                                        "km-control 4\n"
                                        "text Beep on\n"
                                        "km-control 1\n"
                                        "usb-control 1\n"
                                        "text no end of \\x1b[2J\n"));
    }

    void aLineThatIsCutInTwoIsOneEvent()
    {
        Desk desk;
        CtlProcess process;
        process.start((desk.option() + QStringLiteral("--json watch"))
                          .split(QLatin1Char(' '), Qt::SkipEmptyParts));
        QVERIFY(process.hasSaid("usb_control"));
        desk.say("Current KM Con");
        desk.say("trol: 1\n");
        QVERIFY(process.hasSaid("\"value\":1"));
        ::kill(static_cast<pid_t>(process.process.processId()), SIGINT);
        CtlRun run = process.wait();
        QCOMPARE(run.status, 130);
        const QList<QJsonObject> events = run.objects();
        QCOMPARE(events.size(), 5); // three of the status, this one, and how it ended
        QCOMPARE(events.at(3).value(QStringLiteral("event")),
                 QJsonValue(QStringLiteral("km_control")));
        QVERIFY(events.at(3).value(QStringLiteral("time")).toString().endsWith(QLatin1Char('Z')));
        QCOMPARE(events.at(4).value(QStringLiteral("ok")), QJsonValue(false));
    }

    void aWatchSaysThatTheSwitchIsSilentAndGoesOn()
    {
        Desk desk;
        desk.answers.clear();
        CtlProcess process;
        process.start((desk.option() + QStringLiteral("--timeout 300 watch"))
                          .split(QLatin1Char(' '), Qt::SkipEmptyParts));
        QVERIFY(process.hasComplained("no answer from the switch yet; still listening\n"));
        desk.say("**C4\n");
        QVERIFY(process.hasSaid("km-control 4\n"));
    }

    void whoeverReadsMayGo_data()
    {
        QTest::addColumn<bool>("saysMore");
        QTest::addColumn<int>("switches");
        QTest::newRow("and the switch says more") << true << 1;
        QTest::newRow("while the switch is silent") << false << 1;
        QTest::newRow("of two switches") << false << 2;
    }

    void whoeverReadsMayGo()
    {
        QFETCH(bool, saysMore);
        QFETCH(int, switches);
        Desk desk;
        const Desk other;
        CtlProcess process;
        Reader reader(process);
        process.start(
            (desk.option() + (switches == 2 ? other.option() : QString()) + QStringLiteral("watch"))
                .split(QLatin1Char(' '), Qt::SkipEmptyParts));
        QVERIFY(reader.hasRead("usb-control 3\n"));
        reader.go();
        if (saysMore)
            desk.say("**C4\n");
        const CtlRun run = process.wait();
        QCOMPARE(run.status, 0);
        QCOMPARE(run.errors,
                 switches == 1 ? QByteArray() : QByteArray("peloractl: 2 done, 0 failed, of 2\n"));
    }

    void aDiskThatIsFullEndsTheWatch()
    {
        const Desk desk;
        CtlProcess process;
        process.process.setStandardOutputFile(QStringLiteral("/dev/full"));
        process.start(
            (desk.option() + QStringLiteral("watch")).split(QLatin1Char(' '), Qt::SkipEmptyParts));
        const CtlRun run = process.wait();
        QCOMPARE(run.status, 2);
        QCOMPARE(run.errors, QByteArray("peloractl: standard output cannot be written: No space "
                                        "left on device\n"));
    }

    void aCableThatIsPulledEndsTheWatch()
    {
        const QTemporaryDir folder;
        const QString link = folder.filePath(QStringLiteral("switch"));
        SimulatorProcess simulator;
        QVERIFY(!simulator
                     .start({QStringLiteral("serial"), QStringLiteral("--console"),
                             QStringLiteral("--link"), link})
                     .isEmpty());
        CtlProcess process;
        process.start(
            {QStringLiteral("-d"), QStringLiteral("serial:") + link, QStringLiteral("watch")});
        QVERIFY(process.hasSaid("usb-control 1\n"));
        simulator.type("unplug");
        const CtlRun run = process.wait();
        QCOMPARE(run.status, 3);
        QVERIFY2(run.errors.contains("the connection was lost"), run.errors.constData());
    }
};

QTEST_GUILESS_MAIN(CtlWatchTest)
#include "tst_ctl_watch.moc"
