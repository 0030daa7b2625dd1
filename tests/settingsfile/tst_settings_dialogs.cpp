#include "settings_scene.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QMessageBox>

/// File names as the user gives them: what the dialogs make of them, and what reaches the log.
class SettingsDialogsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QCOMPARE(openLog(), 1);
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    }
    void cleanupTestCase() { closeLog(); }

    void init() { folder_ = std::make_unique<QTemporaryDir>(); }
    void cleanup() { folder_.reset(); }

    void aFileNameForgesNoLineOfTheLog()
    {
        SettingsScene s;
        s.openName = s.path("a\nConnected to everything.txt");
        s.file.load();
        const QByteArray log = SettingsScene::log();
        QVERIFY2(log.contains("a\\nConnected to everything.txt cannot be read: "), log.constData());
        QVERIFY2(!log.contains("\nConnected"), log.constData());
    }

    void aSavedFileGetsTheSuffixThatWasNotTyped_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("chosen");
        QTest::newRow("no suffix") << QStringLiteral("office") << QStringLiteral("office.txt");
        QTest::newRow("the suffix") << QStringLiteral("office.txt") << QStringLiteral("office.txt");
        QTest::newRow("another one")
            << QStringLiteral("office.bak") << QStringLiteral("office.bak");
    }

    void aSavedFileGetsTheSuffixThatWasNotTyped()
    {
        QFETCH(QString, typed);
        QFETCH(QString, chosen);
        DialogRecorder user;
        user.on<QFileDialog>([&](QFileDialog &dialog) {
            QCOMPARE(dialog.windowTitle(), QStringLiteral("Save Settings File"));
            QCOMPARE(dialog.nameFilters(), QStringList{QStringLiteral("Text files (*.txt)")});
            QCOMPARE(dialog.directory().absolutePath(), QDir::homePath());
            press(dialog, path(typed), QDialogButtonBox::Save);
        });
        QCOMPARE(dialogs().saveName(), path(chosen));
        QVERIFY(user.seen().isEmpty());
    }

    void whatWouldBeReplacedIsAskedWithItsSuffix()
    {
        make("office.txt");
        DialogRecorder user(QMessageBox::No);
        bool stays = false;
        user.on<QFileDialog>([&](QFileDialog &dialog) {
            press(dialog, path(QStringLiteral("office")), QDialogButtonBox::Save);
            stays = dialog.isVisible();
            dialog.reject();
        });
        QCOMPARE(dialogs().saveName(), QString());
        QVERIFY(stays);
        QCOMPARE(user.seen().size(), 1);
        QVERIFY2(user.seen().constFirst().text.contains(QStringLiteral("office.txt")),
                 qPrintable(user.seen().constFirst().text));
    }

    void anExistingFileIsOpened()
    {
        make("office.txt");
        DialogRecorder user;
        user.on<QFileDialog>([&](QFileDialog &dialog) {
            QCOMPARE(dialog.windowTitle(), QStringLiteral("Select file"));
            QCOMPARE(dialog.nameFilters(), QStringList{QStringLiteral("Text files (*.txt)")});
            press(dialog, path(QStringLiteral("office.txt")), QDialogButtonBox::Open);
        });
        QCOMPARE(dialogs().openName(), path(QStringLiteral("office.txt")));
        QVERIFY(user.seen().isEmpty());
    }

    void aFileThatIsNotThereCannotBeOpened()
    {
        DialogRecorder user;
        bool stays = false;
        user.on<QFileDialog>([&](QFileDialog &dialog) {
            press(dialog, path(QStringLiteral("nowhere.txt")), QDialogButtonBox::Open);
            stays = dialog.isVisible();
            dialog.reject();
        });
        QCOMPARE(dialogs().openName(), QString());
        QVERIFY(stays);
    }

    void aCancelledDialogGivesNoName()
    {
        DialogRecorder user;
        user.on<QFileDialog>([](QFileDialog &dialog) { dialog.reject(); });
        QCOMPARE(dialogs().saveName(), QString());
        QCOMPARE(dialogs().openName(), QString());
    }

private:
    SettingsFile::Dialogs dialogs() { return SettingsFile::Dialogs::real(window_); }
    QString path(const QString &fileName) const { return folder_->filePath(fileName); }

    void make(const char *fileName) const
    {
        QFile file(path(QString::fromLatin1(fileName)));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }

    static void press(QFileDialog &dialog, const QString &typed,
                      QDialogButtonBox::StandardButton button)
    {
        dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(typed);
        dialog.findChild<QDialogButtonBox *>()->button(button)->click();
    }

    QWidget window_;
    std::unique_ptr<QTemporaryDir> folder_;
};

QTEST_MAIN(SettingsDialogsTest)
#include "tst_settings_dialogs.moc"
