#include "desk.h"
#include "support/pty_pair.h"

#include <QTest>
#include <csignal>
#include <sys/ioctl.h>

namespace {
/// A terminal at which somebody types, and which shows what is typed.
class Terminal : public PtyPair
{
public:
    Terminal()
    {
        termios settings = {};
        tcgetattr(masterDescriptor(), &settings);
        settings.c_lflag |= ICANON | ECHO;
        settings.c_iflag |= ICRNL;
        tcsetattr(masterDescriptor(), TCSANOW, &settings);
    }

    /// Types `line` once `process` has asked with `question`.
    bool answer(CtlProcess &process, const QByteArray &question, const QByteArray &line)
    {
        if (!process.hasComplained(question))
            return false;
        write(line + '\n');
        return true;
    }

    /// How much of what was typed nobody has read yet, in bytes.
    int unread() const
    {
        const int end = ::open(QFile::encodeName(path()).constData(), O_RDWR | O_NOCTTY);
        int bytes = -1;
        ::ioctl(end, FIONREAD, &bytes);
        ::close(end);
        return bytes;
    }

    /// Whether it shows what is typed.
    bool shows() const { return (settings().c_lflag & ECHO) != 0; }

    /// Whether a key ends (VQUIT) or suspends (VSUSP) what runs at it.
    bool hasKey(int what) const { return settings().c_cc[what] != _POSIX_VDISABLE; }

private:
    termios settings() const
    {
        termios now = {};
        tcgetattr(masterDescriptor(), &now);
        return now;
    }
};

void startAt(const Terminal &terminal, CtlProcess &process, const QString &arguments)
{
    process.process.setStandardInputFile(terminal.path());
    process.start(arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts));
}

const QString moduleShow = QStringLiteral("--wait 200 module show -u admin -d module:Desk");
} // namespace

