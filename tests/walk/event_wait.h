#pragma once

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <chrono>

/// Lets the event loop run until `seen()` is true, at most `longest`; whether it came true.
template <typename Seen>
bool waitUntil(Seen &&seen, std::chrono::milliseconds longest)
{
    QElapsedTimer clock;
    clock.start();
    QEventLoop loop;
    QTimer look;
    bool came = seen();
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        came = seen();
        if (came || clock.elapsed() > longest.count())
            loop.quit();
    });
    look.start(3);
    if (!came)
        loop.exec();
    return came;
}
