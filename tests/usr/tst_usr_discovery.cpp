#include "tests/support/dialog_recorder.h"
#include "tests/usr/fake_module.h"
#include "usr/usr_searcher.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QTest>
#include <ctime>
#include <memory>
#include <stdexcept>
#ifdef Q_OS_UNIX
#include <sys/resource.h>
#endif

using namespace std::chrono_literals;

namespace {
const QByteArray ipSeven("\xc0\xa8\x01\x07", 4);
const QByteArray ipEight("\xc0\xa8\x01\x08", 4);
const QByteArray macOne("\x9c\xa5\x25\x1a\x2b\x3c", 6);
const QByteArray macTwo("\x9c\xa5\x25\x00\x00\x02", 6);

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

FakeModule::Answer good()
{
    return {FakeModule::discoveryReply(ipSeven, macOne, "Desk")};
}

FakeModule::Answer ofSize(int size)
{
    return {QByteArray(size, '\0')};
}

/// Keeps the thread's stack from growing beyond 1 MB, which is what it has on Windows anyway.
class SmallStack
{
public:
    SmallStack()
    {
#ifdef Q_OS_UNIX
        getrlimit(RLIMIT_STACK, &former_);
        rlimit small = former_;
        small.rlim_cur = 1024 * 1024;
        setrlimit(RLIMIT_STACK, &small);
#endif
    }

    ~SmallStack()
    {
#ifdef Q_OS_UNIX
        setrlimit(RLIMIT_STACK, &former_);
#endif
    }

    Q_DISABLE_COPY_MOVE(SmallStack)

private:
#ifdef Q_OS_UNIX
    rlimit former_{};
#endif
};

double cpuSeconds()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}
} // namespace