/// What peloractl asks for and shows at a terminal.
class CtlPromptsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPasswordIsTypedUnseen()
    {
        SimulatorProcess simulator;
        QCOMPARE(simulator
                     .start({QStringLiteral("module"), QStringLiteral("--address"),
                             QStringLiteral("192.0.2.7"), QStringLiteral("--name"),
                             QStringLiteral("Desk"), QStringLiteral("--password"),
                             QStringLiteral("s3cret")})
                     .size(),
                 1);
        Terminal terminal;
        CtlProcess process;
        startAt(terminal, process, moduleShow);
        QVERIFY(terminal.answer(process, "Password of the module: ", "s3cret"));
        const CtlRun run = process.wait();
        QVERIFY2(run.output.contains("name        Desk\n"), run.errors.constData());
        QCOMPARE(run.status, 0);
        QVERIFY(!terminal.read().contains("s3cret"));
        QVERIFY(!(run.output + run.errors).contains("s3cret"));
        QVERIFY(terminal.shows()); // as it was before
    }

    void aNewPasswordIsTypedTwice()
    {
        SimulatorProcess simulator;
        QCOMPARE(simulator
                     .start({QStringLiteral("module"), QStringLiteral("--address"),
                             QStringLiteral("192.0.2.7"), QStringLiteral("--name"),
                             QStringLiteral("Desk")})
                     .size(),
                 1);
        const QString set = QStringLiteral("--wait 200 module set -u admin -d module:Desk "
                                           "--new-password");
        {
            Terminal terminal;
            CtlProcess process;
            startAt(terminal, process, set);
            QVERIFY(terminal.answer(process, "Password of the module: ", "admin"));
            QVERIFY(terminal.answer(process, "New password: ", "one"));
            QVERIFY(terminal.answer(process, "New password, again: ", "two"));
            const CtlRun run = process.wait();
            QCOMPARE(run.status, 2);
            QVERIFY(run.errors.contains("the two new passwords differ; nothing was changed"));
        }
        Terminal terminal;
        CtlProcess process;
        startAt(terminal, process, set);
        QVERIFY(terminal.answer(process, "Password of the module: ", "admin"));
        QVERIFY(terminal.answer(process, "New password: ", "one"));
        QVERIFY(terminal.answer(process, "New password, again: ", "one"));
        CtlRun run = process.wait();
        QVERIFY2(run.status == 0, run.errors.constData());
        QVERIFY(!terminal.read().contains("one"));
        Terminal again;
        CtlProcess look;
        startAt(again, look, moduleShow);
        QVERIFY(again.answer(look, "Password of the module: ", "one"));
        QCOMPARE(look.wait().status, 0);
    }

    void aPromptThatNobodyAnswersEndsIt()
    {
        Terminal terminal;
        CtlProcess process;
        startAt(terminal, process, moduleShow);
        QVERIFY(process.hasComplained("Password of the module: "));
        terminal.write("\x04"); // the end of what is typed
        const CtlRun run = process.wait();
        QCOMPARE(run.status, 2);
        QVERIFY(run.errors.contains("nothing was typed"));
    }

    void anInterruptedPromptEndsAndShowsAgainWhatIsTyped_data()
    {
        QTest::addColumn<int>("signal");
        QTest::addColumn<QByteArray>("typed");
        QTest::newRow("Ctrl+C") << SIGINT << QByteArray();
        QTest::newRow("the wish to end") << SIGTERM << QByteArray();
        QTest::newRow("Ctrl+C behind half a line") << SIGINT << QByteArray("half\x04");
    }

    void anInterruptedPromptEndsAndShowsAgainWhatIsTyped()
    {
        QFETCH(int, signal);
        QFETCH(QByteArray, typed);
        Terminal terminal;
        CtlProcess process;
        startAt(terminal, process, moduleShow);
        QVERIFY(process.hasComplained("Password of the module: "));
        QVERIFY(!terminal.shows());
        terminal.write(typed);
        ::kill(static_cast<pid_t>(process.process.processId()), signal);
        const CtlRun run = process.wait();
        QCOMPARE(run.status, 130);
        QCOMPARE(run.errors, QByteArray("Password of the module: \n"
                                        "peloractl: interrupted; nothing was sent\n"));
        QVERIFY(terminal.shows());
    }

    void noKeyLeavesATerminalThatShowsNothing()
    {
        Terminal terminal;
        QVERIFY(terminal.hasKey(VQUIT) && terminal.hasKey(VSUSP));
        CtlProcess process;
        startAt(terminal, process, moduleShow);
        QVERIFY(process.hasComplained("Password of the module: "));
        QVERIFY(!terminal.hasKey(VQUIT) && !terminal.hasKey(VSUSP));
        QVERIFY(terminal.hasKey(VINTR));
        terminal.write("\x04");
        QCOMPARE(process.wait().status, 2);
        QVERIFY(terminal.hasKey(VQUIT) && terminal.hasKey(VSUSP));
    }

    void anInterruptedQuestionSendsNothing()
    {
        const Desk desk;
        Terminal terminal;
        CtlProcess process;
        startAt(terminal, process, desk.option() + QStringLiteral("reset factory"));
        QVERIFY(process.hasComplained("[y/N] "));
        ::kill(static_cast<pid_t>(process.process.processId()), SIGINT);
        terminal.write("y\n"); // too late
        const CtlRun run = process.wait();
        QCOMPARE(run.status, 130);
        QVERIFY2(run.errors.endsWith("[y/N] \npeloractl: interrupted; nothing was sent\n"),
                 run.errors.constData());
        QVERIFY(desk.commands().isEmpty());
    }

    void anInterruptedListEnds()
    {
        Terminal terminal;
        CtlProcess process;
        terminal.write("udp:127.0.0.1:9\n");
        QTRY_VERIFY(terminal.unread() > 0); // so that none is left only once it reads
        startAt(terminal, process, QStringLiteral("-D - get"));
        QTRY_COMPARE_WITH_TIMEOUT(terminal.unread(), 0, 20000);
        ::kill(static_cast<pid_t>(process.process.processId()), SIGINT);
        const CtlRun run = process.wait();
        QCOMPARE(run.status, 130);
        QCOMPARE(run.errors, QByteArray("peloractl: interrupted; nothing was sent\n"));
    }

    void aFactoryResetIsAskedFor_data()
    {
        QTest::addColumn<QByteArray>("typed");
        QTest::addColumn<int>("status");
        QTest::newRow("yes") << QByteArray("y") << 0;
        QTest::newRow("the whole word") << QByteArray("Yes") << 0;
        QTest::newRow("no") << QByteArray("n") << 2;
        QTest::newRow("nothing") << QByteArray("") << 2;
    }

    void aFactoryResetIsAskedFor()
    {
        QFETCH(QByteArray, typed);
        QFETCH(int, status);
        const Desk desk;
        Terminal terminal;
        CtlProcess process;
        startAt(terminal, process, desk.option() + QStringLiteral("reset factory"));
        QVERIFY(terminal.answer(process, "Delete every setting of udp:127.0.0.1:", typed));
        QCOMPARE(process.wait().status, status);
        QCOMPARE(desk.sentCommands(), status == 0 ? QByteArrayList{"//F\r"} : QByteArrayList());
    }

    void aTerminalShowsTheNamesBoldUnlessTheUserWantsNoColours_data()
    {
        QTest::addColumn<bool>("noColour");
        QTest::addColumn<QByteArray>("heading");
        QTest::newRow("as it is") << false << QByteArray("\x1b[1mudp:127.0.0.1:");
        QTest::newRow("NO_COLOR") << true << QByteArray("udp:127.0.0.1:");
    }

    void aTerminalShowsTheNamesBoldUnlessTheUserWantsNoColours()
    {
        QFETCH(bool, noColour);
        QFETCH(QByteArray, heading);
        const Desk one;
        const Desk other;
        PtyPair terminal;
        CtlProcess process;
        QProcessEnvironment environment = process.process.processEnvironment();
        environment.remove(QStringLiteral("NO_COLOR"));
        if (noColour)
            environment.insert(QStringLiteral("NO_COLOR"), QStringLiteral("1"));
        process.process.setProcessEnvironment(environment);
        process.process.setStandardOutputFile(terminal.path());
        process.start((one.option() + other.option() + QStringLiteral("get buzzer"))
                          .split(QLatin1Char(' '), Qt::SkipEmptyParts));
        QCOMPARE(process.wait().status, 0);
        const QByteArray shown = terminal.read();
        QVERIFY2(shown.startsWith(heading), shown.constData());
        QCOMPARE(shown.contains('\x1b'), !noColour);
    }

    void aTerminalCountsAlong()
    {
        const Desk one;
        Desk other;
        other.answers.clear();
        PtyPair terminal;
        CtlProcess process;
        process.process.setStandardErrorFile(terminal.path());
        process.start(
            (one.option() + other.option() + QStringLiteral("--timeout 300 --retries 0 get buzzer"))
                .split(QLatin1Char(' '), Qt::SkipEmptyParts));
        QCOMPARE(process.wait().status, 3);
        const QByteArray shown = terminal.read();
        QVERIFY2(shown.contains("\r1 done, 0 failed, of 2"), shown.constData());
        // What follows stands on a line that has been emptied.
        QVERIFY2(shown.contains("\r1 done, 0 failed, of 2\r                      \rpeloractl: "
                                "udp:127.0.0.1:"),
                 shown.constData());
        QVERIFY2(!shown.contains('\x1b'), shown.constData()); // which older consoles show
        QVERIFY2(shown.endsWith("peloractl: 1 done, 1 failed, of 2\n"), shown.constData());
    }

    void manySwitchesAreOneQuestion()
    {
        const Desk one;
        const Desk other;
        Terminal terminal;
        CtlProcess process;
        startAt(terminal, process, one.option() + other.option() + QStringLiteral("reset factory"));
        QVERIFY(terminal.answer(process, "Delete every setting of 2 switches? [y/N] ", "n"));
        QCOMPARE(process.wait().status, 2);
        QVERIFY(one.commands().isEmpty() && other.commands().isEmpty());
    }
};

QTEST_GUILESS_MAIN(CtlPromptsTest)
#include "tst_ctl_prompts.moc"
