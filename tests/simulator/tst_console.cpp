#include "simulator_process.h"
#include "support/pty_pair.h"

#include <QFile>
#include <QFileInfo>
#include <QSerialPort>
#include <QTemporaryDir>
#include <QTest>

/// The simulator's console, typed at through a pipe.
class ConsoleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stateShowsTheState()
    {
        SimulatorProcess simulator;
        simulator.start(console());
        simulator.type("state");
        QCOMPARE(simulator.linesUpTo("Hotkey"), QByteArray("KM control: 1\n"
                                                           "USB control: 1\n"
                                                           "Mouse mode: absolute\n"
                                                           "Cursor rolling: off\n"
                                                           "Active ports: 4\n"
                                                           "Buzzer: on\n"
                                                           "Layout: 01 02 03 04\n"
                                                           "Resolutions: 1 1 1 1\n"
                                                           "Custom 1: 100 100 CUSTOM1\n"
                                                           "Custom 2: 100 100 CUSTOM2\n"
                                                           "Custom 3: 100 100 CUSTOM3\n"
                                                           "Custom 4: 100 100 CUSTOM4\n"
                                                           "Hotkey trigger: Left Ctrl\n"));
    }

    void pressIsHeardOnTheLineAndResetUndoesIt()
    {
        SimulatorProcess simulator;
        QSerialPort port(simulator.start(console()).value(0));
        QVERIFY(port.open(QIODevice::ReadWrite));
        simulator.type("press 3");
        QByteArray heard;
        QTRY_COMPARE(heard += port.readAll(), QByteArray("**M3\n"));
        simulator.type("state");
        QVERIFY(simulator.linesUpTo("Hotkey").startsWith("KM control: 3\nUSB control: 3\n"));
        simulator.type("reset");
        simulator.type("state");
        QVERIFY(simulator.linesUpTo("Hotkey").startsWith("KM control: 1\nUSB control: 1\n"));
    }

    void aTerminalIsReadWhileItIsInFront()
    {
        const PtyPair terminal;
        const QByteArray path = terminal.path().toLocal8Bit();
        SimulatorProcess simulator;
        simulator.process.setChildProcessModifier([path] {
            ::setsid();
            ::dup2(::open(path.constData(), O_RDWR), STDIN_FILENO); // and its controlling terminal
        });
        simulator.start(console());
        QCOMPARE(::write(terminal.masterDescriptor(), "state\n", 6), ssize_t{6});
        QVERIFY(simulator.linesUpTo("Hotkey").contains("KM control: 1\n"));
    }

    void faultsGoOnAndOff()
    {
        SimulatorProcess simulator;
        QSerialPort port(simulator.start(console()).value(0));
        QVERIFY(port.open(QIODevice::ReadWrite));
        simulator.type("fault");
        QCOMPARE(simulator.nextLine(), QByteArray("no faults"));
        simulator.type("fault crlf");
        simulator.type("fault missing KM Port Limit");
        simulator.type("fault discovery-size=35:2");
        simulator.type("fault");
        QCOMPARE(simulator.nextLine(), QByteArray("missing=KM Port Limit"));
        QCOMPARE(simulator.nextLine(), QByteArray("crlf"));
        QByteArray heard;
        port.write("//c2\r");
        QTRY_COMPARE(heard += port.readAll(), QByteArray("**C2\r\n"));
        simulator.type("fault none");
        simulator.type("fault");
        QCOMPARE(simulator.nextLine(), QByteArray("no faults"));
        simulator.type("fault delay x");
        QCOMPARE(simulator.nextLine(), QByteArray("the fault delay needs MS, not \"x\""));
    }

    void floodFillsTheLine()
    {
        SimulatorProcess simulator;
        QSerialPort port(simulator.start(console()).value(0));
        QVERIFY(port.open(QIODevice::ReadWrite));
        simulator.type("flood 5000");
        QByteArray heard;
        QTRY_COMPARE((heard += port.readAll()).size(), qsizetype(5000));
    }

    void theCableIsPulledAndPluggedIn()
    {
        const QTemporaryDir folder;
        const QString link = folder.filePath(QStringLiteral("switch"));
        SimulatorProcess simulator;
        const QString path =
            simulator.start(console() << QStringLiteral("--link") << link).value(0);
        simulator.type("plug");
        QCOMPARE(simulator.nextLine(), QByteArray("the cable is plugged in"));
        QSerialPort port(path);
        QVERIFY(port.open(QIODevice::ReadWrite));
        bool broken = false;
        connect(&port, &QSerialPort::errorOccurred, &port, [&] {
            broken = true;
            if (port.isOpen())
                port.close();
        });
        simulator.type("unplug");
        QTRY_VERIFY(broken);
        simulator.type("unplug");
        QCOMPARE(simulator.nextLine(), QByteArray("the cable is not plugged in"));
        QVERIFY(!QFileInfo(link).isSymLink());

        simulator.type("plug");
        const QString again = QString::fromUtf8(simulator.nextLine());
        QCOMPARE(QFileInfo(link).symLinkTarget(), again);
        QSerialPort second(link);
        QVERIFY(second.open(QIODevice::ReadWrite));
        second.write("//c4\r");
        QByteArray heard;
        QTRY_COMPARE(heard += second.readAll(), QByteArray("**C4\n"));
    }

    void mistakesAreAnswered_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QByteArray>("answer");

        const auto row = [](const QByteArray &line, const QByteArray &answer) {
            QTest::newRow(line.constData()) << line << answer;
        };
        row("dance", "there is no command \"dance\"; try help");
        row("press", "press needs a button, 1 to 4");
        row("press 5", "press needs a button, 1 to 4");
        row("press 2 2", "there is no unit \"2\"");
        row("press 2 x", "there is no unit \"x\"");
        row("flood", "flood needs a number of bytes, at most 30000000");
        row("flood 99999999999", "flood needs a number of bytes, at most 30000000");
        row("state now", "\"state\" takes nothing behind it, or is no command; try help");
        row("fault nope", "there is no fault \"nope\"");
    }

    void mistakesAreAnswered()
    {
        QFETCH(QByteArray, line);
        QFETCH(QByteArray, answer);
        SimulatorProcess simulator;
        simulator.start(console());
        simulator.type("  ");
        simulator.type("\t" + line + " \r");
        QCOMPARE(simulator.nextLine(), answer);
    }

    void helpNamesEveryCommand()
    {
        SimulatorProcess simulator;
        simulator.start(console());
        simulator.type("help");
        const QByteArray help = simulator.linesUpTo("UNIT");
        for (const char *command : {"state", "press N", "fault NAME [VALUE]", "flood N", "unplug",
                                    "plug", "reset", "help", "quit"})
            QVERIFY2(help.contains(command), command);
        simulator.type("faults");
        QVERIFY(simulator.linesUpTo("  split").contains("  silence "));
    }

    void quitEndsIt()
    {
        SimulatorProcess simulator;
        simulator.start(console());
        simulator.type("quit");
        QCOMPARE(simulator.waitForEnd(), 0);
    }

    void aLastLineWithoutAnEndCounts()
    {
        SimulatorProcess simulator;
        simulator.start(console());
        simulator.process.write("press 7");
        simulator.process.closeWriteChannel();
        QCOMPARE(simulator.nextLine(), QByteArray("press needs a button, 1 to 4"));
        QCOMPARE(simulator.waitForEnd(), 0);
    }

    void withoutASerialFaceThereIsNoCable()
    {
        SimulatorProcess simulator;
        // Ports that no system hands out by itself, and that another run of this test has not.
        const qint64 port = 10'000 + 2 * (QCoreApplication::applicationPid() % 10'000);
        simulator.start({QStringLiteral("module"), QStringLiteral("--console"),
                         QStringLiteral("--address"), QStringLiteral("127.0.0.33"),
                         QStringLiteral("--management-port"), QString::number(port),
                         QStringLiteral("--switch-port"), QString::number(port + 1)});
        simulator.type("unplug");
        QCOMPARE(simulator.nextLine(), QByteArray("there is no serial face"));
        simulator.type("plug");
        QCOMPARE(simulator.nextLine(), QByteArray("there is no serial face"));
    }

private:
    static QStringList console()
    {
        return {QStringLiteral("serial"), QStringLiteral("--console"),
                QStringLiteral("--no-pacing")};
    }
};

QTEST_GUILESS_MAIN(ConsoleTest)
#include "tst_console.moc"
