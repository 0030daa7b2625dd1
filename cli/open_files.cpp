#include "cli/open_files.h"

#include <QtGlobal>
#include <algorithm>
#include <limits>
#ifdef Q_OS_UNIX
#include <sys/resource.h>
#endif

int mostDevicesAtOnce()
{
    constexpr int most = std::numeric_limits<int>::max();
#ifdef Q_OS_UNIX
    constexpr rlim_t spare = 32; // the event loop's, the search's, files that are written
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return most;
    const rlim_t soft = limit.rlim_cur;
    limit.rlim_cur = limit.rlim_max;
    const rlim_t allowed = ::setrlimit(RLIMIT_NOFILE, &limit) == 0 ? limit.rlim_max : soft;
    if (allowed == RLIM_INFINITY || allowed >= static_cast<rlim_t>(most))
        return most;
    return static_cast<int>(std::max(allowed, spare + 1) - spare);
#else
    return most;
#endif
}
