#include "simulator/module_frame.h"

#include <QTest>

namespace {

QByteArray bytes(const char *hex)
{
    return QByteArray::fromHex(hex);
}

QString rejectionOf(const QByteArray &datagram)
{
    const auto decoded = decodeRequest(datagram);
    const auto *rejection = std::get_if<Rejection>(&decoded);
    return rejection != nullptr ? QString::fromStdString(rejection->reason) : QString();
}

/// 89 bytes: static 192.0.2.9, gateway 192.0.2.1, mask 255.255.255.0, name "DESK", "root"/"secret".
const char *const fullSetup =
    "FF 56 05 02 00 00 00 00 01 61 64 6D 69 6E 00 61 64 6D 69 6E 00 09 38 03 80 20 19 50 00 02"
    "09 02 00 C0 01 02 00 C0 00 FF FF FF 44 45 53 4B 00 00 00 00 00 00 00 00 00 00 00 00"
    "72 6F 6F 74 00 00 73 65 63 72 65 74 02 01 00 00 02 00 00 00 00 01 10 0E 00 00 01 00 00 00 E0";

/// The same with the name cut at its first zero byte: 77 bytes, the length byte still 56.
const char *const shortSetup =
    "FF 56 05 02 00 00 00 00 01 61 64 6D 69 6E 00 61 64 6D 69 6E 00 09 38 03 80 20 19 50 00 02"
    "09 02 00 C0 01 02 00 C0 00 FF FF FF 44 45 53 4B"
    "72 6F 6F 74 00 00 73 65 63 72 65 74 02 01 00 00 02 00 00 00 00 01 10 0E 00 00 01 00 00 00 E0";

/// DHCP, the name of 16 characters "SIXTEEN-BYTES-16", credentials unchanged.
const char *const dhcpSetup =
    "FF 56 05 02 00 00 00 00 01 61 64 6D 69 6E 00 61 64 6D 69 6E 00 09 38 03 00 20 19 50 00 02"
    "09 02 00 C0 01 02 00 C0 00 FF FF FF 53 49 58 54 45 45 4E 2D 42 59 54 45 53 2D 31 36"
    "61 64 6D 69 6E 00 61 64 6D 69 6E 00 02 01 00 00 02 00 00 00 00 01 10 0E 00 00 01 00 00 00 69";

const Mac firstMac{0x02, 0x00, 0x00, 0x00, 0x00, 0x01};

} // namespace

