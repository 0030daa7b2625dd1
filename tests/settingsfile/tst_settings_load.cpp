#include "settings_scene.h"

#include "simulator/switch_model.h"

#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QFileDialog>

namespace {
constexpr char exampleText[] = "KM Control: //c3\n"
                               "USB Control: //u2\n"
                               "Limit Ports: //D3\n"
                               "Cursor Rolling: //o1\n"
                               "Resolution channel 1: //CE 1 3\n"
                               "Resolution channel 2: //CE 2 10\n"
                               "Resolution channel 3: //CE 3 1\n"
                               "Resolution channel 4: //CE 4 13\n"
                               "Custom mouse movement setting 1: //MM C1 100 250 OFFICE\n"
                               "Custom mouse movement setting 2: //MM C2 120 080 DESK\n"
                               "Custom mouse movement setting 3: //MM C3 001 500 HOME\n"
                               "Custom mouse movement setting 4: //MM C4 300 300 LAB\n"
                               "Data from mouse movement label 1: 100 250 OFFICE\n"
                               "Data from mouse movement label 2: 120 080 DESK\n"
                               "Data from mouse movement label 3: 001 500 HOME\n"
                               "Data from mouse movement label 4: 300 300 LAB\n"
                               "Grid settings: //FF01B05FF02B06FF03B10FF04B14\n"
                               "Coordinates channel 1: 1 0\n"
                               "Coordinates channel 2: 1 1\n"
                               "Coordinates channel 3: 2 1\n"
                               "Coordinates channel 4: 3 1\n"
                               "Buzzer: //B1\n"
                               "Mouse Mode: //km\n";

const auto incomplete =
    QStringLiteral("Settings file not applied completely: the connection ended");

const QByteArrayList firstHalf = {"//c3\r",
                                  "//MM C1 100 250 OFFICE\r",
                                  "//MM C2 120 080 DESK\r",
                                  "//MM C3 001 500 HOME\r",
                                  "//MM C4 300 300 LAB\r",
                                  "//CE 1 3\r",
                                  "//CE 2 10\r",
                                  "//CE 3 1\r",
                                  "//CE 4 13\r"};

const QByteArrayList secondHalf = {"//u2\r", "//D3\r", "//o1\r", "//FF01B05FF02B06FF03B10FF04B14\r",
                                   "//B1\r", "//km\r"};

/// The example without the line of one key, or with another value for it.
QByteArray exampleWithout(const QByteArray &key)
{
    QByteArrayList lines = QByteArray(exampleText).split('\n');
    lines.removeIf([&](const QByteArray &line) { return line.startsWith(key); });
    return lines.join('\n');
}

QByteArray exampleWith(const QByteArray &key, const QByteArray &value)
{
    return exampleWithout(key) + key + value + '\n';
}
} // namespace

