#include "simulator/options.h"

#include "simulator/module_fleet.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <algorithm>
#include <stdexcept>

namespace {

/// A mistake on the command line, in words for the user.
[[noreturn]] void refuse(const QString &text)
{
    throw std::runtime_error(text.toStdString());
}

QCommandLineOption option(const char *name, const char *help, const char *value = nullptr)
{
    return {QLatin1String(name), QLatin1String(help),
            value == nullptr ? QString() : QLatin1String(value)};
}

/// All options, each written once.
struct Vocabulary
{
    QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")},
                            QStringLiteral("Show this help and end.")};
    QCommandLineOption version{{QStringLiteral("v"), QStringLiteral("version")},
                               QStringLiteral("Show the version and end.")};
    QCommandLineOption fault =
        option("fault", "Turn a fault on; may be given several times.", "NAME[=VALUE]");
    QCommandLineOption console =
        option("console", "Read commands from standard input, also when it is no terminal.");
    QCommandLineOption printState =
        option("print-state", "Print the state at the start and whenever it changes.");
    QCommandLineOption verbose = option("verbose", "Report every command and every answer.");
    QCommandLineOption untilStdinCloses =
        option("until-stdin-closes", "End when standard input ends.");
    QCommandLineOption restartTime =
        option("restart-time",
               "How long a switch is deaf after a reset (default: 300) and a module after a new "
               "setup (default: 1000).",
               "MS");

    QCommandLineOption link =
        option("link", "serial, replay: put a symbolic link to the virtual port at PATH.", "PATH");
    QCommandLineOption port = option(
        "port", "serial: speak on the real serial port NAME (115200 8N1) instead of a virtual one.",
        "NAME");
    QCommandLineOption noPacing =
        option("no-pacing", "serial: send as fast as the virtual port is read, not at 115200 baud; "
                            "replay: without the recorded waits.");

    QCommandLineOption address = option(
        "address", "module: its IPv4 address; given again for the next module. Default: 127.0.0.1",
        "ADDRESS");
    QCommandLineOption mask =
        option("mask", "module: its subnet mask. Default: 255.255.255.0", "MASK");
    QCommandLineOption gateway =
        option("gateway", "module: its gateway. Default: its address, ending in 254", "ADDRESS");
    QCommandLineOption dhcp = option("dhcp", "module: begins with DHCP instead of static.");
    QCommandLineOption mac =
        option("mac", "module: its MAC address. Default: 02:00:00:00:00:01", "MAC");
    QCommandLineOption name = option(
        "name",
        "module: its name, at most 16 bytes (default: PELORA-SIM); replay: the recorded device.",
        "NAME");
    QCommandLineOption username =
        option("username", "module: its user name, at most 6 bytes. Default: admin", "TEXT");
    QCommandLineOption password =
        option("password", "module: its password, at most 6 bytes. Default: admin", "TEXT");
    QCommandLineOption fleet =
        option("fleet", "module: so many of them (1 to 1000), each with a switch.", "N");
    QCommandLineOption managementPort = option(
        "management-port", "module: UDP port for search, login and setup. Default: 1901", "PORT");
    QCommandLineOption switchPort = option(
        "switch-port", "module, replay: UDP port for the switch's traffic. Default: 23", "PORT");
    QCommandLineOption quietGap =
        option("quiet-gap", "module: pause of the switch that ends a datagram. Default: 50", "MS");

    QCommandLineOption udp =
        option("udp", "replay: listen at this address and port.", "ADDRESS:PORT");
    QCommandLineOption speed =
        option("speed", "replay: so many times as fast as recorded. Default: 1", "FACTOR");

    /// What only a simulation has.
    QList<QCommandLineOption> ofSimulation() const
    {
        return {fault, console, printState, restartTime};
    }
    QList<QCommandLineOption> ofReplay() const { return {udp, speed}; }
    QList<QCommandLineOption> ofSerial() const { return {link, port, noPacing}; }
    QList<QCommandLineOption> ofModule() const
    {
        return {address,  mask,     gateway, dhcp,           mac,        name,
                username, password, fleet,   managementPort, switchPort, quietGap};
    }
    QList<QCommandLineOption> all() const
    {
        return QList<QCommandLineOption>{help,    version,          fault,      console, printState,
                                         verbose, untilStdinCloses, restartTime} +
               ofSerial() + ofModule() + ofReplay();
    }
};

/// The command line as parsed, with values checked where they are asked for.
class Reader
{
public:
    explicit Reader(const QCommandLineParser &parser) : parser_(parser) {}

