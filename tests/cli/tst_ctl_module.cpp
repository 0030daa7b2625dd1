#include "ctl_process.h"
#include "simulator_process.h"

#include <QFile>
#include <QJsonArray>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>
#include <QUdpSocket>
#include <csignal>

namespace {
QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

/// Modules at 192.0.2.7 and onwards, with the ports that real ones have.
class Lan
{
public:
    explicit Lan(const char *arguments)
    {
        const QStringList all = words("module --console ") + words(arguments);
        const auto modules = static_cast<int>(all.count(QStringLiteral("--address")));
        if (simulator.start(all, modules).size() != modules)
            qFatal("the simulator did not start");
    }

    SimulatorProcess simulator;
};

void giveVariable(CtlProcess &process, const char *name, const char *value)
{
    QProcessEnvironment environment = process.process.processEnvironment();
    environment.insert(QString::fromUtf8(name), QString::fromUtf8(value));
    process.process.setProcessEnvironment(environment);
}

/// A run with this password in the environment.
CtlRun ctlWith(const char *password, const char *arguments, const char *newPassword = nullptr)
{
    CtlProcess process;
    giveVariable(process, "PELORA_PASSWORD", password);
    if (newPassword != nullptr)
        giveVariable(process, "PELORA_NEW_PASSWORD", newPassword);
    process.start(words("--wait 200") + words(arguments));
    return process.wait();
}

/// The same without a password.
CtlRun ctlIn(const QString &arguments)
{
    return ctl(QStringLiteral("--wait 200 ") + arguments);
}
} // namespace

