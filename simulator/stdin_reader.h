#pragma once

#include "simulator/stdin_lines.h"

#include <QtGlobal>
#include <functional>
#ifdef Q_OS_WIN
#include <mutex>
#else
#include <QSocketNotifier>
#include <QTimer>
#endif

/// Reads standard input as it comes. `take` gets each piece and `end` is called once behind the
/// last, both in the event loop of the thread that made the reader, and never after it is gone.
class StdinLines::Reader
{
public:
    using Take = std::function<void(const QByteArray &bytes)>;
    using End = std::function<void()>;

    Reader(Take take, End end);
    ~Reader();
    Q_DISABLE_COPY_MOVE(Reader)

    static bool isInteractive();

private:
#ifdef Q_OS_WIN
    /// What the reading thread and this share; the thread outlives it, for nothing ends its wait.
    struct Link
    {
        std::mutex mutex;
        QObject *context = nullptr; ///< null: nobody is there any more
    };

    static void readAll(const std::shared_ptr<Link> &link, const Take &take, const End &end);

    QObject context_;
    std::shared_ptr<Link> link_ = std::make_shared<Link>();
#else
    void readSome();

    Take take_;
    End end_;
    QSocketNotifier notifier_;
    QTimer backgroundPause_;
#endif
};
