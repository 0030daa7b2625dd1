// The window does the same very often beside a healthy switch, and may keep nothing of it.
// scripts/soak builds and starts it.
//   pelora-soak [--road serial|udp] [--hours HOURS]

#include "live_objects.h"
#include "soak.h"

#include "log/window_dress.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QPixmapCache>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>

namespace {
constexpr int mistakeStatus = 2;

/// The offscreen platform says of every window that it has no size hints.
void passOn(QtMsgType, const QMessageLogContext &, const QString &text)
{
    if (!text.contains(QStringLiteral("propagateSizeHints")))
        std::fprintf(stderr, "%s\n", qPrintable(text));
}
} // namespace

int main(int argc, char *argv[])
{
    const QTemporaryDir home;
    for (const char *variable : {"HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR"})
        qputenv(variable, home.path().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(passOn);
    QApplication application(argc, argv);
    useLightPalette();
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({
        {QStringLiteral("road"), QStringLiteral("serial or udp (serial)."), QStringLiteral("ROAD"),
         QStringLiteral("serial")},
        {QStringLiteral("hours"), QStringLiteral("The share of 24 hours (24)."),
         QStringLiteral("HOURS"), QStringLiteral("24")},
        {QStringLiteral("leak"),
         QStringLiteral("Keep memory, files, objects or timers each time: the soak is to fail."),
         QStringLiteral("WHAT")},
    });
    parser.process(application);
    const auto road = roadNamed(parser.value(QStringLiteral("road")).toLatin1());
    const double hours = parser.value(QStringLiteral("hours")).toDouble();
    if (!road || hours <= 0) {
        std::fputs("pelora-soak: --road takes serial or udp, --hours a number above 0\n", stderr);
        return mistakeStatus;
    }
    QPixmapCache::setCacheLimit(512); // KiB; filled at once instead of over many dialogs
    live_objects::begin();
    Soak soak(*road, QDir(home.path()), hours);
    const QString leak = parser.value(QStringLiteral("leak"));
    if (!leak.isEmpty() && !soak.leak(leak.toLatin1())) {
        std::fputs("pelora-soak: --leak takes memory, files, objects or timers\n", stderr);
        return mistakeStatus;
    }
    QElapsedTimer clock;
    clock.start();
    QApplication::setQuitOnLastWindowClosed(false); // the program ends with the soak
    QTimer::singleShot(0, &application, [&] { QApplication::exit(soak.run()); });
    const int status = QApplication::exec();
    std::printf("%-6s took %lld s for a share of %g hours\n", nameOf(*road),
                static_cast<long long>(clock.elapsed() / 1000), hours);
    return status;
}
