#include "simulator/options.h"
#include "simulator_process.h"

#include <QTest>
#include <chrono>

using namespace std::chrono_literals;

namespace {

std::variant<Options, EarlyEnd> read(const char *commandLine)
{
    QStringList arguments{QStringLiteral("pelora-simulator")};
    if (*commandLine != '\0')
        arguments += QString::fromLatin1(commandLine).split(QLatin1Char(' '));
    return readOptions(arguments);
}

} // namespace

/// The command line.
class OptionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void serialAloneHasNoModules()
    {
        const auto asked = read("serial");
        QVERIFY(std::holds_alternative<Options>(asked));
        const auto &options = std::get<Options>(asked);
        QVERIFY(options.serial);
        QVERIFY(options.modules.empty());
        QVERIFY(options.faults == Faults{});
        QVERIFY(!options.console && !options.printState && !options.verbose);
        QVERIFY(!options.untilStdinCloses);
        QVERIFY(options.pacing);
    }

    void theLineCanDoWithoutItsSpeed()
    {
        for (const char *line : {"serial --no-pacing", "all --no-pacing"}) {
            const auto asked = read(line);
            QVERIFY(!std::get<Options>(asked).pacing);
        }
    }

    void aModuleHasItsDefaults()
    {
        const auto asked = read("module");
        const auto &options = std::get<Options>(asked);
        QVERIFY(!options.serial);
        QCOMPARE(options.modules.size(), std::size_t(1));
        QVERIFY(options.modules.front() == ModuleState{});
        QCOMPARE(options.network.managementPort, quint16(1901));
        QCOMPARE(options.network.switchPort, quint16(23));
        QVERIFY(options.network.quietGap == 50ms);
        QVERIFY(options.network.restartTime == 1000ms);
        QVERIFY(options.switchRestartTime == 300ms);
    }

    void theRestartTimeIsForSwitchesToo()
    {
        const auto none = read("serial --restart-time 0");
        QVERIFY(std::get<Options>(none).switchRestartTime == 0ms);
        const auto unasked = read("serial");
        QVERIFY(std::get<Options>(unasked).switchRestartTime == 300ms);
    }

    void everyModuleOptionReachesItsPlace()
    {
        const auto asked = read(
            "all --address 192.0.2.7 --address 192.0.2.9 --mask 255.255.0.0 --gateway 192.0.2.1 "
            "--mac 02:aa:bb:cc:dd:ee --name LAB --username root --password secret --dhcp "
            "--management-port 19010 --switch-port 19023 --quiet-gap 5 --restart-time 7 "
            "--link /tmp/switch --fault crlf --fault late=3 --console --print-state --verbose "
            "--until-stdin-closes");
        QVERIFY(std::holds_alternative<Options>(asked));
        const auto &options = std::get<Options>(asked);
        QVERIFY(options.serial);
        QCOMPARE(options.linkPath, QStringLiteral("/tmp/switch"));
        QCOMPARE(options.modules.size(), std::size_t(2));
        QCOMPARE(stateText(options.modules.at(1)), std::string("Module MAC: 02:AA:BB:CC:DD:EF\n"
                                                               "Module name: LAB-2\n"
                                                               "Module allocation: DHCP\n"
                                                               "Module address: 192.0.2.9\n"
                                                               "Module static address: 192.0.2.9\n"
                                                               "Module subnet mask: 255.255.0.0\n"
                                                               "Module gateway: 192.0.2.1\n"
                                                               "Module username: root\n"
                                                               "Module password: secret\n"));
        QCOMPARE(options.network.managementPort, quint16(19010));
        QCOMPARE(options.network.switchPort, quint16(19023));
        QVERIFY(options.network.quietGap == 5ms);
        QVERIFY(options.network.restartTime == 7ms);
        QVERIFY(options.switchRestartTime == 7ms);
        QVERIFY(options.faults.ofSwitch.crlf);
        QVERIFY(options.faults.ofModule.late == 3ms);
        QVERIFY(options.console && options.printState && options.verbose);
        QVERIFY(options.untilStdinCloses);
    }

    void mistakesEndWithStatus2_data()
    {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QString>("mistake");

        const auto row = [](const char *arguments, const char *mistake) {
            QTest::newRow(arguments)
                << QString::fromLatin1(arguments) << QString::fromUtf8(mistake);
        };
        row("", "say what to simulate: serial, module, all or replay");
        row("parallel", "cannot simulate \"parallel\": serial, module, all or replay");
        row("serial module", "unexpected argument \"module\"");
        row("serial --bogus", "Unknown option 'bogus'.");
        row("serial --link", "Missing value after '--link'.");
        row("serial --link=", "--link needs a value");
        row("serial --link /tmp/x --port ttyUSB0",
            "--link leads to a virtual port, and --port names a real one");
        row("serial --address 192.0.2.7", "--address means nothing to serial");
        row("serial --fleet 2", "--fleet means nothing to serial");
        row("module --no-pacing", "--no-pacing means nothing to module");
        row("module --link /tmp/x", "--link means nothing to module");
        row("module --address 192.0.2", "--address needs an IPv4 address, not \"192.0.2\"");
        row("module --mask x", "--mask needs an IPv4 address, not \"x\"");
        row("module --mac 02", "--mac needs a MAC address such as 02:00:00:00:00:01");
        row("module --name SEVENTEEN-LETTERS", "--name takes at most 16 bytes");
        row("module --username sevenly", "--username takes at most 6 bytes");
        row("module --password sevenly", "--password takes at most 6 bytes");
        row("serial --speed 2", "--speed means nothing to serial");
        row("replay", "say which recording to replay");
        row("replay a b", "unexpected argument \"b\"");
        row("replay a --fault crlf", "--fault means nothing to replay");
        row("replay a --fleet 2", "--fleet means nothing to replay");
        row("replay a --port ttyUSB0", "--port means nothing to replay");
        row("replay a --link /tmp/x --udp 127.0.0.1:23",
            "--link makes a serial port, and --udp makes none");
        row("replay a --udp 23", "--udp needs an address and a port, such as 127.0.0.1:2300");
        row("replay a --udp :23", "--udp needs an address and a port, such as 127.0.0.1:2300");
        row("replay a --udp 1:23", "--udp needs an IPv4 address, not \"1\"");
        row("replay a --udp here:23", "--udp needs an IPv4 address, not \"here\"");
        row("replay a --speed 0", "--speed needs a number from 0.001 to 1000");
        row("module --fleet 0", "--fleet needs a number from 1 to 1000");
        row("module --fleet 1001", "--fleet needs a number from 1 to 1000");
        row("module --fleet x", "--fleet needs a number from 1 to 1000");
        row("module --fleet 1 --address 192.0.2.7 --address 192.0.2.8",
            "there are more addresses than modules");
        row("module --switch-port 65536", "--switch-port needs a number from 1 to 65535");
        row("module --switch-port 1901", "--management-port and --switch-port must differ");
        row("module --quiet-gap -1", "--quiet-gap needs a number from 0 to 3600000");
        row("serial --restart-time -1", "--restart-time needs a number from 0 to 3600000");
        row("serial --fault nope", "there is no fault \"nope\"");
        row("serial --fault delay=soon", "the fault delay needs MS, not \"soon\"");
    }

    void mistakesEndWithStatus2()
    {
        QFETCH(QString, arguments);
        QFETCH(QString, mistake);
        const auto asked = read(arguments.toLatin1().constData());
        const auto *early = std::get_if<EarlyEnd>(&asked);
        QVERIFY(early != nullptr);
        QCOMPARE(early->status, 2);
        QCOMPARE(
            early->text,
            QStringLiteral("pelora-simulator: %1\nTry pelora-simulator --help.\n").arg(mistake));
    }

    void helpThatCannotBeWrittenIsToldOf()
    {
        for (const char *option : {"--help", "--version"}) {
            const FinishedRun full =
                runSimulator({QString::fromLatin1(option)}, QStringLiteral("/dev/full"));
            QCOMPARE(full.status, 2);
            QCOMPARE(full.reports,
                     QByteArray("pelora-simulator: standard output cannot be written: No space "
                                "left on device\n"));
        }
    }

    void theProgramEndsWithThatStatus()
    {
        const FinishedRun mistake =
            runSimulator({QStringLiteral("serial"), QStringLiteral("--bogus")});
        QCOMPARE(mistake.status, 2);
        QCOMPARE(mistake.output, QByteArray());
        QVERIFY(mistake.reports.startsWith("pelora-simulator: Unknown option 'bogus'."));

        const FinishedRun help = runSimulator({QStringLiteral("--help")});
        QCOMPARE(help.status, 0);
        for (const char *text : {"--link <PATH>", "--fleet <N>", "--until-stdin-closes",
                                 "Faults:\n", "  discovery-size=BYTES[:TIMES]"})
            QVERIFY2(help.output.contains(text), text);

        const FinishedRun version = runSimulator({QStringLiteral("--version")});
        QCOMPARE(version.status, 0);
        QVERIFY(version.output.startsWith("pelora-simulator 1."));
    }
};

QTEST_GUILESS_MAIN(OptionsTest)
#include "tst_options.moc"
