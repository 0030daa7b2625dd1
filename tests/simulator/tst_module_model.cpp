#include "simulator/answer_packer.h"
#include "simulator/module_fleet.h"
#include "simulator/module_model.h"

#include <QTest>
#include <chrono>
#include <stdexcept>

using namespace std::chrono_literals;

namespace {

QByteArray bytes(const char *hex)
{
    return QByteArray::fromHex(hex);
}

const char *const search = "FF 01 01 02";
const char *const login = "FF 13 03 02 00 00 00 00 01 61 64 6D 69 6E 00 61 64 6D 69 6E 00 2B";
const char *const loginWithWrongPassword =
    "FF 13 03 02 00 00 00 00 01 61 64 6D 69 6E 00 72 6F 6F 74 00 00 E6";
const char *const loginAsRoot = "FF 13 03 02 00 00 00 00 01 72 6F 6F 74 00 00 73 65 63 72 65 74 63";
const char *const loginAtAnother =
    "FF 13 03 02 00 00 00 00 02 61 64 6D 69 6E 00 61 64 6D 69 6E 00 2C";
const char *const commit = "FF 13 04 02 00 00 00 00 01 61 64 6D 69 6E 00 61 64 6D 69 6E 00 2C";
const char *const commitAsRoot =
    "FF 13 04 02 00 00 00 00 01 72 6F 6F 74 00 00 73 65 63 72 65 74 64";
/// Static 192.0.2.9, gateway 192.0.2.1, name "DESK", credentials "root" and "secret".
const char *const setup =
    "FF 56 05 02 00 00 00 00 01 61 64 6D 69 6E 00 61 64 6D 69 6E 00 09 38 03 80 20 19 50 00 02"
    "09 02 00 C0 01 02 00 C0 00 FF FF FF 44 45 53 4B"
    "72 6F 6F 74 00 00 73 65 63 72 65 74 02 01 00 00 02 00 00 00 00 01 10 0E 00 00 01 00 00 00 E0";
/// DHCP, the same addresses and name, credentials unchanged.
const char *const dhcpSetup =
    "FF 56 05 02 00 00 00 00 01 61 64 6D 69 6E 00 61 64 6D 69 6E 00 09 38 03 00 20 19 50 00 02"
    "09 02 00 C0 01 02 00 C0 00 FF FF FF 44 45 53 4B"
    "61 64 6D 69 6E 00 61 64 6D 69 6E 00 02 01 00 00 02 00 00 00 00 01 10 0E 00 00 01 00 00 00 28";
/// Empty credentials to write.
const char *const blankSetup =
    "FF 56 05 02 00 00 00 00 01 61 64 6D 69 6E 00 61 64 6D 69 6E 00 09 38 03 80 20 19 50 00 02"
    "07 02 00 C0 01 02 00 C0 00 FF FF FF 44 45 53 4B"
    "00 00 00 00 00 00 00 00 00 00 00 00 02 01 00 00 02 00 00 00 00 01 10 0E 00 00 01 00 00 00 94";

/// The one datagram that `hex` brings, empty when it is none or several.
QByteArray answerTo(ModuleModel &model, const char *hex)
{
    const ModuleOutcome outcome = model.receive(bytes(hex));
    return outcome.answers.size() == 1 ? outcome.answers.front().datagram : QByteArray();
}

} // namespace

