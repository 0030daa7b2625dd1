#include "settings_load_bench.h"

/// What each line of a settings file does, and what one that is missing or cannot be read leaves.
class SettingsEntriesTest : public SettingsLoadBench
{
    Q_OBJECT

private Q_SLOTS:
    void aMissingKeyIsSkippedAndLogged_data()
    {
        QTest::addColumn<QByteArray>("key");
        QTest::addColumn<QByteArray>("command"); // empty: the key sends none
        const auto row = [](const char *key, const char *command) {
            QTest::newRow(key) << QByteArray(key) << QByteArray(command);
        };
        row("KM Control: ", "//c3\r");
        row("USB Control: ", "//u2\r");
        row("Limit Ports: ", "//D3\r");
        row("Cursor Rolling: ", "//o1\r");
        row("Resolution channel 1: ", "//CE 1 3\r");
        row("Resolution channel 4: ", "//CE 4 13\r");
        row("Custom mouse movement setting 1: ", "//MM C1 100 250 OFFICE\r");
        row("Custom mouse movement setting 4: ", "//MM C4 300 300 LAB\r");
        row("Data from mouse movement label 2: ", "");
        row("Grid settings: ", "//FF01B05FF02B06FF03B10FF04B14\r");
        row("Buzzer: ", "//B1\r");
        row("Mouse Mode: ", "//km\r");
    }

    void aMissingKeyIsSkippedAndLogged()
    {
        QFETCH(QByteArray, key);
        QFETCH(QByteArray, command);
        QByteArrayList expected = firstHalf + secondHalf;
        expected.removeAll(command);
        const auto before = SettingsScene::log().count('\n');
        s_->offer(exampleWithout(key));
        s_->file.load();
        QTRY_VERIFY(s_->user.sawText(QStringLiteral("Settings file applied")));
        QCOMPARE(s_->bench.commands(int(expected.size())), expected);
        QVERIFY(s_->bench.isSilent());
        const QByteArrayList log = SettingsScene::log().split('\n');
        QVERIFY2(log.at(before).contains('"' + key + '"'), log.at(before).constData());
        QVERIFY(s_->bench.controls.areHandlersArmed());
    }

    void whatAMissingKeyLeavesInTheWindow()
    {
        s_->showExample();
        s_->offer("Note: //c1\n");
        s_->offer("Coordinates channel 1: 0 0\n");
        s_->file.load();
        QTRY_VERIFY(s_->user.sawText(QStringLiteral("Settings file applied")));
        QCOMPARE(s_->kmControl.currentIndex(), 2);
        QCOMPARE(s_->usbControl.currentIndex(), 1);
        QCOMPARE(s_->activePorts.currentIndex(), 2);
        QCOMPARE(s_->cursorRolling.currentIndex(), 1);
        QCOMPARE(s_->mouseMode.currentIndex(), 1);
        QVERIFY(!s_->bench.beepOn.isEnabled());
        QCOMPARE(s_->table.picture(), QStringLiteral("..../12../.3../.4.."));
        QCOMPARE(s_->labels[0].text(), QStringLiteral("100 250 OFFICE"));
        QVERIFY(s_->bench.isSilent());
        QVERIFY(s_->bench.controls.areHandlersArmed());
    }

    void aValueWithAControlCharacterIsAMissingKey()
    {
        s_->offer(exampleWith("KM Control: ", "//c1\r//F"));
        s_->file.load();
        QCOMPARE(s_->kmControl.currentIndex(), 0);
        QCOMPARE(s_->bench.commands(14), firstHalf.mid(1) + secondHalf);
        QTRY_VERIFY(s_->user.sawText(QStringLiteral("Settings file applied")));
    }

    void anEmptyLabelIsShownAsEmptyAndAnEmptyCommandIsNotSent()
    {
        s_->showExample();
        s_->offer("Data from mouse movement label 1: \nBuzzer: \n");
        s_->file.load();
        QTRY_VERIFY(s_->user.sawText(QStringLiteral("Settings file applied")));
        QCOMPARE(s_->labels[0].text(), QString());
        QVERIFY(!s_->bench.beepOn.isEnabled());
        QVERIFY(s_->bench.isSilent());
    }