/// Searching the network for modules.
class UsrDiscoveryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { boxes_ = std::make_unique<DialogRecorder>(); }

    void cleanup()
    {
        boxes_.reset();
        QVERIFY(QGuiApplication::overrideCursor() == nullptr);
    }

    void realAddressesPortsAndWaitsAreTheDefaults()
    {
        const UsrNetwork network;
        QCOMPARE(network.localAddress, QHostAddress(text("0.0.0.0")));
        QCOMPARE(network.discoveryPort, quint16(4242));
        QCOMPARE(network.broadcast, QHostAddress(text("255.255.255.255")));
        QCOMPARE(network.modulePort, quint16(1901));
        QCOMPARE(network.afterBroadcast, 500ms);
        QCOMPARE(network.collection, 1000ms);
    }

    void noModuleTakesOneAndAHalfSecondsAndLittleCpu()
    {
#ifdef Q_OS_WIN
        QSKIP("Wine counts its own work as the program's");
#endif
        FakeModule silent;
        USR_searcher searcher(nullptr, silent.network(500ms, 1000ms));
        const double cpuBefore = cpuSeconds();
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(searcher.search_USR(), -1);
        QVERIFY2(clock.elapsed() >= 1500, qPrintable(QString::number(clock.elapsed())));
        QVERIFY2(clock.elapsed() < 10'000, qPrintable(QString::number(clock.elapsed())));
        QVERIFY(searcher.get_replies().isEmpty());
        QVERIFY(searcher.get_senders().isEmpty());
        QVERIFY2(cpuSeconds() - cpuBefore < 0.7, "the window was spent spinning");
        QCOMPARE(silent.frames(), QList<QByteArray>{QByteArray("\xff\x01\x01\x02", 4)});
        QVERIFY(boxes_->seen().isEmpty());
    }

    void nobodyListeningDoesNotCutTheWindowShort()
    {
        const QHostAddress loopback(QHostAddress::LocalHost);
        USR_searcher searcher(nullptr, {loopback, 0, loopback, freePort(), 10ms, 300ms});
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(searcher.search_USR(), -1);
        QVERIFY(clock.elapsed() >= 310);
        QVERIFY(boxes_->seen().isEmpty());
    }

    void everyAnswerIsKeptInTheOrderOfArrival()
    {
        FakeModule module;
        module.answerSearches({{FakeModule::discoveryReply(ipEight, macTwo, "Meeting Room 4-5")},
                               {FakeModule::discoveryReply(ipSeven, macOne, "Desk"), 20ms}});
        USR_searcher searcher(nullptr, module.network());
        QCOMPARE(searcher.search_USR(), 1);
        const QList<QString> expected{text("ff24010000c0a801089ca525000002000000004d656574696e6720"
                                           "526f6f6d20342d3500"),
                                      text("ff24010000c0a801079ca5251a2b3c000000004465736b00000000"
                                           "000000000000000000")};
        QCOMPARE(searcher.get_replies(), expected);
        QCOMPARE(searcher.get_senders(), QList<QHostAddress>(2, QHostAddress(text("127.0.0.1"))));
    }

    void anAnswerThatComesLateInTheWindowCounts()
    {
        FakeModule module;
        module.answerSearches({{good().bytes, 250ms}});
        USR_searcher searcher(nullptr, module.network(50ms, 400ms));
        QCOMPARE(searcher.search_USR(), 1);
    }

    void searchingAgainForgetsTheFormerAnswers()
    {
        FakeModule module;
        module.answerSearches({good()});
        USR_searcher searcher(nullptr, module.network());
        QCOMPARE(searcher.search_USR(), 1);
        QCOMPARE(searcher.search_USR(), 1);
        QCOMPARE(searcher.get_replies().size(), 1);
        module.answerSearches(FakeModule::Answers());
        QCOMPARE(searcher.search_USR(), -1);
        QVERIFY(searcher.get_replies().isEmpty());
        QVERIFY(searcher.get_senders().isEmpty());
    }

    void aReplyOf35Or37BytesAmongGoodOnesRestartsTheSearch_data()
    {
        QTest::addColumn<int>("size");
        for (const int size : {0, 4, 35, 37, 260})
            QTest::addRow("%d bytes", size) << size;
    }

    void aReplyOf35Or37BytesAmongGoodOnesRestartsTheSearch()
    {
        QFETCH(int, size);
        FakeModule module;
        module.answerSearches([size](int nth) {
            switch (nth) {
            case 1: // before, behind and alone: a good neighbour does not hide it
                return FakeModule::Answers{ofSize(size), good()};
            case 2:
                return FakeModule::Answers{good(), ofSize(size)};
            case 3:
                return FakeModule::Answers{ofSize(size)};
            default:
                return FakeModule::Answers{good()};
            }
        });
        USR_searcher searcher(nullptr, module.network());
        QCOMPARE(searcher.search_USR(), 1);
        QCOMPARE(searcher.get_replies().size(), 1);
        QCOMPARE(module.order(), QStringList(4, text("search")));
        QVERIFY(boxes_->seen().isEmpty());
    }

    void silenceAfterARestartIsNoSuccess()
    {
        FakeModule module;
        module.answerSearches([](int nth) {
            return nth == 1 ? FakeModule::Answers{ofSize(37)} : FakeModule::Answers();
        });
        USR_searcher searcher(nullptr, module.network());
        QCOMPARE(searcher.search_USR(), -1);
        QVERIFY(searcher.get_replies().isEmpty());
        QCOMPARE(module.frames().size(), 2);
    }

    /// The searcher hears its own four bytes each time, so it restarts until its port is taken
    /// away. With a restart inside a restart, that many would not fit on a stack of 1 MB.
    void twentyThousandRestartsDoNotGrowTheStack()
    {
        const SmallStack limit;
        const QHostAddress loopback(QHostAddress::LocalHost);
        const quint16 port = freePort();
        USR_searcher searcher(nullptr, {loopback, port, loopback, port, 0ms, 0ms});
        QUdpSocket blocker;
        int starts = 0;
        connect(&searcher, &QUdpSocket::stateChanged, &blocker,
                [&](QAbstractSocket::SocketState state) {
                    if (state == QAbstractSocket::BoundState)
                        ++starts;
                    if (state == QAbstractSocket::UnconnectedState && starts == 20000)
                        blocker.bind(loopback, port);
                });
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression(text("^Error binding to port: ")));
        QCOMPARE(searcher.search_USR(), -1);
        QCOMPARE(starts, 20000);
    }

    void aTakenPortSaysSoOnADebugLineOnly()
    {
        FakeModule module;
        module.answerSearches({good()});
        UsrNetwork network = module.network(2000ms, 100ms);
        network.discoveryPort = freePort();
        QUdpSocket other;
        QVERIFY(other.bind(network.localAddress, network.discoveryPort));

        USR_searcher searcher(nullptr, network);
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression(text("^Error binding to port: \\S+")));
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(searcher.search_USR(), -1);
        QVERIFY(clock.elapsed() < 2000); // it has not waited for answers
        QVERIFY(boxes_->seen().isEmpty());
        QVERIFY(module.frames().isEmpty());

        other.close();
        QCOMPARE(searcher.search_USR(), 1);
    }

    void thePortIsFreeAgainAfterEverySearch()
    {
        FakeModule module;
        UsrNetwork network = module.network();
        network.discoveryPort = freePort();
        USR_searcher searcher(nullptr, network);
        for (const auto &answers :
             {FakeModule::Answers(), FakeModule::Answers{good()}, FakeModule::Answers{good()}}) {
            module.answerSearches(answers);
            searcher.search_USR();
            QUdpSocket other;
            QVERIFY2(other.bind(network.localAddress, network.discoveryPort),
                     qPrintable(other.errorString()));
        }
    }

    void theWaitCursorShowsWhileItBlocksAndNoEventRuns()
    {
        FakeModule module;
        USR_searcher searcher(nullptr, module.network());
        Qt::CursorShape shape = Qt::ArrowCursor;
        connect(&searcher, &QIODevice::bytesWritten, this, [&shape] {
            if (const QCursor *cursor = QGuiApplication::overrideCursor())
                shape = cursor->shape();
        });
        bool eventRan = false;
        QTimer::singleShot(0, this, [&eventRan] { eventRan = true; });
        searcher.search_USR();
        QCOMPARE(shape, Qt::WaitCursor);
        QVERIFY(QGuiApplication::overrideCursor() == nullptr);
        QVERIFY(!eventRan);
    }

    void whateverIsThrownIsReportedAndTheNextSearchWorks()
    {
        FakeModule module;
        module.answerSearches({good()});
        UsrNetwork network = module.network();
        network.discoveryPort = freePort();
        USR_searcher searcher(nullptr, network);
        const auto trap = connect(&searcher, &QIODevice::bytesWritten, this,
                                  [] { throw std::runtime_error("trap"); });
        QCOMPARE(searcher.search_USR(), -1);
        QCOMPARE(boxes_->texts(), QStringList{text("Search USR error")});
        QCOMPARE(boxes_->seen().first().icon, QMessageBox::Warning);
        disconnect(trap);
        QCOMPARE(searcher.search_USR(), 1);
    }

    void aModuleThatMovedIsFoundByItsMac()
    {
        FakeModule module;
        module.answerSearches({good()});
        USR_searcher searcher(text("192.168.1.7"), text("admin"), text("admin"), module.network());
        searcher.get_data_from_USR();
        const QByteArray ipNine("\xc0\xa8\x01\x09", 4);
        module.answerSearches({{FakeModule::discoveryReply(ipSeven, macTwo, "Other")},
                               {FakeModule::discoveryReply(ipNine, macOne, "Desk")},
                               {FakeModule::discoveryReply(ipEight, macOne, "Desk")}});
        QCOMPARE(searcher.get_IP_after_hanging(), text("192.168.1.9"));
        module.answerSearches({{FakeModule::discoveryReply(ipSeven, macTwo, "Other")}});
        QCOMPARE(searcher.get_IP_after_hanging(), QString());
        QVERIFY(boxes_->seen().isEmpty());
    }

    void ofTwoModulesWithOneAddressTheLaterDecides()
    {
        FakeModule module;
        module.answerSearches({{FakeModule::discoveryReply(ipSeven, macOne, "First")},
                               {FakeModule::discoveryReply(ipSeven, macTwo, "Second")},
                               {FakeModule::discoveryReply(ipEight, macOne, "Elsewhere")}});
        USR_searcher searcher(text("192.168.1.7"), text("admin"), text("admin"), module.network());
        searcher.get_data_from_USR();
        QCOMPARE(searcher.lastKnownName(), text("Second"));
        searcher.setup_USR();
        QVERIFY(module.waitForFrames(4));
        QCOMPARE(module.frames().last(), QByteArray("\xff\x13\x04\x9c\xa5\x25\x00\x00\x02"
                                                    "admin\0admin\0\x91",
                                                    22));
    }

    void aTargetThatIsGoneKeepsItsName()
    {
        FakeModule module;
        module.answerSearches({good()});
        USR_searcher searcher(text("192.168.1.7"), text("admin"), text("admin"), module.network());
        searcher.get_data_from_USR();
        module.answerSearches({{FakeModule::discoveryReply(ipEight, macTwo, "Other")}});
        searcher.get_data_from_USR();
        QCOMPARE(searcher.lastKnownName(), text("Desk"));
        searcher.setTargetIP(text("192.168.1.8"));
        searcher.get_data_from_USR();
        QCOMPARE(searcher.lastKnownName(), text("Other"));
    }

private:
    std::unique_ptr<DialogRecorder> boxes_;
};

QTEST_MAIN(UsrDiscoveryTest)
#include "tst_usr_discovery.moc"