/// The module's behaviour and its faults.
class ModuleModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFreshModulesState()
    {
        QCOMPARE(stateText(ModuleState{}), std::string("Module MAC: 02:00:00:00:00:01\n"
                                                       "Module name: PELORA-SIM\n"
                                                       "Module allocation: static\n"
                                                       "Module address: 127.0.0.1\n"
                                                       "Module static address: 127.0.0.1\n"
                                                       "Module subnet mask: 255.255.255.0\n"
                                                       "Module gateway: 127.0.0.254\n"
                                                       "Module username: admin\n"
                                                       "Module password: admin\n"));
    }

    void aSearchIsAnswered()
    {
        ModuleModel model;
        QCOMPARE(answerTo(model, search),
                 bytes("FF 21 01 00 00 7F 00 00 01 02 00 00 00 00 01 00 00 00 00"
                       "50 45 4C 4F 52 41 2D 53 49 4D 00 00 00 00 00 00 7E"));
    }

    void aGoodLoginIsAnsweredWith260Bytes()
    {
        ModuleModel model;
        const QByteArray answer = answerTo(model, login);
        QCOMPARE(answer.size(), qsizetype(260));
        QCOMPARE(answer.left(21),
                 bytes("FF 01 03 80 00 00 00 00 00 01 00 00 7F FE 00 00 7F 00 FF FF FF"));
    }

    void aWrongPasswordIsRefused()
    {
        ModuleModel model;
        QCOMPARE(answerTo(model, loginWithWrongPassword), bytes("FF 01 03 04"));
        QCOMPARE(model.receive(bytes(loginWithWrongPassword)).rejection,
                 std::string("login with wrong credentials, refused"));
    }

    void anotherMacIsNotAnswered()
    {
        ModuleModel model;
        const ModuleOutcome outcome = model.receive(bytes(loginAtAnother));
        QVERIFY(!outcome.addressed);
        QVERIFY(outcome.answers.empty());
        QCOMPARE(outcome.rejection, std::string("no module has this MAC address"));
    }

    void aBrokenFrameIsNotAnswered()
    {
        ModuleModel model;
        const ModuleOutcome outcome = model.receive(bytes("FF 01 01 03"));
        QVERIFY(outcome.answers.empty());
        QCOMPARE(outcome.rejection, std::string("the checksum is 03, not 02"));
    }

    void aSetupIsTakenAtTheCommitAndNotBefore()
    {
        ModuleModel model;
        const ModuleState before = model.state();
        const ModuleOutcome kept = model.receive(bytes(setup));
        QVERIFY(kept.answers.empty());
        QVERIFY(!kept.restarts);
        QCOMPARE(kept.rejection, std::string());
        QVERIFY(model.state() == before);

        const ModuleOutcome committed = model.receive(bytes(commit));
        QVERIFY(committed.answers.empty());
        QVERIFY(committed.restarts);
        QVERIFY(model.isRestarting());
        QCOMPARE(stateText(model.state()), std::string("Module MAC: 02:00:00:00:00:01\n"
                                                       "Module name: DESK\n"
                                                       "Module allocation: static\n"
                                                       "Module address: 192.0.2.9\n"
                                                       "Module static address: 192.0.2.9\n"
                                                       "Module subnet mask: 255.255.255.0\n"
                                                       "Module gateway: 192.0.2.1\n"
                                                       "Module username: root\n"
                                                       "Module password: secret\n"));
    }

    void aRestartingModuleIsDeaf()
    {
        ModuleModel model;
        model.receive(bytes(setup));
        model.receive(bytes(commit));
        const ModuleOutcome deaf = model.receive(bytes(search));
        QVERIFY(deaf.answers.empty());
        QCOMPARE(deaf.rejection, std::string("search while restarting"));
        model.finishRestart();
        QCOMPARE(answerTo(model, search).mid(5, 4), bytes("C0 00 02 09"));
        QCOMPARE(answerTo(model, login), bytes("FF 01 03 04"));
        QCOMPARE(answerTo(model, loginAsRoot).size(), qsizetype(260));
    }

    void setupAndCommitNeedTheCurrentCredentials()
    {
        ModuleModel model;
        QCOMPARE(model.receive(bytes(commitAsRoot)).rejection,
                 std::string("commit with wrong credentials"));
        model.receive(bytes(setup));
        // The new credentials do not count before they are taken.
        QCOMPARE(model.receive(bytes(commitAsRoot)).rejection,
                 std::string("commit with wrong credentials"));
        QCOMPARE(model.state().name, std::string("PELORA-SIM"));
        ModuleState other = model.state();
        other.password = "other";
        model.setState(other);
        QCOMPARE(model.receive(bytes(setup)).rejection,
                 std::string("setup with wrong credentials"));
    }

    void aCommitAloneIsRejected()
    {
        ModuleModel model;
        QCOMPARE(model.receive(bytes(commit)).rejection,
                 std::string("commit without a setup before it"));
        model.receive(bytes(setup));
        model.receive(bytes(commit));
        model.finishRestart();
        QCOMPARE(model.receive(bytes(commitAsRoot)).rejection,
                 std::string("commit without a setup before it"));
    }

    void dhcpTakesTheLeasedAddressAndKeepsTheStaticOne()
    {
        ModuleModel model;
        model.receive(bytes(dhcpSetup));
        model.receive(bytes(commit));
        model.finishRestart();
        QCOMPARE(answerTo(model, search).mid(5, 4), bytes("7F 00 00 01"));
        QCOMPARE(answerTo(model, login).left(13), bytes("FF 01 03 40 00 00 00 00 00 09 02 00 C0"));
    }

    void blankCredentialsAreTakenAsTheyCome()
    {
        ModuleModel model;
        model.receive(bytes(blankSetup));
        model.receive(bytes(commit));
        model.finishRestart();
        QCOMPARE(model.state().username, std::string());
        QCOMPARE(answerTo(model, login), bytes("FF 01 03 04"));
        QCOMPARE(
            answerTo(model, "FF 13 03 02 00 00 00 00 01 00 00 00 00 00 00 00 00 00 00 00 00 19")
                .size(),
            qsizetype(260));
    }

    void aResetRestoresTheStart()
    {
        ModuleModel model;
        model.receive(bytes(setup));
        model.receive(bytes(commit));
        model.finishRestart();
        model.reset();
        QVERIFY(model.state() == ModuleState{});
    }

    void silenceObeysAndAnswersNothing()
    {
        ModuleModel model;
        model.setFaults({.silent = true});
        QVERIFY(model.receive(bytes(search)).answers.empty());
        QVERIFY(model.receive(bytes(login)).answers.empty());
        model.receive(bytes(setup));
        QVERIFY(model.receive(bytes(commit)).restarts);
    }

    void discoveryAnswersOfAnotherSize()
    {
        ModuleModel model;
        model.setFaults({.discoverySize = 37, .discoverySizeTimes = 2});
        QCOMPARE(answerTo(model, search).size(), qsizetype(37));
        QCOMPARE(answerTo(model, search).size(), qsizetype(37));
        QCOMPARE(answerTo(model, search).size(), qsizetype(36));
        model.setFaults({.discoverySize = 35});
        for (int i = 0; i < 10; ++i)
            QCOMPARE(answerTo(model, search).size(), qsizetype(35));
        QCOMPARE(answerTo(model, login).size(), qsizetype(260));
    }

    void answersCanBeLateAndTwice()
    {
        ModuleModel model;
        model.setFaults({.late = 700ms, .duplicates = 2});
        const ModuleOutcome outcome = model.receive(bytes(search));
        QCOMPARE(outcome.answers.size(), std::size_t(3));
        QVERIFY(outcome.answers[0].wait == 700ms);
        QVERIFY(outcome.answers[1].wait == 0ms);
        QCOMPARE(outcome.answers[1].datagram, outcome.answers[0].datagram);
        QCOMPARE(outcome.answers[2].datagram, outcome.answers[0].datagram);
    }

    void configurationAnswersCanBeCut()
    {
        ModuleModel model;
        model.setFaults({.truncatedBytes = 12});
        QCOMPARE(answerTo(model, login), bytes("FF 01 03 80 00 00 00 00 00 01 00 00"));
        QCOMPARE(answerTo(model, search).size(), qsizetype(36));
    }

    void everyLoginCanBeRefused()
    {
        ModuleModel model;
        model.setFaults({.refuse = true});
        QCOMPARE(answerTo(model, login), bytes("FF 01 03 04"));
    }

    void aSetupCanBeForgotten()
    {
        ModuleModel model;
        const ModuleState before = model.state();
        model.setFaults({.keepOld = true});
        model.receive(bytes(setup));
        QVERIFY(model.receive(bytes(commit)).restarts);
        QVERIFY(model.state() == before);
        model.finishRestart();
        QCOMPARE(answerTo(model, login).size(), qsizetype(260));
    }

    void namesCanBeAwkward()
    {
        ModuleModel model;
        model.setFaults({.longName = true});
        QCOMPARE(answerTo(model, search).mid(19, 16), QByteArray("SIXTEEN-BYTES-16"));
        model.setFaults({.rawName = true});
        QCOMPARE(answerTo(model, search).mid(19, 16),
                 bytes("FF FE 80 52 41 57 00 00 00 00 00 00 00 00 00 00"));
    }

    void modulesCanReportOneAddress()
    {
        ModuleModel model;
        model.setSharedAddress({192, 0, 2, 7});
        QCOMPARE(answerTo(model, search).mid(5, 4), bytes("7F 00 00 01"));
        model.setFaults({.sameAddress = true});
        QCOMPARE(answerTo(model, search).mid(5, 4), bytes("C0 00 02 07"));
    }

    void aFleetCountsUp()
    {
        FleetPlan plan;
        plan.size = 3;
        const auto modules = modulesOf(plan);
        QCOMPARE(modules.size(), std::size_t(3));
        QCOMPARE(toText(modules[0].address()), std::string("127.0.0.1"));
        QCOMPARE(toText(modules[2].address()), std::string("127.0.0.3"));
        QCOMPARE(toText(modules[2].mac), std::string("02:00:00:00:00:03"));
        QCOMPARE(modules[0].name, std::string("PELORA-SIM"));
        QCOMPARE(modules[2].name, std::string("PELORA-SIM-3"));
    }

    void aFleetTakesNamedAddressesAndGoesOn()
    {
        FleetPlan plan;
        plan.size = 4;
        plan.first.name = "SIXTEEN-BYTES-16";
        plan.first.mac = {2, 0, 0, 0, 0, 0xff};
        plan.addresses = {{192, 0, 2, 7}, {10, 0, 0, 1}};
        const auto modules = modulesOf(plan);
        QCOMPARE(toText(modules[0].address()), std::string("192.0.2.7"));
        QCOMPARE(toText(modules[0].gateway), std::string("192.0.2.254"));
        QCOMPARE(toText(modules[1].gateway), std::string("10.0.0.254"));
        QCOMPARE(toText(modules[1].address()), std::string("10.0.0.1"));
        QCOMPARE(toText(modules[3].address()), std::string("10.0.0.3"));
        QCOMPARE(modules[1].name, std::string("SIXTEEN-BYTES--2"));
        QCOMPARE(toText(modules[1].mac), std::string("02:00:00:00:01:00"));
    }

    void aThousandOnLoopback()
    {
        FleetPlan plan;
        plan.size = 1000;
        plan.addresses = {{127, 1, 0, 1}};
        const auto modules = modulesOf(plan);
        QCOMPARE(modules.size(), std::size_t(1000));
        QCOMPARE(toText(modules[0].address()), std::string("127.1.0.1"));
        QCOMPARE(toText(modules[254].address()), std::string("127.1.0.255"));
        QCOMPARE(toText(modules[255].address()), std::string("127.1.1.0"));
        QCOMPARE(toText(modules[999].address()), std::string("127.1.3.232"));
        QCOMPARE(toText(modules[255].mac), std::string("02:00:00:00:01:00"));
        QCOMPARE(toText(modules[999].mac), std::string("02:00:00:00:03:E8"));
        QCOMPARE(modules[999].name, std::string("PELORA-SIM-1000"));
        plan.first.mac = {2, 0xAA, 0xBB, 0xFF, 0xFF, 0xFF};
        QCOMPARE(toText(modulesOf(plan)[1].mac), std::string("02:AA:BB:00:00:00"));
    }

    void aFleetMayNotRunPastItsAddresses()
    {
        FleetPlan plan;
        plan.size = 2;
        plan.addresses = {{192, 0, 2, 254}};
        QVERIFY_EXCEPTION_THROWN(modulesOf(plan), std::runtime_error);
        plan.addresses = {{127, 255, 255, 254}};
        QVERIFY_EXCEPTION_THROWN(modulesOf(plan), std::runtime_error);
        plan.size = 1;
        plan.addresses = {{192, 0, 2, 7}, {192, 0, 2, 8}};
        QVERIFY_EXCEPTION_THROWN(modulesOf(plan), std::runtime_error);
    }

    void answersArePackedUpTo1400Bytes()
    {
        AnswerPacker packer;
        QVERIFY(packer.add("**C2\n").empty());
        QVERIFY(packer.add("**U3\n").empty());
        const auto paused = packer.flush();
        QCOMPARE(paused.size(), std::size_t(1));
        QCOMPARE(paused[0], QByteArray("**C2\n**U3\n"));
        QVERIFY(packer.flush().empty());

        const auto full = packer.add(QByteArray(3000, 'a'));
        QCOMPARE(full.size(), std::size_t(2));
        QCOMPARE(full[0].size(), qsizetype(1400));
        QCOMPARE(full[1].size(), qsizetype(1400));
        const auto rest = packer.flush();
        QCOMPARE(rest.size(), std::size_t(1));
        QCOMPARE(rest[0].size(), qsizetype(200));
    }

    void answersCanBeSplitSmaller()
    {
        AnswerPacker packer;
        const auto full = packer.add("abcdefg", 3);
        QCOMPARE(full.size(), std::size_t(2));
        QCOMPARE(full[1], QByteArray("def"));
        const auto rest = packer.flush(3);
        QCOMPARE(rest.size(), std::size_t(1));
        QCOMPARE(rest[0], QByteArray("g"));
    }
};

QTEST_GUILESS_MAIN(ModuleModelTest)
#include "tst_module_model.moc"
