#include "connection/select_hardware_dialog.h"
#include "tests/support/dialog_recorder.h"
#include "tests/usr/sent_requests.h"

#include <QProcess>
#include <QTest>
#include <memory>

namespace {
QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

bool ip(const QString &arguments)
{
    return QProcess::execute(text("ip"), arguments.split(QLatin1Char(' '))) == 0;
}

QString toEveryone(const char *bytes)
{
    return text("255.255.255.255 ") + text(bytes);
}

// What leaves for the modules 02:00:00:00:00:01 and 02:00:00:00:00:02, "admin" and "admin".
const QString search = toEveryone("ff010102");
const QString loginAtFirst = toEveryone("ff130302000000000161646d696e0061646d696e002b");
const QString loginAtSecond = toEveryone("ff130302000000000261646d696e0061646d696e002c");
const QString commitAtSecond = toEveryone("ff130402000000000261646d696e0061646d696e002d");

/// "Hall" with the address 198.51.100.7 and the credentials kept.
const QString setupAtSecond =
    toEveryone("ff560502000000000261646d696e0061646d696e00"
               "093803802019500002076433c6016433c600ffffff48616c6c000000000000000000000000"
               "61646d696e0061646d696e0002010000020000000002100e00000100000038");

QStringList addressesIn(const Select_hardware_Dialog &dialog)
{
    QStringList addresses;
    for (const FoundModule &module : dialog.modules())
        addresses.append(module.address);
    addresses.sort();
    return addresses;
}
} // namespace

/// By which interfaces the program's requests leave, seen on the interfaces themselves, with the
/// real ports, addresses and waits. One module lives where the program does and hears both
/// networks; another lives in a namespace of its own behind the second. The steps build on one
/// another.
class UsrRoadsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        near_ = started(simulator(),
                        {text("module"), text("--console"), text("--address"), text("192.0.2.7"),
                         text("--mac"), text("02:00:00:00:00:01"), text("--verbose")});
        QVERIFY(says(*near_, "module 192.0.2.7"));
        onFirst_ = std::make_unique<SentRequests>("pelora0");
    }

    void init()
    {
        boxes_ = std::make_unique<DialogRecorder>();
        takeAll();
    }

    void cleanup()
    {
        QVERIFY(boxes_->seen().isEmpty());
        boxes_.reset();
    }

    void cleanupTestCase()
    {
        end(far_);
        end(near_);
    }

    void withOneInterfaceEachRequestLeavesOnce()
    {
        USR_searcher searcher(text("192.0.2.7"), text("admin"), text("admin"));
        QCOMPARE(searcher.get_IP_allocation(), text("80"));
        QCOMPARE(onFirst_->take(), (QStringList{search, loginAtFirst}));
    }

    void withOneInterfaceEveryAnswerCounts()
    {
        obey(*near_, "fault duplicates 1");
        USR_searcher searcher;
        QCOMPARE(searcher.search_USR(), 1);
        QCOMPARE(searcher.get_replies().size(), 2);
        obey(*near_, "fault none");
    }

    void aSecondInterfaceIsSearchedAsWell()
    {
        startFarModule({text("--mac"), text("02:00:00:00:00:02")});
        const Select_hardware_Dialog dialog;
        QCOMPARE(addressesIn(dialog), (QStringList{text("192.0.2.7"), text("198.51.100.7")}));
        QCOMPARE(onFirst_->take(), QStringList{search});
        QCOMPARE(onSecond_->take(), QStringList{search});
    }

    void aModuleThatHearsBothInterfacesIsOneModule()
    {
        obey(*near_, "help"); // and all that it has printed before is taken
        USR_searcher searcher;
        QCOMPARE(searcher.search_USR(), 1);
        QTRY_COMPARE(near_->peek(10000).count("search"), 2); // so it has answered twice
        QCOMPARE(searcher.get_replies().size(), 2);
        QCOMPARE(searcher.get_senders().size(), 2);
    }

    void aLoginLeavesByTheInterfaceOfItsModule()
    {
        USR_searcher searcher(text("198.51.100.7"), text("admin"), text("admin"));
        QCOMPARE(searcher.get_IP_allocation(), text("80"));
        QCOMPARE(onFirst_->take(), QStringList{search});
        QCOMPARE(onSecond_->take(), (QStringList{search, loginAtSecond}));

        searcher.setTargetIP(text("192.0.2.7"));
        QCOMPARE(searcher.get_IP_allocation(), text("80"));
        QCOMPARE(onFirst_->take(), (QStringList{search, loginAtFirst}));
        QCOMPARE(onSecond_->take(), QStringList{search});
    }

    void soDoNewSettings()
    {
        USR_searcher writer(text("198.51.100.7"), text("198.51.100.7"), text("255.255.255.0"),
                            text("198.51.100.1"), text("80"), text("admin"), text("admin"));
        QCOMPARE(
            writer.change_username_password_and_name(text("admin"), text("admin"), text("Hall")),
            1);
        QCOMPARE(onFirst_->take(), QStringList{search});
        QCOMPARE(onSecond_->take(), (QStringList{search, setupAtSecond, commitAtSecond}));
    }

    void anAnswerOfAnotherSizeVoidsTheWholeSearch()
    {
        obey(*far_, "fault discovery-size 37:1");
        USR_searcher searcher;
        QCOMPARE(searcher.search_USR(), 1);
        QCOMPARE(searcher.get_replies().size(), 2);
        QCOMPARE(onFirst_->take(), (QStringList{search, search}));
        QCOMPARE(onSecond_->take(), (QStringList{search, search}));
    }

    void theFirstAnswerOfAModuleCounts_data()
    {
        QTest::addColumn<bool>("isFarFirst");
        QTest::addColumn<QString>("address");
        QTest::newRow("by the first interface") << false << text("192.0.2.7");
        QTest::newRow("by the second") << true << text("198.51.100.7");
    }

    /// One module on both networks, with an address in each: two with one MAC stand for it. The
    /// later one answers within a search's time, and too late for a login's.
    void theFirstAnswerOfAModuleCounts()
    {
        QFETCH(bool, isFarFirst);
        QFETCH(QString, address);
        end(far_);
        QTRY_COMPARE(broadcastRoads().size(), 1);
        startFarModule({text("--mac"), text("02:00:00:00:00:01")});
        obey(*near_, isFarFirst ? "fault late 1200" : "fault none");
        obey(*far_, isFarFirst ? "fault none" : "fault late 1200");

        QCOMPARE(addressesIn(Select_hardware_Dialog()), QStringList{address});
        takeAll();
        USR_searcher searcher(address, text("admin"), text("admin"));
        QCOMPARE(searcher.get_IP_allocation(), text("80"));
        const QStringList searchAndLogin = {search, loginAtFirst};
        QCOMPARE(onFirst_->take(), isFarFirst ? QStringList{search} : searchAndLogin);
        QCOMPARE(onSecond_->take(), isFarFirst ? searchAndLogin : QStringList{search});
    }

