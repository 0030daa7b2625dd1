#include "app/screen_fit.h"

#include <QGuiApplication>
#include <QScreen>
#include <cmath>

namespace {
// Title bar and visible borders, in pixels of the system's scale. They are not the program's to
// scale, and the system does not tell them before there is a window.
#ifdef Q_OS_WIN
constexpr QSize frameSize(2, 32);
#else
constexpr QSize frameSize(8, 42);
#endif

/// Wayland does not tell how much of a screen is taken by panels.
constexpr int panelOnWayland = 48;

ScreenRoom roomOnPrimaryScreen()
{
    const QScreen *const screen = QGuiApplication::primaryScreen();
    if (screen == nullptr)
        return {QSize(), 1};
    QSize available = screen->availableSize();
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        available.rheight() -= panelOnWayland;
    return {available, screen->devicePixelRatio()};
}

/// Whether as many whole pixels as a length gets hold all of it.
bool isNotCut(double length)
{
    constexpr double hair = 1e-6;
    return std::round(length) > length - hair;
}
} // namespace

double scaleToFit(QSize window, const ScreenRoom &room, QSize frame)
{
    const QSize space = room.available - frame;
    if (space.isEmpty() || room.scale <= 0 ||
        (space.width() >= window.width() && space.height() >= window.height()))
        return 1;
    QSize fitting = window.scaled(space, Qt::KeepAspectRatio);
    const auto scale = [&] { return static_cast<double>(fitting.width()) / window.width(); };
    const auto fits = [&] {
        const QSize size = window * scale();
        return size.height() <= space.height() && isNotCut(size.width() * room.scale) &&
               isNotCut(size.height() * room.scale);
    };
    while (fitting.width() > 1 && !fits())
        fitting.rwidth() -= 1;
    return scale();
}

double scaleOnPrimaryScreen(QSize window)
{
    return qEnvironmentVariableIsEmpty("QT_SCALE_FACTOR")
               ? scaleToFit(window, roomOnPrimaryScreen(), frameSize)
               : 1;
}
