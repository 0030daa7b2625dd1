#include "device/usr_frame.h"

#include <QTest>
#include <stdexcept>

namespace {
const QString mac = QStringLiteral("9ca5251a2b3c");
const QString admin = QStringLiteral("admin");

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

/// A static address, a name of four letters, credentials that stay as they are.
usr_frame::Setup deskSetup()
{
    return {mac,
            admin,
            admin,
            text("80"),
            text("192.168.1.7"),
            text("192.168.1.1"),
            text("255.255.255.0"),
            text("4465736b000000000000000000000000"),
            admin,
            admin};
}

QByteArray filled(int size)
{
    return QByteArray(size, '\0');
}
} // namespace

/// Requests and replies of the network module, byte by byte from the tables of its protocol.
class FrameTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hexTextHasTwoLowerCaseDigitsAByte()
    {
        QCOMPARE(usr_frame::toHexText(QByteArray("\x00\x0a\xff", 3)), text("000aff"));
        QCOMPARE(usr_frame::toHexText({}), QString());
        QCOMPARE(usr_frame::toBytes(text("000aFF")), QByteArray("\x00\x0a\xff", 3));
    }

    void textThatIsNotHexadecimalIsRefused()
    {
        for (const char *wrong : {"f", "fff", "-1", "0x", "0 00", "g0"})
            QVERIFY_EXCEPTION_THROWN(usr_frame::toBytes(text(wrong)), std::invalid_argument);
    }

    void textFields_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<int>("size");
        QTest::addColumn<QString>("field");
        QTest::newRow("shorter") << text("admin") << 6 << text("61646d696e00");
        QTest::newRow("empty") << QString() << 6 << text("000000000000");
        QTest::newRow("fills") << text("secret") << 6 << text("736563726574");
        QTest::newRow("overflows") << text("toolong") << 6 << text("746f6f6c6f6e67");
        QTest::newRow("beyond ASCII") << text("\xC3\xA9") << 6 << text("c3a900000000");
        QTest::newRow("six characters, twelve bytes")
            << text("\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9") << 6
            << text("c3a9c3a9c3a9c3a9c3a9c3a9");
        QTest::newRow("name") << text("Desk") << 16 << text("4465736b000000000000000000000000");
        QTest::newRow("name of 16")
            << text("Meeting Room 4-5") << 16 << text("4d656574696e6720526f6f6d20342d35");
    }

    void textFields()
    {
        QFETCH(QString, value);
        QFETCH(int, size);
        QTEST(usr_frame::textField(value, size), "field");
    }

    void addressFields_data()
    {
        QTest::addColumn<QString>("dotted");
        QTest::addColumn<QString>("field");
        QTest::newRow("last octet first") << text("192.168.1.7") << text("0701a8c0");
        QTest::newRow("bounds") << text("0.255.0.255") << text("ff00ff00");
        QTest::newRow("leading zero is decimal") << text("010.0.0.1") << text("0100000a");
        QTest::newRow("octet over 255") << text("192.168.1.300") << QString();
        QTest::newRow("octet of 256") << text("256.0.0.1") << QString();
        QTest::newRow("negative") << text("192.168.1.-1") << QString();
        QTest::newRow("no number") << text("a.b.c.d") << QString();
        QTest::newRow("three parts") << text("192.168.1") << QString();
        QTest::newRow("five parts") << text("1.2.3.4.5") << QString();
        QTest::newRow("empty part") << text("1..3.4") << QString();
        QTest::newRow("empty") << QString() << QString();
        QTest::newRow("unread") << text("-1") << QString();
    }

    void addressFields()
    {
        QFETCH(QString, dotted);
        QTEST(usr_frame::ipv4Field(dotted), "field");
    }

    void searchRequestIsFourFixedBytes() { QCOMPARE(usr_frame::searchRequest(), text("ff010102")); }

    void loginRequests_data()
    {
        QTest::addColumn<QString>("username");
        QTest::addColumn<QString>("password");
        QTest::addColumn<QString>("frame");
        QTest::newRow("usual") << admin << admin
                               << text("ff13039ca5251a2b3c61646d696e0061646d696e000f");
        QTest::newRow("fills the fields") << text("secret") << text("123456")
                                          << text("ff13039ca5251a2b3c736563726574313233343536b8");
        QTest::newRow("overflows, length byte and all bytes summed as ever")
            << text("toolong") << text("x")
            << text("ff13039ca5251a2b3c746f6f6c6f6e6778000000000077");
        QTest::newRow("empty") << QString() << QString()
                               << text("ff13039ca5251a2b3c000000000000000000000000fd");
        QTest::newRow("beyond ASCII") << text("\xC3\xA9") << text("\xC3\xA4\xE2\x82\xAC")
                                      << text("ff13039ca5251a2b3cc3a900000000c3a4e282ac00e0");
    }

    void loginRequests()
    {
        QFETCH(QString, username);
        QFETCH(QString, password);
        QTEST(usr_frame::loginRequest(mac, username, password), "frame");
    }

    void commitRequestDiffersInCommandAndChecksum()
    {
        QCOMPARE(usr_frame::commitRequest(mac, admin, admin),
                 text("ff13049ca5251a2b3c61646d696e0061646d696e0010"));
    }

    void requestsWithoutKnownMacCarryNone()
    {
        QCOMPARE(usr_frame::loginRequest({}, admin, admin),
                 text("ff130361646d696e0061646d696e0028"));
        usr_frame::Setup setup = deskSetup();
        setup.mac.clear();
        setup.nameHex.clear();
        QCOMPARE(usr_frame::setupRequest(setup), text("ff5605"
                                                      "61646d696e0061646d696e00093803"
                                                      "802019500002"
                                                      "0701a8c00101a8c000ffffff"
                                                      "61646d696e0061646d696e00"
                                                      "02010000"
                                                      "100e000001000000c7"));
    }

    void setupWithStaticAddress()
    {
        QCOMPARE(usr_frame::setupRequest(deskSetup()),
                 text("ff56059ca5251a2b3c"
                      "61646d696e0061646d696e00"
                      "093803802019500002"
                      "0701a8c00101a8c000ffffff"
                      "4465736b000000000000000000000000"
                      "61646d696e0061646d696e00"
                      "020100009ca5251a2b3c100e0000010000001c"));
        QCOMPARE(usr_frame::toBytes(usr_frame::setupRequest(deskSetup())).size(), 89);
    }

    void setupWithDhcp()
    {
        usr_frame::Setup setup = deskSetup();
        setup.ipAllocation = text("00");
        QCOMPARE(usr_frame::setupRequest(setup), text("ff56059ca5251a2b3c"
                                                      "61646d696e0061646d696e00"
                                                      "093803002019500002"
                                                      "0701a8c00101a8c000ffffff"
                                                      "4465736b000000000000000000000000"
                                                      "61646d696e0061646d696e00"
                                                      "020100009ca5251a2b3c100e0000010000009c"));
    }

    void setupWithDhcpAndEmptyAddressesIsShorter()
    {
        usr_frame::Setup setup = deskSetup();
        setup.ipAllocation = text("00");
        setup.ip.clear();
        setup.gateway.clear();
        setup.subnetMask.clear();
        QCOMPARE(usr_frame::setupRequest(setup), text("ff56059ca5251a2b3c"
                                                      "61646d696e0061646d696e00"
                                                      "093803002019500002"
                                                      "4465736b000000000000000000000000"
                                                      "61646d696e0061646d696e00"
                                                      "020100009ca5251a2b3c100e000001000000c5"));
    }

    void setupWithOctetOver255HasAnEmptyAddressField()
    {
        usr_frame::Setup setup = deskSetup();
        setup.ip = text("192.168.1.300");
        QCOMPARE(usr_frame::setupRequest(setup), text("ff56059ca5251a2b3c"
                                                      "61646d696e0061646d696e00"
                                                      "093803802019500002"
                                                      "0101a8c000ffffff"
                                                      "4465736b000000000000000000000000"
                                                      "61646d696e0061646d696e00"
                                                      "020100009ca5251a2b3c100e000001000000ac"));
    }

    void setupWithNameOf16Characters()
    {
        usr_frame::Setup setup = deskSetup();
        setup.nameHex = text("4d656574696e6720526f6f6d20342d35");
        QCOMPARE(usr_frame::setupRequest(setup), text("ff56059ca5251a2b3c"
                                                      "61646d696e0061646d696e00"
                                                      "093803802019500002"
                                                      "0701a8c00101a8c000ffffff"
                                                      "4d656574696e6720526f6f6d20342d35"
                                                      "61646d696e0061646d696e00"
                                                      "020100009ca5251a2b3c100e000001000000d1"));
    }

    void setupWithShortenedNameIsShorterUnderTheSameLengthByte()
    {
        usr_frame::Setup setup = deskSetup();
        setup.nameHex = text("4465736b");
        const QString frame = usr_frame::setupRequest(setup);
        QCOMPARE(frame, text("ff56059ca5251a2b3c"
                             "61646d696e0061646d696e00"
                             "093803802019500002"
                             "0701a8c00101a8c000ffffff"
                             "4465736b"
                             "61646d696e0061646d696e00"
                             "020100009ca5251a2b3c100e0000010000001c"));
        QCOMPARE(usr_frame::toBytes(frame).size(), 77);
    }

    void setupWithNewCredentialsIsAuthenticatedByTheOldOnes()
    {
        usr_frame::Setup setup = deskSetup();
        setup.newUsername = text("secret");
        setup.newPassword.clear();
        QCOMPARE(usr_frame::setupRequest(setup), text("ff56059ca5251a2b3c"
                                                      "61646d696e0061646d696e00"
                                                      "093803802019500002"
                                                      "0701a8c00101a8c000ffffff"
                                                      "4465736b000000000000000000000000"
                                                      "736563726574000000000000"
                                                      "020100009ca5251a2b3c100e00000100000090"));
    }

    void setupWithOverflowingFieldsSumsEveryByte()
    {
        usr_frame::Setup setup = deskSetup();
        setup.nameHex = text("c3b6c3b6c3b6c3b6c3b6c3b6c3b6c3b6c3b6");
        setup.newUsername = text("\xC3\xB6\xC3\xB6\xC3\xB6\xC3\xB6");
        setup.newPassword = text("123456");
        const QString frame = usr_frame::setupRequest(setup);
        QCOMPARE(frame, text("ff56059ca5251a2b3c"
                             "61646d696e0061646d696e00"
                             "093803802019500002"
                             "0701a8c00101a8c000ffffff"
                             "c3b6c3b6c3b6c3b6c3b6c3b6c3b6c3b6c3b6"
                             "c3b6c3b6c3b6c3b6313233343536"
                             "020100009ca5251a2b3c100e000001000000dd"));
        QCOMPARE(usr_frame::toBytes(frame).size(), 93);
    }

    void allocationThatWasNeverReadBuildsNoFrame()
    {
        usr_frame::Setup setup = deskSetup();
        setup.ipAllocation = text("-1");
        QVERIFY_EXCEPTION_THROWN(usr_frame::setupRequest(setup), std::invalid_argument);
    }

    void discoveryReply()
    {
        const usr_frame::DiscoveryReply reply =
            usr_frame::readDiscoveryReply(text("ff24010000"
                                               "c0a80107"
                                               "9ca5251a2b3c"
                                               "00000000"
                                               "4465736b000000000000000000000000"
                                               "00"));
        QCOMPARE(reply.ip, text("192.168.1.7"));
        QCOMPARE(reply.mac, mac);
        QCOMPARE(reply.nameHex, text("4465736b"));
        QCOMPARE(reply.name, text("Desk"));
    }

    void discoveryReplyWithNameOf16CharactersHasNoZeroByte()
    {
        const usr_frame::DiscoveryReply reply =
            usr_frame::readDiscoveryReply(text("ff24010000"
                                               "0a000001"
                                               "9ca5251a2b3c"
                                               "00000000"
                                               "4d656574696e6720526f6f6d20342d35"
                                               "ff"));
        QCOMPARE(reply.nameHex, text("4d656574696e6720526f6f6d20342d35"));
        QCOMPARE(reply.name, text("Meeting Room 4-5"));
    }

    void discoveryReplyNameEndsAtAZeroByteNotAtTwoZeroDigits()
    {
        const usr_frame::DiscoveryReply reply =
            usr_frame::readDiscoveryReply(text("ff24010000"
                                               "0a000001"
                                               "9ca5251a2b3c"
                                               "00000000"
                                               "50054100420000000000000000000000"
                                               "00"));
        QCOMPARE(reply.nameHex, text("500541"));
        QCOMPARE(reply.name, text("P\x05"
                                  "A"));
    }

    void discoveryReplyWithNameThatIsNotUtf8KeepsItsBytes()
    {
        const usr_frame::DiscoveryReply reply =
            usr_frame::readDiscoveryReply(text("ff24010000"
                                               "0a000001"
                                               "9ca5251a2b3c"
                                               "00000000"
                                               "41ff4200000000000000000000000000"
                                               "00"));
        QCOMPARE(reply.nameHex, text("41ff42"));
        QCOMPARE(reply.name, text("A\xEF\xBF\xBD"
                                  "B"));
    }

    void discoveryReplyWithoutName()
    {
        const usr_frame::DiscoveryReply reply =
            usr_frame::readDiscoveryReply(usr_frame::toHexText(filled(36)));
        QCOMPARE(reply.ip, text("0.0.0.0"));
        QVERIFY(reply.nameHex.isEmpty());
        QVERIFY(reply.name.isEmpty());
    }

    void discoveryReplyTooShortIsRefused()
    {
        for (const int size : {0, 4, 34})
            QVERIFY_EXCEPTION_THROWN(
                usr_frame::readDiscoveryReply(usr_frame::toHexText(filled(size))),
                std::invalid_argument);
    }

    void configurationReply_data()
    {
        QTest::addColumn<QString>("flags");
        QTest::addColumn<QString>("allocation");
        QTest::newRow("40 is DHCP") << text("40") << text("00");
        QTest::newRow("80 is static") << text("80") << text("80");
        QTest::newRow("00 is static") << text("00") << text("80");
        QTest::newRow("41 is static") << text("41") << text("80");
    }

    void configurationReply()
    {
        QFETCH(QString, flags);
        const QString hexText = text("ff0000") + flags +
                                text("0000000000"
                                     "0701a8c0"
                                     "fe01a8c0"
                                     "00ffffff") +
                                QString(2 * 239, u'0');
        const usr_frame::ConfigurationReply reply = usr_frame::readConfigurationReply(hexText);
        QTEST(reply.ipAllocation, "allocation");
        QCOMPARE(reply.staticIp, text("192.168.1.7"));
        QCOMPARE(reply.gateway, text("192.168.1.254"));
        QCOMPARE(reply.subnetMask, text("255.255.255.0"));
    }

    void configurationReplyOfAnyOtherSizeIsRefused()
    {
        for (const int size : {0, 4, 21, 259, 261, 520})
            QVERIFY_EXCEPTION_THROWN(
                usr_frame::readConfigurationReply(usr_frame::toHexText(filled(size))),
                std::invalid_argument);
    }

    void refusalIsAnyFourBytes()
    {
        QVERIFY(usr_frame::isRefusal(text("ff010304")));
        QVERIFY(usr_frame::isRefusal(text("00000000")));
        QVERIFY(!usr_frame::isRefusal(QString()));
        QVERIFY(!usr_frame::isRefusal(text("ff0103")));
        QVERIFY(!usr_frame::isRefusal(text("ff01030400")));
    }
};

QTEST_GUILESS_MAIN(FrameTest)
#include "tst_usr_frame.moc"