    void coordinatesThatCannotBeReadLeaveTheGridAndSendTheCommand_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("no numbers") << exampleWith("Coordinates channel 2: ", "left of 3");
        QTest::newRow("empty") << exampleWith("Coordinates channel 4: ", "");
        QTest::newRow("outside the grid") << exampleWith("Coordinates channel 1: ", "4 0");
        QTest::newRow("missing") << exampleWithout("Coordinates channel 3: ");
    }

    void coordinatesThatCannotBeReadLeaveTheGridAndSendTheCommand()
    {
        QFETCH(QByteArray, text);
        s_->offer(text);
        s_->file.load();
        QTRY_VERIFY(s_->user.sawText(QStringLiteral("Settings file applied")));
        QCOMPARE(s_->table.picture(), QStringLiteral("1234/..../..../...."));
        QCOMPARE(s_->bench.commands(15), firstHalf + secondHalf);
    }

    void theLimitOfPortsSelectsItsItemAndLeavesOneChannelMore_data()
    {
        QTest::addColumn<int>("ports");
        QTest::addColumn<int>("item");
        QTest::addColumn<QString>("picture");
        QTest::newRow("2") << 2 << 0 << QStringLiteral("1234-/..../..../....");
        QTest::newRow("3") << 3 << 1 << QStringLiteral("1234/..../..../....");
        QTest::newRow("4") << 4 << 2 << QStringLiteral("1234/..../..../....");
    }

    void theLimitOfPortsSelectsItsItemAndLeavesOneChannelMore()
    {
        QFETCH(int, ports);
        QFETCH(int, item);
        QFETCH(QString, picture);
        s_->activePorts.setCurrentIndex(1);
        s_->file.applyEntry(EntryType::LimitPorts, "//D" + std::to_string(ports));
        QCOMPARE(s_->activePorts.currentIndex(), item);
        QCOMPARE(s_->table.picture(), picture);
        QCOMPARE(s_->bench.commands(1), QByteArrayList{"//D" + QByteArray::number(ports) + "\r"});
        QVERIFY(s_->bench.isSilent());
    }

    void aNumberThatCannotBeReadIsLoggedAndSent_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QByteArray>("value");
        const auto row = [](EntryType type, const char *value, const char *line) {
            QTest::newRow(value) << int(type) << QByteArray(value) << QByteArray(line);
        };
        QTest::addColumn<QByteArray>("line");
        row(EntryType::KmControl, "//cx",
            "The settings file's value for \"KM Control: \" cannot be read from \"//cx\": stoi   ");
        row(EntryType::UsbControl, "//ux",
            "The settings file's value for \"USB Control: \" cannot be read from \"//ux\": stoi  "
            " ");
        row(EntryType::LimitPorts, "//Dx",
            "The settings file's value for \"Limit Ports: \" cannot be read from \"//Dx\": stoi  "
            " ");
        row(EntryType::FirstResolution, "//CE 1 x",
            "The settings file's value for \"Resolution channel 1: \" cannot be read from "
            "\"//CE 1 x\": stoi   ");
        row(EntryType::KmControl, "hello",
            "The settings file's value for \"KM Control: \" cannot be read from \"hello\": no "
            "\"//c\"   ");
    }

    void aNumberThatCannotBeReadIsLoggedAndSent()
    {
        QFETCH(int, type);
        QFETCH(QByteArray, value);
        s_->showExample();
        QFETCH(QByteArray, line);
        const auto before = SettingsScene::log().count(line);
        s_->file.applyEntry(EntryType(type), value.toStdString());
        QCOMPARE(SettingsScene::log().count(line), before + 1);
        QCOMPARE(s_->kmControl.currentIndex(), 2);
        QCOMPARE(s_->usbControl.currentIndex(), 1);
        QCOMPARE(s_->activePorts.currentIndex(), 2);
        QCOMPARE(s_->resolutions[0].currentIndex(), 2);
        QCOMPARE(s_->bench.commands(1), QByteArrayList{value + "\r"});
    }

    void entriesWithoutTheirCommandLeaveTheWindow()
    {
        s_->showExample();
        for (const EntryType type : {EntryType::KmControl, EntryType::UsbControl,
                                     EntryType::LimitPorts, EntryType::FirstResolution})
            s_->file.applyEntry(type, "hello");
        QCOMPARE(s_->kmControl.currentIndex(), 2);
        QCOMPARE(s_->usbControl.currentIndex(), 1);
        QCOMPARE(s_->activePorts.currentIndex(), 2);
        QCOMPARE(s_->table.picture(), QStringLiteral("..../12../.3../.4.."));
        QCOMPARE(s_->resolutions[0].currentIndex(), 2);
    }

    void theSwitchsOwnWordsAreAccepted()
    {
        s_->file.applyEntry(EntryType::CursorRolling, "Enabled");
        QCOMPARE(s_->cursorRolling.currentIndex(), 1);
        s_->file.applyEntry(EntryType::CursorRolling, "//o0");
        QCOMPARE(s_->cursorRolling.currentIndex(), 0);
        s_->file.applyEntry(EntryType::MouseMode, "Relative Mouse Mode");
        QCOMPARE(s_->mouseMode.currentIndex(), 1);
        s_->file.applyEntry(EntryType::MouseMode, "//ks");
        QCOMPARE(s_->mouseMode.currentIndex(), 0);
        s_->file.applyEntry(EntryType::Buzzer, "on");
        QVERIFY(!s_->bench.beepOn.isEnabled());
        s_->file.applyEntry(EntryType::Buzzer, "//B0");
        QVERIFY(s_->bench.beepOn.isEnabled());
        QVERIFY(!s_->bench.beepOff.isEnabled());
    }

    void whileAnEntryIsShownNothingCanBeSent()
    {
        s_->bench.controls.setHandlersArmed(true);
        bool armed = true;
        connect(&s_->kmControl, &QComboBox::currentIndexChanged, &s_->window, [&] {
            armed = s_->bench.controls.areHandlersArmed();
            s_->bench.link.forwardCommand("too early");
        });
        s_->file.applyEntry(EntryType::KmControl, "//c2");
        QCOMPARE(s_->kmControl.currentIndex(), 1);
        QVERIFY(!armed);
        QCOMPARE(s_->bench.commands(1), QByteArrayList{"//c2\r"});
        QVERIFY(s_->bench.isSilent());
    }

    void anEntryLeavesSendingEnabledAndHandlersArmed()
    {
        for (int type = 0; type <= 19; ++type) {
            s_->bench.link.setSendEnabled(false);
            s_->bench.controls.setHandlersArmed(false);
            s_->file.applyEntry(EntryType(type), "x");
            QVERIFY(s_->bench.controls.areHandlersArmed());
            QCOMPARE(s_->bench.commands(type < 15 ? 1 : 0),
                     QByteArrayList(type < 15 ? 1 : 0, "x\r"));
            s_->bench.link.forwardCommand("on");
            QCOMPARE(s_->bench.commands(1), QByteArrayList{"on\r"});
        }
        QCOMPARE(s_->labels[3].text(), QStringLiteral("x"));
    }
};

QTEST_MAIN(SettingsEntriesTest)
#include "tst_settings_entries.moc"
