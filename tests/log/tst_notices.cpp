#include "log/event_log.h"
#include "log/notices.h"
#include "support/dialog_recorder.h"

#include <QFile>
#include <QTest>
#include <stdexcept>

/// The notice box and the one handler of everything that throws.
class NoticesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(openLog(), 1); }
    void cleanupTestCase() { closeLog(); }

    void aModalNoticeHasTheWarningIconUnderTheTitleInformation()
    {
        DialogRecorder dialogs;
        showNoticeModal(QStringLiteral("Write data error"), QMessageBox::Warning);
        QCOMPARE(dialogs.seen().size(), 1);
        const RecordedBox box = dialogs.seen().constFirst();
        QCOMPARE(box.title, QStringLiteral("Information"));
        QCOMPARE(box.text, QStringLiteral("Write data error"));
        QCOMPARE(box.icon, QMessageBox::Warning);
        QCOMPARE(box.buttons, QMessageBox::Ok);
        QCOMPARE(box.font.family(), QStringLiteral("Segoe UI"));
        QCOMPARE(box.font.pointSize(), 12);
        QVERIFY(!box.font.italic());
        QCOMPARE(box.font.weight(), int(QFont::Normal));
        QVERIFY(box.modal);
    }

    void aModelessNoticeReturnsAtOnceAndBlocksNothing()
    {
        QMessageBox box;
        showNotice(QStringLiteral("Please wait for changes to be made"), QMessageBox::Information,
                   box);
        QVERIFY(box.isVisible());
        QVERIFY(!box.isModal());
        QCOMPARE(box.windowTitle(), QStringLiteral("Information"));
        QCOMPARE(box.icon(), QMessageBox::Information);
        QVERIFY(QApplication::activeModalWidget() == nullptr);
    }

    void theTextIsNeverMarkup()
    {
        QMessageBox box;
        showNotice(QStringLiteral("<b>name</b>"), QMessageBox::Warning, box);
        QCOMPARE(box.textFormat(), Qt::PlainText);
    }

    void whatThrowsIsLoggedAndShownAndGoesNoFurther()
    {
        DialogRecorder dialogs;
        const bool through = guarded("Write data error", [] { throw std::runtime_error("disk"); });
        QVERIFY(!through);
        QCOMPARE(dialogs.seen().size(), 1);
        QCOMPARE(dialogs.seen().constFirst().text, QStringLiteral("Write data error"));
        QCOMPARE(dialogs.seen().constFirst().icon, QMessageBox::Warning);
        QFile log(eventLogPath());
        QVERIFY(log.open(QIODevice::ReadOnly));
        QVERIFY(log.readAll().contains("Write data error   "));
    }

    void evenWhatIsNoExceptionClassIsCaught()
    {
        DialogRecorder dialogs;
        QVERIFY(!guarded("Close serial error", [] { throw 7; }));
        QCOMPARE(dialogs.seen().size(), 1);
    }

    void whatDoesNotThrowShowsNothing()
    {
        DialogRecorder dialogs;
        bool ran = false;
        QVERIFY(guarded("never shown", [&] { ran = true; }));
        QVERIFY(ran);
        QVERIFY(dialogs.seen().isEmpty());
    }

    void aWarningBoxKeepsItsOwnTitle()
    {
        DialogRecorder dialogs;
        showWarningBox(QStringLiteral("Error"), QStringLiteral("Setting data from TRQ error"));
        QCOMPARE(dialogs.seen().constFirst().title, QStringLiteral("Error"));
        QCOMPARE(dialogs.seen().constFirst().icon, QMessageBox::Warning);
    }
};

QTEST_MAIN(NoticesTest)
#include "tst_notices.moc"
