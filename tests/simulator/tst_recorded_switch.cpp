#include "simulator/recorded_switch.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace std::chrono_literals;

namespace {
/// A line of a recording; `text` is left out.
QByteArray line(int time, const char *direction, const char *hex, const char *name = "desk",
                const char *road = "serial")
{
    return QByteArray("{\"bytes\":\"") + hex + "\",\"direction\":\"" + direction +
           "\",\"name\":\"" + name + "\",\"road\":\"" + road +
           "\",\"text\":\"\",\"time\":" + QByteArray::number(time) + "}\n";
}

/// "//c1" CR and so on, typed out.
const char *const c1 = "2f2f63310d";
const char *const c2 = "2f2f63320d";

/// The pieces as "wait:text", joined by a blank.
QByteArray shown(const std::vector<Piece> &pieces)
{
    QByteArrayList texts;
    for (const Piece &piece : pieces)
        texts.append(QByteArray::number(static_cast<int>(piece.wait.count())) + ":" + piece.bytes);
    return texts.join(' ');
}
} // namespace

/// Reading a recording, and answering as it did.
class RecordedSwitchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void badRecordings_data()
    {
        QTest::addColumn<QByteArray>("contents");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("problem");
        const auto row = [](const char *title, const QByteArray &contents, const char *problem,
                            const char *name = "") {
            QTest::newRow(title) << contents << QString::fromLatin1(name)
                                 << QString::fromLatin1(problem);
        };
        const QByteArray good = line(1, "sent", c1);
        row("empty", "", "FILE, line 1: the file is empty");
        row("no JSON", good + "//c1\n", "FILE, line 2: no JSON object");
        row("an array", good + good + "[1]\n", "FILE, line 3: no JSON object");
        row("an empty line", good + "\n" + good, "FILE, line 2: no JSON object");
        row("cut off", good + good.left(20), "FILE, line 2: no JSON object");
        row("odd hexadecimal digits", line(1, "sent", "2f2"),
            "FILE, line 1: \"bytes\" are no pairs of hexadecimal digits");
        row("no hexadecimal digits", line(1, "sent", "2g2f"),
            "FILE, line 1: \"bytes\" are no pairs of hexadecimal digits");
        row("no such direction", line(1, "lost", c1),
            "FILE, line 1: \"direction\" must be sent or received");
        row("no such road", line(1, "sent", c1, "desk", "rail"),
            "FILE, line 1: \"road\" must be serial or udp or module");
        row("no name", "{\"bytes\":\"\",\"direction\":\"sent\",\"road\":\"udp\",\"time\":1}",
            "FILE, line 1: \"name\" is no text");
        row("no time",
            "{\"bytes\":\"\",\"direction\":\"sent\",\"name\":\"a\",\"road\":\"udp\",\"time\":"
            "\"1\"}",
            "FILE, line 1: \"time\" is no number of milliseconds");
        row("a time that nobody waits for",
            "{\"bytes\":\"\",\"direction\":\"sent\",\"name\":\"a\",\"road\":\"udp\",\"time\":"
            "9e18}",
            "FILE, line 1: \"time\" is no number of milliseconds");
        row("a module alone", line(1, "sent", "ff010102", "desk", "module"),
            "FILE holds no conversation with a switch");
        row("several devices", good + line(2, "sent", c1, "hall"),
            "FILE holds several devices, choose one with --name: desk, hall");
        row("another device", good, "FILE holds no device \"hall\" but: desk", "hall");
        const QByteArray rude = line(2, "sent", c1, "\\u001b]0;A\\u0007B\\u009b1m");
        row("several devices with the terminal's words", good + rude,
            "FILE holds several devices, choose one with --name: desk, "
            "\\x1B]0;A\\x07B\\xC2\\x9B1m");
        row("another device than one with the terminal's words", rude,
            "FILE holds no device \"ha\\x07ll\" but: \\x1B]0;A\\x07B\\xC2\\x9B1m", "ha\x07ll");
        row("both roads with the terminal's words",
            rude + line(2, "sent", c1, "\\u001b]0;A\\u0007B\\u009b1m", "udp"),
            "FILE holds \"\\x1B]0;A\\x07B\\xC2\\x9B1m\" over both serial and udp");
        row("both roads", good + line(2, "sent", c1, "desk", "udp"),
            "FILE holds \"desk\" over both serial and udp");
    }

    void badRecordings()
    {
        QFETCH(QByteArray, contents);
        QFETCH(QString, name);
        QFETCH(QString, problem);
        write(contents);
        try {
            (void)readRecording(file(), name);
            QFAIL("it was taken");
        } catch (const BadRecording &error) {
            QCOMPARE(QString::fromUtf8(error.what()).replace(file(), QStringLiteral("FILE")),
                     problem);
        }
    }

    void aMissingRecording()
    {
        try {
            (void)readRecording(QStringLiteral("/nowhere/record.jsonl"), {});
            QFAIL("it was taken");
        } catch (const BadRecording &error) {
            const QByteArray why(error.what()); // and then in the system's words
            QVERIFY2(why.startsWith("cannot read /nowhere/record.jsonl: ") &&
                         !why.endsWith("jsonl: "),
                     why.constData());
        }
    }

    void oneOfSeveralDevices()
    {
        write(line(1, "sent", "ff010102", "hall", "module") + line(2, "sent", c1) +
              line(3, "sent", c2, "hall", "udp") + line(4, "received", "0AfF", "hall", "udp"));
        const Recording recording = readRecording(file(), QStringLiteral("hall"));
        QVERIFY(!recording.serial);
        QCOMPARE(recording.pieces.size(), std::size_t(2));
        QVERIFY(recording.pieces[0].sent);
        QCOMPARE(recording.pieces[0].bytes, QByteArray("//c2\r"));
        QVERIFY(!recording.pieces[1].sent);
        QVERIFY(recording.pieces[1].time == 4ms);
        QCOMPARE(recording.pieces[1].bytes, QByteArray("\x0a\xff", 2));
        QVERIFY(readRecording(file(), QStringLiteral("desk")).serial);
    }

    void anAnswerIsWhatFollowedItsCommand()
    {
        RecordedSwitch recorded = twoAnswersToOneCommand(1);
        QCOMPARE(shown(recorded.receive("//c2\r")), QByteArray("20:B 5:b"));
    }

    void aCommandThatComesAgainHasItsNextAnswerAndThenTheFirst()
    {
        RecordedSwitch recorded = twoAnswersToOneCommand(1);
        QCOMPARE(shown(recorded.receive("//c1\r")), QByteArray("10:A"));
        QCOMPARE(shown(recorded.receive("//c1\r")), QByteArray("40:C"));
        QCOMPARE(shown(recorded.receive("//c1\r")), QByteArray("10:A"));
        QCOMPARE(shown(recorded.receive("//c2\r")), QByteArray("20:B 5:b"));
    }

    void commandsMayComeInPiecesAndTogether()
    {
        RecordedSwitch recorded = twoAnswersToOneCommand(1);
        QCOMPARE(shown(recorded.receive("//c")), QByteArray());
        QCOMPARE(shown(recorded.receive("1\r//c2\r/")), QByteArray("10:A 20:B 5:b"));
    }

    void textWithoutAnEndIsForgottenOnceItIsTooLong()
    {
        constexpr int longest = 65536;
        RecordedSwitch recorded = twoAnswersToOneCommand(1);
        QByteArrayList told;
        recorded.onCommand = [&told](const QByteArray &command, int) { told.append(command); };
        recorded.receive(QByteArray(longest, 'x'));
        recorded.receive("\r");
        recorded.receive(QByteArray(longest + 1, 'x'));
        recorded.receive("//c2\r");
        QCOMPARE(told, (QByteArrayList{QByteArray(longest, 'x'), "//c2"}));
    }

    void recordedCommandsMayHaveComeInPiecesAndTogether()
    {
        RecordedSwitch recorded(
            {true, {{true, 0ms, "//c"}, {true, 1ms, "1\r//c2\r"}, {false, 2ms, "A"}}}, 1);
        QCOMPARE(shown(recorded.receive("//c1\r")), QByteArray());
        QCOMPARE(shown(recorded.receive("//c2\r")), QByteArray("1:A"));
    }

    void whatWasSaidUnaskedBeforeIsNoAnswer()
    {
        RecordedSwitch recorded({true, {{false, 1ms, "X"}, {true, 2ms, "//c1\r"}}}, 1);
        QCOMPARE(shown(recorded.receive("//c1\r")), QByteArray());
    }

    void anUnknownCommandIsToldAndNotAnswered()
    {
        RecordedSwitch recorded = twoAnswersToOneCommand(1);
        QByteArrayList told;
        recorded.onCommand = [&told](const QByteArray &command, int pieces) {
            told.append(command + " " + QByteArray::number(pieces));
        };
        QCOMPARE(shown(recorded.receive("//x\r//c2\r//\r")), QByteArray("20:B 5:b"));
        QCOMPARE(told, (QByteArrayList{"//x -1", "//c2 2", "// -1"}));
    }

    void theSpeedDividesTheWaits()
    {
        RecordedSwitch faster = twoAnswersToOneCommand(2);
        QCOMPARE(shown(faster.receive("//c2\r")), QByteArray("10:B 2:b"));
        RecordedSwitch slower = twoAnswersToOneCommand(0.5);
        QCOMPARE(shown(slower.receive("//c2\r")), QByteArray("40:B 10:b"));
        RecordedSwitch atOnce = twoAnswersToOneCommand(0);
        QCOMPARE(shown(atOnce.receive("//c2\r")), QByteArray("0:B 0:b"));
    }

private:
    static RecordedSwitch twoAnswersToOneCommand(double speed)
    {
        return RecordedSwitch({true,
                               {{true, 0ms, "//c1\r"},
                                {false, 10ms, "A"},
                                {true, 30ms, "//c2\r"},
                                {false, 50ms, "B"},
                                {false, 55ms, "b"},
                                {true, 60ms, "//c1\r"},
                                {false, 100ms, "C"}}},
                              speed);
    }

    QString file() const { return dir_.filePath(QStringLiteral("record.jsonl")); }
    void write(const QByteArray &contents) const
    {
        QFile recording(file());
        if (!recording.open(QIODevice::WriteOnly))
            qFatal("no place for a file");
        recording.write(contents);
    }

    QTemporaryDir dir_;
};

QTEST_GUILESS_MAIN(RecordedSwitchTest)
#include "tst_recorded_switch.moc"
