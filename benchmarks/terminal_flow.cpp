// 600,000 lines of device text in 1 kB chunks through a pseudo-terminal into the real window:
// throughput, gaps of the event loop, and what each megabyte costs in CPU time and memory, well
// past the 100,000 lines that the terminal keeps.

#include "measure.h"
#include "support/pty_pair.h"
#include "support/window_bench.h"

#include <QTextDocument>
#include <QTextEdit>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <thread>
#include <vector>

namespace {
constexpr qint64 total = 32'000'000; // 600,000 lines
constexpr qint64 megabyte = 1'000'000;

QByteArray kilobyte()
{
    QByteArray chunk;
    while (chunk.size() < 1000)
        chunk += "terminal text of a talkative device, line after line\n";
    return chunk.left(999) + '\n';
}
} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    PtyPair cable;
    qputenv("PELORA_EXTRA_SERIAL_PORTS", cable.path().toLocal8Bit());
    DialogRecorder user;
    user.on<Select_connection_method_Dialog>([](Select_connection_method_Dialog &dialog) {
        WindowBench::choose(dialog, "radioButton_RS232");
    });
    KM_Configuration_Tool_Norvik window;
    window.show();
    auto *terminal = window.findChild<QTextEdit *>(QStringLiteral("textEdit_Main_Terminal"));
    QTest::qWait(500);

    qint64 shown = 0;
    QObject::connect(
        terminal->document(), &QTextDocument::contentsChange, terminal,
        [&shown](int, int removed, int added) { shown += std::max(added - removed, 0); });
    std::vector<double> cpuAtMegabyte{cpuMilliseconds()};
    std::vector<double> memoryAtMegabyte{residentMegabytes()};
    std::vector<double> gaps;
    QElapsedTimer clock;
    QElapsedTimer sinceTick;
    QTimer ticker;
    ticker.setTimerType(Qt::PreciseTimer);
    QObject::connect(&ticker, &QTimer::timeout, [&] {
        gaps.push_back(static_cast<double>(sinceTick.nsecsElapsed()) / 1e6);
        sinceTick.restart();
        while (cpuAtMegabyte.size() <= static_cast<size_t>(shown / megabyte)) {
            cpuAtMegabyte.push_back(cpuMilliseconds());
            memoryAtMegabyte.push_back(residentMegabytes());
        }
        if (shown >= total)
            QApplication::quit();
    });
    std::thread writer([&cable] {
        const QByteArray chunk = kilobyte();
        for (qint64 sent = 0; sent < total; sent += chunk.size()) {
            qsizetype done = 0;
            while (done < chunk.size()) {
                const ssize_t count = ::write(cable.masterDescriptor(), chunk.constData() + done,
                                              static_cast<size_t>(chunk.size() - done));
                if (count > 0)
                    done += count;
                else
                    std::this_thread::sleep_for(std::chrono::microseconds(200));
            }
        }
    });
    clock.start();
    sinceTick.start();
    ticker.start(1);
    QApplication::exec();
    const double seconds = static_cast<double>(clock.elapsed()) / 1000.0;
    writer.join();
    std::sort(gaps.begin(), gaps.end());
    std::printf("bytes per second            %.0f\n", static_cast<double>(total) / seconds);
    std::printf("event loop gap, 99th pct.   %.1f ms\n", gaps[gaps.size() * 99 / 100]);
    std::printf("event loop gap, longest     %.1f ms\n", gaps.back());
    std::printf("lines kept                  %lld\n",
                static_cast<long long>(terminal->toPlainText().count(QLatin1Char('\n'))));
    std::printf("megabyte  CPU ms  resident MB\n");
    for (size_t at = 1; at < cpuAtMegabyte.size(); ++at)
        std::printf("%8zu  %6.0f  %11.0f\n", at, cpuAtMegabyte[at] - cpuAtMegabyte[at - 1],
                    memoryAtMegabyte[at]);
    return 0;
}
