#include "simulator/stdin_lines.h"

#include <array>
#include <chrono>
#include <unistd.h>

namespace {

/// Reading a terminal from the background would stop the program.
bool isInBackground()
{
    const pid_t foreground = ::tcgetpgrp(STDIN_FILENO);
    return foreground >= 0 && foreground != ::getpgrp();
}

} // namespace

StdinLines::StdinLines(QObject *parent)
    : QObject(parent), notifier_(STDIN_FILENO, QSocketNotifier::Read)
{
    using namespace std::chrono_literals;
    backgroundPause_.setSingleShot(true);
    backgroundPause_.setInterval(500ms);
    connect(&backgroundPause_, &QTimer::timeout, this, [this] { notifier_.setEnabled(true); });
    connect(&notifier_, &QSocketNotifier::activated, this, &StdinLines::readSome);
}

bool StdinLines::isInteractive()
{
    return ::isatty(STDIN_FILENO) == 1;
}

void StdinLines::readSome()
{
    if (isInBackground()) {
        notifier_.setEnabled(false);
        backgroundPause_.start();
        return;
    }
    std::array<char, 1024> buffer{};
    const ssize_t count = ::read(STDIN_FILENO, buffer.data(), buffer.size());
    if (count > 0)
        collected_.append(buffer.data(), count);
    else
        notifier_.setEnabled(false);
    if (count <= 0 && !collected_.isEmpty())
        collected_.append('\n');

    qsizetype end = collected_.indexOf('\n');
    while (end >= 0) {
        const QString line = QString::fromLocal8Bit(collected_.left(end)).trimmed();
        collected_.remove(0, end + 1);
        Q_EMIT entered(line);
        end = collected_.indexOf('\n');
    }
    if (count <= 0)
        Q_EMIT closed();
}
