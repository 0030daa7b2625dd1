#include "cli/output.h"

#include <QTest>
#include <fcntl.h>
#include <unistd.h>

namespace {
/// A pipe that a program writes to, and of which somebody reads now and then. Neither end waits.
class Pipe
{
public:
    Pipe()
    {
        if (::pipe2(ends_, O_NONBLOCK) != 0)
            qFatal("no pipe");
        file_ = ::fdopen(ends_[1], "w");
    }
    ~Pipe()
    {
        std::fclose(file_); // first: what is left in it must not go to a pipe without a reader
        ::close(ends_[0]);
    }
    Pipe(const Pipe &) = delete;
    Pipe &operator=(const Pipe &) = delete;

    std::FILE *file() const { return file_; }

    void fill()
    {
        const QByteArray much(4096, '.');
        while (::write(ends_[1], much.constData(), std::size_t(much.size())) > 0) {
        }
    }

    QByteArray readAll()
    {
        QByteArray all;
        char piece[4096];
        for (ssize_t count = 1; count > 0; all.append(piece, qMax<ssize_t>(count, 0)))
            count = ::read(ends_[0], piece, sizeof piece);
        return all;
    }

private:
    int ends_[2] = {-1, -1};
    std::FILE *file_ = nullptr;
};
} // namespace

/// What is written to standard output and standard error.
class OutputTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsWrittenIsOnItsWayAtOnce()
    {
        Pipe pipe;
        Output output(pipe.file());
        output.write("one, ");
        QCOMPARE(pipe.readAll(), QByteArray("one, "));
        output.writeLine(QStringLiteral("two"));
        QCOMPARE(pipe.readAll(), QByteArray("two\n"));
        QVERIFY(!output.hasEnded());
    }

    /// Half of a report with a hole in it would be worse than its beginning.
    void nothingMoreIsWrittenAfterSomethingCouldNotBe()
    {
        Pipe pipe;
        Output output(pipe.file());
        pipe.fill();
        output.write("lost\n");
        QVERIFY(output.hasEnded());
        QCOMPARE(output.problem(), QStringLiteral("Resource temporarily unavailable"));
        pipe.readAll();
        output.write("late\n");
        QCOMPARE(pipe.readAll(), QByteArray());
        QCOMPARE(output.problem(), QStringLiteral("Resource temporarily unavailable"));
    }
};

QTEST_GUILESS_MAIN(OutputTest)
#include "tst_output.moc"