/// peloractl against network modules, on a network that leads nowhere.
class CtlModuleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theModulesOnTheLanAreFound()
    {
        const Lan lan(
            "--address 192.0.2.7 --address 192.0.2.8 --name Desk --mac 02:00:00:00:00:01");
        const CtlRun run = ctlIn(QStringLiteral("discover"));
        QCOMPARE(run.status, 0);
        QVERIFY(run.output.startsWith("ADDRESS    MAC           NAME\n"));
        QVERIFY(run.output.contains("192.0.2.7  020000000001  Desk\n"));
        QVERIFY(run.output.contains("192.0.2.8  020000000002  Desk-2\n"));
        const QList<QJsonObject> objects = ctlIn(QStringLiteral("--json discover")).objects();
        QCOMPARE(objects.size(), 2);
        QVERIFY(
            objects.contains(QJsonObject{{QStringLiteral("address"), QStringLiteral("192.0.2.7")},
                                         {QStringLiteral("mac"), QStringLiteral("020000000001")},
                                         {QStringLiteral("name"), QStringLiteral("Desk")}}));
    }

    void aLanWithoutModulesIsToldOf()
    {
        const CtlRun run = ctlIn(QStringLiteral("discover"));
        QCOMPARE(run.status, 3);
        QVERIFY(run.errors.contains("no module answered"));
    }

    void aPortThatIsTakenIsToldOf()
    {
        QUdpSocket other;
        QVERIFY(other.bind(QHostAddress(QHostAddress::AnyIPv4), 4242));
        const CtlRun run = ctlIn(QStringLiteral("--timeout 100 --retries 1 discover"));
        QCOMPARE(run.status, 3);
        QVERIFY(run.errors.contains("UDP port 4242 cannot be had"));
    }

    void aMachineWithoutANetworkIsToldOf()
    {
        const auto ip = [](const char *arguments) {
            return QProcess::execute(QStringLiteral("ip"), words(arguments));
        };
        const auto up = qScopeGuard([&] {
            ip("link set pelora0 up");
            ip("route replace default dev pelora0 src 192.0.2.1");
        });
        QCOMPARE(ip("link set pelora0 down"), 0);
        const QTemporaryDir folder;
        const QString record = folder.filePath(QStringLiteral("r.jsonl"));
        const CtlRun run = ctlIn(QStringLiteral("discover --record ") + record);
        QCOMPARE(run.status, 3);
        QCOMPARE(run.errors, QByteArray("peloractl: no search for modules: it cannot be sent "
                                        "(Network is unreachable); check that this machine is on "
                                        "the network\n"));
        QFile file(record);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray());
    }

    void answersThatNoModuleGivesAreNone()
    {
        const Lan lan("--address 192.0.2.7 --fault discovery-size=37");
        const CtlRun run = ctlIn(QStringLiteral("discover"));
        QCOMPARE(run.status, 3);
        QVERIFY2(run.errors.contains("(1 answers that no module gives)"), run.errors.constData());
    }

    void aSwitchIsReachedByItsModulesNameAndMac()
    {
        const Lan lan("--address 192.0.2.7 --address 192.0.2.8 --name Desk");
        for (const char *device :
             {"module:Desk-2", "module:020000000002", "module:02:00:00:00:00:02"}) {
            const CtlRun run = ctlIn(QStringLiteral("get km-control -d ") + QLatin1String(device));
            QCOMPARE(run.output, QByteArray("km-control  1\n"));
            QCOMPARE(run.status, 0);
        }
        const CtlRun run = ctlIn(QStringLiteral("get -d module:Lab"));
        QCOMPARE(run.status, 3);
        QVERIFY(run.errors.contains("no such module; peloractl discover shows"));
    }

    void twoModulesOfOneNameAreAnError()
    {
        const Lan one("--address 192.0.2.7 --address 192.0.2.8 --name Desk");
        QCOMPARE(ctlWith("admin", "module set -d module:Desk-2 -u admin name=Desk").status, 0);
        const CtlRun run = ctlIn(QStringLiteral("get -d module:Desk"));
        QCOMPARE(run.status, 3);
        QVERIFY2(run.errors.contains("name one by its MAC: 020000000001, 020000000002") ||
                     run.errors.contains("name one by its MAC: 020000000002, 020000000001"),
                 run.errors.constData());
    }

    void aModuleAndItsAddressAreOnePort()
    {
        const Lan lan("--address 192.0.2.7");
        const CtlRun run = ctlIn(QStringLiteral("get -d module:PELORA-SIM -d udp:192.0.2.7"));
        QCOMPARE(run.status, 2);
        QVERIFY2(run.errors.contains("are the same port"), run.errors.constData());
    }

    void aModuleIsShown()
    {
        const Lan lan("--address 192.0.2.7 --gateway 192.0.2.254 --name Desk");
        const QByteArray shown = "mac         020000000001\n"
                                 "name        Desk\n"
                                 "address     192.0.2.7\n"
                                 "allocation  static\n"
                                 "ip          192.0.2.7\n"
                                 "mask        255.255.255.0\n"
                                 "gateway     192.0.2.254\n";
        CtlRun run = ctlWith("admin", "module show -u admin -d module:Desk");
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.output, shown);
        QCOMPARE(ctlWith("admin", "-d udp:192.0.2.7 module show -u admin").output, shown);
        run = ctlWith("admin", "module show -u admin -d module:Desk --json");
        QCOMPARE(
            run.object().value(QStringLiteral("module")).toObject().value(QStringLiteral("mask")),
            QJsonValue(QStringLiteral("255.255.255.0")));
    }

    void wrongCredentialsAreRefused()
    {
        const Lan lan("--address 192.0.2.7");
        const CtlRun run = ctlWith("wrong", "module show -u admin -d module:PELORA-SIM");
        QCOMPARE(run.status, 6);
        QVERIFY(run.errors.contains("the module refuses this user name and password"));
        QVERIFY(!run.errors.contains("wrong"));
    }

    void aModuleThatAnswersNoLoginIsToldOf()
    {
        const Lan lan("--address 192.0.2.7 --fault truncated=37");
        const CtlRun run =
            ctlWith("admin", "--timeout 200 --retries 0 module show -u admin -d module:PELORA-SIM");
        QCOMPARE(run.status, 4);
        QVERIFY(run.errors.contains("the login cannot be understood"));
    }

    void aPasswordMayStandInAFile()
    {
        const Lan lan("--address 192.0.2.7");
        const QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("password")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("admin\r\nno matter\n");
        file.close();
        const QString arguments =
            QStringLiteral("module show -u admin -d module:PELORA-SIM --password-file ");
        QCOMPARE(ctlIn(arguments + file.fileName()).status, 0);
        QCOMPARE(ctlIn(arguments + QStringLiteral("/nowhere")).status, 2);
    }

    void withoutAPasswordNothingIsSent()
    {
        const CtlRun run = ctlIn(QStringLiteral("module show -u admin -d module:PELORA-SIM"));
        QCOMPARE(run.status, 2);
        QVERIFY(
            run.errors.contains("no password; set PELORA_PASSWORD or give --password-file FILE"));
    }

    void aModuleOnASerialPortIsAMistake()
    {
        const CtlRun run = ctlWith("admin", "module show -u admin -d serial:/dev/ttyS0");
        QCOMPARE(run.status, 2);
        QVERIFY(run.errors.contains("has no network module"));
    }

    void whatIsNotNamedStays()
    {
        const Lan lan("--address 192.0.2.7 --gateway 192.0.2.254 --name Desk");
        CtlRun run = ctlWith("admin", "module set -u admin -d module:Desk name=Lab --json");
        QCOMPARE(run.status, 0);
        const QJsonObject object = run.object();
        QCOMPARE(object.value(QStringLiteral("changes")).toArray(),
                 (QJsonArray{QJsonObject{{QStringLiteral("key"), QStringLiteral("name")},
                                         {QStringLiteral("from"), QStringLiteral("Desk")},
                                         {QStringLiteral("to"), QStringLiteral("Lab")}}}));
        run = ctlWith("admin", "module set -u admin -d module:Lab name=Lab");
        QCOMPARE(run.output, QByteArray("already so\n"));
        QVERIFY(ctlWith("admin", "module show -u admin -d module:Lab")
                    .output.contains("gateway     192.0.2.254\n"));
    }

    void aNewAddressIsWaitedFor()
    {
        const Lan lan("--address 192.0.2.7 --name Desk");
        CtlRun run =
            ctlWith("admin", "module set -u admin -d module:Desk ip=192.0.2.9 mask=255.255.0.0");
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.status, 0);
        QVERIFY(run.output.contains("address     192.0.2.9\n"));
        QVERIFY(run.output.contains("mask        255.255.0.0\n"));
        QCOMPARE(ctlIn(QStringLiteral("get buzzer -d udp:192.0.2.9")).output,
                 QByteArray("buzzer  on\n"));
        run = ctlWith("admin", "module set -u admin -d module:Desk dhcp");
        QCOMPARE(run.status, 0);
        QVERIFY(run.output.contains("allocation  dhcp\n"));
        QVERIFY(run.output.contains("ip          192.0.2.9\n"));
    }

    void anAddressMayBeFilledUpWithZeros()
    {
        const Lan lan("--address 192.0.2.7 --name Desk");
        CtlRun run = ctlWith("admin", "module set -u admin -d module:Desk ip=192.000.002.010 "
                                      "mask=255.255.255.000");
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.status, 0);
        QVERIFY(run.output.contains("ip          192.0.2.10\n"));
        run = ctlWith("admin", "module set -u admin -d udp:192.0.2.010 ip=192.000.002.010");
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.output, QByteArray("already so\n"));
    }

    void newCredentialsAreNeverShown()
    {
        const Lan lan("--address 192.0.2.7 --name Desk");
        const QTemporaryDir folder;
        const QByteArray record = folder.filePath(QStringLiteral("r.jsonl")).toUtf8();
        const CtlRun run = ctlWith(
            "admin",
            ("module set -u admin -d module:Desk --new-password username=root --json --record " +
             record)
                .constData(),
            "s3cret");
        QCOMPARE(run.status, 0);
        QVERIFY(!run.output.contains("s3cret"));
        QFile file(QString::fromUtf8(record));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray kept = file.readAll();
        QVERIFY(kept.contains("\"road\":\"module\""));
        QVERIFY(!kept.contains("s3cret"));
        QVERIFY(!kept.contains(QByteArray("s3cret").toHex()));
        QCOMPARE(ctlWith("admin", "module show -u admin -d module:Desk").status, 6);
        QCOMPARE(ctlWith("s3cret", "module show -u root -d module:Desk").status, 0);
    }

    void aModuleThatDoesNotComeBackIsToldOf()
    {
        const Lan lan("--address 192.0.2.7 --name Desk --restart-time 60000 --verbose");
        CtlProcess process;
        giveVariable(process, "PELORA_PASSWORD", "admin");
        process.start(
            words("--timeout 100 --retries 0 module set -u admin -d module:Desk name=Lab"));
        const CtlRun run = process.wait();
        QCOMPARE(run.status, 3);
        QVERIFY2(run.errors.contains("the settings were sent, and the module has not come back"),
                 run.errors.constData());
    }

    void whatAModuleDoesNotTakeIsNamed()
    {
        const Lan lan("--address 192.0.2.7 --name Desk --fault keep-old");
        CtlRun run =
            ctlWith("admin", "module set -u admin -d module:Desk name=Lab mask=255.255.0.0 "
                             "--json");
        QCOMPARE(run.status, 5);
        QVERIFY2(run.errors.contains("the module did not take name"), run.errors.constData());
        const QJsonObject error = run.object().value(QStringLiteral("error")).toObject();
        QCOMPARE(error.value(QStringLiteral("kind")), QJsonValue(QStringLiteral("not-taken")));
        QCOMPARE(error.value(QStringLiteral("message")),
                 QJsonValue(QStringLiteral("the module did not take name, mask")));
    }

    void credentialsThatAModuleDoesNotTakeAreToldOf()
    {
        const Lan lan("--address 192.0.2.7 --name Desk --fault keep-old");
        const CtlRun run =
            ctlWith("admin", "module set -u admin -d module:Desk --new-password", "s3cret");
        QCOMPARE(run.status, 5);
        QVERIFY2(run.errors.contains("the module did not take the new user name or password"),
                 run.errors.constData());
        QCOMPARE(ctlWith("admin", "module show -u admin -d module:Desk").status, 0);
    }

    void anInterruptedSearchEnds_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QByteArray>("complaint");
        QTest::newRow("for modules") << QStringLiteral("discover") << QByteArray();
        QTest::newRow("for one to be set up")
            << QStringLiteral("module set -u admin -d udp:192.0.2.7 name=Lab")
            << QByteArray("peloractl: udp:192.0.2.7: interrupted before it was begun; nothing was "
                          "sent\n");
    }

    void anInterruptedSearchEnds()
    {
        QFETCH(QString, command);
        QFETCH(QByteArray, complaint);
        Lan lan("--address 192.0.2.7 --name Desk --verbose");
        CtlProcess process;
        giveVariable(process, "PELORA_PASSWORD", "admin");
        process.start(words("--wait 60000") + command.split(u' '));
        QTRY_VERIFY_WITH_TIMEOUT(lan.simulator.reports().contains("search"), 20000);
        ::kill(static_cast<pid_t>(process.process.processId()), SIGINT);
        const CtlRun run = process.wait();
        QCOMPARE(run.status, 130);
        QCOMPARE(run.errors, complaint);
    }

    void anInterruptSaysThatTheSettingsWereSent()
    {
        Lan lan("--address 192.0.2.7 --name Desk --restart-time 60000 --verbose");
        CtlProcess process;
        giveVariable(process, "PELORA_PASSWORD", "admin");
        process.start(words("--wait 200 module set -u admin -d module:Desk name=Lab"));
        QTRY_VERIFY_WITH_TIMEOUT(lan.simulator.reports().contains("restart"), 20000);
        ::kill(static_cast<pid_t>(process.process.processId()), SIGINT);
        const CtlRun run = process.wait();
        QCOMPARE(run.status, 130);
        QVERIFY(run.errors.contains("interrupted; the new settings were sent"));
    }

    void severalModulesCannotHaveOneAddress()
    {
        const CtlRun run =
            ctlWith("admin", "module set -u admin -d module:A -d module:B ip=192.0.2.9");
        QCOMPARE(run.status, 2);
        QVERIFY(run.errors.contains("several modules cannot have one address or one name"));
    }

    void nothingToSetIsAMistake()
    {
        QVERIFY(
            ctlWith("admin", "module set -u admin -d module:A").errors.contains("nothing to set"));
        QVERIFY(ctlWith("admin", "module set -u admin -d module:A password=x")
                    .errors.contains("no password is taken from the command line"));
    }
};

QTEST_GUILESS_MAIN(CtlModuleTest)
#include "tst_ctl_module.moc"
