#include "app/early_end.h"

#include <cerrno>
#include <cstring>
#include <iostream>
#ifdef Q_OS_WIN
#include "log/window_dress.h"

#include <cstdio>
#include <windows.h>
#endif

#ifdef Q_OS_WIN
namespace {
/// Whether standard output or error leads somewhere, perhaps to the console we were started from.
bool hasStream(bool isMistake)
{
    const HANDLE handle = GetStdHandle(isMistake ? STD_ERROR_HANDLE : STD_OUTPUT_HANDLE);
    if (handle != nullptr && handle != INVALID_HANDLE_VALUE &&
        GetFileType(handle) != FILE_TYPE_UNKNOWN)
        return true;
    if (AttachConsole(ATTACH_PARENT_PROCESS) == 0)
        return false;
    SetConsoleOutputCP(CP_UTF8);
    return std::freopen("CONOUT$", "w", isMistake ? stderr : stdout) != nullptr;
}
} // namespace
#endif

int show(const EarlyEnd &end)
{
    const bool isMistake = end.status != 0;
#ifdef Q_OS_WIN
    if (!hasStream(isMistake)) {
        const QString title = applicationTitle();
        MessageBoxW(nullptr, reinterpret_cast<const wchar_t *>(end.text.utf16()),
                    reinterpret_cast<const wchar_t *>(title.utf16()),
                    isMistake ? MB_ICONWARNING : MB_ICONINFORMATION);
        return end.status;
    }
#endif
    (isMistake ? std::cerr : std::cout) << end.text.toStdString() << std::flush;
    const int error = errno;
    if (std::cout || error == EPIPE) // whoever reads may have had enough
        return end.status;
    std::cerr << "pelora-utility: standard output cannot be written: " << std::strerror(error)
              << std::endl;
    return mistakeStatus;
}
