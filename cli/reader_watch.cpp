#include "cli/reader_watch.h"

#ifndef Q_OS_WIN
#include <QSocketNotifier>
#include <poll.h>
#include <sys/stat.h>
#endif

namespace {
#ifndef Q_OS_WIN
bool isPipe(int descriptor)
{
    struct stat status = {};
    return ::fstat(descriptor, &status) == 0 &&
           (S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode));
}

bool hasReader(int descriptor)
{
    pollfd end = {descriptor, 0, 0};
    return ::poll(&end, 1, 0) == 0;
}
#endif
} // namespace

ReaderWatch::ReaderWatch([[maybe_unused]] const Output &output, QObject *parent) : QObject(parent)
{
#ifndef Q_OS_WIN
    const int descriptor = output.descriptor();
    if (!isPipe(descriptor))
        return;
    // Asked for nothing that a pipe has, the system tells of its other end alone.
    auto *notifier = new QSocketNotifier(descriptor, QSocketNotifier::Exception, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier, descriptor] {
        if (hasReader(descriptor))
            return;
        notifier->setEnabled(false);
        Q_EMIT gone();
    });
#endif
}
