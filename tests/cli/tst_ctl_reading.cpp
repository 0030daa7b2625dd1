#include "desk.h"

#include <QJsonArray>
#include <QRegularExpression>
#include <QSerialPortInfo>
#include <QTest>

namespace {
const QByteArray wholeConfiguration = "km-control      2\n"
                                      "usb-control     3\n"
                                      "active-ports    3\n"
                                      "cursor-rolling  on\n"
                                      "buzzer          on\n"
                                      "mouse-mode      relative\n"
                                      "resolution.1    1080p\n"
                                      "resolution.2    OFFICE\n"
                                      "resolution.3    2K\n"
                                      "resolution.4    LAB\n"
                                      "custom.1        100 250 OFFICE\n"
                                      "custom.2        120 80 DESK\n"
                                      "custom.3        1 500 HOME\n"
                                      "custom.4        300 300 LAB\n"
                                      "layout          . . . .\n"
                                      "                1 2 . .\n"
                                      "                . 3 . .\n"
                                      "                . 4 . .\n"
                                      "hotkey          Scroll Lock\n";
/// With a port that the system does not list.
class WithPort : public CtlProcess
{
public:
    explicit WithPort(const char *port)
    {
        QProcessEnvironment environment = process.processEnvironment();
        environment.insert(QStringLiteral("PELORA_EXTRA_SERIAL_PORTS"), QLatin1String(port));
        process.setProcessEnvironment(environment);
    }
};
const QString impatient = QStringLiteral("--timeout 300 --retries 1 ");
} // namespace