/// The module's frames, byte by byte.
class ModuleFrameTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void searchIsFourBytes()
    {
        const auto decoded = decodeRequest(bytes("FF 01 01 02"));
        QVERIFY(std::holds_alternative<ModuleRequest>(decoded));
        QVERIFY(std::get<ModuleRequest>(decoded).kind == ModuleRequest::Kind::Search);
    }

    void loginCarriesMacAndCredentials()
    {
        const auto decoded = decodeRequest(
            bytes("FF 13 03 02 00 00 00 00 01 61 64 6D 69 6E 00 61 64 6D 69 6E 00 2B"));
        QVERIFY(std::holds_alternative<ModuleRequest>(decoded));
        const auto &request = std::get<ModuleRequest>(decoded);
        QVERIFY(request.kind == ModuleRequest::Kind::Login);
        QVERIFY(request.mac == firstMac);
        QCOMPARE(request.username, std::string("admin"));
        QCOMPARE(request.password, std::string("admin"));
    }

    void credentialsMayFillTheirField()
    {
        const auto decoded = decodeRequest(
            bytes("FF 13 04 02 00 00 00 00 01 72 6F 6F 74 00 00 73 65 63 72 65 74 64"));
        QVERIFY(std::holds_alternative<ModuleRequest>(decoded));
        const auto &request = std::get<ModuleRequest>(decoded);
        QVERIFY(request.kind == ModuleRequest::Kind::Commit);
        QCOMPARE(request.username, std::string("root"));
        QCOMPARE(request.password, std::string("secret"));
    }

    void setupCarriesEverything_data()
    {
        QTest::addColumn<QByteArray>("frame");
        QTest::newRow("full name field") << bytes(fullSetup);
        QTest::newRow("shortened name") << bytes(shortSetup);
    }

    void setupCarriesEverything()
    {
        QFETCH(QByteArray, frame);
        const auto decoded = decodeRequest(frame);
        QCOMPARE(rejectionOf(frame), QString());
        const auto &request = std::get<ModuleRequest>(decoded);
        QVERIFY(request.kind == ModuleRequest::Kind::Setup);
        QVERIFY(request.mac == firstMac);
        QCOMPARE(request.username, std::string("admin"));
        QVERIFY(!request.setup.dhcp);
        QCOMPARE(toText(request.setup.address), std::string("192.0.2.9"));
        QCOMPARE(toText(request.setup.gateway), std::string("192.0.2.1"));
        QCOMPARE(toText(request.setup.subnetMask), std::string("255.255.255.0"));
        QCOMPARE(request.setup.name, std::string("DESK"));
        QCOMPARE(request.setup.username, std::string("root"));
        QCOMPARE(request.setup.password, std::string("secret"));
    }

    void setupWithDhcpAndAFullName()
    {
        const auto decoded = decodeRequest(bytes(dhcpSetup));
        QCOMPARE(rejectionOf(bytes(dhcpSetup)), QString());
        const auto &request = std::get<ModuleRequest>(decoded);
        QVERIFY(request.setup.dhcp);
        QCOMPARE(request.setup.name, std::string("SIXTEEN-BYTES-16"));
        QCOMPARE(request.setup.username, std::string("admin"));
    }

    void brokenFramesAreRejectedWithAReason_data()
    {
        QTest::addColumn<QByteArray>("frame");
        QTest::addColumn<QString>("reason");

        const auto row = [](const char *name, const char *hex, const char *reason) {
            QTest::newRow(name) << bytes(hex) << QString::fromLatin1(reason);
        };
        row("empty", "", "too short for a frame");
        row("three bytes", "FF 01 01", "too short for a frame");
        row("text", "2F 2F 72 6C 0D", "starts with 2F, not FF");
        row("unknown command", "FF 01 07 08", "there is no command 07");
        row("search: length byte", "FF 02 01 03", "the length byte is 02, not 01");
        row("search: size", "FF 01 01 00 02", "has 5 bytes, not 4");
        row("search: checksum", "FF 01 01 03", "the checksum is 03, not 02");
        row("login: checksum", "FF 13 03 02 00 00 00 00 01 61 64 6D 69 6E 00 61 64 6D 69 6E 00 2C",
            "the checksum is 2C, not 2B");
        row("login: length byte",
            "FF 14 03 02 00 00 00 00 01 61 64 6D 69 6E 00 61 64 6D 69 6E 00 2C",
            "the length byte is 14, not 13");
        row("login without a MAC", "FF 13 03 61 64 6D 69 6E 00 61 64 6D 69 6E 00 28",
            "has 16 bytes, not 22");
        row("login, user name of 7",
            "FF 13 03 02 00 00 00 00 01 61 64 6D 69 6E 78 79 61 64 6D 69 6E 00 1C",
            "has 23 bytes, not 22");
        row("setup, too short", "FF 56 05 02 00 00 00 00 01 61 64 6D 69 6E 00 61 64 6D 69 6E 00 C3",
            "has 22 bytes, not 89");
        row("setup, address left out",
            "FF 56 05 02 00 00 00 00 01 61 64 6D 69 6E 00 61 64 6D 69 6E 00 09 38 03 80 20 19 50 00"
            "02 01 02 00 C0 00 FF FF FF 50 45 4C 4F 52 41 2D 53 49 4D 61 64 6D 69 6E 00 61 64 6D 69"
            "6E 00 02 01 00 00 02 00 00 00 00 01 10 0E 00 00 01 00 00 00 8F",
            "the subnet mask 79.76.69.80 is none");
        row("setup, address left out, empty name",
            "FF 56 05 02 00 00 00 00 01 61 64 6D 69 6E 00 61 64 6D 69 6E 00 09 38 03 80 20 19 50 00"
            "02 01 02 00 C0 00 FF FF FF 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 61 64 6D 69"
            "6E 00 61 64 6D 69 6E 00 02 01 00 00 02 00 00 00 00 01 10 0E 00 00 01 00 00 00 B6",
            "a static address needs a subnet mask");
        row("setup, mask with a hole",
            "FF 56 05 02 00 00 00 00 01 61 64 6D 69 6E 00 61 64 6D 69 6E 00 09 38 03 80 20 19 50 00"
            "02 09 02 00 C0 01 02 00 C0 00 FF 00 FF 44 45 53 4B 61 64 6D 69 6E 00 61 64 6D 69 6E 00"
            "02 01 00 00 02 00 00 00 00 01 10 0E 00 00 01 00 00 00 A9",
            "the subnet mask 255.0.255.0 is none");
        row("setup, allocation 40",
            "FF 56 05 02 00 00 00 00 01 61 64 6D 69 6E 00 61 64 6D 69 6E 00 09 38 03 40 20 19 50 00"
            "02 09 02 00 C0 01 02 00 C0 00 FF FF FF 44 45 53 4B 61 64 6D 69 6E 00 61 64 6D 69 6E 00"
            "02 01 00 00 02 00 00 00 00 01 10 0E 00 00 01 00 00 00 68",
            "the allocation is 40, neither 00 nor 80");
        row("setup, another MAC at the end",
            "FF 56 05 02 00 00 00 00 01 61 64 6D 69 6E 00 61 64 6D 69 6E 00 09 38 03 80 20 19 50 00"
            "02 09 02 00 C0 01 02 00 C0 00 FF FF FF 44 45 53 4B 61 64 6D 69 6E 00 61 64 6D 69 6E 00"
            "02 01 00 00 02 00 00 00 00 02 10 0E 00 00 01 00 00 00 A9",
            "offset 62 holds 02 00 00 00 00 02, not 02 00 00 00 00 01");
    }

    void brokenFramesAreRejectedWithAReason()
    {
        QFETCH(QByteArray, frame);
        QFETCH(QString, reason);
        QCOMPARE(rejectionOf(frame), reason);
    }

    void everyFlippedByteOfASetupIsNoticed()
    {
        const QByteArray good = bytes(fullSetup);
        for (qsizetype at = 0; at < good.size(); ++at) {
            QByteArray bad = good;
            bad[at] = static_cast<char>(bad.at(at) ^ 0x40);
            QVERIFY2(!rejectionOf(bad).isEmpty(), QByteArray::number(at).constData());
        }
    }

    void discoveryAnswerIs36BytesWithTheAddressInNetworkOrder()
    {
        ModuleState state;
        state.staticAddress = {192, 0, 2, 7};
        QCOMPARE(discoveryAnswer(state),
                 bytes("FF 21 01 00 00 C0 00 02 07 02 00 00 00 00 01 00 00 00 00"
                       "50 45 4C 4F 52 41 2D 53 49 4D 00 00 00 00 00 00 C7"));
        state.name = "SIXTEEN-BYTES-16";
        QCOMPARE(discoveryAnswer(state).size(), qsizetype(36));
        QCOMPARE(discoveryAnswer(state).mid(19, 16), QByteArray("SIXTEEN-BYTES-16"));
    }

    void discoveryAnswerReportsTheAddressInForce()
    {
        ModuleState state;
        state.staticAddress = {192, 0, 2, 9};
        state.leasedAddress = {192, 0, 2, 77};
        state.dhcp = true;
        QCOMPARE(discoveryAnswer(state).mid(5, 4), bytes("C0 00 02 4D"));
    }

    void configurationAnswerIs260BytesWithAddressesReversed()
    {
        ModuleState state;
        state.staticAddress = {192, 0, 2, 7};
        state.gateway = {192, 0, 2, 254};
        const QByteArray head =
            bytes("FF 01 03 80 00 00 00 00 00 07 02 00 C0 FE 02 00 C0 00 FF FF FF");
        QCOMPARE(configurationAnswer(state), head + QByteArray(238, '\0') + bytes("0A"));
        state.dhcp = true;
        state.leasedAddress = {10, 1, 2, 3};
        QByteArray dhcpHead = head;
        dhcpHead[3] = 0x40;
        QCOMPARE(configurationAnswer(state), dhcpHead + QByteArray(238, '\0') + bytes("CA"));
    }

    void refusalIsFourBytes() { QCOMPARE(refusalAnswer(), bytes("FF 01 03 04")); }

    void addressesAreReadStrictly()
    {
        QVERIFY(ipv4From("192.0.2.7") == (Ipv4{192, 0, 2, 7}));
        for (const char *text : {"", "192.0.2", "192.0.2.256", "192.0.2.7.1", "192.0.2.x",
                                 " 1.2.3.4", "1.2.3.4 ", "1..3.4", "+1.2.3.4", "0001.2.3.4"})
            QVERIFY2(!ipv4From(text), text);
        QVERIFY(macFrom("02:00:00:00:00:0a") == (Mac{2, 0, 0, 0, 0, 10}));
        for (const char *text :
             {"", "02:00:00:00:00", "02:00:00:00:00:0g", "02-00-00-00-00-01", "02:00:00:00:00:001"})
            QVERIFY2(!macFrom(text), text);
    }
};

QTEST_GUILESS_MAIN(ModuleFrameTest)
#include "tst_module_frame.moc"
