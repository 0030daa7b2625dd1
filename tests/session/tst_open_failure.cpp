#include "session/open_failure.h"
#include "support/pty_pair.h"

#include <QFileInfo>
#include <QSerialPort>
#include <QTest>
#include <sys/fsuid.h>
#include <sys/stat.h>

namespace {
/// Without root's pass while it lives: a file-system user of nobody.
class AsNobody
{
public:
    AsNobody() : before_(::setfsuid(65534)) {}
    ~AsNobody() { ::setfsuid(static_cast<uid_t>(before_)); }
    Q_DISABLE_COPY_MOVE(AsNobody)

private:
    int before_;
};

/// What is said of the port after it has been tried.
QString failureOf(const QString &name)
{
    QSerialPort port(name);
    if (port.open(QIODevice::ReadWrite))
        return QStringLiteral("it opens");
    return openFailureText(name, port.error(), port.errorString());
}
} // namespace

/// Why a port could not be opened, told over real pseudo-terminals.
class OpenFailureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPortThatAnotherProgramHoldsIsInUse()
    {
        const PtyPair cable;
        QSerialPort holder(cable.path());
        QVERIFY(holder.open(QIODevice::ReadWrite));
        QCOMPARE(
            failureOf(cable.path()),
            QStringLiteral("%1 could not be opened: in use by another program").arg(cable.path()));
        holder.close();
        QCOMPARE(failureOf(cable.path()), QStringLiteral("it opens"));
    }

    void whatTheSystemCallsBusyIsInUse()
    {
        const PtyPair cable;
        QCOMPARE(
            openFailureText(cable.path(), QSerialPort::PermissionError,
                            QStringLiteral("Device or resource busy")),
            QStringLiteral("%1 could not be opened: in use by another program").arg(cable.path()));
    }

    void whereTheRightsAreMissingTheGroupIsNamed_data()
    {
        QTest::addColumn<int>("rights");
        QTest::newRow("none") << 0;
        QTest::newRow("reading only") << 0444;
        QTest::newRow("writing only") << 0222;
    }

    void whereTheRightsAreMissingTheGroupIsNamed()
    {
        QFETCH(int, rights);
        const PtyPair cable;
        QCOMPARE(::chmod(cable.path().toLocal8Bit().constData(), mode_t(rights)), 0);
        const QString group = QFileInfo(cable.path()).group();
        QVERIFY(!group.isEmpty());
        const AsNobody nobody;
        QCOMPARE(failureOf(cable.path()),
                 QStringLiteral("%1 could not be opened: Permission denied (the device belongs to "
                                "the group %2)")
                     .arg(cable.path(), group));
    }

    void anotherErrorKeepsTheSystemsWords()
    {
        QCOMPARE(
            failureOf(QStringLiteral("/dev/no_such_port")),
            QStringLiteral("/dev/no_such_port could not be opened: No such file or directory"));
    }

    void withoutANameNoPortWasChosen()
    {
        QCOMPARE(failureOf(QString()), QStringLiteral("no port chosen; press Connection Settings"));
    }
};

QTEST_GUILESS_MAIN(OpenFailureTest)
#include "tst_open_failure.moc"