/// peloractl get, by what the switch does, and what it lists of this machine.
class CtlReadingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theWholeConfigurationIsShown()
    {
        const Desk desk;
        const CtlRun run = ctl(desk.option() + QStringLiteral("get"));
        QCOMPARE(run.output, wholeConfiguration);
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.status, 0);
    }

    void someKeysAreShown()
    {
        const Desk desk;
        const CtlRun run = ctl(desk.option() + QStringLiteral("get resolution.2 km_control"));
        QCOMPARE(run.output, QByteArray("resolution.2  OFFICE\nkm-control    2\n"));
    }

    void jsonTellsAllOfIt()
    {
        const Desk desk;
        const QJsonObject object = ctl(desk.option() + QStringLiteral("get --json")).object();
        QCOMPARE(object.keys(),
                 (QStringList{QStringLiteral("configuration"), QStringLiteral("device"),
                              QStringLiteral("name"), QStringLiteral("ok")}));
        const QJsonObject configuration = object.value(QStringLiteral("configuration")).toObject();
        QCOMPARE(configuration.value(QStringLiteral("km_control")), QJsonValue(2));
        QCOMPARE(configuration.value(QStringLiteral("usb_control")), QJsonValue(3));
        QCOMPARE(configuration.value(QStringLiteral("active_ports")), QJsonValue(3));
        QCOMPARE(configuration.value(QStringLiteral("cursor_rolling")), QJsonValue(true));
        QCOMPARE(configuration.value(QStringLiteral("buzzer")), QJsonValue(true));
        QCOMPARE(configuration.value(QStringLiteral("mouse_mode")),
                 QJsonValue(QStringLiteral("relative")));
        QCOMPARE(configuration.value(QStringLiteral("layout")),
                 QJsonValue(QStringLiteral("..../12../.3../.4..")));
        QCOMPARE(configuration.value(QStringLiteral("hotkey")),
                 QJsonValue(QStringLiteral("Scroll Lock")));
        const QJsonArray resolutions = configuration.value(QStringLiteral("resolution")).toArray();
        QCOMPARE(resolutions.size(), 4);
        QCOMPARE(resolutions.at(1).toObject(),
                 (QJsonObject{{QStringLiteral("number"), 10},
                              {QStringLiteral("name"), QStringLiteral("OFFICE")}}));
        const QJsonArray custom = configuration.value(QStringLiteral("custom")).toArray();
        QCOMPARE(custom.at(2).toObject(),
                 (QJsonObject{{QStringLiteral("x"), 1},
                              {QStringLiteral("y"), 500},
                              {QStringLiteral("name"), QStringLiteral("HOME")}}));
    }

    void aKeyThatTheSwitchDoesNotTellIsAQuestionMark()
    {
        Desk desk;
        desk.replace("//rl\r", "Buzzer: on\n", "");
        desk.replace("//rl\r", "C3\t001 500 HOME", "C3\t001 500");
        const CtlRun run =
            ctl(impatient + desk.option() + QStringLiteral("get buzzer custom.3 km-control"));
        QCOMPARE(run.output, QByteArray("buzzer      ?\ncustom.3    ?\nkm-control  2\n"));
        QVERIFY(run.errors.contains("the switch did not tell buzzer, custom.3"));
        QCOMPARE(run.status, 4);

        const QJsonObject object =
            ctl(impatient + desk.option() + QStringLiteral("--json get buzzer km-control"))
                .object();
        QCOMPARE(object.value(QStringLiteral("ok")), QJsonValue(false));
        const QJsonObject known = object.value(QStringLiteral("configuration")).toObject();
        QVERIFY(known.contains(QStringLiteral("buzzer")));
        QVERIFY(known.value(QStringLiteral("buzzer")).isNull());
        QCOMPARE(known.value(QStringLiteral("km_control")), QJsonValue(2));
        QCOMPARE(object.value(QStringLiteral("error")).toObject().value(QStringLiteral("kind")),
                 QJsonValue(QStringLiteral("not-understood")));
    }

    void aKeyThatNobodyAsksForMayBeMissing()
    {
        Desk desk;
        desk.replace("//rl\r", "Buzzer: on\n", "");
        const CtlRun run = ctl(impatient + desk.option() + QStringLiteral("get km-control"));
        QCOMPARE(run.output, QByteArray("km-control  2\n"));
        QCOMPARE(run.status, 0);
    }

    void aCellOutsideOfTheGridIsNoLayout()
    {
        Desk desk;
        desk.replace("//BP\r", "FF04B14", "FF04B17");
        const CtlRun run = ctl(impatient + desk.option() + QStringLiteral("get layout"));
        QCOMPARE(run.output, QByteArray("layout  ?\n"));
        QCOMPARE(run.status, 4);
    }

    void aSilentSwitchIsToldOf()
    {
        Desk desk;
        desk.answers.clear();
        const CtlRun run = ctl(impatient + desk.option() + QStringLiteral("get"));
        QVERIFY(run.errors.contains("no answer from the switch"));
        QCOMPARE(run.errors.count('\n'), 1);
        QCOMPARE(run.status, 3);
        QCOMPARE(desk.commands().size(), 6); // two attempts of three questions
    }

    void aSwitchThatTalksNonsenseIsToldOf()
    {
        Desk desk;
        for (QByteArrayList &answer : desk.answers)
            answer = {"\x1b[2Jwhat?\n"};
        const CtlRun run = ctl(impatient + desk.option() + QStringLiteral("get"));
        QCOMPARE(run.status, 4);
        QVERIFY(run.errors.contains("the answer cannot be understood"));
        QVERIFY(!run.errors.contains('\x1b'));
    }

    void noDeviceSendsAnEscapeSequenceToTheTerminal()
    {
        Desk desk;
        desk.replace("//??\r", "Scroll Lock", "\x1b]0;owned\x07");
        const CtlRun run = ctl(impatient + desk.option() + QStringLiteral("get"));
        QVERIFY(!run.output.contains('\x1b'));
        QVERIFY(!run.errors.contains('\x1b'));
    }

    /// JSON asks for escapes of ASCII's control characters alone; terminals obey others too.
    void jsonHoldsNothingThatATerminalObeys_data()
    {
        QTest::addColumn<QByteArray>("said");
        QTest::addColumn<QByteArray>("shown");
        QTest::newRow("an escape sequence of one control") << QByteArray("\xC2\x9B"
                                                                         "2J")
                                                           << QByteArray("\\u009b2J");
        QTest::newRow("behind a backslash")
            << QByteArray("\\\xC2\x85") << QByteArray("\\\\\\u0085");
        QTest::newRow("delete") << QByteArray("\x7F") << QByteArray("\\u007f");
        QTest::newRow("an escape") << QByteArray("\x1b]0;X") << QByteArray("\\u001b]0;X");
        QTest::newRow("the other direction") << QByteArray("\xE2\x80\xAE") << QByteArray("\\u202e");
        QTest::newRow("text beyond ASCII")
            << QByteArray("\xC3\x9C\xF0\x9F\x98\x80") << QByteArray("\xC3\x9C\xF0\x9F\x98\x80");
    }
    void jsonHoldsNothingThatATerminalObeys()
    {
        QFETCH(QByteArray, said);
        QFETCH(QByteArray, shown);
        Desk desk;
        desk.replace("//??\r", "Scroll Lock", said.constData());
        const CtlRun run = ctl(desk.option() + QStringLiteral("get --json"));
        QVERIFY2(run.output.contains("\"hotkey\":\"" + shown + "\""), run.output.constData());
        QCOMPARE(QJsonValue(run.object())[u"configuration"][u"hotkey"].toString(),
                 QString::fromUtf8(said));
    }

    void anAnswerInPiecesIsOne()
    {
        Desk desk;
        desk.answers["//rl\r"] = {QByteArray(exampleListing).left(20),
                                  QByteArray(exampleListing).mid(20)};
        QCOMPARE(ctl(desk.option() + QStringLiteral("get")).output, wholeConfiguration);
    }

    void anAnswerThatComesTwiceIsOne()
    {
        Desk desk;
        for (QByteArrayList &answer : desk.answers)
            answer.append(QByteArray(answer.first()));
        QCOMPARE(ctl(desk.option() + QStringLiteral("get")).output, wholeConfiguration);
    }

    void anAnswerWithNoiseIsUnderstood_data()
    {
        QTest::addColumn<QStringList>("faults");
        QTest::newRow("one byte at a time")
            << QStringList{QStringLiteral("chunks=1"), QStringLiteral("gap=1")};
        QTest::newRow("garbage") << QStringList{QStringLiteral("garbage")};
        QTest::newRow("CR LF") << QStringList{QStringLiteral("crlf")};
        QTest::newRow("colon") << QStringList{QStringLiteral("usb-colon")};
        QTest::newRow("blanks") << QStringList{QStringLiteral("blank-padding")};
        QTest::newRow("late") << QStringList{QStringLiteral("delay=200")};
        QTest::newRow("much text") << QStringList{QStringLiteral("oversize=3000")};
    }

    void anAnswerWithNoiseIsUnderstood()
    {
        QFETCH(QStringList, faults);
        const QTemporaryDir folder;
        const QString link = folder.filePath(QStringLiteral("switch"));
        QStringList arguments = {QStringLiteral("serial"), QStringLiteral("--link"), link};
        for (const QString &fault : std::as_const(faults))
            arguments += {QStringLiteral("--fault"), fault};
        SimulatorProcess simulator;
        QVERIFY(!simulator.start(arguments).isEmpty());
        const CtlRun run = ctl(QStringLiteral("get layout usb-control custom.4 hotkey"),
                               {QStringLiteral("-d"), QStringLiteral("serial:") + link});
        QCOMPARE(run.output, QByteArray("layout       1 2 3 4\n"
                                        "             . . . .\n"
                                        "             . . . .\n"
                                        "             . . . .\n"
                                        "usb-control  1\n"
                                        "custom.4     100 100 CUSTOM4\n"
                                        "hotkey       Left Ctrl\n"));
        QCOMPARE(run.status, 0);
    }

    void anAnswerThatComesAfterTheFirstAttemptCounts()
    {
        Desk desk;
        desk.answers.clear();
        CtlProcess process;
        process.start((desk.option() + QStringLiteral("--timeout 500 --retries 2 get km-control"))
                          .split(QLatin1Char(' '), Qt::SkipEmptyParts));
        QTRY_COMPARE(desk.commands().size(), 6); // the first attempt has been given up
        desk.say(QByteArray::fromStdString(exampleAnswer()));
        const CtlRun run = process.wait();
        QCOMPARE(run.output, QByteArray("km-control  2\n"));
        QCOMPARE(run.status, 0);
    }

    void aPortThatIsNotThereIsToldOf()
    {
        const CtlRun run = ctl(QStringLiteral("-d serial:/nowhere/switch get"));
        QVERIFY(
            run.errors.contains("/nowhere/switch could not be opened: No such file or directory"));
        QCOMPARE(run.status, 3);
    }

    void withoutADeviceNothingIsDone()
    {
        const CtlRun run = ctl(QStringLiteral("get"));
        QCOMPARE(run.status, 2);
        QVERIFY(run.errors.contains("give --device, --devices or set PELORA_DEVICE"));
    }

    void theEnvironmentNamesADevice()
    {
        const Desk desk;
        CtlProcess process;
        QProcessEnvironment environment = process.process.processEnvironment();
        environment.insert(QStringLiteral("PELORA_DEVICE"),
                           QStringLiteral("udp:127.0.0.1:%1").arg(desk.port()));
        process.process.setProcessEnvironment(environment);
        process.start({QStringLiteral("get"), QStringLiteral("buzzer")});
        QCOMPARE(process.wait().output, QByteArray("buzzer  on\n"));
    }

    void anUnknownKeyIsNamedWithThoseThatThereAre()
    {
        const Desk desk;
        const CtlRun run = ctl(desk.option() + QStringLiteral("get volume"));
        QCOMPARE(run.status, 2);
        QVERIFY(run.errors.contains("there is no setting \"volume\"; there are km-control, "));
        QVERIFY(desk.commands().isEmpty());
    }

    void thePortsOfThisMachineAreListed()
    {
        WithPort table("desk-7");
        table.start({QStringLiteral("ports")});
        const CtlRun run = table.wait();
        QCOMPARE(run.status, 0);
        QVERIFY2(run.output.startsWith("NAME"), run.output.constData());
        QVERIFY2(QRegularExpression(QStringLiteral("\ndesk-7 +desk-7\n"))
                     .match(QString::fromUtf8(run.output))
                     .hasMatch(),
                 run.output.constData());

        WithPort json("desk-7");
        json.start({QStringLiteral("--json"), QStringLiteral("ports")});
        const QList<QJsonObject> ports = json.wait().objects();
        QCOMPARE(ports.first(), (QJsonObject{{QStringLiteral("name"), QStringLiteral("desk-7")},
                                             {QStringLiteral("location"), QStringLiteral("desk-7")},
                                             {QStringLiteral("description"), QString()},
                                             {QStringLiteral("manufacturer"), QString()},
                                             {QStringLiteral("serial_number"), QString()},
                                             {QStringLiteral("vendor"), QJsonValue()},
                                             {QStringLiteral("product"), QJsonValue()}}));
        const QList<QSerialPortInfo> systems = QSerialPortInfo::availablePorts();
        QCOMPARE(ports.size(), 1 + systems.size());
        for (qsizetype at = 0; at < systems.size(); ++at) {
            QCOMPARE(ports.at(at + 1).value(QStringLiteral("name")).toString(),
                     systems.at(at).portName());
            QCOMPARE(ports.at(at + 1).value(QStringLiteral("location")).toString(),
                     systems.at(at).systemLocation());
        }
    }
};

QTEST_GUILESS_MAIN(CtlReadingTest)
#include "tst_ctl_reading.moc"
