// Idle: a connected window that nobody touches, then the same after its cable was pulled. Prints
// the timer events and the CPU time of five seconds each.

#include "measure.h"
#include "support/serial_window.h"

#include <cstdio>

namespace {
class TimerEvents : public QObject
{
public:
    int count = 0;

private:
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::Timer;
        return false;
    }
};

void measure(const char *state)
{
    TimerEvents timers;
    QEventLoop loop;
    QTimer end;
    end.setSingleShot(true);
    QObject::connect(&end, &QTimer::timeout, &loop, &QEventLoop::quit);
    end.start(5000);
    qApp->installEventFilter(&timers);
    const double before = cpuMilliseconds();
    loop.exec();
    const double used = cpuMilliseconds() - before;
    qApp->removeEventFilter(&timers);
    // One of the events is the measurement's own end.
    std::printf("%-10s  %d timer events, %.1f ms of CPU in 5 s\n", state, timers.count - 1, used);
}
} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    SerialWindow s;
    s.start(WindowSettings());
    QTest::qWait(2500);
    s.user.rest(); // its polling would be counted
    measure("connected");
    s.user.wake();
    s.unplug();
    QTest::qWait(1000);
    s.user.rest();
    measure("pulled");
    return 0;
}