    Options options() const
    {
        Options options;
        options.verbose = parser_.isSet(words_.verbose);
        options.untilStdinCloses = parser_.isSet(words_.untilStdinCloses);
        if (parser_.positionalArguments().value(0) == QLatin1String("replay")) {
            options.replay = replay();
            return options;
        }
        readFaces(options);
        for (const QString &fault : parser_.values(words_.fault)) {
            const std::string mistake = setFault(options.faults, fault.toStdString());
            if (!mistake.empty())
                refuse(QString::fromStdString(mistake));
        }
        options.console = parser_.isSet(words_.console);
        options.printState = parser_.isSet(words_.printState);
        options.switchRestartTime = time(words_.restartTime, options.switchRestartTime);
        return options;
    }

private:
    void readFaces(Options &options) const
    {
        const QStringList faces = parser_.positionalArguments();
        if (faces.isEmpty())
            refuse(QStringLiteral("say what to simulate: serial, module, all or replay"));
        if (faces.size() > 1)
            refuse(QStringLiteral("unexpected argument \"%1\"").arg(faces.at(1)));
        const QString &face = faces.first();
        const bool all = face == QLatin1String("all");
        if (!all && face != QLatin1String("serial") && face != QLatin1String("module"))
            refuse(
                QStringLiteral("cannot simulate \"%1\": serial, module, all or replay").arg(face));
        requireUnset(words_.ofReplay(), face);
        if (all || face == QLatin1String("serial"))
            readSerial(options);
        else
            requireUnset(words_.ofSerial(), face);
        if (all || face == QLatin1String("module"))
            readModules(options);
        else
            requireUnset(words_.ofModule(), face);
    }

    ReplayOptions replay() const
    {
        const QString face = QStringLiteral("replay");
        const QStringList arguments = parser_.positionalArguments();
        if (arguments.size() < 2)
            refuse(QStringLiteral("say which recording to replay"));
        if (arguments.size() > 2)
            refuse(QStringLiteral("unexpected argument \"%1\"").arg(arguments.at(2)));
        requireUnset(words_.ofSimulation() + words_.ofSerial() + words_.ofModule(), face,
                     {words_.link, words_.noPacing, words_.name, words_.switchPort});

        ReplayOptions replay;
        replay.file = arguments.at(1);
        replay.name = text(words_.name, {});
        replay.linkPath = text(words_.link, {});
        replay.switchPort =
            static_cast<quint16>(number(words_.switchPort, replay.switchPort, 1, 65535));
        if (parser_.isSet(words_.udp))
            replay.udp = udpPoint(parser_.value(words_.udp));
        if (replay.udp && !replay.linkPath.isEmpty())
            refuse(QStringLiteral("--link makes a serial port, and --udp makes none"));
        bool isNumber = true;
        if (parser_.isSet(words_.speed))
            replay.speed = parser_.value(words_.speed).toDouble(&isNumber);
        if (!isNumber || replay.speed < 0.001 || replay.speed > 1000)
            refuse(QStringLiteral("--speed needs a number from 0.001 to 1000"));
        if (parser_.isSet(words_.noPacing))
            replay.speed = 0;
        return replay;
    }

    UdpPoint udpPoint(const QString &value) const
    {
        const qsizetype colon = value.lastIndexOf(QLatin1Char(':'));
        bool isNumber = false;
        const quint16 port = value.mid(colon + 1).toUShort(&isNumber);
        if (colon <= 0 || !isNumber)
            refuse(QStringLiteral("--udp needs an address and a port, such as 127.0.0.1:2300"));
        const Ipv4 octets = address(words_.udp, value.left(colon));
        return {QHostAddress(QString::fromStdString(toText(octets))), port};
    }

    void readSerial(Options &options) const
    {
        options.serial = true;
        options.linkPath = text(words_.link, {});
        options.portName = text(words_.port, {});
        options.pacing = !parser_.isSet(words_.noPacing);
        if (!options.linkPath.isEmpty() && !options.portName.isEmpty())
            refuse(QStringLiteral("--link leads to a virtual port, and --port names a real one"));
    }

