#include "simulator/stdin_lines.h"

#include "simulator/stdin_reader.h"

StdinLines::StdinLines(QObject *parent)
    : QObject(parent), reader_(std::make_unique<Reader>(
                           [this](const QByteArray &bytes) { take(bytes); }, [this] { end(); }))
{
}

StdinLines::~StdinLines() = default;

bool StdinLines::isInteractive()
{
    return Reader::isInteractive();
}

void StdinLines::take(const QByteArray &bytes)
{
    collected_ += bytes;
    qsizetype end = collected_.indexOf('\n');
    while (end >= 0) {
        const QString line = QString::fromLocal8Bit(collected_.left(end)).trimmed();
        collected_.remove(0, end + 1);
        Q_EMIT entered(line);
        end = collected_.indexOf('\n');
    }
}

void StdinLines::end()
{
    if (!collected_.isEmpty())
        take("\n");
    Q_EMIT closed();
}
