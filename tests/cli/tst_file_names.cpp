#include "cli/failure.h"
#include "cli/file_names.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace {
std::vector<Device> named(const QStringList &names)
{
    std::vector<Device> devices;
    for (const QString &name : names) {
        Device device;
        device.name = name;
        devices.push_back(device);
    }
    return devices;
}

QStringList mistakesOf(const QString &pattern, const QStringList &names)
{
    try {
        filesFor(pattern, named(names));
    } catch (const UsageError &error) {
        return error.lines();
    }
    return {};
}
} // namespace

class FileNamesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyDeviceHasItsFile()
    {
        QCOMPARE(filesFor(QStringLiteral("backup/{name}.txt"),
                          named({QStringLiteral("desk-1"), QStringLiteral("Büro 2")})),
                 (QStringList{QStringLiteral("backup/desk-1.txt"),
                              QStringLiteral("backup/Büro 2.txt")}));
        QCOMPARE(filesFor(QStringLiteral("one.txt"),
                          named({QStringLiteral("a/b"), QStringLiteral("c")})),
                 (QStringList{QStringLiteral("one.txt"), QStringLiteral("one.txt")}));
        QVERIFY(namesEachDevice(QStringLiteral("{name}")));
        QVERIFY(!namesEachDevice(QStringLiteral("name")));
    }

    void aNameThatLeadsElsewhereIsRefused_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name :
             {"",      ".",   "..",      "../x", "a/b",  "a\\b",     "C:",   "a\nb",
              "a\x1b", "CON", "con.txt", "Nul",  "COM1", "lpt9.old", "aux ", "serial:/dev/ttyUSB0",
              "a*b",   "a?",  "a\"b",    "<",    "a|b"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }

    void aNameThatLeadsElsewhereIsRefused()
    {
        QFETCH(QString, name);
        const QStringList mistakes = mistakesOf(QStringLiteral("{name}"), {name});
        QCOMPARE(mistakes.size(), 1);
        QVERIFY(mistakes.first().contains(QStringLiteral("cannot be part of a file's name")));
    }

    void aNameThatOnlyLooksReservedIsNone()
    {
        QCOMPARE(mistakesOf(QStringLiteral("{name}"),
                            {QStringLiteral("console"), QStringLiteral("COM10"),
                             QStringLiteral("a..b"), QStringLiteral("..a")}),
                 QStringList());
    }

    void twoDevicesDoNotShareAFile()
    {
        const QStringList mistakes = mistakesOf(QStringLiteral("{name}.txt"),
                                                {QStringLiteral("Desk"), QStringLiteral("desk")});
        QCOMPARE(mistakes.size(), 1);
        QVERIFY(mistakes.first().contains(QStringLiteral("the file of two devices")));
    }

    void oneFileHasManyNames()
    {
        const QTemporaryDir folder;
        const QDir dir(folder.path());
        QVERIFY(dir.mkdir(QStringLiteral("real")));
        QVERIFY(QFile::link(dir.filePath(QStringLiteral("real")),
                            dir.filePath(QStringLiteral("linked.lnk")))); // as Windows wants it
        const QString file = dir.filePath(QStringLiteral("real/new.txt"));
        QVERIFY(isSameFile(file, dir.filePath(QStringLiteral("real/../real/./new.txt"))));
#ifndef Q_OS_WIN // where such a link is no folder
        QVERIFY(isSameFile(file, dir.filePath(QStringLiteral("linked.lnk/new.txt"))));
#endif
        QVERIFY(isSameFile(QStringLiteral("new.txt"), QStringLiteral("./new.txt")));
        QVERIFY(isSameFile(QStringLiteral("new.txt"),
                           QDir().absoluteFilePath(QStringLiteral("new.txt"))));
        QVERIFY(!isSameFile(file, dir.filePath(QStringLiteral("real/other.txt"))));
        QVERIFY(!isSameFile(file, dir.filePath(QStringLiteral("new.txt"))));
        QVERIFY(!isSameFile(QString(), QString()));
    }
};

QTEST_GUILESS_MAIN(FileNamesTest)
#include "tst_file_names.moc"
