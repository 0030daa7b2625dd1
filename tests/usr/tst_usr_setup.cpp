#include "log/event_log.h"
#include "tests/support/dialog_recorder.h"
#include "tests/usr/fake_module.h"
#include "usr/usr_searcher.h"

#include <QFile>
#include <QTest>
#include <memory>

using namespace std::chrono_literals;

namespace {
const QByteArray mac("\x9c\xa5\x25\x1a\x2b\x3c", 6);

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

QByteArray bytes(const char *hex)
{
    return QByteArray::fromHex(hex);
}

const char commitFrame[] = "ff1304 9ca5251a2b3c 61646d696e00 61646d696e00 10";
} // namespace

/// Writing a module's configuration.
class UsrSetupTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QCOMPARE(openLog(), 1);
        boxes_ = std::make_unique<DialogRecorder>();
        module_ = std::make_unique<FakeModule>();
        nameIs("Desk");
    }

    void cleanup()
    {
        module_.reset();
        boxes_.reset();
        closeLog();
    }

    void aSetupIsASearchTheRequestAndTheCommit()
    {
        const auto searcher = makeSearcher("80");
        QCOMPARE(searcher->setup_USR(), 1);
        QVERIFY(module_->waitForFrames(3));
        QCOMPARE(module_->order(), (QStringList{text("search"), text("setup"), text("commit")}));
        // The name goes back as it was read: cut at its zero byte, twelve bytes short.
        QCOMPARE(module_->frames().at(1), bytes("ff5605 9ca5251a2b3c 61646d696e00 61646d696e00"
                                                "093803 80 2019500002"
                                                "0701a8c0 0101a8c0 00ffffff 4465736b"
                                                "61646d696e00 61646d696e00 02010000"
                                                "9ca5251a2b3c 100e000001000000 1c"));
        QCOMPARE(module_->frames().at(2), bytes(commitFrame));
        QVERIFY(boxes_->seen().isEmpty());
    }

    void aNameOf16CharactersHasNoZeroByteAndGoesBackWhole()
    {
        nameIs("Meeting Room 4-5");
        const auto searcher = makeSearcher("00");
        QCOMPARE(searcher->setup_USR(), 1);
        QVERIFY(module_->waitForFrames(3));
        QCOMPARE(module_->frames().at(1), bytes("ff5605 9ca5251a2b3c 61646d696e00 61646d696e00"
                                                "093803 00 2019500002"
                                                "0701a8c0 0101a8c0 00ffffff"
                                                "4d656574696e6720526f6f6d20342d35"
                                                "61646d696e00 61646d696e00 02010000"
                                                "9ca5251a2b3c 100e000001000000 51"));
    }

    void aNameThatIsNotUtf8GoesBackUnchanged()
    {
        nameIs("A\xff"
               "B");
        QCOMPARE(makeSearcher("80")->setup_USR(), 1);
        QVERIFY(module_->waitForFrames(3));
        QCOMPARE(module_->frames().at(1).mid(42, 3), bytes("41ff42"));
        QCOMPARE(module_->frames().at(1).size(), 76);
    }

    void anAllocationThatWasNeverReadIsNotSent()
    {
        QCOMPARE(makeSearcher("-1")->setup_USR(), -1);
        QCOMPARE(boxes_->texts(), QStringList{text("Error in the setup of USR")});
        QCOMPARE(boxes_->seen().first().icon, QMessageBox::Warning);
        QFile log(eventLogPath());
        QVERIFY(log.open(QIODevice::ReadOnly));
        QVERIFY(log.readAll().contains("\nError in the setup of USR   "));
        QCOMPARE(module_->order(), QStringList{text("search")});
    }

    void newNameAndCredentialsAreWrittenUnderTheOldOnes()
    {
        const auto searcher = makeSearcher("80");
        QCOMPARE(searcher->change_username_password_and_name(text("secret"), QString(),
                                                             text("Meeting Room 4-5")),
                 1);
        QVERIFY(module_->waitForFrames(3));
        QCOMPARE(module_->order(), (QStringList{text("search"), text("setup"), text("commit")}));
        QCOMPARE(module_->frames().at(1), bytes("ff5605 9ca5251a2b3c 61646d696e00 61646d696e00"
                                                "093803 80 2019500002"
                                                "0701a8c0 0101a8c0 00ffffff"
                                                "4d656574696e6720526f6f6d20342d35"
                                                "736563726574 000000000000 02010000"
                                                "9ca5251a2b3c 100e000001000000 45"));
        QCOMPARE(module_->frames().at(2), bytes(commitFrame));
    }

    void theNewNameServesOneRequestOnly()
    {
        const auto searcher = makeSearcher("80");
        searcher->change_username_password_and_name(text("admin"), text("admin"), text("New"));
        QCOMPARE(searcher->setup_USR(), 1);
        QVERIFY(module_->waitForFrames(6));
        QCOMPARE(module_->frames().at(1).mid(42, 16), bytes("4e657700000000000000000000000000"));
        QCOMPARE(module_->frames().at(4).mid(42, 4), bytes("4465736b"));
        QCOMPARE(module_->frames().at(4).size(), 77);
    }

    void textsTooLongForTheirFieldsSendNothing_data()
    {
        QTest::addColumn<QString>("username");
        QTest::addColumn<QString>("password");
        QTest::addColumn<QString>("name");
        QTest::newRow("user name of 7") << text("1234567") << text("123456") << text("Desk");
        QTest::newRow("password of 7") << text("123456") << text("1234567") << text("Desk");
        QTest::newRow("name of 17")
            << text("123456") << text("123456") << text("12345678901234567");
    }

    void textsTooLongForTheirFieldsSendNothing()
    {
        QFETCH(QString, username);
        QFETCH(QString, password);
        QFETCH(QString, name);
        const auto searcher = makeSearcher("80");
        QCOMPARE(searcher->change_username_password_and_name(username, password, name), -1);
        QVERIFY(boxes_->seen().isEmpty());
        // Whatever had been sent would have come before this search's frame.
        searcher->search_USR();
        QVERIFY(module_->waitForFrames(1));
        QCOMPARE(module_->order(), QStringList{text("search")});
    }

    void longestTextsPass()
    {
        const auto searcher = makeSearcher("80");
        QCOMPARE(searcher->change_username_password_and_name(text("123456"), text("abcdef"),
                                                             text("1234567890123456")),
                 1);
        QVERIFY(module_->waitForFrames(3));
        QCOMPARE(module_->frames().at(1).mid(42, 28),
                 bytes("31323334353637383930313233343536 313233343536 616263646566"));
    }

    void charactersBeyondAsciiMayOverflowTheirField()
    {
        const auto searcher = makeSearcher("80");
        const QString six = text("\xC3\xB6\xC3\xB6\xC3\xB6\xC3\xB6\xC3\xB6\xC3\xB6");
        QCOMPARE(searcher->change_username_password_and_name(six, text("admin"), text("Desk")), 1);
        QVERIFY(module_->waitForFrames(3));
        QCOMPARE(module_->frames().at(1).size(), 95);
        QCOMPARE(module_->frames().at(1).mid(58, 12), bytes("c3b6c3b6c3b6c3b6c3b6c3b6"));
        QCOMPARE(module_->frames().at(1).left(3), bytes("ff5605"));
    }

    void withNoModuleFoundTheRequestsNameNone()
    {
        module_->answerSearches(FakeModule::Answers());
        QCOMPARE(makeSearcher("80")->setup_USR(), 1);
        QVERIFY(module_->waitForFrames(3));
        QCOMPARE(module_->frames().at(1), bytes("ff5605 61646d696e00 61646d696e00"
                                                "093803 80 2019500002"
                                                "0701a8c0 0101a8c0 00ffffff"
                                                "61646d696e00 61646d696e00 02010000"
                                                "100e000001000000 c7"));
        QCOMPARE(module_->frames().at(2), bytes("ff1304 61646d696e00 61646d696e00 29"));
    }

    void thePortOfTheSearchIsFreeAfterASetup()
    {
        UsrNetwork network = module_->network();
        network.discoveryPort = freePort();
        USR_searcher searcher(text("192.168.1.7"), text("192.168.1.7"), text("255.255.255.0"),
                              text("192.168.1.1"), text("80"), text("admin"), text("admin"),
                              network);
        QCOMPARE(searcher.setup_USR(), 1);
        QUdpSocket other;
        QVERIFY(other.bind(network.localAddress, network.discoveryPort));
    }

private:
    void nameIs(const QByteArray &name)
    {
        module_->answerSearches(
            {{FakeModule::discoveryReply(QByteArray("\xc0\xa8\x01\x07", 4), mac, name)}});
    }

    std::unique_ptr<USR_searcher> makeSearcher(const char *allocation) const
    {
        return std::make_unique<USR_searcher>(
            text("192.168.1.7"), text("192.168.1.7"), text("255.255.255.0"), text("192.168.1.1"),
            text(allocation), text("admin"), text("admin"), module_->network(100ms, 5ms));
    }

    std::unique_ptr<FakeModule> module_;
    std::unique_ptr<DialogRecorder> boxes_;
};

QTEST_MAIN(UsrSetupTest)
#include "tst_usr_setup.moc"
