#pragma once

#include <QApplication>
#include <QEvent>
#include <QObject>
#include <QWidget>
#include <functional>
#include <sys/resource.h>

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
