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

    void whateverTheMessageHoldsItIsOneLine_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::addColumn<QByteArray>("written");
        const auto row = [](const char *name, const QByteArray &message,
                            const QByteArray &written) {
            QTest::newRow(name) << message << written;
        };
        row("line feed", "a\nb", "a\\nb");
        row("CR LF at the end", "a\r\n", "a\\r\\n");
        row("tab", "a\tb", "a\\tb");
        row("escape", "\x1b[2J", "\\x1b[2J");
        row("NUL", QByteArray("a\0b", 3), "a\\x00b");
        row("vertical tab and form feed", "\v\f", "\\x0b\\x0c");
        row("delete", "\x7f", "\\x7f");
        row("next line, U+0085",
            "a\xc2\x85"
            "b",
            "a\\u0085b");
        row("last of C1, U+009F", "\xc2\x9f", "\\u009f");
        row("line separator, U+2028",
            "a\xe2\x80\xa8"
            "b",
            "a\\u2028b");
        row("paragraph separator, U+2029", "\xe2\x80\xa9", "\\u2029");
        row("no UTF-8",
            "a\xff"
            "b",
            "a\\xffb");
        row("C1 as a single byte",
            "a\x85"
            "b",
            "a\\x85b");
        row("cut off", "a\xe2\x80", "a\\xe2\\x80");
        row("cut off before a line feed", "\xe2\x80\n", "\\xe2\\x80\\n");
        row("line feed written too long", "\xc0\x8a", "\\xc0\\x8a");
        row("line separator written too long", "\xf0\x82\x80\xa8", "\\xf0\\x82\\x80\\xa8");
        row("surrogate", "\xed\xa0\x80", "\\xed\\xa0\\x80");
        row("beyond Unicode", "\xf4\x90\x80\x80", "\\xf4\\x90\\x80\\x80");
        row("texts stay", "Norvik\xc2\xae \xe2\x82\xac \xf0\x9f\x96\xa5 C:\\new\\k.txt",
            "Norvik\xc2\xae \xe2\x82\xac \xf0\x9f\x96\xa5 C:\\new\\k.txt");
        row("first and last plain characters", " ~\xc2\xa0", " ~\xc2\xa0");
    }

    void whateverTheMessageHoldsItIsOneLine()
    {
        QFETCH(QByteArray, message);
        QFETCH(QByteArray, written);
        openLog();
        writeLog(message.toStdString());
        const QByteArray line = content().mid(int(qstrlen("Start.........\n")));
        const qsizetype stamp = qsizetype(qstrlen("   2024-03-02 14:03:05\n"));
        QCOMPARE(line.left(line.size() - stamp), written);
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
