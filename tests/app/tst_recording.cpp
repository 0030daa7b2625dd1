#include "session/link_recorder.h"
#include "support/network_window.h"
#include "support/serial_window.h"

#include <QRegularExpression>
#include <QTemporaryDir>

namespace {
/// A line's road, name, direction and text or, for a module's frames, bytes.
QString summary(const QByteArray &line)
{
    static const QRegularExpression shape(QStringLiteral(
        "^{\"bytes\":\"([0-9a-f]*)\",\"direction\":\"([a-z]+)\",\"name\":\"([^\"]*)\","
        "\"road\":\"([a-z]+)\",\"text\":\"(.*)\",\"time\":[0-9]+}$"));
    const QRegularExpressionMatch match = shape.match(QString::fromUtf8(line));
    if (!match.hasMatch())
        qFatal("no line of a record: %s", line.constData());
    const bool isFrame = match.captured(4) == QStringLiteral("module");
    return match.captured(4) + u' ' + match.captured(3) + u' ' + match.captured(2) + u' ' +
           match.captured(isFrame ? 1 : 5);
}
} // namespace

/// What the window records.
class RecordingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theSerialLine()
    {
        SerialWindow s;
        LinkRecorder recorder(file());
        WindowSettings settings = SerialWindow::quick();
        settings.recorder = &recorder;
        QVERIFY(s.startAndRead(settings));
        const QString line = QStringLiteral("serial ") + s.cable->path();
        const QStringList lines = summaries();
        QCOMPARE(lines.mid(0, 3), (QStringList{line + QStringLiteral(" sent //rl\\r"),
                                               line + QStringLiteral(" sent //??\\r"),
                                               line + QStringLiteral(" sent //BP\\r")}));
        QVERIFY(lines.size() > 3);
        QVERIFY(lines.at(3).startsWith(line + QStringLiteral(" received //RL")));
    }

    void theNetworkAndTheModuleWithoutItsPassword()
    {
        NetworkWindow s;
        LinkRecorder recorder(file());
        WindowSettings settings = s.settings();
        settings.recorder = &recorder;
        s.WindowBench::start(settings);
        QVERIFY(s.waitForRead());
        const QStringList lines = summaries();
        const QStringList sent =
            lines.filter(QRegularExpression(QStringLiteral("^[a-z]+ [^ ]+ sent ")));
        QCOMPARE(sent.first(), QStringLiteral("module 127.0.0.1 sent ff010102"));
        QVERIFY(sent.contains(
            QStringLiteral("module 127.0.0.1 sent ff13039ca52500000261646d696e002a2a2a2a2a2a00")));
        QCOMPARE(sent.last(), QStringLiteral("udp 127.0.0.1 sent //BP\\r"));
        QVERIFY(lines.contains(QStringLiteral(
            "module 127.0.0.1 received ff240100007f0000019ca525000002000000004d656574696e6720526f6f"
            "6d0000000000")));
        QVERIFY(lines.last().startsWith(QStringLiteral("udp 127.0.0.1 received //RL")));
        // Every login of the wizard's way; their replies as well.
        QCOMPARE(lines.filter(QStringLiteral("sent ff1303")).size(),
                 s.module.order().count(QStringLiteral("login")));
        QCOMPARE(lines.filter(QStringLiteral("sent ff010102")).size(),
                 s.module.order().count(QStringLiteral("search")));
        QVERIFY(lines.contains(
            QStringLiteral("module 127.0.0.1 received ff00008000000000000701a8c00101a8c000ffffff") +
            QStringLiteral("2a").repeated(239)));
        QVERIFY(!contents().contains("736563726574"));
        QVERIFY(!contents().contains("secret"));
    }

    void aFullDiskIsToldOnceAndTheWindowGoesOn()
    {
        if (!QFile::exists(QStringLiteral("/dev/full")))
            QSKIP("this system has no /dev/full");
        SerialWindow s;
        LinkRecorder recorder(QStringLiteral("/dev/full"));
        WindowSettings settings = SerialWindow::quick();
        settings.recorder = &recorder;
        QVERIFY(s.startAndRead(settings));
        const QString notice = QStringLiteral("The record has ended: No space left on device");
        QTRY_COMPARE(s.user.texts(), QStringList{notice});
        QVERIFY(WindowBench::log().contains("The record has ended: No space left on device   "));
        const qsizetype before = s.device->commands().size();
        s.window->on_pushButton_ON_Beep_clicked();
        QTRY_COMPARE(s.device->commands().size(), before + 1);
        QCOMPARE(s.user.texts(), QStringList{notice});
    }

private:
    QString file() const { return dir_.filePath(QStringLiteral("record.jsonl")); }

    QByteArray contents() const
    {
        QFile record(file());
        return record.open(QIODevice::ReadOnly) ? record.readAll() : QByteArray("no file");
    }

    QStringList summaries() const
    {
        QStringList summaries;
        QByteArrayList lines = contents().split('\n');
        lines.removeLast();
        for (const QByteArray &line : std::as_const(lines))
            summaries.append(summary(line));
        return summaries;
    }

    QTemporaryDir dir_;
};

QTEST_MAIN(RecordingTest)
#include "tst_recording.moc"
