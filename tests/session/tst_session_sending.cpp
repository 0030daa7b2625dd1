#include "network_scene.h"

/// A session over the network: sending, closing, one thing at a time and many side by side.
class SessionSendingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void commandsGoOutInOrder()
    {
        NetworkScene s;
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
        NetworkScene s(hurry());
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
        NetworkScene s(hurry());
        QVERIFY(s.watch.open());
        QVERIFY(s.watch.send({{"//MM C2 120 80 DESK ", customSetting(2)}}));
        QVERIFY(s.watch.ask());
        QCOMPARE(s.device.commands(), (QByteArrayList{"//MM C2 120 80 DESK \r"} + questions));
        const qint64 rest = s.device.timeOf(1) - s.device.timeOf(0);
        QVERIFY2(rest >= 145, qPrintable(QString::number(rest)));
    }

    void closingEndsItWithoutAWord()
    {
        NetworkScene s(hurry());
        s.device.answers.clear();
        QVERIFY(s.watch.open());
        s.watch.session.ask();
        s.watch.session.close();
        QTest::qWait(500); // longer than an attempt
        QCOMPARE(s.watch.answered + s.watch.failed, 0);
        QVERIFY(!s.watch.session.isOpen());
        QVERIFY(!s.watch.ask());
        QCOMPARE(s.watch.lastError->kind, SessionError::Kind::Broken);
    }

    void oneThingAtATime()
    {
        NetworkScene s;
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
        NetworkScene s;
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

    void whatDoesNotLeaveIsNotTold()
    {
        NetworkScene s;
        QByteArrayList passed;
        connect(&s.watch.session, &SwitchSession::written, this,
                [&](const QByteArray &frame) { passed.append(frame.left(4)); });
        s.watch.session.write("//c1"); // not open yet
        QVERIFY(s.watch.open());
        s.watch.session.write(std::string(70000, 'x')); // more than a datagram holds
        s.watch.session.write("//c2");
        QTRY_COMPARE(s.device.commands(), QByteArrayList{"//c2\r"});
        QCOMPARE(passed, QByteArrayList{"//c2"});
    }

    void hundredsSideBySide()
    {
        constexpr int count = 300;
        std::vector<std::unique_ptr<NetworkScene>> scenes;
        for (int i = 0; i < count; ++i) {
            scenes.push_back(std::make_unique<NetworkScene>());
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

QTEST_GUILESS_MAIN(SessionSendingTest)
#include "tst_session_sending.moc"
