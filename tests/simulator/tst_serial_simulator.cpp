#include "simulator/pseudo_terminal.h"
#include "simulator_process.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QSerialPort>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>
#include <memory>

namespace {

const QByteArray threeAnswers = "//RL Pelora KM switch\n"
                                "KM Port Limit: 4\n"
                                "KM Cursor Rolling: Disabled\n"
                                "KM tracking mode: Absolute Mouse Mode\n"
                                "Channels resolution: 1 1 1 1\n"
                                "Buzzer: on\n"
                                "C1\t100 100 CUSTOM1\n"
                                "C2\t100 100 CUSTOM2\n"
                                "C3\t100 100 CUSTOM3\n"
                                "C4\t100 100 CUSTOM4\n"
                                "Current Hotkey Trigger: Left Ctrl\n"
                                "Current KM Control: 1\n"
                                "Current USB Control 1\n"
                                "//FF01B01FF02B02FF03B03FF04B04\n";

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

/// A serial port on the simulator's line, as the utility opens it.
class Line
{
public:
    bool open(const QString &path)
    {
        port_.setPortName(path);
        port_.setBaudRate(QSerialPort::Baud115200);
        return port_.open(QIODevice::ReadWrite);
    }
    void say(const QByteArray &bytes) { port_.write(bytes); }
    /// Everything heard so far.
    const QByteArray &heard()
    {
        heard_ += port_.readAll();
        return heard_;
    }
    void forget() { heard_.clear(); }
    QSerialPort &port() { return port_; }

private:
    QSerialPort port_;
    QByteArray heard_;
};

} // namespace

