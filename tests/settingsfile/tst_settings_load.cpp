#include "settings_load_bench.h"

#include "simulator/switch_model.h"

#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QFileDialog>

/// Loading a settings file: its two halves, what may come between them, and where it goes.
class SettingsLoadTest : public SettingsLoadBench
{
    Q_OBJECT

private Q_SLOTS:
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
        QVERIFY(!s_->bench.beepOn.isEnabled());
        QVERIFY(s_->bench.beepOff.isEnabled());
        QCOMPARE(s_->table.picture(), QStringLiteral("..../12../.3../.4-.."));
        QCOMPARE(s_->labels[1].text(), QStringLiteral("120 080 DESK"));
        QCOMPARE(s_->name.text(), QStringLiteral("OFFICE"));
        QCOMPARE(s_->x.text(), QStringLiteral("100"));
        QCOMPARE(s_->y.text(), QStringLiteral("250"));
        QVERIFY(s_->handler.isFileLoaded());
        QVERIFY(s_->bench.controls.areHandlersArmed());
        s_->bench.link.forwardCommand("on");
        QCOMPARE(s_->bench.commands(1), QByteArrayList{"on\r"});
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

    void betweenTheHalvesTheCollidingButtonsAreDisabled()
    {
        s_->offer(exampleText);
        s_->file.load();
        QVERIFY(!s_->load.isEnabled());
        QVERIFY(!s_->refresh.isEnabled());
        s_->bench.controls.setControlEnabled(s_->refresh, true); // as Refresh's own timer does
        QVERIFY(!s_->refresh.isEnabled());
        bool backWithTheNotice = false;
        s_->user.beforeButton([&](QMessageBox &) {
            backWithTheNotice = s_->load.isEnabled() && s_->refresh.isEnabled();
        });
        QTRY_VERIFY(s_->user.sawText(QStringLiteral("Settings file applied")));
        QVERIFY(backWithTheNotice);
        QVERIFY(s_->load.isEnabled());
        s_->bench.controls.setControlEnabled(s_->load, false); // nobody holds them any more
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
        s_->bench.controls.setConnected();
        s_->offer(exampleText);
        s_->file.load();
        QCOMPARE(s_->bench.commands(9), firstHalf);
        s_->bench.link.closeNetworkLink();
        QTRY_VERIFY(s_->user.sawText(incomplete));
        QVERIFY(!s_->load.isEnabled());
        QVERIFY(!s_->refresh.isEnabled());
        s_->bench.open(); // another switch at the same address
        waitForSecondPart();
        s_->file.loadSecondPart();
        QVERIFY(s_->bench.isSilent());
        QCOMPARE(s_->user.texts(), QStringList{incomplete});
        QCOMPARE(s_->log().count("Settings file not applied completely"), 1);
    }

    void aConnectionThatEndsUnderTheDialogGetsNothingOfTheFile()
    {
        s_->offer(exampleText);
        s_->whileOpening = [this] {
            s_->bench.link.closeNetworkLink();
            s_->bench.open();
        };
        s_->file.load();
        QTRY_COMPARE(s_->user.texts(), QStringList{incomplete});
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
};

QTEST_MAIN(SettingsLoadTest)
#include "tst_settings_load.moc"
