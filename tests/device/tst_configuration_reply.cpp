#include "device/configuration_reply.h"

#include "device/configuration_examples.h"

#include <QTest>

namespace {
QStringList texts(const std::vector<ReplyProblem> &problems)
{
    QStringList lines;
    for (const ReplyProblem &problem : problems) {
        if (problem.kind == ReplyProblem::Kind::Missing)
            lines.append(QStringLiteral("-") + settingName(problem.key));
        else
            lines.append(QStringLiteral("!") + settingName(problem.key) + QStringLiteral("=") +
                         QString::fromStdString(problem.value));
    }
    return lines;
}

std::string exampleWith(const char *before, const char *after)
{
    QByteArray answer = QByteArray::fromStdString(exampleAnswer());
    if (!answer.contains(before))
        qFatal("the example has no such text");
    return answer.replace(before, after).toStdString();
}
} // namespace

/// A configuration out of replies, the problems key by key. Texts are typed by hand.
class ConfigurationReplyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aWholeAnswerInOneText()
    {
        const ConfigurationReading reading = readConfiguration(exampleAnswer());
        QCOMPARE(texts(reading.problems), QStringList());
        QVERIFY(reading.configuration == exampleConfiguration());
    }

    void threeTextsEachForItsOwnQuestion()
    {
        const ConfigurationReading reading =
            readConfiguration(exampleListing, exampleStatus, exampleLayout);
        QCOMPARE(texts(reading.problems), QStringList());
        QVERIFY(reading.configuration == exampleConfiguration());
        QCOMPARE(texts(readConfiguration(exampleListing, {}, exampleLayout).problems),
                 (QStringList{QStringLiteral("-km-control"), QStringLiteral("-usb-control"),
                              QStringLiteral("-hotkey")}));
        QCOMPARE(
            texts(readConfiguration(exampleStatus, exampleStatus, exampleStatus).problems).size(),
            13);
    }

    void nothingAtAllIsMissingAltogether()
    {
        const ConfigurationReading reading = readConfiguration("");
        QCOMPARE(reading.problems.size(), allSettingKeys().size());
        for (const ReplyProblem &problem : reading.problems)
            QCOMPARE(problem.kind, ReplyProblem::Kind::Missing);
        QVERIFY(reading.configuration == SwitchConfiguration{});
    }

    void carriageReturnsAndTheOrderOfLinesDoNoHarm()
    {
        QByteArray answer = QByteArray::fromStdString(exampleAnswer()).replace("\n", "\r\n");
        QVERIFY(readConfiguration(answer.toStdString()).configuration == exampleConfiguration());
        answer = exampleLayout + QByteArray(exampleStatus) + "junk\x01\n" + exampleListing;
        QVERIFY(readConfiguration(answer.toStdString()).configuration == exampleConfiguration());
        answer.chop(1);
        QVERIFY(readConfiguration(answer.toStdString()).configuration == exampleConfiguration());
    }

    void problems_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<QStringList>("problems");
        const auto row = [](const char *title, const char *before, const char *after,
                            const QStringList &problems) {
            QTest::newRow(title) << QByteArray(before) << QByteArray(after) << problems;
        };
        const auto one = [&](const char *title, const char *before, const char *after,
                             const char *problem) {
            row(title, before, after, {QString::fromUtf8(problem)});
        };
        row("USB control with a colon", "USB Control 3", "USB Control: 3", {});
        row("commands for words", "Enabled", "//o1", {});
        row("speeds padded with blanks", "001 500 HOME", "  1 500 HOME", {});
        row("resolutions by name", "1 10 3 13", "1080p office 2K 13", {});
        row("a blank at the line's end", "3\nKM C", "3 \nKM C", {});
        one("no port limit", "KM Port Limit: 3\n", "", "-active-ports");
        one("empty port limit", "KM Port Limit: 3", "KM Port Limit: ", "-active-ports");
        one("port limit x", "Limit: 3", "Limit: x", "!active-ports=x");
        one("port limit 1", "Limit: 3", "Limit: 1", "!active-ports=1");
        one("port limit 5", "Limit: 3", "Limit: 5\r", "!active-ports=5");
        one("no rolling", "KM Cursor Rolling: Enabled\n", "", "-cursor-rolling");
        one("rolling damaged", "Enabled", "Ena\x01led", "!cursor-rolling=Ena\x01led");
        one("no mouse mode", "KM tracking mode: Relative Mouse Mode\n", "", "-mouse-mode");
        one("no buzzer", "Buzzer: on\n", "", "-buzzer");
        one("empty buzzer", "Buzzer: on", "Buzzer: \r", "-buzzer");
        row("no resolutions", "Channels resolution: 1 10 3 13\n", "",
            {QStringLiteral("-resolution.1"), QStringLiteral("-resolution.2"),
             QStringLiteral("-resolution.3"), QStringLiteral("-resolution.4")});
        row("resolutions out of range", "1 10 3 13", "0 10 14 13",
            {QStringLiteral("!resolution.1= 0 10 14 13"),
             QStringLiteral("!resolution.3= 0 10 14 13")});
        row("three resolutions", "1 10 3 13", "1 10 3", {QStringLiteral("!resolution.4= 1 10 3")});
        row("a resolution of no name", "1 10 3 13", "1 10 3 LAP",
            {QStringLiteral("!resolution.4= 1 10 3 LAP")});
        one("no custom setting 2", "C2\t120 080 DESK\n", "", "-custom.2");
        one("a name is missing", "120 080 DESK", "120 080", "-custom.2");
        one("a blank for a name", "120 080 DESK", "120 080  \r", "-custom.2");
        one("nothing behind C2", "120 080 DESK", "", "-custom.2");
        one("X is no number", "120 080 DESK", "abc 080 DESK", "!custom.2=abc 080 DESK");
        one("Y is 0", "120 080 DESK", "120 000 DESK", "!custom.2=120 000 DESK");
        one("Y is 501", "120 080 DESK", "120 501 DESK", "!custom.2=120 501 DESK");
        one("speeds out of their columns", "120 080 DESK", "7 80 MYDESK", "!custom.2=7 80 MYDESK");
        one("no hotkey", "Current Hotkey Trigger: Scroll Lock\n", "", "-hotkey");
        one("no KM control", "Current KM Control: 2\n", "", "-km-control");
        one("KM control 5", "KM Control: 2", "KM Control: 5", "!km-control=5");
        one("KM control 0", "KM Control: 2", "KM Control: 0", "!km-control=0");
        one("USB control x", "USB Control 3", "USB Control: x", "!usb-control=: x");
        one("no USB control", "Current USB Control 3\n", "", "-usb-control");
        one("no layout", "//FF01B05FF02B06FF03B10FF04B14\n", "", "-layout");
        one("layout cut", "04B14", "04B1", "!layout=01B05FF02B06FF03B10FF04B1");
        one("cell 17", "04B14", "04B17", "!layout=01B05FF02B06FF03B10FF04B17");
        one("cell 00", "04B14", "04B00", "!layout=01B05FF02B06FF03B10FF04B00");
        one("cell 1x", "04B14", "04B1x", "!layout=01B05FF02B06FF03B10FF04B1x");
        one("two in one cell", "04B14", "04B05", "!layout=01B05FF02B06FF03B10FF04B05");
        one("channel 4 is not there", "04B14", "03B14", "!layout=01B05FF02B06FF03B10FF03B14");
    }

    void problems()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QFETCH(QStringList, problems);
        const ConfigurationReading reading =
            readConfiguration(exampleWith(before.constData(), after.constData()));
        QCOMPARE(texts(reading.problems), problems);
        // What has no problem is read, and what has one is not.
        SwitchConfiguration expected = exampleConfiguration();
        for (const SettingKey key : allSettingKeys()) {
            const bool isBad =
                std::any_of(reading.problems.begin(), reading.problems.end(),
                            [&](const ReplyProblem &problem) { return problem.key == key; });
            QCOMPARE(settingText(reading.configuration, key),
                     isBad ? std::nullopt : settingText(expected, key));
        }
    }

    void aCustomSettingThatIsMissingLeavesResolutionsByNumberAlone()
    {
        const SwitchConfiguration read =
            readConfiguration(exampleWith("C4\t300 300 LAB\n", "")).configuration;
        QCOMPARE(read.resolutions[3], std::optional(13));
        QVERIFY(!read.custom[3]);
    }

    void theFirstOccurrenceOfAKeyCounts()
    {
        const std::string twice = exampleAnswer() + exampleWith("KM Control: 2", "KM Control: 4");
        QCOMPARE(readConfiguration(twice).configuration.kmControl, std::optional(2));
    }

    void anAnswerIsWholeWhenItsLastLineEnds()
    {
        const std::string answer = exampleAnswer();
        for (std::size_t size = 0; size < answer.size(); ++size)
            QVERIFY2(!isWholeAnswer(answer.substr(0, size)), qPrintable(QString::number(size)));
        QVERIFY(isWholeAnswer(answer));
        QVERIFY(isWholeAnswer(answer + "and more"));
    }

    void anAnswerWithoutAKeyIsNeverWhole_data()
    {
        QTest::addColumn<QByteArray>("key");
        for (const char *key :
             {"KM Port Limit: ", "KM Cursor Rolling: ", "KM tracking mode: ",
              "Channels resolution:", "Buzzer: ", "C1\t", "C2\t", "C3\t", "C4\t",
              "Current Hotkey Trigger: ", "Current KM Control: ", "Current USB Control ", "//FF"})
            QTest::newRow(key) << QByteArray(key);
    }

    void anAnswerWithoutAKeyIsNeverWhole()
    {
        QFETCH(QByteArray, key);
        QVERIFY(!isWholeAnswer(exampleWith(key.constData(), "x")));
    }
};

QTEST_GUILESS_MAIN(ConfigurationReplyTest)
#include "tst_configuration_reply.moc"