/// Loading a settings file.
class SettingsLoadTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(openLog(), 1); }
    void cleanupTestCase() { closeLog(); }

    void init() { s_ = std::make_unique<SettingsScene>(); }
    void cleanup() { s_.reset(); }

    void theFirstHalfIsAppliedAtOnce()
    {
        s_->offer(exampleText);
        s_->file.load();
        QCOMPARE(s_->kmControl.currentIndex(), 2);
        QCOMPARE(s_->resolutions[0].currentIndex(), 2);
        QCOMPARE(s_->resolutions[1].currentIndex(), 9);
        QCOMPARE(s_->resolutions[1].currentText(), QStringLiteral("OFFICE"));
        QCOMPARE(s_->resolutions[2].currentIndex(), 0);
        QCOMPARE(s_->resolutions[3].currentText(), QStringLiteral("LAB"));
        // the other half has not come yet
        QCOMPARE(s_->usbControl.currentIndex(), 0);
        QCOMPARE(s_->activePorts.currentIndex(), 2);
        QCOMPARE(s_->cursorRolling.currentIndex(), 0);
        QCOMPARE(s_->mouseMode.currentIndex(), 0);
        QCOMPARE(s_->table.picture(), QStringLiteral("1234/..../..../...."));
        QCOMPARE(s_->labels[0].text(), QString());
        QCOMPARE(s_->bench.commands(9), firstHalf);
        QVERIFY(s_->user.seen().isEmpty());
        QCOMPARE(s_->handler.fileName(), s_->openName);
        QCOMPARE(QByteArray::fromStdString(s_->handler.text()), QByteArray(exampleText));
    }

    void theSecondHalfFollowsWithItsNotice()
    {
        s_->offer(exampleText);
        s_->file.load();
        QCOMPARE(s_->bench.commands(9), firstHalf);
        QTRY_VERIFY(s_->user.sawText(QStringLiteral("Settings file applied")));
        QCOMPARE(s_->user.seen().size(), 1);
        QCOMPARE(s_->user.seen().first().icon, QMessageBox::Information);
        QCOMPARE(s_->bench.commands(6), secondHalf);
        QCOMPARE(s_->usbControl.currentIndex(), 1);
        QCOMPARE(s_->activePorts.currentIndex(), 1);
        QCOMPARE(s_->cursorRolling.currentIndex(), 1);
        QCOMPARE(s_->mouseMode.currentIndex(), 1);
        QVERIFY(!s_->bench.beepOn().isEnabled());
        QVERIFY(s_->bench.beepOff().isEnabled());
        QCOMPARE(s_->table.picture(), QStringLiteral("..../12../.3../.4-.."));
        QCOMPARE(s_->labels[1].text(), QStringLiteral("120 080 DESK"));
        QCOMPARE(s_->name.text(), QStringLiteral("OFFICE"));
        QCOMPARE(s_->x.text(), QStringLiteral("100"));
        QCOMPARE(s_->y.text(), QStringLiteral("250"));
        QVERIFY(s_->handler.isFileLoaded());
        QVERIFY(s_->bench.controls().areHandlersArmed());
        QVERIFY(s_->bench.link().isSendEnabled());
        QCOMPARE(s_->plainReads, 0);
    }

    void theRealDelayIsTwoSeconds()
    {
        QCOMPARE(SettingsFile::Timing().secondPart, std::chrono::milliseconds(2000));
    }

    void withTheRealDelayTheSecondHalfComesTwoSecondsLater()
    {
        s_.reset(); // one scene at a time answers message boxes
        s_ = std::make_unique<SettingsScene>(SettingsFile::Timing().secondPart);
        s_->offer(exampleText);
        QElapsedTimer clock;
        clock.start();
        s_->file.load();
        QTRY_VERIFY_WITH_TIMEOUT(s_->user.sawText(QStringLiteral("Settings file applied")), 8000);
        QVERIFY2(clock.elapsed() >= 1990, qPrintable(QString::number(clock.elapsed())));
    }

    void crLfIsReadLikeLf()
    {
        s_->offer(QByteArray(exampleText).replace("\n", "\r\n"));
        s_->file.load();
        QCOMPARE(s_->bench.commands(9), firstHalf);
        QCOMPARE(s_->bench.commands(6), secondHalf);
        QTRY_VERIFY(s_->user.sawText(QStringLiteral("Settings file applied")));
        QCOMPARE(s_->labels[3].text(), QStringLiteral("300 300 LAB"));
        QCOMPARE(s_->table.picture(), QStringLiteral("..../12../.3../.4-.."));
    }

    void onlyZenLeavesTheMouseModeAlone_data()
    {
        QTest::addColumn<QByteArray>("kmType");
        QTest::addColumn<bool>("applied");
        QTest::newRow("orca") << QByteArray("orca") << true;
        QTest::newRow("another") << QByteArray("manta") << true;
        QTest::newRow("zen") << QByteArray("zen") << false;
    }

    void onlyZenLeavesTheMouseModeAlone()
    {
        QFETCH(QByteArray, kmType);
        QFETCH(bool, applied);
        s_->kmType = kmType.toStdString();
        s_->mouse.setReady(false);
        s_->offer(exampleText);
        s_->file.load();
        QTRY_VERIFY(s_->user.sawText(QStringLiteral("Settings file applied")));
        QCOMPARE(s_->mouseMode.currentIndex(), applied ? 1 : 0);
        QCOMPARE(s_->bench.commands(applied ? 15 : 14).contains("//km\r"), applied);
        QCOMPARE(s_->mouse.isReady(), applied);
        QCOMPARE(s_->name.text(), applied ? QStringLiteral("OFFICE") : QString());
    }

    void aCancelledDialogReadsTheSwitchInstead()
    {
        s_->showExample();
        s_->file.load();
        QCOMPARE(s_->plainReads, 1);
        QVERIFY(!s_->handler.isFileLoaded());
        QCOMPARE(s_->resolutions[0].count(), 9); // as a read-back leaves them before its answer
        QVERIFY(s_->load.isEnabled());
        waitForSecondPart();
        QVERIFY(s_->user.seen().isEmpty());
        QVERIFY(s_->bench.isSilent());
    }

    void aCancelledLoadForgetsTheOneBefore()
    {
        s_->offer(exampleText);
        s_->file.load();
        QTRY_VERIFY(s_->user.sawText(QStringLiteral("Settings file applied")));
        QCOMPARE(s_->bench.commands(15).size(), 15);
        s_->openName.clear();
        s_->file.load();
        QVERIFY(!s_->handler.isFileLoaded());
        QCOMPARE(s_->handler.text(), std::string());
        waitForSecondPart();
        QCOMPARE(s_->user.seen().size(), 1);
        QVERIFY(s_->bench.isSilent());
    }

    void aLoadSoonAfterACancelledOneHasOneSecondHalf()
    {
        s_->file.load();
        s_->offer(exampleText);
        s_->file.load();
        QCOMPARE(s_->bench.commands(15), firstHalf + secondHalf);
        QTRY_VERIFY(s_->user.sawText(QStringLiteral("Settings file applied")));
        waitForSecondPart();
        QVERIFY(s_->bench.isSilent());
        QCOMPARE(s_->user.seen().size(), 1);
    }

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
        QVERIFY(s_->bench.controls().areHandlersArmed());
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
        QVERIFY(!s_->bench.beepOn().isEnabled());
        QCOMPARE(s_->table.picture(), QStringLiteral("..../12../.3../.4.."));
        QCOMPARE(s_->labels[0].text(), QStringLiteral("100 250 OFFICE"));
        QVERIFY(s_->bench.isSilent());
        QVERIFY(s_->bench.controls().areHandlersArmed());
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
        QVERIFY(!s_->bench.beepOn().isEnabled());
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
        QVERIFY(!s_->bench.beepOn().isEnabled());
        s_->file.applyEntry(EntryType::Buzzer, "//B0");
        QVERIFY(s_->bench.beepOn().isEnabled());
        QVERIFY(!s_->bench.beepOff().isEnabled());
    }

    void whileAnEntryIsShownNothingCanBeSent()
    {
        s_->bench.controls().setHandlersArmed(true);
        bool armed = true;
        bool sendEnabled = true;
        connect(&s_->kmControl, &QComboBox::currentIndexChanged, &s_->window, [&] {
            armed = s_->bench.controls().areHandlersArmed();
            sendEnabled = s_->bench.link().isSendEnabled();
        });
        s_->file.applyEntry(EntryType::KmControl, "//c2");
        QCOMPARE(s_->kmControl.currentIndex(), 1);
        QVERIFY(!armed);
        QVERIFY(!sendEnabled);
    }

    void anEntryLeavesSendingEnabledAndHandlersArmed()
    {
        for (int type = 0; type <= 19; ++type) {
            s_->bench.link().setSendEnabled(false);
            s_->bench.controls().setHandlersArmed(false);
            s_->file.applyEntry(EntryType(type), "x");
            QVERIFY(s_->bench.link().isSendEnabled());
            QVERIFY(s_->bench.controls().areHandlersArmed());
        }
        QCOMPARE(s_->bench.commands(15), QByteArrayList(15, "x\r")); // types 0 to 14
        QVERIFY(s_->bench.isSilent());
        QCOMPARE(s_->labels[3].text(), QStringLiteral("x"));
    }

    void aFileThatIsNoSettingsFileIsRefused_data()
    {
        QTest::addColumn<QByteArray>("contents");
        QTest::addColumn<QString>("notice");
        const auto row = [](const char *title, const QByteArray &contents, const char *notice) {
            QTest::newRow(title) << contents
                                 << QStringLiteral("offered.txt is no settings file: it ") +
                                        QString::fromLatin1(notice);
        };
        row("empty", "", "holds none of the settings");
        row("another text", "Dear diary,\nKM Control went away\n", "holds none of the settings");
        row("NUL byte", QByteArray(exampleText) + QByteArray("\0", 1), "holds a NUL byte");
        row("2 MiB", QByteArray(exampleText) + QByteArray(2 * 1024 * 1024, '\n'),
            "is larger than 1 MiB");
        row("one byte more than 1 MiB",
            exampleText + QByteArray(1024 * 1024 + 1 - qsizetype(strlen(exampleText)), '\n'),
            "is larger than 1 MiB");
        row("random bytes",
            QByteArray::fromHex("9f3c00e1ffd8ae10b7447c0a5d00c3281e6f0d0a99ab7f01fe80c2"),
            "holds a NUL byte");
        row("random bytes without a NUL",
            QByteArray::fromHex("9f3c81e1ffd8ae10b7447c0a5d0dc3281e6f0d0a99ab7f01fe80c2"),
            "holds none of the settings");
    }

    void aFileThatIsNoSettingsFileIsRefused()
    {
        QFETCH(QByteArray, contents);
        QFETCH(QString, notice);
        s_->offer(contents);
        s_->file.load();
        expectRefusal(notice);
    }

    void aFileOfExactlyOneMebibyteIsLoaded()
    {
        s_->offer(exampleText + QByteArray(1024 * 1024 - qsizetype(strlen(exampleText)), '\n'));
        s_->file.load();
        QTRY_VERIFY(s_->user.sawText(QStringLiteral("Settings file applied")));
    }

    void aFolderIsRefused()
    {
        QVERIFY(QDir(s_->folder.path()).mkdir(QStringLiteral("folder.txt")));
        s_->openName = s_->path("folder.txt");
        s_->file.load();
        expectRefusal(QStringLiteral("folder.txt cannot be read: it is not a file"));
    }

    void aFileThatIsNotThereIsRefused()
    {
        s_->openName = s_->path("nowhere.txt");
        s_->file.load();
        expectRefusal(QStringLiteral("nowhere.txt cannot be read: No such file or directory"));
    }

    void betweenTheHalvesTheCollidingButtonsAreDisabled()
    {
        s_->offer(exampleText);
        s_->file.load();
        QVERIFY(!s_->load.isEnabled());
        QVERIFY(!s_->refresh.isEnabled());
        s_->bench.controls().setControlEnabled(s_->refresh, true); // as Refresh's own timer does
        QVERIFY(!s_->refresh.isEnabled());
        bool backWithTheNotice = false;
        s_->user.beforeOk([&](QMessageBox &) {
            backWithTheNotice = s_->load.isEnabled() && s_->refresh.isEnabled();
        });
        QTRY_VERIFY(s_->user.sawText(QStringLiteral("Settings file applied")));
        QVERIFY(backWithTheNotice);
        QVERIFY(s_->load.isEnabled());
        s_->bench.controls().setControlEnabled(s_->load, false); // nobody holds them any more
        QVERIFY(!s_->load.isEnabled());
    }

    void aButtonThatWasDisabledComesBackDisabled()
    {
        s_->refresh.setEnabled(false);
        s_->offer(exampleText);
        s_->file.load();
        QTRY_VERIFY(s_->user.sawText(QStringLiteral("Settings file applied")));
        QVERIFY(s_->load.isEnabled());
        QVERIFY(!s_->refresh.isEnabled());
    }

    void aConnectionThatEndsTakesTheSecondHalfWithIt()
    {
        s_->bench.controls().setConnected();
        s_->offer(exampleText);
        s_->file.load();
        QCOMPARE(s_->bench.commands(9), firstHalf);
        s_->bench.link().closeNetworkLink();
        QTRY_VERIFY(s_->user.sawText(incomplete));
        QVERIFY(!s_->load.isEnabled());
        QVERIFY(!s_->refresh.isEnabled());
        s_->bench.open(); // another switch at the same address
        waitForSecondPart();
        s_->file.loadSecondPart();
        QVERIFY(s_->bench.isSilent());
        QCOMPARE(s_->seenTexts(), QStringList{incomplete});
        QCOMPARE(s_->log().count("Settings file not applied completely"), 1);
    }

    void aConnectionThatEndsUnderTheDialogGetsNothingOfTheFile()
    {
        s_->offer(exampleText);
        s_->whileOpening = [this] {
            s_->bench.link().closeNetworkLink();
            s_->bench.open();
        };
        s_->file.load();
        QTRY_COMPARE(s_->seenTexts(), QStringList{incomplete});
        QCOMPARE(s_->plainReads, 1); // the other switch is read instead
        QVERIFY(s_->bench.isSilent());
        QCOMPARE(s_->kmControl.currentIndex(), 0);
    }

    void aSavedSwitchIsCarriedToAnother()
    {
        SwitchState office;
        office.kmControl = 3;
        office.usbControl = 2;
        office.relativeMouse = true;
        office.cursorRolling = true;
        office.activePorts = 4;
        office.buzzer = true;
        office.layout = {5, 6, 10, 14};
        office.resolutions = {3, 10, 1, 13};
        office.custom = {
            {{100, 250, "OFFICE"}, {120, 80, "DESK"}, {1, 500, "HOME"}, {300, 300, "LAB"}}};
        s_->showExample(); // what the window shows of that switch
        s_->saveName = s_->path("office.txt");
        s_->file.create();

        const QByteArray saved = SettingsScene::contentsOf(s_->saveName);
        s_.reset();
        s_ = std::make_unique<SettingsScene>();
        s_->offer(saved);
        s_->file.load();
        SwitchModel second;
        SwitchState before;
        before.buzzer = false;
        second.setState(before);
        for (const QByteArray &command : s_->bench.commands(15))
            second.receive(command);
        QCOMPARE(second.rejectedCount(), 0);
        QCOMPARE(second.obeyedCount(), 15);
        QCOMPARE(QByteArray::fromStdString(second.stateText()),
                 QByteArray::fromStdString(stateText(office)));
        QTRY_VERIFY(s_->user.sawText(QStringLiteral("Settings file applied")));

        // and the other window shows and saves the same
        s_->saveName = s_->path("again.txt");
        s_->file.create();
        QCOMPARE(SettingsScene::contentsOf(s_->saveName), saved);
    }

    void theRealOpenDialog()
    {
        s_->offer(exampleText);
        QString title;
        QStringList filters;
        s_->user.on<QFileDialog>([&](QFileDialog &dialog) {
            title = dialog.windowTitle();
            filters = dialog.nameFilters();
            dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(s_->openName);
            dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Open)->click();
        });
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        QCOMPARE(SettingsFile::Dialogs::real(s_->window).openName(), s_->openName);
        QCOMPARE(title, QStringLiteral("Select file"));
        QCOMPARE(filters, QStringList{QStringLiteral("Text files (*.txt)")});
    }

    void theRealOpenDialogCancelled()
    {
        s_->user.on<QFileDialog>([](QFileDialog &dialog) { dialog.reject(); });
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        QCOMPARE(SettingsFile::Dialogs::real(s_->window).openName(), QString());
    }

private:
    /// Lets the timer of the second half run out; it has fired when one that was started later has.
    void waitForSecondPart()
    {
        bool later = false;
        QTimer::singleShot(60, &s_->window, [&] { later = true; });
        QTRY_VERIFY(later);
    }

    void expectRefusal(const QString &notice)
    {
        QCOMPARE(s_->seenTexts(), QStringList{notice});
        QCOMPARE(s_->user.seen().first().icon, QMessageBox::Warning);
        QVERIFY(SettingsScene::log().contains(notice.toUtf8() + "   "));
        QCOMPARE(s_->plainReads, 1);
        QVERIFY(!s_->handler.isFileLoaded());
        QVERIFY(s_->load.isEnabled());
        waitForSecondPart();
        QCOMPARE(s_->user.seen().size(), 1);
        QVERIFY(s_->bench.isSilent());
        QCOMPARE(s_->table.picture(), QStringLiteral("1234/..../..../...."));
    }

    std::unique_ptr<SettingsScene> s_;
};

QTEST_MAIN(SettingsLoadTest)
#include "tst_settings_load.moc"
