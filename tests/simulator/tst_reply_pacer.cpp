#include "simulator/reply_pacer.h"
#include "simulator/serial_face.h"
#include "simulator/serial_line.h"
#include "simulator/simulated_switch.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <chrono>

using namespace std::chrono_literals;

namespace {

/// What a pacer lets go, and when, since this object was made.
class Arrivals : public QObject
{
    Q_OBJECT

public:
    explicit Arrivals(ReplyPacer &pacer)
    {
        time_.start();
        connect(&pacer, &ReplyPacer::due, this, [this](const QByteArray &bytes) {
            all += bytes;
            slices << bytes;
            nanoseconds << time_.nsecsElapsed();
        });
    }

    /// Whether no byte arrived before a line of `bytesPerSecond` can have carried it.
    bool areNeverAhead(qint64 bytesPerSecond) const
    {
        qint64 carried = 0;
        for (qsizetype i = 0; i < slices.size(); ++i) {
            carried += slices.at(i).size();
            if (carried * 1000000000 > nanoseconds.at(i) * bytesPerSecond)
                return false;
        }
        return true;
    }

    QByteArray all;
    QByteArrayList slices;
    QList<qint64> nanoseconds;

private:
    QElapsedTimer time_;
};

/// A face whose line is kept in memory.
class MemoryFace : public SerialFace
{
    Q_OBJECT

public:
    using SerialFace::SerialFace;
    void plug() override {}
    void unplug() override { forgetPending(); }
    bool isPlugged() const override { return true; }
    QString portName() const override { return {}; }
    QByteArray heard;

protected:
    void put(const QByteArray &bytes) override { heard += bytes; }
    qsizetype backlog() const override { return 0; }
};

} // namespace

/// Answers at the speed of a line.
class ReplyPacerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void unpacedPiecesGoAtOnce()
    {
        ReplyPacer pacer(ReplyPacer::unpaced);
        Arrivals arrivals(pacer);
        pacer.enqueue({{0ms, QByteArray(100000, 'x')}, {0ms, "end"}});
        QCOMPARE(arrivals.slices, QByteArrayList({QByteArray(100000, 'x'), "end"}));
        QCOMPARE(pacer.waiting(), qsizetype(0));
    }

    void aLineCarries11520BytesASecond()
    {
        ReplyPacer pacer(lineBytesPerSecond);
        Arrivals arrivals(pacer);
        QByteArray text;
        for (int i = 0; i < 1152; ++i)
            text += static_cast<char>('a' + i % 26);
        pacer.enqueue({{0ms, text.left(500)}});
        pacer.enqueue({{0ms, text.mid(500)}});
        QVERIFY(arrivals.all.isEmpty());
        QCOMPARE(pacer.waiting(), qsizetype(1152));
        // An event loop that is always there, so that every wake-up is seen.
        QEventLoop loop;
        connect(&pacer, &ReplyPacer::due, &loop, [&] {
            if (arrivals.all.size() == text.size())
                loop.quit();
        });
        QTimer::singleShot(20s, &loop, &QEventLoop::quit);
        loop.exec();
        QCOMPARE(arrivals.all, text);
        QCOMPARE(pacer.waiting(), qsizetype(0));
        QVERIFY(arrivals.nanoseconds.last() >= 100000000);
        QVERIFY(arrivals.areNeverAhead(11520));
        // It sleeps between the slices, 4 ms and so 46 bytes each.
        QVERIFY2(arrivals.slices.size() <= 1152 / 30,
                 QByteArray::number(arrivals.slices.size()).constData());
    }

    void aWaitIsSilenceOnTheLine()
    {
        ReplyPacer pacer(lineBytesPerSecond);
        Arrivals arrivals(pacer);
        // 5 ms and 10 ms on the line, each in one go, 30 ms apart
        pacer.enqueue({{0ms, QByteArray(58, 'a'), true}, {30ms, QByteArray(116, 'b'), true}});
        QTRY_COMPARE(arrivals.slices, QByteArrayList({QByteArray(58, 'a'), QByteArray(116, 'b')}));
        QVERIFY(arrivals.nanoseconds[0] >= 5000000);
        QVERIFY(arrivals.nanoseconds[1] - arrivals.nanoseconds[0] >= 40000000);
    }

    void anIdleLineOwesNothing()
    {
        ReplyPacer pacer(lineBytesPerSecond);
        pacer.enqueue({{0ms, "first"}});
        QTRY_COMPARE(pacer.waiting(), qsizetype(0));
        QElapsedTimer idle;
        idle.start();
        QTRY_VERIFY(idle.elapsed() >= 50); // time in which nothing was to be carried
        Arrivals arrivals(pacer);
        pacer.enqueue({{0ms, QByteArray(576, 'x')}});
        QTRY_COMPARE(arrivals.all.size(), qsizetype(576));
        QVERIFY(arrivals.areNeverAhead(11520));
    }

    void whatIsClearedNeverArrives()
    {
        ReplyPacer pacer(lineBytesPerSecond);
        Arrivals arrivals(pacer);
        pacer.enqueue({{0ms, QByteArray(5000, 'x')}});
        QTRY_VERIFY(!arrivals.all.isEmpty());
        pacer.clear();
        const qsizetype before = arrivals.all.size();
        QVERIFY(before < 5000);
        QCOMPARE(pacer.waiting(), qsizetype(0));
        pacer.enqueue({{0ms, "next"}});
        QTRY_COMPARE(arrivals.all, QByteArray(before, 'x') + "next");
    }

    void clearingWhileSomethingArrivesIsSafe()
    {
        ReplyPacer pacer(lineBytesPerSecond);
        Arrivals arrivals(pacer);
        connect(&pacer, &ReplyPacer::due, &pacer, [&pacer] { pacer.clear(); });
        pacer.enqueue({{0ms, QByteArray(5000, 'x')}, {0ms, "never"}});
        QTRY_COMPARE(arrivals.slices.size(), qsizetype(1));
        QCOMPARE(pacer.waiting(), qsizetype(0));
        pacer.enqueue({{0ms, "y"}});
        QTRY_COMPARE(arrivals.slices.size(), qsizetype(2));
        QCOMPARE(arrivals.slices.last(), QByteArray("y"));
    }

    void theQueueForTheLineHasAnEnd()
    {
        SimulatedSwitch theSwitch(0ms);
        MemoryFace face(theSwitch, lineBytesPerSecond);
        const QSignalSpy noted(&face, &SerialFace::noted);
        theSwitch.flood(30000000);
        QCOMPARE(noted.size(), 0);
        theSwitch.flood(30000000);
        theSwitch.flood(30000000);
        QCOMPARE(noted.size(), 1);
        QCOMPARE(noted.first().first().toString(),
                 QStringLiteral("the line cannot follow, so text is being dropped"));
        face.unplug();
        theSwitch.press(2);
        QTRY_VERIFY(face.heard.endsWith("**M2\n"));
    }
};

QTEST_GUILESS_MAIN(ReplyPacerTest)
#include "tst_reply_pacer.moc"
