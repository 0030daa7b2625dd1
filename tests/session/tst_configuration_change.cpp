#include "network_scene.h"
#include "session/configuration_change.h"

#include <stdexcept>

namespace {
/// A switch on loopback that takes some commands and forgets others, as a test wants it.
struct ChangeScene : NetworkScene
{
    explicit ChangeScene(SwitchSession::Timing timing = noHurry()) : NetworkScene(timing) {}

    /// What it answers to a question from the command's arrival on.
    void replaceAnswer(const char *question, const char *before, const char *after)
    {
        QByteArray &answer = device.answers[question].first();
        if (!answer.contains(before))
            qFatal("the answer has no such text");
        answer.replace(before, after);
    }

    ChangeResult run(const SwitchConfiguration &wanted, const std::vector<SettingKey> &keys,
                     ConfigurationChange::Manner manner = {})
    {
        return run(
            keys,
            [&](const SwitchConfiguration &) {
                return WantedSettings{wanted, keys, {}};
            },
            manner);
    }

    ChangeResult run(const std::vector<SettingKey> &needed,
                     const ConfigurationChange::Wanted &wanted,
                     ConfigurationChange::Manner manner = {})
    {
        if (!watch.session.isOpen() && !watch.open())
            qFatal("no session");
        ConfigurationChange change(watch.session, needed, wanted, manner);
        std::optional<ChangeResult> result;
        QObject::connect(&change, &ConfigurationChange::finished, &change,
                         [&](const ChangeResult &came) { result = came; });
        change.start();
        if (!QTest::qWaitFor([&] { return result.has_value(); }, 20000))
            qFatal("the change has no end");
        return *result;
    }

    QByteArrayList sentCommands() const
    {
        QByteArrayList sent = device.commands();
        for (const QByteArray &question : questions)
            sent.removeAll(question);
        return sent;
    }
};

SwitchConfiguration kmControlAt(int port)
{
    SwitchConfiguration wanted;
    wanted.kmControl = port;
    return wanted;
}
} // namespace

class ConfigurationChangeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatDiffersIsSentAndReadBack()
    {
        ChangeScene s;
        QVERIFY(s.watch.open());
        connect(&s.watch.session, &SwitchSession::commandSent, this, [&s] {
            s.replaceAnswer("//??\r", "Current KM Control: 2", "Current KM Control: 1");
        });
        const ChangeResult result = s.run(kmControlAt(1), {SettingKey::KmControl});
        QCOMPARE(result.outcome, ChangeResult::Outcome::Done);
        QCOMPARE(s.device.commands(), questions + QByteArrayList{"//c1\r"} + questions);
        QCOMPARE(result.changes.size(), std::size_t(1));
        QCOMPARE(result.changes.front().from, std::optional(QStringLiteral("2")));
        QCOMPARE(result.changes.front().to, QStringLiteral("1"));
        QCOMPARE(result.after.kmControl, std::optional(1));
    }

    void whatIsSoAlreadyIsNotSent()
    {
        ChangeScene s;
        const ChangeResult result = s.run(kmControlAt(2), {SettingKey::KmControl});
        QCOMPARE(result.outcome, ChangeResult::Outcome::Done);
        QVERIFY(result.changes.empty());
        QCOMPARE(s.device.commands(), questions);
    }

    void forceSendsItAllTheSame()
    {
        ChangeScene s;
        const ChangeResult result =
            s.run(kmControlAt(2), {SettingKey::KmControl}, {true, false, 2});
        QCOMPARE(result.outcome, ChangeResult::Outcome::Done);
        QVERIFY(result.changes.empty());
        QCOMPARE(s.sentCommands(), QByteArrayList{"//c2\r"});
    }

    void aDryRunSendsNothing()
    {
        ChangeScene s;
        const ChangeResult result =
            s.run(kmControlAt(1), {SettingKey::KmControl}, {false, true, 2});
        QCOMPARE(result.outcome, ChangeResult::Outcome::Done);
        QCOMPARE(result.commands, (std::vector<SettingCommand>{{"//c1", SettingKey::KmControl}}));
        QVERIFY(result.sent.empty());
        QCOMPARE(s.device.commands(), questions);
    }

    void whatWasNotTakenIsSentAgainTwice()
    {
        ChangeScene s;
        const ChangeResult result = s.run(kmControlAt(1), {SettingKey::KmControl});
        QCOMPARE(result.outcome, ChangeResult::Outcome::NotTaken);
        QCOMPARE(s.sentCommands(), (QByteArrayList{"//c1\r", "//c1\r", "//c1\r"}));
        QCOMPARE(result.refused.size(), std::size_t(1));
        QCOMPARE(result.refused.front().from, std::optional(QStringLiteral("2")));
        QCOMPARE(result.refused.front().to, QStringLiteral("1"));
    }

    void onlyWhatWasNotTakenIsSentAgain()
    {
        ChangeScene s(hurry());
        QVERIFY(s.watch.open());
        SwitchConfiguration wanted = kmControlAt(1);
        wanted.buzzerOn = false;
        int buzzerSent = 0;
        connect(&s.watch.session, &SwitchSession::commandSent, this,
                [&](const SettingCommand &command) {
                    if (command.key == SettingKey::KmControl)
                        s.replaceAnswer("//??\r", "Current KM Control: 2", "Current KM Control: 1");
                    else if (++buzzerSent == 2)
                        s.replaceAnswer("//rl\r", "Buzzer: on", "Buzzer: off");
                });
        const ChangeResult result = s.run(wanted, {SettingKey::KmControl, SettingKey::Buzzer});
        QCOMPARE(result.outcome, ChangeResult::Outcome::Done);
        QCOMPARE(s.sentCommands(), (QByteArrayList{"//c1\r", "//B0\r", "//B0\r"}));
        QCOMPARE(result.sent.size(), std::size_t(3));
    }

    void aKeyThatIsNotToldStopsIt()
    {
        ChangeScene s(hurry());
        s.replaceAnswer("//rl\r", "Buzzer: on", "Bazzer: on");
        SwitchConfiguration wanted = kmControlAt(1);
        wanted.buzzerOn = true;
        const ChangeResult result = s.run(wanted, {SettingKey::KmControl, SettingKey::Buzzer});
        QCOMPARE(result.outcome, ChangeResult::Outcome::MissingKeys);
        QCOMPARE(result.missing, std::vector{SettingKey::Buzzer});
        QCOMPARE(s.sentCommands(), QByteArrayList());
    }

    void aKeyThatNobodyAsksForMayBeMissing()
    {
        ChangeScene s(hurry());
        s.replaceAnswer("//rl\r", "Buzzer: on", "Bazzer: on");
        const ChangeResult result = s.run(kmControlAt(2), {SettingKey::KmControl});
        QCOMPARE(result.outcome, ChangeResult::Outcome::Done);
        QCOMPARE(s.device.commands(), questions); // asked once
    }

    void whatCannotBeAtThisSwitchStopsIt()
    {
        ChangeScene s;
        const ChangeResult result =
            s.run({SettingKey::KmControl}, [](const SwitchConfiguration &) -> WantedSettings {
                throw std::invalid_argument("no such name");
            });
        QCOMPARE(result.outcome, ChangeResult::Outcome::BadValue);
        QCOMPARE(result.message, QStringLiteral("no such name"));
        QCOMPARE(s.sentCommands(), QByteArrayList());
    }

    void aSilentSwitchIsAFailure()
    {
        ChangeScene s(hurry());
        s.device.answers.clear();
        const ChangeResult result = s.run(kmControlAt(1), {SettingKey::KmControl});
        QCOMPARE(result.outcome, ChangeResult::Outcome::Failed);
        QCOMPARE(result.error.kind, SessionError::Kind::NoAnswer);
        QVERIFY(result.sent.empty());
    }

    void silenceAfterTheChangeSaysWhatWasSent()
    {
        ChangeScene s(hurry());
        QVERIFY(s.watch.open());
        connect(&s.watch.session, &SwitchSession::commandSent, this,
                [&s] { s.device.answers.clear(); });
        const ChangeResult result = s.run(kmControlAt(1), {SettingKey::KmControl});
        QCOMPARE(result.outcome, ChangeResult::Outcome::Failed);
        QCOMPARE(result.sent, (std::vector<SettingCommand>{{"//c1", SettingKey::KmControl}}));
    }

    void theNumberOfPortsIsPutBackBehindALayout()
    {
        ChangeScene s;
        s.replaceAnswer("//rl\r", "KM Port Limit: 3", "KM Port Limit: 2");
        QVERIFY(s.watch.open());
        int sent = 0;
        connect(&s.watch.session, &SwitchSession::commandSent, this,
                [&](const SettingCommand &command) {
                    if (command.text.rfind("//FF", 0) == 0)
                        s.device.answers["//BP\r"] = {"//FF01B01FF02B02FF03B05FF04B06\n"};
                    if (++sent == 1)
                        s.replaceAnswer("//rl\r", "KM Port Limit: 2", "KM Port Limit: 4");
                    // The first "//D2" is lost.
                    if (sent == 4)
                        s.replaceAnswer("//rl\r", "KM Port Limit: 4", "KM Port Limit: 2");
                });
        SwitchConfiguration wanted;
        wanted.layout = DisplayLayout{{{0, 0}, {0, 1}, {1, 0}, {1, 1}}};
        const std::vector<SettingKey> keys = {SettingKey::Layout};
        const ChangeResult result =
            s.run({SettingKey::Layout, SettingKey::ActivePorts}, [&](const SwitchConfiguration &) {
                return WantedSettings{wanted, keys, {}};
            });
        QCOMPARE(s.sentCommands(), (QByteArrayList{"//D4\r", "//FF01B01FF02B02FF03B05FF04B06\r",
                                                   "//D2\r", "//D2\r"}));
        QCOMPARE(result.outcome, ChangeResult::Outcome::Done);
        QCOMPARE(result.changes.size(), std::size_t(1));
    }

    void linesOfAFileGoOutAsTheyStand()
    {
        ChangeScene s(hurry());
        SwitchConfiguration wanted;
        wanted.custom.at(1) = MouseMovement{10, 20, QStringLiteral("HALL")};
        const std::vector<SettingKey> keys = {customSetting(2)};
        const ChangeResult result = s.run(
            keys,
            [&](const SwitchConfiguration &) {
                return WantedSettings{wanted, keys, {{customSetting(2), "//MM C2 010 020 HALL"}}};
            },
            {false, false, 0});
        QCOMPARE(s.sentCommands(), QByteArrayList{"//MM C2 010 020 HALL\r"});
        QCOMPARE(result.outcome, ChangeResult::Outcome::NotTaken);
    }
};

QTEST_GUILESS_MAIN(ConfigurationChangeTest)
#include "tst_configuration_change.moc"