private:
    static QString simulator() { return qEnvironmentVariable("PELORA_SIMULATOR"); }

    static std::unique_ptr<QProcess> started(const QString &program, const QStringList &arguments)
    {
        auto process = std::make_unique<QProcess>();
        process->setProcessChannelMode(QProcess::MergedChannels);
        process->start(program, arguments);
        if (!process->waitForStarted(10000))
            qFatal("%s does not start", qPrintable(program));
        return process;
    }

    static void end(std::unique_ptr<QProcess> &process)
    {
        if (!process)
            return;
        process->terminate();
        if (!process->waitForFinished(5000))
            process->kill();
        process->waitForFinished(5000);
        process.reset();
    }

    /// Whether `words` come in what it prints; takes what it has printed up to then.
    static bool says(QProcess &process, const char *words)
    {
        const bool came =
            QTest::qWaitFor([&] { return process.peek(100000).contains(words); }, 10000);
        process.readAll();
        return came;
    }

    /// Gives the simulator a console command, and waits until it has obeyed.
    static void obey(QProcess &simulator, const char *command)
    {
        simulator.readAll();
        simulator.write(QByteArray(command) + "\nstate\n");
        QVERIFY(says(simulator, "Hotkey trigger"));
    }

    /// A second network, 198.51.100.0/24, with a module at its other end, 198.51.100.7.
    void startFarModule(const QStringList &options)
    {
        const QString life = text("echo here; read -r _; ip link set lo up;"
                                  "ip address add 198.51.100.7/24 brd + dev second1;"
                                  "ip link set second1 up; exec \"$0\" \"$@\"");
        far_ = started(text("unshare"),
                       QStringList{text("--net"), text("sh"), text("-c"), life, simulator(),
                                   text("module"), text("--console"), text("--address"),
                                   text("198.51.100.7"), text("--restart-time"), text("0")} +
                           options);
        QVERIFY(says(*far_, "here"));
        QVERIFY(ip(text("link add second0 type veth peer name second1")));
        QVERIFY(ip(text("link set second1 netns %1").arg(far_->processId())));
        QVERIFY(ip(text("address add 198.51.100.1/24 brd + dev second0")));
        QVERIFY(ip(text("link set second0 up")));
        far_->write("\n");
        QVERIFY(says(*far_, "module 198.51.100.7"));
        QTRY_COMPARE(broadcastRoads().size(), 2); // until the system says that it runs
        onSecond_ = std::make_unique<SentRequests>("second0");
    }

    void takeAll()
    {
        onFirst_->take();
        if (onSecond_)
            onSecond_->take();
    }

    std::unique_ptr<QProcess> near_;
    std::unique_ptr<QProcess> far_;
    std::unique_ptr<SentRequests> onFirst_;
    std::unique_ptr<SentRequests> onSecond_;
    std::unique_ptr<DialogRecorder> boxes_;
};

QTEST_MAIN(UsrRoadsTest)
#include "tst_usr_roads.moc"
