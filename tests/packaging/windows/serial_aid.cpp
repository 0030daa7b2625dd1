// Loaded into a program that runs under Wine with a pseudo-terminal for a COM port. Wine 8 does not
// report WaitCommEvent on a completion port, which Qt waits at, and fails where a port has no modem
// lines, as a pseudo-terminal has none. Both calls of Qt's are answered here instead; reading,
// writing and all else stay Wine's.
#include <chrono>
#include <cstring>
#include <map>
#include <mutex>
#include <thread>
#include <utility>
#include <windows.h>

namespace {
struct Port
{
    HANDLE completion = nullptr; ///< where Qt waits for what the port's operations come to
    ULONG_PTR key = 0;
    unsigned wait = 0; ///< counts the waits; an older one has been cancelled
};

std::mutex mutex;
std::map<HANDLE, Port> ports;

/// Tells Qt of what has been received, or that asking fails: reading then says why.
void watch(HANDLE handle, unsigned wait, OVERLAPPED *overlapped)
{
    using namespace std::chrono_literals;
    for (;; std::this_thread::sleep_for(2ms)) {
        const std::lock_guard lock(mutex);
        const auto port = ports.find(handle);
        if (port == ports.end() || port->second.wait != wait)
            return;
        DWORD errors = 0;
        COMSTAT state{};
        if (ClearCommError(handle, &errors, &state) != 0 && state.cbInQue == 0)
            continue;
        PostQueuedCompletionStatus(port->second.completion, 0, port->second.key, overlapped);
        return;
    }
}

HANDLE WINAPI createIoCompletionPort(HANDLE file, HANDLE existing, ULONG_PTR key, DWORD threads)
{
    const HANDLE result = CreateIoCompletionPort(file, existing, key, threads);
    if (file != INVALID_HANDLE_VALUE && result != nullptr) {
        const std::lock_guard lock(mutex);
        ports[file] = {result, key, 0};
    }
    return result;
}

BOOL WINAPI waitCommEvent(HANDLE handle, DWORD *events, OVERLAPPED *overlapped)
{
    const std::lock_guard lock(mutex);
    const auto port = ports.find(handle);
    if (port == ports.end()) {
        SetLastError(ERROR_INVALID_HANDLE);
        return FALSE;
    }
    *events = EV_RXCHAR;
    std::thread(watch, handle, ++port->second.wait, overlapped).detach();
    SetLastError(ERROR_IO_PENDING);
    return FALSE;
}

BOOL WINAPI getCommModemStatus(HANDLE, DWORD *status)
{
    *status = MS_CTS_ON | MS_DSR_ON;
    return TRUE;
}

BOOL WINAPI cancelIo(HANDLE handle)
{
    {
        const std::lock_guard lock(mutex);
        ports.erase(handle);
    }
    return CancelIo(handle);
}

template <typename Function>
ULONG_PTR address(Function *function)
{
    return reinterpret_cast<ULONG_PTR>(function);
}

/// Puts a function in the place of one that the library imports.
bool replace(HMODULE library, const char *name, ULONG_PTR function)
{
    auto *const base = reinterpret_cast<std::byte *>(library);
    const auto at = [base](DWORD offset) { return base + offset; };
    const auto *const dos = reinterpret_cast<const IMAGE_DOS_HEADER *>(base);
    const auto *const headers = reinterpret_cast<const IMAGE_NT_HEADERS *>(base + dos->e_lfanew);
    const auto &directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    auto *entry = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR *>(at(directory.VirtualAddress));
    for (; entry->Name != 0; ++entry) {
        auto *names = reinterpret_cast<IMAGE_THUNK_DATA *>(at(entry->OriginalFirstThunk));
        auto *slots = reinterpret_cast<IMAGE_THUNK_DATA *>(at(entry->FirstThunk));
        for (; names->u1.AddressOfData != 0; ++names, ++slots) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal))
                continue;
            const auto *const import =
                reinterpret_cast<const IMAGE_IMPORT_BY_NAME *>(base + names->u1.AddressOfData);
            if (std::strcmp(reinterpret_cast<const char *>(import->Name), name) != 0)
                continue;
            DWORD before = 0;
            if (VirtualProtect(slots, sizeof *slots, PAGE_READWRITE, &before) == 0)
                return false;
            slots->u1.Function = function;
            VirtualProtect(slots, sizeof *slots, before, &before);
            return true;
        }
    }
    return false;
}
} // namespace

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID)
{
    if (reason != DLL_PROCESS_ATTACH)
        return TRUE;
    const HMODULE serial = GetModuleHandleW(L"Qt6SerialPort.dll");
    const bool good = serial != nullptr &&
                      replace(serial, "CreateIoCompletionPort", address(createIoCompletionPort)) &&
                      replace(serial, "WaitCommEvent", address(waitCommEvent)) &&
                      replace(serial, "GetCommModemStatus", address(getCommModemStatus)) &&
                      replace(serial, "CancelIo", address(cancelIo));
    return good ? TRUE : FALSE;
}
