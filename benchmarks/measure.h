#pragma once

#include <QApplication>
#include <QEvent>
#include <QFile>
#include <QList>
#include <QObject>
#include <QWidget>
#include <functional>
#include <sys/resource.h>
#include <unistd.h>

/// User and system CPU time of this process so far, in milliseconds.
inline double cpuMilliseconds()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    const auto milliseconds = [](const timeval &time) {
        return 1000.0 * static_cast<double>(time.tv_sec) +
               static_cast<double>(time.tv_usec) / 1000.0;
    };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

/// The memory that this process holds right now, in megabytes; 0 where the system does not tell.
inline double residentMegabytes()
{
    QFile status(QStringLiteral("/proc/self/statm"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> pages = status.readAll().split(' ');
    return pages.value(1).toDouble() * static_cast<double>(::sysconf(_SC_PAGESIZE)) / 1e6;
}

/// Calls `then` once, after `window` has been painted for the first time.
class FirstPaint : public QObject
{
public:
    FirstPaint(QWidget &window, std::function<void()> then) : then_(std::move(then))
    {
        window.installEventFilter(this);
    }

private:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && then_) {
            watched->removeEventFilter(this);
            QMetaObject::invokeMethod(this, std::exchange(then_, nullptr), Qt::QueuedConnection);
        }
        return false;
    }

    std::function<void()> then_;
};
