#include "network_scene.h"

#include <QTimer>

using namespace std::chrono_literals;

/// A session over the network: when an answer is complete, and what is said where there is none.
class SwitchSessionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theThreeQuestionsAndTheirAnswers()
    {
        NetworkScene s;
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
        NetworkScene s;
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
        NetworkScene s(hurry());
        s.device.answers["//??\r"] = {"Current KM Control: 2\nCurrent USB Control 3\n"};
        QVERIFY(s.watch.open());
        QVERIFY(s.watch.ask());
        QCOMPARE(s.device.commands(), questionsTimes(3));
        QCOMPARE(problemsOf(s.watch.reading), QStringList(QStringLiteral("hotkey")));
        QCOMPARE(s.watch.reading.configuration.kmControl, std::optional(2));
    }

    void aMissingKeyThatNobodyNeedsIsNotAskedForAgain()
    {
        NetworkScene s(hurry());
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
        NetworkScene s(timing);
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
        NetworkScene s(hurry());
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
        NetworkScene s(timing);
        s.device.answers.clear();
        QVERIFY(s.watch.open());
        QVERIFY(!s.watch.ask());
        QCOMPARE(s.device.commands(), questions);
    }

    void noiseAloneIsNotUnderstood()
    {
        NetworkScene s(hurry());
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
        NetworkScene s(timing);
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

    void newsAloneAreNone()
    {
        NetworkScene s(hurry());
        s.device.answers.clear();
        s.device.answers["//BP\r"] = {"Current KM Control: 2\nCurrent USB Control: 3\n"};
        QVERIFY(s.watch.open());
        QVERIFY(!s.watch.ask());
        QCOMPARE(s.watch.lastError->kind, SessionError::Kind::NotUnderstood);
        QCOMPARE(s.device.commands(), questionsTimes(3));
    }

    void aLateAnswerIsNotTakenForTheNextOne_data()
    {
        QTest::addColumn<QByteArrayList>("late");
        QTest::newRow("in one piece") << QByteArrayList{QByteArray::fromStdString(exampleAnswer())};
        QTest::newRow("a line, and the rest later")
            << QByteArrayList{exampleListing, QByteArray(exampleStatus) + exampleLayout};
    }

    void aLateAnswerIsNotTakenForTheNextOne()
    {
        QFETCH(QByteArrayList, late);
        NetworkScene s(hurry());
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
        for (const QByteArray &piece : late) { // the answer to the second
            QCOMPARE(s.device.commands().size(), 6);
            s.device.say(piece);
            QTest::qWait(20); // for a session that would ask too early
        }
        QTRY_COMPARE(s.watch.answered, 2);
        QCOMPARE(s.watch.reading.configuration.kmControl, std::optional(4));
        QCOMPARE(s.device.commands(), questionsTimes(3));
    }

    void anAnswerThatComesToNobodyIsForgotten()
    {
        NetworkScene s(hurry());
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
        NetworkScene s(hurry());
        const auto answers = std::exchange(s.device.answers, {});
        QVERIFY(s.watch.open());
        QVERIFY(!s.watch.ask());
        s.device.answers = answers;
        QVERIFY(s.watch.ask());
        QVERIFY(s.watch.ask());
        QCOMPARE(s.device.commands(), questionsTimes(5));
        const qint64 settled = s.device.timeOf(9) - s.device.timeOf(8);
        QVERIFY2(settled >= 545, qPrintable(QString::number(settled)));
    }

    void aModuleThatIsAwayIsHeardAgain()
    {
#ifdef Q_OS_WIN
        QSKIP("Wine tells a socket of a peer that is away, which Windows is asked not to");
#endif
        NetworkScene s(hurry());
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
#ifdef Q_OS_WIN
        QSKIP("Wine's timers are too coarse for this flood");
#endif
        SwitchSession::Timing timing = hurry();
        timing.retries = 0;
        NetworkScene s(timing);
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
        NetworkScene s;
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
        NetworkScene s(timing);
        s.device.answers["//BP\r"] = {};
        QVERIFY(s.watch.open());
        QTimer dribble;
        connect(&dribble, &QTimer::timeout, this, [&] { s.device.say("still here\n"); });
        dribble.start(5ms);
        QVERIFY(s.watch.ask());
        QCOMPARE(problemsOf(s.watch.reading), QStringList(QStringLiteral("layout")));
    }
};

QTEST_GUILESS_MAIN(SwitchSessionTest)
#include "tst_switch_session.moc"