/// pelora-simulator serial, run as a program and talked to through its port.
class SerialSimulatorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itAnswersOnThePortThatItPrints()
    {
        SimulatorProcess simulator;
        const QStringList first = simulator.start(words("serial"));
        QCOMPARE(first.size(), 1);
        Line line;
        QVERIFY2(line.open(first.first()), qPrintable(first.first()));
        line.say("//rl\r");
        line.say("//??\r");
        line.say("//BP\r");
        QTRY_COMPARE(line.heard(), threeAnswers);
        line.forget();
        line.say("//c3\r");
        QTRY_COMPARE(line.heard(), QByteArray("**C3\n"));
        QCOMPARE(simulator.end(), 0);
    }

    void itOutlivesItsReaders()
    {
        SimulatorProcess simulator;
        const QString path = simulator.start(words("serial")).value(0);
        for (int i = 0; i < 3; ++i) {
            Line line;
            QVERIFY(line.open(path));
            line.say("//u2\r");
            QTRY_COMPARE(line.heard(), QByteArray("**U2\n"));
        }
        QCOMPARE(simulator.end(), 0);
    }

    void theLinkComesAndGoesWithIt_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("SIGINT") << SIGINT;
        QTest::newRow("SIGTERM") << SIGTERM;
        QTest::newRow("SIGHUP") << SIGHUP;
        QTest::newRow("end of standard input") << 0;
    }

    void theLinkComesAndGoesWithIt()
    {
        QFETCH(int, signal);
        const QTemporaryDir folder;
        const QString link = folder.filePath(QStringLiteral("switch"));
        SimulatorProcess simulator;
        simulator.process.setChildProcessModifier([] { std::signal(SIGHUP, SIG_DFL); });
        const QString path =
            simulator.start({QStringLiteral("serial"), QStringLiteral("--link"), link}).value(0);
        QCOMPARE(QFileInfo(link).symLinkTarget(), path);
        Line line;
        QVERIFY(line.open(link));
        line.say("//c2\r");
        QTRY_COMPARE(line.heard(), QByteArray("**C2\n"));
        if (signal != 0)
            ::kill(static_cast<pid_t>(simulator.process.processId()), signal);
        QCOMPARE(signal != 0 ? simulator.waitForEnd() : simulator.end(), 0);
        QVERIFY(!QFileInfo(link).isSymLink());
    }

    void underNohupItOutlivesItsTerminal()
    {
        SimulatorProcess simulator;
        simulator.process.setChildProcessModifier([] { std::signal(SIGHUP, SIG_IGN); });
        const QString path = simulator.start({QStringLiteral("serial")}).value(0);
        const auto pid = static_cast<pid_t>(simulator.process.processId());
        ::kill(pid, SIGHUP);
        Line line;
        QVERIFY(line.open(path));
        line.say("//c2\r");
        QTRY_COMPARE(line.heard(), QByteArray("**C2\n"));
        ::kill(pid, SIGTERM);
        QCOMPARE(simulator.waitForEnd(), 0);
    }

    void aFileInTheLinksPlaceIsAFailure()
    {
        const QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("switch")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        const FinishedRun run =
            runSimulator({QStringLiteral("serial"), QStringLiteral("--link"), file.fileName()});
        QCOMPARE(run.status, 1);
        QVERIFY2(run.reports.contains("there is a file of that name"), run.reports.constData());
        QVERIFY(file.exists());
    }

    void aRealPortCanBeUsed()
    {
        // The virtual port of a terminal in this test is the other's real port.
        PseudoTerminal cable;
        cable.open();
        const QSignalSpy received(&cable, &PseudoTerminal::received);
        SimulatorProcess simulator;
        simulator.start({QStringLiteral("serial"), QStringLiteral("--port"), cable.path()});
        cable.write("//u4\r");
        QTRY_COMPARE(received.size(), 1);
        QCOMPARE(received.first().first().toByteArray(), QByteArray("**U4\n"));
        cable.close();
        QCOMPARE(simulator.waitForEnd(), 1);
        QVERIFY2(simulator.reports().contains("failed"), simulator.reports().constData());
    }

    void aPortThatDoesNotExistIsAFailure()
    {
        const FinishedRun run = runSimulator(words("serial --port /dev/no-such-port"));
        QCOMPARE(run.status, 1);
        QVERIFY2(run.reports.contains("cannot open the serial port /dev/no-such-port"),
                 run.reports.constData());
    }

    void oneByteChunksArriveOneByOne()
    {
        SimulatorProcess simulator;
        Line line;
        QVERIFY(
            line.open(simulator.start(words("serial --fault chunks=1 --fault gap=5")).value(0)));
        QElapsedTimer time;
        time.start();
        line.say("//??\r");
        QTRY_VERIFY(line.heard().endsWith("Current USB Control 1\n"));
        // 78 bytes and so 77 gaps of 5 ms.
        QVERIFY2(time.elapsed() >= 77 * 5, QByteArray::number(time.elapsed()).constData());
    }

    void delayedAnswersComeLater()
    {
        SimulatorProcess simulator;
        Line line;
        QVERIFY(line.open(simulator.start(words("serial --fault delay=200")).value(0)));
        QElapsedTimer time;
        time.start();
        line.say("//c2\r");
        QTRY_COMPARE(line.heard(), QByteArray("**C2\n"));
        QVERIFY2(time.elapsed() >= 200, QByteArray::number(time.elapsed()).constData());
    }

    void pressesComeUnasked()
    {
        SimulatorProcess simulator;
        Line line;
        QVERIFY(line.open(simulator.start(words("serial --fault unsolicited=20")).value(0)));
        QTRY_VERIFY(line.heard().contains("**M2\n**M3\n**M4\n**M1\n"));
    }

    void aFloodArrivesWhole()
    {
        SimulatorProcess simulator;
        Line line;
        QVERIFY(
            line.open(simulator.start(words("serial --no-pacing --fault flood=2000000")).value(0)));
        line.say("//BP\r");
        // 174 s at the line's speed
        QTRY_COMPARE_WITH_TIMEOUT(line.heard().size(), qsizetype(31 + 2000000), 60000);
    }

    void answersTakeTheTimeOfTheLine()
    {
        SimulatorProcess simulator;
        Line line;
        QVERIFY(line.open(simulator.start(words("serial --fault flood=3000")).value(0)));
        QElapsedTimer time;
        time.start();
        line.say("//BP\r");
        QTRY_COMPARE(line.heard().size(), qsizetype(31 + 3000));
        // 3031 bytes of ten bits at 115200 baud
        QVERIFY2(time.elapsed() >= 263, QByteArray::number(time.elapsed()).constData());
    }

    void whatIsSaidUnaskedWaitsItsTurn()
    {
        SimulatorProcess simulator;
        Line line;
        QVERIFY(line.open(simulator.start(words("serial --console --fault flood=5000")).value(0)));
        line.say("//BP\r");
        QTRY_VERIFY(line.heard().size() >= 31);
        simulator.type("flood 100");
        simulator.type("press 3");
        simulator.type("state");
        QVERIFY(simulator.linesUpTo("Hotkey").startsWith("KM control: 3\n"));
        line.say("//c2\r");
        QTRY_COMPARE(line.heard().size(), qsizetype(31 + 5000 + 100 + 5 + 5));
        QVERIFY(line.heard().startsWith("//FF01B01FF02B02FF03B03FF04B04\n0123"));
        QVERIFY(line.heard().endsWith("\n**M3\n**C2\n"));
        QCOMPARE(line.heard().indexOf("**M3"), qsizetype(31 + 5000 + 100));
    }

    void aRealPortIsNotPaced()
    {
        PseudoTerminal cable;
        cable.open();
        qsizetype heard = 0;
        connect(&cable, &PseudoTerminal::received, this,
                [&heard](const QByteArray &bytes) { heard += bytes.size(); });
        SimulatorProcess simulator;
        simulator.start({QStringLiteral("serial"), QStringLiteral("--port"), cable.path(),
                         QStringLiteral("--fault"), QStringLiteral("flood=2000000")});
        cable.write("//BP\r");
        QTRY_COMPARE_WITH_TIMEOUT(heard, qsizetype(31 + 2000000), 60000);
    }

    void thePrintedStateFollowsTheSwitch()
    {
        SimulatorProcess simulator;
        const QString path = simulator.start(words("serial --print-state")).value(0);
        QVERIFY(simulator.linesUpTo("Hotkey trigger").startsWith("KM control: 1\n"));
        Line line;
        QVERIFY(line.open(path));
        line.say("//c4\r");
        const QByteArray changed = simulator.linesUpTo("Hotkey trigger");
        QVERIFY2(changed.startsWith("\nKM control: 4\nUSB control: 1\n"), changed.constData());
    }

    void rejectionsAreReportedAndTheRestWithVerbose()
    {
        SimulatorProcess simulator;
        Line line;
        QVERIFY(line.open(simulator.start(words("serial --verbose")).value(0)));
        line.say("//c9\r//c2\r");
        QTRY_COMPARE(line.heard(), QByteArray("**C2\n"));
        QCOMPARE(simulator.end(), 0);
        QCOMPARE(simulator.reports(),
                 QByteArray("switch: rejected //c9: the number must be 1 to 4\n"
                            "switch: command //c2\n"
                            "switch: answer **C2\\n\n"));
    }

    void afterAResetItIsDeafForAWhile_data()
    {
        QTest::addColumn<QString>("options");
        QTest::addColumn<int>("atLeast");
        QTest::newRow("as asked for")
            << QStringLiteral("serial --verbose --restart-time 500") << 500;
        QTest::newRow("unasked") << QStringLiteral("serial --verbose") << 300;
    }

    void afterAResetItIsDeafForAWhile()
    {
        QFETCH(QString, options);
        QFETCH(int, atLeast);
        SimulatorProcess simulator;
        Line line;
        QVERIFY(line.open(simulator.start(options.split(QLatin1Char(' '))).value(0)));
        QElapsedTimer time;
        time.start();
        line.say("//R\r//c2\r");
        QTRY_VERIFY(simulator.reports().endsWith("switch: restarted\n"));
        QVERIFY2(time.elapsed() >= atLeast, QByteArray::number(time.elapsed()).constData());
        QCOMPARE(simulator.reports(), QByteArray("switch: command //R\n"
                                                 "switch: answer Soft reset\\n\n"
                                                 "switch: rejected //c2: the switch is restarting\n"
                                                 "switch: restarted\n"));
        line.say("//c3\r");
        QTRY_COMPARE(line.heard(), QByteArray("Soft reset\n**C3\n"));
    }

    void theRestartCanTakeNoTime()
    {
        SimulatorProcess simulator;
        Line line;
        QVERIFY(line.open(simulator.start(words("serial --restart-time 0")).value(0)));
        line.say("//F\r//c2\r");
        QTRY_COMPARE(line.heard(), QByteArray("Factory settings restored\n**C2\n"));
    }

    void aLayoutTakenInPartIsReported()
    {
        SimulatorProcess simulator;
        Line line;
        QVERIFY(line.open(simulator.start(words("serial")).value(0)));
        line.say("//FF01B05FF02B06FF03B10FF03B14\r//BP\r");
        QTRY_COMPARE(line.heard(), QByteArray("Saving horizontal dimension as 4\n"
                                              "//FF01B05FF02B06FF03B03FF04B04\n"));
        QTRY_COMPARE(simulator.reports(),
                     QByteArray("switch: took part of //FF01B05FF02B06FF03B10FF03B14: channels 1 "
                                "and 2 placed; channel 3 stays, it is named twice; channel 4 "
                                "stays, it is not named\n"));
    }
};

QTEST_GUILESS_MAIN(SerialSimulatorTest)
#include "tst_serial_simulator.moc"
