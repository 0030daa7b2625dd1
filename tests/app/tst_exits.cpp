#include <QFile>
#include <QProcess>
#include <QTest>

/// The failures that end the program: a warning box, exit status 1, and a log without its end mark.
class ExitsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutASerialPortTheProgramEnds()
    {
        expectExit({QStringLiteral("no-port")}, " |No available port\n");
    }

    void withoutAModuleTheProgramEnds()
    {
        expectExit({QStringLiteral("no-module")}, "Information|No hardware online\n");
    }

    void aNetworkLinkThatIsNotConnectedInTimeEndsTheProgram()
    {
        expectExit({QStringLiteral("no-connection")}, " |No connection\n");
    }

    void onWithoutAnAnswerEndsTheProgram()
    {
        expectExit({QStringLiteral("no-answer")},
                   " |Check if the device is on the same network as the PC\n");
    }

private:
    static void expectExit(const QStringList &arguments, const QByteArray &boxes)
    {
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("PELORA_EXTRA_SERIAL_PORTS"));
        program.setProcessEnvironment(environment);
        program.start(QStringLiteral(EXIT_SCENARIO), arguments);
        QVERIFY(program.waitForFinished(20'000));
        QCOMPARE(program.readAllStandardOutput(), boxes);
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 1);
        QFile log(qEnvironmentVariable("HOME") + QStringLiteral("/Documents/KM_log.txt"));
        QVERIFY(log.open(QIODevice::ReadOnly));
        const QByteArray lines = log.readAll();
        QVERIFY(lines.startsWith("Start.........\n"));
        QVERIFY(!lines.contains("Stop........."));
    }
};

QTEST_GUILESS_MAIN(ExitsTest)
#include "tst_exits.moc"
