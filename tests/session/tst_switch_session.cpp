#include "device/configuration_examples.h"
#include "session/udp_switch_link.h"
#include "session_watch.h"
#include "udp_switch.h"

#include <QTimer>

using namespace std::chrono_literals;

namespace {
const QByteArrayList questions = {"//rl\r", "//??\r", "//BP\r"};

QByteArrayList questionsTimes(int times)
{
    QByteArrayList all;
    for (int i = 0; i < times; ++i)
        all += questions;
    return all;
}

std::unique_ptr<SwitchLink> linkTo(const UdpSwitch &device)
{
    return std::make_unique<UdpSwitchLink>(QHostAddress(QHostAddress::LocalHost), device.port());
}

/// Times for a switch that leaves something open.
SwitchSession::Timing hurry()
{
    return {150ms, 2s, 60ms, 2, 150ms, 150ms};
}

QByteArray answerWith(const char *before, const char *after)
{
    const QByteArray answer = QByteArray::fromStdString(exampleAnswer());
    if (!answer.contains(before))
        qFatal("the example has no such text");
    return QByteArray(answer).replace(before, after);
}

QStringList problemsOf(const ConfigurationReading &reading)
{
    QStringList names;
    for (const ReplyProblem &problem : reading.problems)
        names.append(settingName(problem.key));
    return names;
}

struct Scene
{
    explicit Scene(SwitchSession::Timing timing = noHurry()) : watch(linkTo(device), timing)
    {
        device.answers["//rl\r"] = {exampleListing};
        device.answers["//??\r"] = {exampleStatus};
        device.answers["//BP\r"] = {exampleLayout};
    }

    UdpSwitch device;
    SessionWatch watch;
};
} // namespace

