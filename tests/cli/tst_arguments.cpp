#include "cli/arguments.h"

#include <QTest>

namespace {
std::variant<Options, EarlyEnd> read(const QString &line, const QStringList &more = {})
{
    return readArguments(QStringList{QStringLiteral("peloractl")} +
                         line.split(QLatin1Char(' '), Qt::SkipEmptyParts) + more);
}

Options optionsOf(const QString &line, const QStringList &more = {})
{
    const auto asked = read(line, more);
    if (const auto *early = std::get_if<EarlyEnd>(&asked))
        qFatal("%s", early->text.c_str());
    return std::get<Options>(asked);
}

EarlyEnd endOf(const QString &line)
{
    const auto asked = read(line);
    const auto *early = std::get_if<EarlyEnd>(&asked);
    return early == nullptr ? EarlyEnd{"it goes on", -1} : *early;
}
} // namespace

class ArgumentsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void optionsStandBeforeAndBehindTheCommand()
    {
        for (const char *line :
             {"-d serial:a --json --timeout 50 --retries 0 --jobs 7 --record r.jsonl get buzzer",
              "get buzzer -d serial:a --json --timeout 50 --retries 0 --jobs 7 --record r.jsonl",
              "--json get -d serial:a buzzer --timeout=50 --jobs 7 --retries 0 --record=r.jsonl"}) {
            const Options options = optionsOf(QString::fromLatin1(line));
            QCOMPARE(options.command, Options::Command::Get);
            QCOMPARE(options.devices, std::vector<std::string>{"serial:a"});
            QCOMPARE(options.keys, std::vector<std::string>{"buzzer"});
            QVERIFY(options.json);
            QCOMPARE(options.timeout, 50);
            QCOMPARE(options.retries, 0);
            QCOMPARE(options.jobs, 7);
            QCOMPARE(options.record, std::string("r.jsonl"));
        }
    }

    void withoutOptionsTheUsualCounts()
    {
        const Options options = optionsOf(QStringLiteral("get"));
        QVERIFY(options.devices.empty());
        QVERIFY(!options.json);
        QCOMPARE(options.timeout, 3000);
        QCOMPARE(options.retries, 2);
        QCOMPARE(options.jobs, 64);
        QCOMPARE(options.wait, 1500);
    }

    void devicesAddUp()
    {
        const Options options =
            optionsOf(QStringLiteral("-d serial:a --device udp:192.0.2.7 get -d module:x -D list"));
        QCOMPARE(options.devices,
                 (std::vector<std::string>{"serial:a", "udp:192.0.2.7", "module:x"}));
        QCOMPARE(options.deviceList, std::string("list"));
    }

    void everyCommandIsKnown_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("command");
        const auto row = [](const char *line, Options::Command command) {
            QTest::newRow(line) << QString::fromLatin1(line) << static_cast<int>(command);
        };
        row("ports", Options::Command::Ports);
        row("discover --wait 20", Options::Command::Discover);
        row("get", Options::Command::Get);
        row("set buzzer=on", Options::Command::Set);
        row("save a.txt", Options::Command::Save);
        row("diff a.txt", Options::Command::Diff);
        row("apply a.txt", Options::Command::Apply);
        row("reset soft", Options::Command::ResetSoft);
        row("reset factory --yes", Options::Command::ResetFactory);
        row("watch", Options::Command::Watch);
        row("module show -u admin", Options::Command::ModuleShow);
        row("module set -u admin dhcp", Options::Command::ModuleSet);
        row("completion fish", Options::Command::Completion);
    }

    void everyCommandIsKnown()
    {
        QFETCH(QString, line);
        QFETCH(int, command);
        QCOMPARE(static_cast<int>(optionsOf(line).command), command);
    }

    void valuesMayHoldBlanksAndEqualSigns()
    {
        const Options options = optionsOf(QStringLiteral("set km-control=3 -n --force"),
                                          {QStringLiteral("custom.1=1 2 A=B")});
        QCOMPARE(options.assignments,
                 (std::vector<std::string>{"km-control=3", "custom.1=1 2 A=B"}));
        QVERIFY(options.dryRun);
        QVERIFY(options.force);
    }

    void mistakesEndWithStatusTwo_data()
    {
        QTest::addColumn<QString>("line");
        for (const char *line : {"",
                                 "frob",
                                 "get --frob",
                                 "set",
                                 "save",
                                 "diff",
                                 "apply",
                                 "reset",
                                 "reset hard",
                                 "module",
                                 "module show",
                                 "module set dhcp",
                                 "completion",
                                 "completion tcsh",
                                 "get --jobs 0",
                                 "get --jobs x",
                                 "get --timeout 0",
                                 "get --retries -1",
                                 "-d",
                                 "ports x",
                                 "discover --wait 0",
                                 "save a b"})
            QTest::newRow(line) << QString::fromLatin1(line);
    }

    void mistakesEndWithStatusTwo()
    {
        QFETCH(QString, line);
        const EarlyEnd end = endOf(line);
        QCOMPARE(end.status, 2);
        QVERIFY2(end.text.rfind("peloractl: ", 0) == 0, end.text.c_str());
        QCOMPARE(end.text.find('\n'), end.text.size() - 1); // one line
    }

    void helpAndVersionAreNoMistake()
    {
        QCOMPARE(endOf(QStringLiteral("--version")).text,
                 std::string("peloractl " PELORA_VERSION "\n"));
        for (const char *line : {"--help", "-h", "get --help", "module set -h"}) {
            const EarlyEnd end = endOf(QString::fromLatin1(line));
            QCOMPARE(end.status, 0);
            QVERIFY(end.text.find("Usage:") != std::string::npos);
            QVERIFY(end.text.find("show this help and end\n") != std::string::npos);
        }
        for (const char *command : {"ports", "discover", "get", "set", "save", "diff", "apply",
                                    "reset", "watch", "module", "completion"})
            QVERIFY(endOf(QStringLiteral("--help")).text.find(command) != std::string::npos);
    }
};

QTEST_GUILESS_MAIN(ArgumentsTest)
#include "tst_arguments.moc"
