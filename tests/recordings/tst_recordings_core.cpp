#include "recordings.h"

#include <QTemporaryDir>

using namespace std::chrono_literals;

namespace {
/// The road to a recorded switch: each recorded piece arrives by itself.
class RecordedLink : public SwitchLink
{
public:
    explicit RecordedLink(const RecordedCase &theCase)
        : road_(theCase.recording.serial ? Road::Serial : Road::Network), device_(theCase.device)
    {
    }

    Road road() const override { return road_; }
    void open() override
    {
        isOpen_ = true;
        Q_EMIT opened();
    }
    bool isOpen() const override { return isOpen_; }
    void write(const QByteArray &bytes) override
    {
        for (const Piece &piece : device_.receive(bytes)) {
            const auto arrive = [this, arrived = piece.bytes] { Q_EMIT received(arrived); };
            QMetaObject::invokeMethod(this, arrive, Qt::QueuedConnection);
        }
    }
    void close() override { isOpen_ = false; }

private:
    Road road_;
    RecordedSwitch device_;
    bool isOpen_ = false;
};

/// What a session without a window reads from `theCase`, as a sidecar has it.
QStringList read(const RecordedCase &theCase)
{
    SwitchSession session(std::make_unique<RecordedLink>(theCase),
                          {300ms, 20s, 300ms, 0, 0ms, 0ms});
    QStringList lines;
    QObject::connect(&session, &SwitchSession::answered, &session,
                     [&](const ConfigurationReading &reading) { lines = linesOf(reading); });
    QObject::connect(&session, &SwitchSession::failed, &session, [&](const SessionError &error) {
        lines = {QStringLiteral("error  ") + errorName(error.kind)};
    });
    session.open();
    session.ask();
    (void)QTest::qWaitFor([&] { return !lines.isEmpty(); }, 25000);
    return lines;
}

/// The same as the sidecar says it.
QStringList linesOf(const Expectation &expectation)
{
    if (!expectation.error.isEmpty())
        return {QStringLiteral("error  ") + expectation.error};
    QStringList lines;
    for (const SettingKey key : allSettingKeys())
        lines.append(settingName(key) + QStringLiteral("  ") +
                     expectation.values.value(settingName(key), QStringLiteral("?")));
    return lines;
}
} // namespace

/// What is read, without a window, of the switches that were recorded.
class RecordingsCoreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thereAreSome()
    {
        QVERIFY(QFile::exists(recordingFile(QStringLiteral("healthy-serial"), ".jsonl")));
    }

    void whatTheSidecarSaysIsRead_data() { recordingRows(); }
    void whatTheSidecarSaysIsRead()
    {
        QFETCH(QString, name);
        const RecordedCase theCase(name);
        QCOMPARE(theCase.expectation.mistake, QString());
        QCOMPARE(read(theCase), linesOf(theCase.expectation));
    }

    void sidecarsWithMistakes_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("mistake");
        const QString incomplete =
            QStringLiteral("FILE has to tell each setting once, or an error alone");
        QTest::newRow("empty") << QByteArray() << incomplete;
        QTest::newRow("one setting") << QByteArray("km-control  2\n") << incomplete;
        QTest::newRow("an error and a setting")
            << QByteArray("error  no-answer\nkm-control  2\n") << incomplete;
        QTest::newRow("another key") << QByteArray("km-countrol  2\n")
                                     << QStringLiteral("no setting is called \"km-countrol\"");
    }
    void sidecarsWithMistakes()
    {
        QFETCH(QByteArray, text);
        const QTemporaryDir dir;
        const QString name = dir.filePath(QStringLiteral("case.expected"));
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        QTEST(readExpectation(name).mistake.replace(name, QStringLiteral("FILE")), "mistake");
    }

    void aRecordingWithoutASidecarIsOne()
    {
        QCOMPARE(readExpectation(QStringLiteral("/nowhere/case.expected")).mistake,
                 QStringLiteral("the recording has no sidecar /nowhere/case.expected"));
    }
};

QTEST_GUILESS_MAIN(RecordingsCoreTest)
#include "tst_recordings_core.moc"