/// A session over the network: when an answer is complete, and what is said where there is none.
class SwitchSessionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theThreeQuestionsAndTheirAnswers()
    {
        Scene s;
        QVERIFY(s.watch.open());
        QVERIFY(!s.watch.session.isBusy());
        QVERIFY(s.watch.ask());
        QCOMPARE(s.device.commands(), questions);
        QVERIFY(s.watch.reading.configuration == exampleConfiguration());
        QCOMPARE(problemsOf(s.watch.reading), QStringList());
        QVERIFY(!s.watch.session.isBusy());
        QVERIFY(s.watch.ask()); // and again
        QCOMPARE(s.device.commands(), questionsTimes(2));
        QCOMPARE(s.watch.failed, 0);
    }

    void howeverTheAnswerComes_data()
    {
        QTest::addColumn<QByteArrayList>("datagrams");
        const QByteArray answer = QByteArray::fromStdString(exampleAnswer());
        QTest::newRow("one datagram") << QByteArrayList{answer};
        QByteArrayList bytes;
        for (const char byte : answer)
            bytes.append(QByteArray(1, byte));
        QTest::newRow("a datagram for each byte") << bytes;
        QTest::newRow("cut within a key")
            << QByteArrayList{answer.left(30), answer.mid(30, 200), answer.mid(230)};
        QTest::newRow("noise in front")
            << QByteArrayList{QByteArray("\x00\xff\x1b[2J~\n", 8), "\r\n\r\n", answer};
        QTest::newRow("CR LF") << QByteArrayList{QByteArray(answer).replace("\n", "\r\n")};
        QTest::newRow("the layout first")
            << QByteArrayList{exampleLayout, exampleStatus, exampleListing};
        QTest::newRow("twice") << QByteArrayList{answer, answer};
    }

    void howeverTheAnswerComes()
    {
        QFETCH(QByteArrayList, datagrams);
        Scene s;
        s.device.answers.clear();
        QVERIFY(s.watch.open());
        s.watch.session.ask();
        QTRY_COMPARE(s.device.commands().size(), 3);
        for (const QByteArray &datagram : datagrams) {
            s.device.say(datagram);
            QCoreApplication::processEvents(); // a socket holds so many and no more
        }
        QTRY_COMPARE(s.watch.answered, 1);
        QVERIFY(s.watch.reading.configuration == exampleConfiguration());
        QCOMPARE(s.device.commands(), questions);
    }

    void aMissingKeyIsAskedForAgainAndThenTold()
    {
        Scene s(hurry());
        s.device.answers["//??\r"] = {"Current KM Control: 2\nCurrent USB Control 3\n"};
        QVERIFY(s.watch.open());
        QVERIFY(s.watch.ask());
        QCOMPARE(s.device.commands(), questionsTimes(3));
        QCOMPARE(problemsOf(s.watch.reading), QStringList(QStringLiteral("hotkey")));
        QCOMPARE(s.watch.reading.configuration.kmControl, std::optional(2));
    }

    void aMissingKeyThatNobodyNeedsIsNotAskedForAgain()
    {
        Scene s(hurry());
        s.device.answers["//BP\r"] = {};
        QVERIFY(s.watch.open());
        QVERIFY(s.watch.ask({SettingKey::KmControl, SettingKey::Buzzer}));
        QCOMPARE(s.device.commands(), questions);
        QCOMPARE(problemsOf(s.watch.reading), QStringList(QStringLiteral("layout")));
    }

    void aSwitchThatStumblesOnceIsReadAtTheSecondTry()
    {
        SwitchSession::Timing timing = noHurry();
        timing.silence = 60ms;
        Scene s(timing);
        s.device.answers["//BP\r"] = {"//FF01B05FF02B0"};
        QVERIFY(s.watch.open());
        s.watch.session.ask();
        QTRY_COMPARE(s.device.commands().size(), 3);
        s.device.answers["//BP\r"] = {exampleLayout};
        QTRY_COMPARE(s.watch.answered, 1);
        QCOMPARE(s.device.commands(), questionsTimes(2));
        QVERIFY(s.watch.reading.configuration == exampleConfiguration());
    }

    void aSilentSwitchIsNoAnswer()
    {
        Scene s(hurry());
        s.device.answers.clear();
        QVERIFY(s.watch.open());
        QVERIFY(!s.watch.ask());
        QCOMPARE(s.device.commands(), questionsTimes(3));
        QCOMPARE(s.watch.lastError->kind, SessionError::Kind::NoAnswer);
        QCOMPARE(s.watch.lastError->message, QStringLiteral("no answer from the switch"));
        QCOMPARE(s.watch.failed, 1);
        QVERIFY(!s.watch.session.isBusy());
        QVERIFY(s.watch.session.isOpen());
    }

    void withoutRetriesItIsAskedOnce()
    {
        SwitchSession::Timing timing = hurry();
        timing.retries = 0;
        Scene s(timing);
        s.device.answers.clear();
        QVERIFY(s.watch.open());
        QVERIFY(!s.watch.ask());
        QCOMPARE(s.device.commands(), questions);
    }

    void noiseAloneIsNotUnderstood()
    {
        Scene s(hurry());
        s.device.answers.clear();
        s.device.answers["//rl\r"] = {"\x01\x02 secret \x03\n"};
        QVERIFY(s.watch.open());
        QVERIFY(!s.watch.ask());
        QCOMPARE(s.watch.lastError->kind, SessionError::Kind::NotUnderstood);
        QCOMPARE(s.watch.lastError->message, QStringLiteral("the answer cannot be understood"));
        QCOMPARE(s.device.commands(), questionsTimes(3));
    }

    /// What the switch says on its own stands in front of the answer and does not begin it: the
    /// silence behind it is not the answer's.
    void newsBeginNoAnswer()
    {
        SwitchSession::Timing timing = noHurry();
        timing.silence = 20ms;
        Scene s(timing);
        s.device.answers.clear();
        s.device.answers["//rl\r"] = {"**C2\n", "Current KM Control: 2\nCurrent USB Control: 3\n"};
        QVERIFY(s.watch.open());
        s.watch.session.ask();
        QTRY_COMPARE(s.device.commands().size(), 3);
        QTest::qWait(100); // five silences
        QVERIFY(s.watch.session.isBusy());
        s.device.say(QByteArray::fromStdString(exampleAnswer()));
        QTRY_COMPARE(s.watch.answered, 1);
        QCOMPARE(s.device.commands(), questions);
        QCOMPARE(problemsOf(s.watch.reading), QStringList());
    }

    void aLateAnswerIsNotTakenForTheNextOne()
    {
        Scene s(hurry());
        s.device.answers.clear();
        QVERIFY(s.watch.open());
        s.watch.session.ask();
        QTRY_COMPARE(s.device.commands().size(), 6); // the first question's time is up
        const QByteArray old = QByteArray::fromStdString(exampleAnswer());
        s.device.say(old); // the answer to the first, in time for the second
        QTRY_COMPARE(s.watch.answered, 1);
        QCOMPARE(s.watch.reading.configuration.kmControl, std::optional(2));

        s.device.answers["//BP\r"] = {answerWith("KM Control: 2", "KM Control: 4")};
        s.watch.session.ask();
        QCOMPARE(s.device.commands().size(), 6);
        s.device.say(old); // the answer to the second
        QTRY_COMPARE(s.watch.answered, 2);
        QCOMPARE(s.watch.reading.configuration.kmControl, std::optional(4));
        QCOMPARE(s.device.commands(), questionsTimes(3));
    }

    void anAnswerThatComesToNobodyIsForgotten()
    {
        Scene s(hurry());
        s.device.answers.clear();
        QVERIFY(s.watch.open());
        QVERIFY(!s.watch.ask());
        const QByteArray old = answerWith("KM Control: 2", "KM Control: 1");
        for (int i = 0; i < 3; ++i)
            s.device.say(old);
        s.device.answers["//BP\r"] = {QByteArray::fromStdString(exampleAnswer())};
        QVERIFY(s.watch.ask());
        QCOMPARE(s.watch.reading.configuration.kmControl, std::optional(2));
    }

    void aLateAnswerThatNeverComesIsWaitedForOnce()
    {
        Scene s(hurry());
        const auto answers = std::exchange(s.device.answers, {});
        QVERIFY(s.watch.open());
        QVERIFY(!s.watch.ask());
        s.device.answers = answers;
        QVERIFY(s.watch.ask());
        QVERIFY(s.watch.ask());
        QCOMPARE(s.device.commands(), questionsTimes(5));
        const qint64 settled = s.device.timeOf(9) - s.device.timeOf(8);
        QVERIFY2(settled >= 210, qPrintable(QString::number(settled)));
    }

    void aModuleThatIsAwayIsHeardAgain()
    {
        Scene s(hurry());
        QVERIFY(s.watch.open());
        s.device.vanish();
        QVERIFY(!s.watch.ask());
        QCOMPARE(s.watch.lastError->kind, SessionError::Kind::NoAnswer);
        s.device.appear();
        QVERIFY(s.watch.ask());
        QVERIFY(s.watch.reading.configuration == exampleConfiguration());
    }

    void aPeerThatFloodsHoldsNothingUp()
    {
        SwitchSession::Timing timing = hurry();
        timing.firstByte = 300ms;
        timing.retries = 0;
        Scene s(timing);
        s.device.answers.clear();
        QVERIFY(s.watch.open());
        s.watch.session.ask();
        QTRY_COMPARE(s.device.commands().size(), 3);
        int turns = 0;
        QTimer flood;
        connect(&flood, &QTimer::timeout, this, [&] {
            ++turns;
            for (int i = 0; i < 100; ++i)
                s.device.say("nothing that is an answer, and on and on it goes\n");
        });
        flood.start(1ms);
        QTRY_COMPARE(s.watch.failed, 1);
        QCOMPARE(s.watch.lastError->kind, SessionError::Kind::NotUnderstood);
        QVERIFY(turns > 10);
    }

    void anAnswerInAFloodIsFound()
    {
        Scene s;
        s.device.answers.clear();
        QVERIFY(s.watch.open());
        s.watch.session.ask();
        QTRY_COMPARE(s.device.commands().size(), 3);
        for (int round = 0; round < 50; ++round) {
            for (int i = 0; i < 40; ++i)
                s.device.say(QByteArray(99, 'x') + '\n');
            QCoreApplication::processEvents();
        }
        s.device.say(QByteArray::fromStdString(exampleAnswer()));
        QTRY_COMPARE(s.watch.answered, 1);
        QVERIFY(s.watch.reading.configuration == exampleConfiguration());
    }

    void anAnswerThatNeverEndsIsTakenAsFarAsItCame()
    {
        SwitchSession::Timing timing = noHurry();
        timing.rest = 150ms;
        timing.retries = 0;
        Scene s(timing);
        s.device.answers["//BP\r"] = {};
        QVERIFY(s.watch.open());
        QTimer dribble;
        connect(&dribble, &QTimer::timeout, this, [&] { s.device.say("still here\n"); });
        dribble.start(5ms);
        QVERIFY(s.watch.ask());
        QCOMPARE(problemsOf(s.watch.reading), QStringList(QStringLiteral("layout")));
    }

    void commandsGoOutInOrder()
    {
        Scene s;
        QVERIFY(s.watch.open());
        QVERIFY(
            s.watch.send({{"//c3", SettingKey::KmControl}, {"//CE 1 4", resolutionSetting(1)}}));
        QTRY_COMPARE(s.device.commands(), (QByteArrayList{"//c3\r", "//CE 1 4\r"}));
        QCOMPARE(s.watch.commands, (QByteArrayList{"//c3", "//CE 1 4"}));
        QVERIFY(s.watch.send({{"//u1", SettingKey::UsbControl}, {"//B0", SettingKey::Buzzer}}));
        QTRY_COMPARE(s.device.commands().mid(2), (QByteArrayList{"//u1\r", "//B0\r"}));
        QVERIFY(s.watch.send({}));
    }

    void betweenTheHalvesIsARest()
    {
        Scene s(hurry());
        QVERIFY(s.watch.open());
        QVERIFY(s.watch.send({{"//c3", SettingKey::KmControl},
                              {"//CE 1 4", resolutionSetting(1)},
                              {"//u1", SettingKey::UsbControl},
                              {"//B0", SettingKey::Buzzer}}));
        QTRY_COMPARE(s.device.commands(),
                     (QByteArrayList{"//c3\r", "//CE 1 4\r", "//u1\r", "//B0\r"}));
        const qint64 rest = s.device.timeOf(2) - s.device.timeOf(1);
        QVERIFY2(rest >= 145, qPrintable(QString::number(rest)));
        QVERIFY(s.device.timeOf(1) - s.device.timeOf(0) < 100);
    }

    void theSwitchGetsTimeToStoreACustomSetting()
    {
        Scene s(hurry());
        QVERIFY(s.watch.open());
        QVERIFY(s.watch.send({{"//MM C2 120 80 DESK ", customSetting(2)}}));
        QVERIFY(s.watch.ask());
        QCOMPARE(s.device.commands(), (QByteArrayList{"//MM C2 120 80 DESK \r"} + questions));
        const qint64 rest = s.device.timeOf(1) - s.device.timeOf(0);
        QVERIFY2(rest >= 145, qPrintable(QString::number(rest)));
    }

    void closingEndsItWithoutAWord()
    {
        Scene s(hurry());
        s.device.answers.clear();
        QVERIFY(s.watch.open());
        s.watch.session.ask();
        s.watch.session.close();
        QTest::qWait(300); // two attempts' time
        QCOMPARE(s.watch.answered + s.watch.failed, 0);
        QVERIFY(!s.watch.session.isOpen());
        QVERIFY(!s.watch.ask());
        QCOMPARE(s.watch.lastError->kind, SessionError::Kind::Broken);
    }

    void oneThingAtATime()
    {
        Scene s;
        QVERIFY(s.watch.open());
        s.watch.session.ask();
        s.watch.session.ask();
        s.watch.session.send({{"//c3", SettingKey::KmControl}});
        QTRY_COMPARE(s.watch.answered, 1);
        QCOMPARE(s.device.commands(), questions);
        QCOMPARE(s.watch.sent, 0);
    }

    void whatPassesIsTold()
    {
        Scene s;
        QByteArrayList passed;
        connect(&s.watch.session, &SwitchSession::written, this,
                [&](const QByteArray &frame) { passed.append("> " + frame); });
        connect(&s.watch.session, &SwitchSession::received, this,
                [&](const QByteArray &bytes) { passed.append("< " + bytes); });
        QVERIFY(s.watch.open());
        s.device.answers["//R\r"] = {"Soft reset\n"};
        s.watch.session.write("//R");
        QTRY_COMPARE(passed, (QByteArrayList{"> //R\r", "< Soft reset\n"}));
    }

    void hundredsSideBySide()
    {
        constexpr int count = 300;
        std::vector<std::unique_ptr<Scene>> scenes;
        for (int i = 0; i < count; ++i) {
            scenes.push_back(std::make_unique<Scene>());
            scenes.back()->watch.session.open();
        }
        const auto all = [&](auto said) {
            return std::all_of(scenes.begin(), scenes.end(),
                               [&](const auto &scene) { return said(scene->watch) == 1; });
        };
        QTRY_VERIFY(all([](const SessionWatch &watch) { return watch.opened; }));
        for (const auto &scene : scenes)
            scene->watch.session.ask();
        QTRY_VERIFY(all([](const SessionWatch &watch) { return watch.answered; }));
        for (const auto &scene : scenes)
            QVERIFY(scene->watch.reading.configuration == exampleConfiguration());
    }
};

QTEST_GUILESS_MAIN(SwitchSessionTest)
#include "tst_switch_session.moc"
