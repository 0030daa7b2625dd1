#include "settings_scene.h"

/// File names as the user gives them: what the dialogs make of them, and what reaches the log.
class SettingsDialogsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(openLog(), 1); }
    void cleanupTestCase() { closeLog(); }

    void aFileNameForgesNoLineOfTheLog()
    {
        SettingsScene s;
        s.openName = s.path("a\nConnected to everything.txt");
        s.file.load();
        const QByteArray log = SettingsScene::log();
        QVERIFY2(log.contains("a\\nConnected to everything.txt cannot be read: "), log.constData());
        QVERIFY2(!log.contains("\nConnected"), log.constData());
    }
};

QTEST_MAIN(SettingsDialogsTest)
#include "tst_settings_dialogs.moc"
