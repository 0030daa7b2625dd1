#include "log/event_log.h"
#include "mouse_page.h"

#include <QFile>

namespace {
QByteArray logText()
{
    QFile log(eventLogPath());
    return log.open(QIODevice::ReadOnly) ? log.readAll() : QByteArray();
}
} // namespace

/// Custom settings: typed, checked, sent, and read back; and the commands of what is shown.
class MouseSettingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(openLog(), 1); }
    void cleanupTestCase() { closeLog(); }

    void init() { page_ = std::make_unique<MousePage>(); }
    void cleanup() { page_.reset(); }

    void aNameThatWillNotComeBackAsTypedHasItsLineInTheLog_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<int>("withBlanks");
        QTest::addColumn<int>("shortened");
        QTest::newRow("plain") << QByteArray("OFFICE") << 0 << 0;
        QTest::newRow("blanks") << QByteArray("MY OFFICE") << 1 << 0;
        QTest::newRow("as long as the command holds") << QByteArray(82, 'x') << 0 << 0;
        QTest::newRow("longer") << QByteArray(83, 'x') << 0 << 1;
        QTest::newRow("both") << QByteArray(50, 'x') + ' ' + QByteArray(50, 'x') << 1 << 1;
    }

    void aNameThatWillNotComeBackAsTypedHasItsLineInTheLog()
    {
        QFETCH(QByteArray, name);
        const QByteArray before = logText();
        page_->settings.setReady(true);
        page_->setting.setCurrentIndex(1);
        page_->type(name.constData(), "100", "250");
        page_->settings.submitCustomSetting();
        const QByteArray lines = logText().mid(before.size());
        QTEST(int(lines.count("setting 2 has blanks; the resolution lists leave them out   ")),
              "withBlanks");
        QTEST(int(lines.count("setting 2 is too long for its command and was shortened   ")),
              "shortened");
    }

    void choosingASettingFillsTheEditFields()
    {
        page_->labels[1].setText(QStringLiteral("100 250 OFFICE"));
        page_->setting.setCurrentIndex(1);
        QCOMPARE(page_->x.text(), QStringLiteral("100"));
        QCOMPARE(page_->y.text(), QStringLiteral("250"));
        QCOMPARE(page_->name.text(), QStringLiteral("OFFICE"));
        QVERIFY(!page_->settings.isFillingEditFields());
    }

    void theFillIsMarkedWhileItLasts()
    {
        page_->labels[0].setText(QStringLiteral("100 250 OFFICE"));
        bool marked = false;
        connect(&page_->name, &QLineEdit::textChanged, &page_->name,
                [&] { marked = page_->settings.isFillingEditFields(); });
        page_->settings.fillEditFields();
        QVERIFY(marked);
        QVERIFY(!page_->settings.isFillingEditFields());
    }

    void aShortLabelStopsTheFillWithALineInTheLog()
    {
        page_->type("OLD", "1", "2");
        page_->labels[0].setText(QStringLiteral("100 250"));
        const auto before = logText().count("basic_string::substr");
        page_->settings.fillEditFields();
        QCOMPARE(page_->x.text(), QStringLiteral("100"));
        QCOMPARE(page_->y.text(), QStringLiteral("250"));
        QCOMPARE(page_->name.text(), QStringLiteral("OLD"));
        QCOMPARE(logText().count("basic_string::substr"), before + 1);
        QVERIFY(page_->user.seen().isEmpty());
        QVERIFY(!page_->settings.isFillingEditFields());
    }

    void anEmptyLabelLeavesYAndName()
    {
        page_->type("OLD", "1", "2");
        page_->settings.fillEditFields();
        QCOMPARE(page_->x.text(), QString());
        QCOMPARE(page_->y.text(), QStringLiteral("2"));
        QCOMPARE(page_->name.text(), QStringLiteral("OLD"));
        QVERIFY(page_->user.seen().isEmpty());
    }

    void submitSendsTheSettingAndReadsBack()
    {
        page_->report();
        page_->setting.setCurrentIndex(1);
        page_->type("Den", "120", "80");
        page_->settings.submitCustomSetting();
        QCOMPARE(page_->bench.commands(1), QByteArrayList{"//MM C2 120 80 Den \r"});
        for (int channel = 1; channel <= 4; ++channel)
            QCOMPARE(page_->customItems(channel),
                     (QStringList{QStringLiteral("OFFICE"), QStringLiteral("Den"),
                                  QStringLiteral("HOME"), QStringLiteral("LAB")}));
        QTRY_COMPARE(page_->window.reads, 1);
        QVERIFY(page_->user.seen().isEmpty());
    }

    void theRealDelayIs800Milliseconds()
    {
        QCOMPARE(MouseSettings::Timing().readAfterSubmit, std::chrono::milliseconds(800));
    }

    void oneSettingAtATime()
    {
        page_->report();
        page_->type("NEW", "1", "500");
        page_->settings.submitCustomSetting();
        QVERIFY(!page_->settings.isReady());
        page_->type("LATER", "2", "3");
        page_->settings.submitCustomSetting();
        QCOMPARE(page_->bench.commands(1), QByteArrayList{"//MM C1 1 500 NEW \r"});
        QVERIFY(page_->bench.isSilent());
        QVERIFY(page_->user.seen().isEmpty());
        QCOMPARE(page_->customItems(1).first(), QStringLiteral("NEW"));

        page_->settings.setReady(true);
        page_->settings.submitCustomSetting();
        QCOMPARE(page_->bench.commands(1), QByteArrayList{"//MM C1 2 3 LATER \r"});
    }

    void aProblemIsShownAndNothingIsSent_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("x");
        QTest::addColumn<QString>("y");
        QTest::addColumn<QString>("notice");
        const auto row = [](const char *name, const char *x, const char *y, const char *notice) {
            QTest::addRow("%s/%s/%s", name, x, y)
                << QString::fromLatin1(name) << QString::fromLatin1(x) << QString::fromLatin1(y)
                << QString::fromLatin1(notice);
        };
        row("", "1", "2", "Enter name of setting");
        row("NEW", "", "2", "Enter X for setting");
        row("NEW", "1", "", "Enter Y for setting");
        row("home", "1", "2", "This custom name already exists");
        row("NEW", "0", "2", "Mouse Speed Range is between 1-500");
        row("NEW", "501", "2", "Mouse Speed Range is between 1-500");
        row("NEW", "abc", "2", "Mouse Speed Range is between 1-500");
        row("NEW", "1", "501", "Mouse Speed Range is between 1-500");
    }

    void aProblemIsShownAndNothingIsSent()
    {
        QFETCH(QString, name);
        QFETCH(QString, x);
        QFETCH(QString, y);
        QFETCH(QString, notice);
        page_->report();
        page_->type(name.toUtf8().constData(), x.toUtf8().constData(), y.toUtf8().constData());
        page_->settings.submitCustomSetting();
        QCOMPARE(page_->user.seen().size(), 1);
        QCOMPARE(page_->user.seen().first().text, notice);
        QCOMPARE(page_->user.seen().first().icon, QMessageBox::Warning);
        QVERIFY(page_->settings.isReady());
        QVERIFY(page_->bench.isSilent());
    }

    void aSettingMayKeepItsOwnName()
    {
        page_->report();
        page_->setting.setCurrentIndex(2);
        page_->type("HOME", "7", "8");
        page_->settings.submitCustomSetting();
        QCOMPARE(page_->bench.commands(1), QByteArrayList{"//MM C3 7 8 HOME \r"});
    }

    void theLabelShowsWhatTheSwitchSaysAndNoMarkup()
    {
        page_->settings.setDataLabel(0, "100 250 <b>OFFICE</b>\r");
        QCOMPARE(page_->labels[0].text(), QStringLiteral("100 250 <b>OFFICE</b>"));
        QCOMPARE(page_->labels[0].textFormat(), Qt::PlainText);
    }

    void theCommandsOfWhatIsShown()
    {
        page_->report();
        page_->resolutions[1].setCurrentIndex(9);
        QCOMPARE(page_->settings.selectedResolutionCommand(2), std::string("//CE 2 10"));
        QCOMPARE(page_->settings.knownSettingCommand(0), std::string("//MM C1 100 250 OFFICE"));
        QCOMPARE(page_->settings.knownSettingCommand(1), std::string("//MM C2 120 080 DESK"));
    }

    void aSettingThatIsNotKnownHasNoCommand()
    {
        QCOMPARE(page_->settings.knownSettingCommand(0), std::string());
        page_->settings.setDataLabel(0, "0");
        page_->settings.setCustomEntry(0, "0", 8);
        QCOMPARE(page_->settings.knownSettingCommand(0), std::string());
        page_->settings.setDataLabel(0, "100 250 OFFICE");
        QCOMPARE(page_->settings.knownSettingCommand(0), std::string());
        page_->settings.setCustomEntry(0, "100 250 OFFICE", 8);
        QCOMPARE(page_->settings.knownSettingCommand(0), std::string("//MM C1 100 250 OFFICE"));
    }

private:
    std::unique_ptr<MousePage> page_;
};

QTEST_MAIN(MouseSettingsTest)
#include "tst_mouse_settings.moc"
