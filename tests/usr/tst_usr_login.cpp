#include "log/event_log.h"
#include "session/link_recorder.h"
#include "tests/support/dialog_recorder.h"
#include "tests/usr/fake_module.h"
#include "usr/usr_searcher.h"

#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <memory>

using namespace std::chrono_literals;

namespace {
const QByteArray ip("\xc0\xa8\x01\x07", 4);
const QByteArray mac("\x9c\xa5\x25\x1a\x2b\x3c", 6);

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

/// The login with "userna" and "pass12" at the module above, typed out.
QByteArray loginFrame()
{
    return QByteArray("\xff\x13\x03\x9c\xa5\x25\x1a\x2b\x3cuserna"
                      "pass12\xa5",
                      22);
}

QByteArray searchFrame()
{
    return QByteArray("\xff\x01\x01\x02", 4);
}

QStringList rounds(int count)
{
    QStringList order;
    for (int i = 0; i < count; ++i)
        order += {text("search"), text("login")};
    return order;
}

QByteArray logContents()
{
    QFile file(eventLogPath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

using Reader = QString (USR_searcher::*)();
} // namespace

Q_DECLARE_METATYPE(Reader)

/// Logging in to a module and reading its configuration.
class UsrLoginTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QCOMPARE(openLog(), 1);
        boxes_ = std::make_unique<DialogRecorder>();
        module_ = std::make_unique<FakeModule>();
        module_->answerSearches({{FakeModule::discoveryReply(ip, mac, "Desk")}});
        module_->answerLogins({{FakeModule::configuration('\x80')}});
    }

    void cleanup()
    {
        module_.reset();
        boxes_.reset();
        closeLog();
        const QByteArray log = logContents();
        QVERIFY2(!log.contains("userna") && !log.contains("pass12"), log.constData());
        QVERIFY(QGuiApplication::overrideCursor() == nullptr);
    }

    void aLoginIsOneSearchAndOneRequest()
    {
        const auto searcher = makeSearcher();
        QCOMPARE(searcher->check_credentials(), text("1"));
        QCOMPARE(module_->frames(), (QList<QByteArray>{searchFrame(), loginFrame()}));
        QVERIFY(boxes_->seen().isEmpty());
    }

    void readersTakeTheirFields()
    {
        const auto searcher = makeSearcher();
        QCOMPARE(searcher->get_static_IP(), text("192.168.1.7"));
        QCOMPARE(searcher->get_gateway(), text("192.168.1.1"));
        QCOMPARE(searcher->get_subnet_mask(), text("255.255.255.0"));
        QCOMPARE(searcher->get_name(), text("Desk"));
        QCOMPARE(module_->order(), rounds(4));
        QVERIFY(boxes_->seen().isEmpty());
    }

    void allocationFlags40AreDhcpAndAllOthersStatic_data()
    {
        QTest::addColumn<char>("flags");
        QTest::addColumn<QString>("allocation");
        QTest::newRow("40") << '\x40' << text("00");
        QTest::newRow("80") << '\x80' << text("80");
        QTest::newRow("00") << '\x00' << text("80");
        QTest::newRow("41") << '\x41' << text("80");
    }

    void allocationFlags40AreDhcpAndAllOthersStatic()
    {
        QFETCH(char, flags);
        module_->answerLogins({{FakeModule::configuration(flags)}});
        QTEST(makeSearcher()->get_IP_allocation(), "allocation");
    }

    void readersAfterARefusalSayBadCredentialsAndNoMore_data() { readers(); }

    void readersAfterARefusalSayBadCredentialsAndNoMore()
    {
        QFETCH(Reader, reader);
        module_->answerLogins({{FakeModule::refusal()}});
        bool cursorWasBack = false;
        boxes_->beforeButton([&cursorWasBack](QMessageBox &) {
            cursorWasBack = QGuiApplication::overrideCursor() == nullptr;
        });
        const auto searcher = makeSearcher();
        QCOMPARE((searcher.get()->*reader)(), text("-1"));
        QCOMPARE(boxes_->texts(), QStringList{text("Bad credentials")});
        QCOMPARE(boxes_->seen().first().icon, QMessageBox::Warning);
        QVERIFY(cursorWasBack);
        QCOMPARE(module_->order(), rounds(1));
    }

    void theNameIsKnownEvenAfterARefusal()
    {
        module_->answerLogins({{FakeModule::refusal()}});
        QCOMPARE(makeSearcher()->get_name(), text("Desk"));
        QCOMPARE(boxes_->texts(), QStringList{text("Bad credentials")});
    }

