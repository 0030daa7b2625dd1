#include "simulator/stdin_reader.h"

#include <array>
#include <chrono>
#include <unistd.h>
#include <utility>

namespace {

/// Reading a terminal from the background would stop the program.
bool isInBackground()
{
    const pid_t foreground = ::tcgetpgrp(STDIN_FILENO);
    return foreground >= 0 && foreground != ::getpgrp();
}

} // namespace

StdinLines::Reader::Reader(Take take, End end)
    : take_(std::move(take)), end_(std::move(end)), notifier_(STDIN_FILENO, QSocketNotifier::Read)
{
    using namespace std::chrono_literals;
    backgroundPause_.setSingleShot(true);
    backgroundPause_.setInterval(500ms);
    QObject::connect(&backgroundPause_, &QTimer::timeout, &notifier_,
                     [this] { notifier_.setEnabled(true); });
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { readSome(); });
}

StdinLines::Reader::~Reader() = default;

bool StdinLines::Reader::isInteractive()
{
    return ::isatty(STDIN_FILENO) == 1;
}

void StdinLines::Reader::readSome()
{
    if (isInBackground()) {
        notifier_.setEnabled(false);
        backgroundPause_.start();
        return;
    }
    std::array<char, 1024> buffer{};
    const ssize_t count = ::read(STDIN_FILENO, buffer.data(), buffer.size());
    if (count > 0) {
        take_(QByteArray(buffer.data(), count));
        return;
    }
    notifier_.setEnabled(false);
    end_();
}
