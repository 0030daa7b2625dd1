#include "simulator/pseudo_terminal.h"

#include <QFile>
#include <QSerialPort>
#include <QSignalSpy>
#include <QTest>
#include <memory>

namespace {

std::unique_ptr<QSerialPort> opened(const QString &path)
{
    auto port = std::make_unique<QSerialPort>(path);
    port->setBaudRate(QSerialPort::Baud115200);
    if (!port->open(QIODevice::ReadWrite))
        qWarning("%s", qPrintable(port->errorString()));
    return port;
}

QByteArray everyByte()
{
    QByteArray bytes;
    for (int i = 0; i < 256; ++i)
        bytes += static_cast<char>(i);
    return bytes;
}

QByteArray heard(const QSignalSpy &spy)
{
    QByteArray all;
    for (const auto &arguments : spy)
        all += arguments.first().toByteArray();
    return all;
}

} // namespace

/// The virtual serial port, with a real serial port object at its other end.
class PseudoTerminalTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyByteGoesBothWaysUnchanged()
    {
        PseudoTerminal terminal;
        terminal.open();
        QVERIFY(QFile::exists(terminal.path()));
        const QSignalSpy received(&terminal, &PseudoTerminal::received);
        const auto port = opened(terminal.path());
        QVERIFY(port->isOpen());

        QCOMPARE(port->write(everyByte()), qint64(256));
        QTRY_COMPARE(heard(received), everyByte());
        QVERIFY(terminal.write(everyByte()));
        QByteArray got;
        QTRY_COMPARE(got += port->readAll(), everyByte());
    }

    void thePortMayBeClosedAndOpenedAgain()
    {
        PseudoTerminal terminal;
        terminal.open();
        const QSignalSpy received(&terminal, &PseudoTerminal::received);
        for (const QByteArray &text : {QByteArray("first"), QByteArray("second")}) {
            const qsizetype before = heard(received).size();
            const auto port = opened(terminal.path());
            QVERIFY(port->isOpen());
            port->write(text);
            QTRY_COMPARE(heard(received).mid(before), text);
            QVERIFY(terminal.isOpen());
        }
    }

    void pullingTheCableIsAnErrorAtTheOtherEnd()
    {
        PseudoTerminal terminal;
        terminal.open();
        const QString path = terminal.path();
        const auto port = opened(path);
        QVERIFY(port->isOpen());
        // On errors the port is closed at once: a vanished device repeats them without end.
        int errors = 0;
        connect(port.get(), &QSerialPort::errorOccurred, port.get(), [&] {
            ++errors;
            if (port->isOpen())
                port->close();
        });
        terminal.close();
        QTRY_VERIFY(errors > 0);
        QVERIFY(!terminal.isOpen());
        QVERIFY(terminal.path().isEmpty());
    }

    void aNewTerminalFollowsAClosedOne()
    {
        PseudoTerminal terminal;
        terminal.open();
        terminal.close();
        terminal.open();
        const auto port = opened(terminal.path());
        QVERIFY(terminal.write("alive"));
        QByteArray got;
        QTRY_COMPARE(got += port->readAll(), QByteArray("alive"));
    }

    void writingNeverWaitsForTheReader()
    {
        PseudoTerminal terminal;
        terminal.open();
        QByteArray much;
        for (int i = 0; i < 50000; ++i)
            much += QByteArray::number(i) + "\n";
        QVERIFY(terminal.write(much));
        QVERIFY(terminal.backlog() > 0);

        const auto port = opened(terminal.path());
        QByteArray got;
        QTRY_COMPARE_WITH_TIMEOUT((got += port->readAll()).size(), much.size(), 20000);
        QCOMPARE(got, much);
        QTRY_COMPARE(terminal.backlog(), qsizetype(0));
    }

    void theBacklogIsBounded()
    {
        PseudoTerminal terminal;
        QVERIFY(!terminal.write("closed"));
        terminal.open();
        QVERIFY(!terminal.write(QByteArray(PseudoTerminal::longestBacklog + 1, 'x')));
        QCOMPARE(terminal.backlog(), qsizetype(0));
        QVERIFY(terminal.write(QByteArray(1000000, 'x')));
        const qsizetype waiting = terminal.backlog();
        QVERIFY(!terminal.write(QByteArray(PseudoTerminal::longestBacklog, 'x')));
        QCOMPARE(terminal.backlog(), waiting);
    }
};

QTEST_GUILESS_MAIN(PseudoTerminalTest)
#include "tst_pseudo_terminal.moc"
