#include "cli/device.h"
#include "cli/failure.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace {
QStringList mistakesIn(const QByteArray &list)
{
    try {
        devicesFrom(list, QStringLiteral("desks.txt"));
    } catch (const UsageError &error) {
        return error.lines();
    }
    return {};
}

QString mistakeOf(const QString &device)
{
    try {
        deviceFrom(device);
    } catch (const UsageError &error) {
        return error.lines().first();
    }
    return {};
}

QString twiceAmong(const QStringList &texts)
{
    std::vector<Device> devices;
    for (const QString &text : texts)
        devices.push_back(deviceFrom(text));
    try {
        requireDistinct(devices);
    } catch (const UsageError &error) {
        return error.lines().first();
    }
    return {};
}
} // namespace

class DeviceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyRoadIsRead()
    {
        const Device serial = deviceFrom(QStringLiteral("serial:/dev/ttyUSB0"));
        QCOMPARE(serial.road, Device::Road::Serial);
        QCOMPARE(serial.port, QStringLiteral("/dev/ttyUSB0"));
        QCOMPARE(serial.name, QStringLiteral("serial:/dev/ttyUSB0"));

        const Device udp = deviceFrom(QStringLiteral("udp:192.0.2.7"));
        QCOMPARE(udp.address, QHostAddress(QStringLiteral("192.0.2.7")));
        QCOMPARE(udp.udpPort, quint16(23));
        QCOMPARE(deviceFrom(QStringLiteral("udp:192.0.2.7:2300")).udpPort, quint16(2300));

        QCOMPARE(deviceFrom(QStringLiteral("module:DESK-7")).module, QStringLiteral("DESK-7"));
        for (const char *mac : {"9CA5251A2B3C", "9c:a5:25:1a:2b:3c", "9C-A5-25-1A-2B-3C"})
            QCOMPARE(deviceFrom(QStringLiteral("module:") + QLatin1String(mac)).module,
                     QStringLiteral("9ca5251a2b3c"));
    }

    void numbersOfAnAddressAreDecimal_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<quint32>("address");
        QTest::newRow("filled up to three digits")
            << QStringLiteral("udp:192.168.001.010") << 0xC0A8010AU;
        QTest::newRow("no octal number") << QStringLiteral("udp:192.0.2.08") << 0xC0000208U;
        QTest::newRow("bounds") << QStringLiteral("udp:000.255.00.255") << 0x00FF00FFU;
    }

    void numbersOfAnAddressAreDecimal()
    {
        QFETCH(QString, text);
        QFETCH(quint32, address);
        QCOMPARE(deviceFrom(text).address.toIPv4Address(), address);
        QCOMPARE(mistakeOf(text + QStringLiteral(":2300")), QString());
    }

    void whatIsNoneIsRefused_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text :
             {"", "ttyUSB0", "serial:", "SERIAL:x", "udp:", "udp:host", "udp:192.0.2",
              "udp:1.2.3.4.5", "udp:192.0.2.256", "udp:192.0.2.7:0", "udp:192.0.2.7:65536",
              "udp:192.0.2.7:x", "udp:192.0.2.7:23:4", "udp:::1", "udp:192.0.2. 7",
              "udp:192.0.2.+7", "udp:192.0.2.0007", "udp:0x7f.0.0.1", "module:"})
            QTest::newRow(text) << QString::fromLatin1(text);
    }

    void whatIsNoneIsRefused()
    {
        QFETCH(QString, text);
        QVERIFY(mistakeOf(text).contains(QStringLiteral("\"%1\" is no device").arg(text)));
    }

    void aListHasOneDeviceALine()
    {
        const std::vector<Device> devices =
            devicesFrom("# floor 3\r\n"
                        "desk-1  serial:/dev/ttyUSB0\r\n"
                        "\n"
                        "\tdesk-2\tudp:192.0.2.7:2300   # by the window\n"
                        "udp:192.0.2.8\n"
                        "desk-3 module:DESK 7\n"
                        "desk#4 udp:192.0.2.9",
                        QStringLiteral("desks.txt"));
        QCOMPARE(devices.size(), std::size_t(5));
        QCOMPARE(devices[0].name, QStringLiteral("desk-1"));
        QCOMPARE(devices[0].port, QStringLiteral("/dev/ttyUSB0"));
        QCOMPARE(devices[1].name, QStringLiteral("desk-2"));
        QCOMPARE(devices[1].udpPort, quint16(2300));
        QCOMPARE(devices[2].name, QStringLiteral("udp:192.0.2.8"));
        QCOMPARE(devices[3].module, QStringLiteral("DESK 7"));
        QCOMPARE(devices[4].name, QStringLiteral("desk#4"));
    }

    void everyBadLineIsNamed()
    {
        const QStringList mistakes = mistakesIn("desk-1 udp:192.0.2.7\n"
                                                "desk-2\n"
                                                "desk-3 udp:nowhere\n"
                                                "desk-1 udp:192.0.2.8\n"
                                                "desk 5 udp:192.0.2.9\n");
        QCOMPARE(mistakes.size(), 4);
        QVERIFY(mistakes.at(0).startsWith(QStringLiteral("desks.txt, line 2: \"desk-2\"")));
        QVERIFY(mistakes.at(1).startsWith(QStringLiteral("desks.txt, line 3: \"udp:nowhere\"")));
        QCOMPARE(mistakes.at(2), QStringLiteral("desks.txt, line 4: the name \"desk-1\" stands in "
                                                "line 1 already"));
        QVERIFY(
            mistakes.at(3).startsWith(QStringLiteral("desks.txt, line 5: \"5 udp:192.0.2.9\"")));
    }

    void namesWithPercentSignsAreNamedAsTheyAre()
    {
        try {
            devicesFrom("%2%3 udp:192.0.2.7\n%2%3 udp:192.0.2.8\n",
                        QStringLiteral("floor%2%3.txt"));
            QFAIL("it was taken");
        } catch (const UsageError &error) {
            QCOMPARE(error.lines().constFirst(),
                     QStringLiteral("floor%2%3.txt, line 2: the name \"%2%3\" stands in line 1 "
                                    "already"));
        }
    }

    void aPortThatStandsTwiceIsAnError()
    {
        QVERIFY(twiceAmong({QStringLiteral("udp:192.0.2.7"), QStringLiteral("udp:192.0.2.7:23")})
                    .contains(QStringLiteral("are the same port")));
        QVERIFY(twiceAmong({QStringLiteral("module:9CA5251A2B3C"),
                            QStringLiteral("module:9c:a5:25:1a:2b:3c")})
                    .contains(QStringLiteral("are the same port")));
        QCOMPARE(twiceAmong({QStringLiteral("udp:192.0.2.7"), QStringLiteral("udp:192.0.2.7:24")}),
                 QString());
    }

    void aControlCharacterIsNoPartOfADevice_data()
    {
        QTest::addColumn<QByteArray>("list");
        QTest::newRow("a zero byte") << QByteArray("desk serial:/dev/tty\0x\n", 22);
        QTest::newRow("an escape") << QByteArray("desk module:\x1b[2J\n");
        QTest::newRow("one beyond ASCII") << QByteArray("module:A\xC2\x9BZ\n");
    }

    void aControlCharacterIsNoPartOfADevice()
    {
        QFETCH(QByteArray, list);
        const QStringList mistakes = mistakesIn(list);
        QCOMPARE(mistakes.size(), 1);
        QVERIFY(mistakes.first().startsWith(QStringLiteral("desks.txt, line 1: ")));
        QVERIFY(mistakes.first().endsWith(
            QStringLiteral("is no device: it has a control character in it")));
    }

    void aNameInTwoListsIsAMistake()
    {
        std::vector<Device> devices =
            devicesFrom("desk udp:192.0.2.7\n", QStringLiteral("floor-1.txt"));
        devices.push_back(
            devicesFrom("desk udp:192.0.2.8\n", QStringLiteral("floor-2.txt")).front());
        try {
            requireDistinct(devices);
            QFAIL("it was taken");
        } catch (const UsageError &error) {
            QCOMPARE(error.lines(),
                     QStringList{QStringLiteral("the name \"desk\" is given twice")});
        }
    }

    void aLinkToAPortIsThePort()
    {
#ifdef Q_OS_WIN
        QSKIP("there are no links to ports");
#endif
        const QTemporaryDir folder;
        const QString port = folder.filePath(QStringLiteral("port"));
        const QString link = folder.filePath(QStringLiteral("link"));
        QVERIFY(QFile(port).open(QIODevice::WriteOnly));
        QVERIFY(QFile::link(port, link));
        QVERIFY(twiceAmong({QStringLiteral("serial:") + port, QStringLiteral("serial:") + link})
                    .contains(QStringLiteral("are the same port")));
    }
};

QTEST_GUILESS_MAIN(DeviceTest)
#include "tst_device.moc"