    void readModules(Options &options) const
    {
        FleetPlan plan;
        ModuleState &first = plan.first;
        for (const QString &value : parser_.values(words_.address))
            plan.addresses.push_back(address(words_.address, value));
        const int named = std::max(1, static_cast<int>(plan.addresses.size()));
        plan.size = number(words_.fleet, named, 1, 1000);
        if (parser_.isSet(words_.mask))
            first.subnetMask = address(words_.mask, parser_.value(words_.mask));
        if (parser_.isSet(words_.gateway))
            plan.gateway = address(words_.gateway, parser_.value(words_.gateway));
        if (parser_.isSet(words_.mac)) {
            const auto mac = macFrom(parser_.value(words_.mac).toStdString());
            if (!mac)
                refuse(QStringLiteral("--mac needs a MAC address such as 02:00:00:00:00:01"));
            first.mac = *mac;
        }
        first.dhcp = parser_.isSet(words_.dhcp);
        first.name = shortText(words_.name, first.name, 16);
        first.username = shortText(words_.username, first.username, 6);
        first.password = shortText(words_.password, first.password, 6);
        options.modules = modulesOf(plan);

        NetworkSettings &network = options.network;
        const auto port = [this](const QCommandLineOption &option, quint16 preset) {
            return static_cast<quint16>(number(option, preset, 1, 65535));
        };
        network.managementPort = port(words_.managementPort, network.managementPort);
        network.switchPort = port(words_.switchPort, network.switchPort);
        network.quietGap = time(words_.quietGap, network.quietGap);
        network.restartTime = time(words_.restartTime, network.restartTime);
        if (network.managementPort == network.switchPort)
            refuse(QStringLiteral("--management-port and --switch-port must differ"));
    }

    void requireUnset(const QList<QCommandLineOption> &options, const QString &face,
                      const QList<QCommandLineOption> &except = {}) const
    {
        const auto isExcepted = [&except](const QCommandLineOption &option) {
            return std::any_of(except.begin(), except.end(), [&](const QCommandLineOption &other) {
                return other.names() == option.names();
            });
        };
        for (const QCommandLineOption &option : options)
            if (parser_.isSet(option) && !isExcepted(option))
                refuse(QStringLiteral("--%1 means nothing to %2").arg(nameOf(option), face));
    }

    QString text(const QCommandLineOption &option, const QString &preset) const
    {
        if (!parser_.isSet(option))
            return preset;
        if (parser_.value(option).isEmpty())
            refuse(QStringLiteral("--%1 needs a value").arg(nameOf(option)));
        return parser_.value(option);
    }

    std::string shortText(const QCommandLineOption &option, const std::string &preset,
                          std::size_t longest) const
    {
        const std::string value = text(option, QString::fromStdString(preset)).toStdString();
        if (value.size() > longest)
            refuse(QStringLiteral("--%1 takes at most %2 bytes").arg(nameOf(option)).arg(longest));
        return value;
    }

    int number(const QCommandLineOption &option, int preset, int lowest, int highest) const
    {
        if (!parser_.isSet(option))
            return preset;
        bool isNumber = false;
        const int value = parser_.value(option).toInt(&isNumber);
        if (!isNumber || value < lowest || value > highest)
            refuse(QStringLiteral("--%1 needs a number from %2 to %3")
                       .arg(nameOf(option))
                       .arg(lowest)
                       .arg(highest));
        return value;
    }

    std::chrono::milliseconds time(const QCommandLineOption &option,
                                   std::chrono::milliseconds preset) const
    {
        constexpr int anHour = 3600000;
        return std::chrono::milliseconds(
            number(option, static_cast<int>(preset.count()), 0, anHour));
    }

    Ipv4 address(const QCommandLineOption &option, const QString &value) const
    {
        const auto address = ipv4From(value.toStdString());
        if (!address)
            refuse(QStringLiteral("--%1 needs an IPv4 address, not \"%2\"")
                       .arg(nameOf(option), value));
        return *address;
    }

    static QString nameOf(const QCommandLineOption &option) { return option.names().last(); }

    const QCommandLineParser &parser_;
    const Vocabulary words_;
};

} // namespace

std::variant<Options, EarlyEnd> readOptions(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "A simulated keyboard-and-mouse switch, on a virtual serial port and behind simulated "
        "network modules."));
    parser.addPositionalArgument(
        QStringLiteral("FACE"),
        QStringLiteral("serial, module, all for both on one switch, or replay "
                       "FILE for a recorded one"));
    parser.addOptions(Vocabulary().all());

    const auto mistake = [](const QString &text) {
        return EarlyEnd{
            QStringLiteral("pelora-simulator: %1\nTry pelora-simulator --help.\n").arg(text), 2};
    };
    if (!parser.parse(arguments))
        return mistake(parser.errorText());
    if (parser.isSet(QStringLiteral("help")))
        return EarlyEnd{QStringLiteral("%1\nFaults:\n%2")
                            .arg(parser.helpText(), QString::fromStdString(faultHelp())),
                        0};
    if (parser.isSet(QStringLiteral("version")))
        return EarlyEnd{
            QStringLiteral("pelora-simulator %1\n").arg(QCoreApplication::applicationVersion()), 0};
    try {
        return Reader(parser).options();
    } catch (const std::exception &error) {
        return mistake(QString::fromUtf8(error.what()));
    }
}