    void anAnswerOfAnotherSizeIsAskedForAgain_data()
    {
        QTest::addColumn<QByteArray>("first");
        QTest::newRow("none") << QByteArray();
        QTest::newRow("3 bytes") << QByteArray(3, '\0');
        QTest::newRow("5 bytes") << QByteArray(5, '\0');
        QTest::newRow("259 bytes") << QByteArray(259, '\0');
        QTest::newRow("261 bytes") << QByteArray(261, '\0');
    }

    void anAnswerOfAnotherSizeIsAskedForAgain()
    {
        QFETCH(QByteArray, first);
        module_->answerLogins([first](int nth) {
            if (nth > 1)
                return FakeModule::Answers{{FakeModule::configuration('\x40')}};
            return first.isEmpty() ? FakeModule::Answers() : FakeModule::Answers{{first}};
        });
        QCOMPARE(makeSearcher()->get_IP_allocation(), text("00"));
        QCOMPARE(module_->order(), rounds(2));
        QVERIFY(boxes_->seen().isEmpty());
    }

    void anAnswerThatCameLateIsReadByTheNextAttempt()
    {
        module_->answerLogins([](int nth) {
            return nth == 1 ? FakeModule::Answers{{FakeModule::configuration('\x40'), 250ms}}
                            : FakeModule::Answers();
        });
        QCOMPARE(makeSearcher()->get_IP_allocation(), text("00"));
        QCOMPARE(module_->order(), rounds(2));
    }

    void anAnswerSplitOverTwoDatagramsIsJoinedInTheFirstOnesMeasure()
    {
        const QByteArray whole = FakeModule::configuration('\x40');
        module_->answerLogins([whole](int nth) {
            if (nth == 1) // the rest is cut to the buffer's 100 bytes: 200 in all, once more
                return FakeModule::Answers{{whole.left(100)}, {whole.mid(100)}};
            return FakeModule::Answers{{whole.left(130)}, {whole.mid(130)}};
        });
        QCOMPARE(makeSearcher()->get_IP_allocation(), text("00"));
        QCOMPARE(module_->order(), rounds(2));
    }

    void twiceTheSameAnswerIsTooLongAndAskedForAgain()
    {
        module_->answerLogins([](int nth) {
            const FakeModule::Answer answer{FakeModule::configuration('\x40')};
            return nth == 1 ? FakeModule::Answers{answer, answer} : FakeModule::Answers{answer};
        });
        QCOMPARE(makeSearcher()->get_IP_allocation(), text("00"));
        QCOMPARE(module_->order(), rounds(2));
    }

    void aRefusalAfterALostAnswerIsShownButTheReaderJudges()
    {
        module_->answerLogins([](int nth) {
            return nth == 1 ? FakeModule::Answers() : FakeModule::Answers{{FakeModule::refusal()}};
        });
        const auto searcher = makeSearcher();
        QCOMPARE(searcher->check_credentials(), text("1"));
        QCOMPARE(boxes_->texts(), QStringList{text("Bad credentials")});
        QCOMPARE(module_->order(), rounds(2));
    }

    void aHundredAttemptsWithoutAnAnswerEndInOne()
    {
        module_->answerSearches(FakeModule::Answers());
        module_->answerLogins(FakeModule::Answers());
        const auto searcher = makeSearcher(1ms, 0ms);
        QCOMPARE(searcher->check_credentials(), text("1"));
        QVERIFY(module_->waitForFrames(200));
        QCOMPARE(module_->order(), rounds(100));
        QVERIFY(boxes_->seen().isEmpty());

        module_->forgetFrames(); // and the count starts anew
        QCOMPARE(searcher->check_credentials(), text("1"));
        QVERIFY(module_->waitForFrames(200));
        QCOMPARE(module_->order(), rounds(100));
    }

    void aRefusalKeepsItsPlaceAmongTheHundredAttempts()
    {
        module_->answerLogins([](int nth) {
            return nth == 1 ? FakeModule::Answers{{FakeModule::refusal()}} : FakeModule::Answers();
        });
        const auto searcher = makeSearcher(30ms, 0ms);
        QCOMPARE(searcher->check_credentials(), text("-1"));
        module_->forgetFrames();
        QCOMPARE(searcher->check_credentials(), text("1"));
        QVERIFY(module_->waitForFrames(198));
        QCOMPARE(module_->order(), rounds(99));
    }

    void readersWithoutAnAnswerReportTheirOwnFailure_data() { readers(); }

