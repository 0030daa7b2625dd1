#include "device/configuration_examples.h"
#include "session/serial_switch_link.h"
#include "session_watch.h"
#include "support/scripted_switch.h"

using namespace std::chrono_literals;

namespace {
struct Scene
{
    explicit Scene(SwitchSession::Timing timing = noHurry())
        : watch(std::make_unique<SerialSwitchLink>(cable.path()), timing)
    {
        device.answers["//rl"] = exampleListing;
        device.answers["//??"] = exampleStatus;
        device.answers["//BP"] = exampleLayout;
    }

    PtyPair cable;
    ScriptedSwitch device{cable};
    SessionWatch watch;
};
} // namespace

/// A session over a serial line.
class SerialSessionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRead()
    {
        Scene s;
        QVERIFY(s.watch.open());
        QVERIFY(s.watch.ask());
        QCOMPARE(s.device.commands(), (QList<QByteArray>{"//rl", "//??", "//BP"}));
        QVERIFY(s.watch.reading.configuration == exampleConfiguration());
        QVERIFY(s.watch.reading.problems.empty());
    }

    void oneByteAtATime()
    {
        Scene s;
        s.device.answers.clear();
        QVERIFY(s.watch.open());
        s.watch.session.ask();
        QTRY_COMPARE(s.device.commands().size(), 3);
        const QByteArray answer = QByteArray::fromStdString(exampleAnswer());
        for (qsizetype at = 0; at < answer.size(); ++at) {
            QCOMPARE(s.watch.answered, 0);
            s.device.say(answer.mid(at, 1));
            QCoreApplication::processEvents();
        }
        QTRY_COMPARE(s.watch.answered, 1);
        QVERIFY(s.watch.reading.configuration == exampleConfiguration());
    }

    void aPortThatIsNotThere()
    {
        SessionWatch watch(std::make_unique<SerialSwitchLink>(QStringLiteral("/nowhere/switch")),
                           noHurry());
        watch.session.open();
        QTRY_COMPARE(watch.failed, 1);
        QCOMPARE(watch.lastError->kind, SessionError::Kind::CannotOpen);
        QVERIFY(watch.lastError->message.contains(QStringLiteral("/nowhere/switch")));
        QCOMPARE(watch.opened, 0);
        QVERIFY(!watch.session.isBusy());
    }

    void aCableThatIsPulledIsToldOnce()
    {
        Scene s;
        s.device.answers.clear();
        QVERIFY(s.watch.open());
        s.watch.session.ask();
        QTRY_COMPARE(s.device.commands().size(), 3);
        s.device.leave();
        s.cable.pull();
        QTRY_COMPARE(s.watch.failed, 1);
        QCOMPARE(s.watch.lastError->kind, SessionError::Kind::Broken);
        QVERIFY(s.watch.lastError->message.startsWith(QStringLiteral("the connection was lost: ")));
        QVERIFY(!s.watch.session.isOpen());
        QTest::qWait(50);
        QCOMPARE(s.watch.failed, 1);
    }

    void aCableThatIsPulledBetweenTheHalves()
    {
        Scene s;
        QVERIFY(s.watch.open());
        s.watch.session.send({{"//c3", SettingKey::KmControl}, {"//u1", SettingKey::UsbControl}});
        QTRY_COMPARE(s.device.commands(), QList<QByteArray>{"//c3"});
        s.device.leave();
        s.cable.pull();
        QTRY_COMPARE(s.watch.failed, 1);
        QCOMPARE(s.watch.lastError->kind, SessionError::Kind::Broken);
        QCOMPARE(s.watch.commands, QByteArrayList{"//c3"});
        QCOMPARE(s.watch.sent, 0);
    }

    void whatIsWrittenIsOnTheLineBeforeItCloses()
    {
        Scene s;
        s.device.leave();
        QVERIFY(s.watch.open());
        s.watch.session.write("//R");
        s.watch.session.close();
        QCOMPARE(s.cable.waitForBytes(4), QByteArray("//R\r"));
    }
};

QTEST_GUILESS_MAIN(SerialSessionTest)
#include "tst_serial_session.moc"
