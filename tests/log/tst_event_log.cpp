#include "log/event_log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

/// The event log as a file: where it lies, what a line looks like, what a new run does to it.
class EventLogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        home_ = std::make_unique<QTemporaryDir>();
        QVERIFY(home_->isValid());
        qputenv("HOME", home_->path().toUtf8());
        qputenv("XDG_CONFIG_HOME", home_->filePath(QStringLiteral(".config")).toUtf8());
    }

    void cleanup() { closeLog(); }

    void liesInTheDocumentsFolderAndMakesIt()
    {
        QVERIFY(!QFileInfo::exists(home_->filePath(QStringLiteral("Documents"))));
        QCOMPARE(openLog(), 1);
        QVERIFY(QFileInfo::exists(home_->filePath(QStringLiteral("Documents/KM_log.txt"))));
    }

    void startAndStopMarkersCarryNoTime()
    {
        openLog();
        closeLog();
        QCOMPARE(content(), QByteArray("Start.........\nStop.........\n"));
    }

    void aLineIsMessageThreeBlanksAndTime()
    {
        openLog();
        writeLog("Close serial error");
        const QString text = QString::fromUtf8(content());
        const QRegularExpression shape(QStringLiteral(
            "^Start\\.{9}\\nClose serial error {3}\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\n$"));
        QVERIFY2(shape.match(text).hasMatch(), qPrintable(text));
    }

    void aLineIsOnDiskAtOnce()
    {
        openLog();
        writeLog("Write data error");
        QVERIFY(content().contains("Write data error   "));
    }

    void aSecondRunLeavesOnlyItsOwnLines()
    {
        openLog();
        writeLog("from the first run");
        closeLog();
        openLog();
        writeLog("from the second run");
        closeLog();
        QVERIFY(!content().contains("first"));
        QVERIFY(content().contains("from the second run"));
    }

    void linesWhileClosedAreLostSilently()
    {
        openLog();
        closeLog();
        writeLog("too late");
        QCOMPARE(content(), QByteArray("Start.........\nStop.........\n"));
    }

    void aLogThatCannotBeOpenedIsSilent()
    {
        // A folder stands where the file should be.
        QVERIFY(QDir(home_->path()).mkpath(QStringLiteral("Documents/KM_log.txt")));
        QCOMPARE(openLog(), -1);
        writeLog("nobody reads this");
        closeLog();
        QVERIFY(QFileInfo(eventLogPath()).isDir());
    }

    void aLaterRunRecoversFromAFailedOpen()
    {
        QVERIFY(QDir(home_->path()).mkpath(QStringLiteral("Documents/KM_log.txt")));
        QCOMPARE(openLog(), -1);
        QVERIFY(QDir(home_->path()).rmdir(QStringLiteral("Documents/KM_log.txt")));
        QCOMPARE(openLog(), 1);
        writeLog("again");
        QVERIFY(content().contains("again   "));
    }

private:
    QByteArray content() const
    {
        QFile file(home_->filePath(QStringLiteral("Documents/KM_log.txt")));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }

    std::unique_ptr<QTemporaryDir> home_;
};

QTEST_GUILESS_MAIN(EventLogTest)
#include "tst_event_log.moc"