    void readersWithoutAnAnswerReportTheirOwnFailure()
    {
        QFETCH(Reader, reader);
        QFETCH(QString, failure);
        module_->answerSearches(FakeModule::Answers());
        module_->answerLogins(FakeModule::Answers());
        const auto searcher = makeSearcher(1ms, 0ms);
        QCOMPARE((searcher.get()->*reader)(), text("-1"));
        QCOMPARE(boxes_->texts(), QStringList{failure});
        QCOMPARE(boxes_->seen().first().icon, QMessageBox::Warning);
        QVERIFY(logContents().contains(failure.toUtf8() + "   "));
        // No module was found, so no request names one.
        QCOMPARE(module_->frames().at(1), QByteArray("\xff\x13\x03userna"
                                                     "pass12\xbe",
                                                     16));
    }

    void theNextLoginStillNamesTheModuleThatWasFound()
    {
        const auto searcher = makeSearcher();
        QCOMPARE(searcher->get_IP_allocation(), text("80"));
        module_->answerSearches(FakeModule::Answers());
        QCOMPARE(searcher->get_IP_allocation(), text("80"));
        QCOMPARE(module_->frames(),
                 (QList<QByteArray>{searchFrame(), loginFrame(), searchFrame(), loginFrame()}));
    }

    void aFloodOfAnswersEnds()
    {
        module_->answerLogins([](int nth) {
            return FakeModule::Answers(nth == 1 ? 2000 : 1, {FakeModule::configuration('\x40')});
        });
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(makeSearcher()->get_IP_allocation(), text("00"));
        QVERIFY(clock.elapsed() < 20000);
    }

    void aRecordHoldsALoginsAnswerWithoutCredentials()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath(text("record.jsonl"));
        LinkRecorder recorder(file);
        UsrNetwork network = module_->network();
        network.recorder = &recorder;
        USR_searcher searcher(text("192.168.1.7"), text("userna"), text("pass12"), network);
        QCOMPARE(searcher.get_IP_allocation(), text("80"));
        QFile record(file);
        QVERIFY(record.open(QIODevice::ReadOnly));
        const QByteArrayList lines = record.readAll().split('\n');
        QVERIFY(std::any_of(lines.cbegin(), lines.cend(), [](const QByteArray &line) {
            return line.contains("\"direction\":\"received\"") &&
                   line.contains("ff00008000000000000701a8c00101a8c000ffffff" +
                                 QByteArray("2a").repeated(239));
        }));
    }

    void aRecordHoldsNothingThatDidNotLeave()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath(text("record.jsonl"));
        LinkRecorder recorder(file);
        UsrNetwork network = module_->network();
        network.broadcast = QHostAddress(text("192.0.2.1")); // no road leads there from loopback
        network.recorder = &recorder;
        USR_searcher searcher(text("192.168.1.7"), text("userna"), text("pass12"), network);
        QCOMPARE(searcher.search_USR(), -1);
        QFile record(file);
        QVERIFY(record.open(QIODevice::ReadOnly));
        QCOMPARE(record.readAll(), QByteArray());
    }

    void thePortOfTheSearchIsFreeAfterALogin()
    {
        UsrNetwork network = module_->network();
        network.discoveryPort = freePort();
        USR_searcher searcher(text("192.168.1.7"), text("userna"), text("pass12"), network);
        QCOMPARE(searcher.get_IP_allocation(), text("80"));
        QUdpSocket other;
        QVERIFY(other.bind(network.localAddress, network.discoveryPort));
    }

private:
    static void readers()
    {
        QTest::addColumn<Reader>("reader");
        QTest::addColumn<QString>("failure");
        QTest::newRow("allocation")
            << Reader(&USR_searcher::get_IP_allocation) << text("Get ip allocation error");
        QTest::newRow("static IP")
            << Reader(&USR_searcher::get_static_IP) << text("Get static IP error");
        QTest::newRow("gateway") << Reader(&USR_searcher::get_gateway) << text("Get gateway error");
        QTest::newRow("subnet mask")
            << Reader(&USR_searcher::get_subnet_mask) << text("Get subnet mask error");
    }

    std::unique_ptr<USR_searcher> makeSearcher(std::chrono::milliseconds afterBroadcast = 100ms,
                                               std::chrono::milliseconds collection = 5ms) const
    {
        return std::make_unique<USR_searcher>(text("192.168.1.7"), text("userna"), text("pass12"),
                                              module_->network(afterBroadcast, collection));
    }

    std::unique_ptr<FakeModule> module_;
    std::unique_ptr<DialogRecorder> boxes_;
};

QTEST_MAIN(UsrLoginTest)
#include "tst_usr_login.moc"
