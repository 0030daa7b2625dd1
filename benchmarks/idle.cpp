// Idle: a connected window that nobody touches, then the same after its cable was pulled. Prints
// the timer events and the CPU time of five seconds each.

#include "app/main_window.h"
#include "measure.h"
#include "support/dialog_recorder.h"
#include "support/scripted_switch.h"

#include <QComboBox>
#include <QPushButton>
#include <QRadioButton>
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
    PtyPair cable;
    ScriptedSwitch device(cable);
    qputenv("PELORA_EXTRA_SERIAL_PORTS", cable.path().toLocal8Bit());
    auto user = std::make_unique<DialogRecorder>();
    user->on<Select_connection_method_Dialog>([](Select_connection_method_Dialog &dialog) {
        dialog.findChild<QRadioButton *>(QStringLiteral("radioButton_RS232"))->setChecked(true);
        dialog.findChild<QPushButton *>(QStringLiteral("pushButton_continue"))->click();
    });
    KM_Configuration_Tool_Norvik window;
    window.show();
    QTest::qWait(2500);
    user.reset(); // its polling would be counted
    measure("connected");
    user = std::make_unique<DialogRecorder>();
    device.leave();
    cable.pull();
    QTest::qWait(1000);
    user.reset();
    measure("pulled");
    return 0;
}
