#include "simulator/open_files.h"

#include <QtGlobal>
#ifdef Q_OS_UNIX
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#endif

void allowOpenFiles(std::size_t count)
{
#ifdef Q_OS_UNIX
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= count)
        return;
    const rlim_t most = limit.rlim_max;
    limit.rlim_cur = most;
    if (most < count || ::setrlimit(RLIMIT_NOFILE, &limit) != 0)
        throw std::runtime_error("this needs " + std::to_string(count) +
                                 " open files, and the system allows " + std::to_string(most) +
                                 " (ulimit -Hn shows it): simulate fewer modules");
#else
    Q_UNUSED(count)
#endif
}
