#include "simulator/quit_signals.h"

#ifdef Q_OS_UNIX
#include <array>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

std::array<int, 2> wakeUpPipe{-1, -1};

// Only what may be called in a signal handler: one write, the rest waits for the event loop.
void onSignal(int)
{
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = ::write(wakeUpPipe[1], &byte, 1);
}

} // namespace
#endif

QuitSignals::QuitSignals(QObject *parent) : QObject(parent)
{
#ifdef Q_OS_UNIX
    if (::pipe(wakeUpPipe.data()) != 0)
        return;
    for (const int end : wakeUpPipe) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    notifier_ = std::make_unique<QSocketNotifier>(wakeUpPipe[0], QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, [this] {
        notifier_->setEnabled(false);
        Q_EMIT raised();
    });
    struct sigaction action = {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    for (const int number : {SIGINT, SIGTERM})
        ::sigaction(number, &action, nullptr);
    struct sigaction before = {};
    ::sigaction(SIGHUP, nullptr, &before);
    if (before.sa_handler != SIG_IGN) // as nohup asks for
        ::sigaction(SIGHUP, &action, nullptr);
    // A reader of our output that goes away must not take the symbolic link's removal with it.
    std::signal(SIGPIPE, SIG_IGN);
#endif
}
