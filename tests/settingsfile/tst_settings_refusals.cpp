#include "settings_load_bench.h"

/// What is no settings file: it is refused with its reason, and the switch is read instead.
class SettingsRefusalsTest : public SettingsLoadBench
{
    Q_OBJECT

private Q_SLOTS:
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

private:
    void expectRefusal(const QString &notice)
    {
        QCOMPARE(s_->user.texts(), QStringList{notice});
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
};

QTEST_MAIN(SettingsRefusalsTest)
#include "tst_settings_refusals.moc"
