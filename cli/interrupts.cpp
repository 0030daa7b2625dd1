#include "cli/interrupts.h"

#include <csignal>
#include <iterator>
#ifdef Q_OS_WIN
#include <utility>
#include <windows.h>
#else
#include <QSocketNotifier>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace {
#ifdef Q_OS_WIN
Interrupts *listener = nullptr; // NOLINT: a handler has nothing else
// The console calls this in a thread of its own.
BOOL WINAPI onConsole(DWORD event)
{
    Interrupts *told = std::exchange(listener, nullptr);
    if (told == nullptr || (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT))
        return FALSE;
    QMetaObject::invokeMethod(told, &Interrupts::interrupted, Qt::QueuedConnection);
    return TRUE;
}
#else
int ends[2] = {-1, -1}; // NOLINT: a signal handler has nothing else; what is written into the first
                        // comes out of the second
volatile std::sig_atomic_t isRaised = 0; // NOLINT: likewise

void onSignal(int number)
{
    std::signal(number, SIG_DFL); // the next one ends
    isRaised = 1;
    const char wake = 1;
    [[maybe_unused]] const ssize_t written = ::write(ends[0], &wake, sizeof wake);
}
#endif
} // namespace

Interrupts::Interrupts(QObject *parent) : QObject(parent)
{
#ifdef Q_OS_WIN
    listener = this;
    SetConsoleCtrlHandler(onConsole, TRUE);
#else
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, ends) != 0)
        return;
    auto *notifier = new QSocketNotifier(ends[1], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        notifier->setEnabled(false);
        Q_EMIT interrupted();
    });
    isRaised = 0;
    std::signal(SIGINT, onSignal);
    std::signal(SIGTERM, onSignal);
#endif
}

Interrupts::~Interrupts()
{
#ifdef Q_OS_WIN
    listener = nullptr;
    SetConsoleCtrlHandler(onConsole, FALSE);
#else
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
    for (int &end : ends) {
        if (end >= 0)
            ::close(end);
        end = -1;
    }
#endif
}

#ifndef Q_OS_WIN
bool waitForInput()
{
    pollfd watched[] = {{STDIN_FILENO, POLLIN, 0}, {ends[1], POLLIN, 0}};
    bool isThere = false;
    while (!isThere && isRaised == 0)
        isThere = ::poll(watched, std::size(watched), -1) >= 0 || errno != EINTR;
    return isRaised == 0;
}
#endif
