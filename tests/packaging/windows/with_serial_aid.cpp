// Runs a program with serial_aid.dll, which stands beside this one, loaded into it:
//   with_serial_aid.exe PROGRAM [ARGUMENT ...]
// Ends as the program does, or with 125 when it could not be started so.
#include <iostream>
#include <string>
#include <windows.h>

namespace {
constexpr int notStarted = 125;

int refuse(const char *what)
{
    std::cerr << "with_serial_aid: " << what << ", error " << GetLastError() << '\n';
    return notStarted;
}

std::wstring besideThis(const std::wstring &name)
{
    std::wstring path(MAX_PATH, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
    return path.substr(0, path.find_last_of(L'\\') + 1) + name;
}

/// Our own command line without our own name.
std::wstring remainingArguments()
{
    const std::wstring all = GetCommandLineW();
    const std::size_t end = all.front() == L'"' ? all.find(L'"', 1) + 1 : all.find(L' ');
    const std::size_t next = end == std::wstring::npos ? end : all.find_first_not_of(L' ', end);
    return next == std::wstring::npos ? std::wstring() : all.substr(next);
}

/// The program, not yet running, loads the aid; false when it does not.
bool load(HANDLE process, const std::wstring &aid)
{
    const std::size_t size = (aid.size() + 1) * sizeof(wchar_t);
    void *const there = VirtualAllocEx(process, nullptr, size, MEM_COMMIT, PAGE_READWRITE);
    if (there == nullptr || WriteProcessMemory(process, there, aid.c_str(), size, nullptr) == 0)
        return false;
    // The system's libraries have the same place in every process.
    const auto loader = reinterpret_cast<LPTHREAD_START_ROUTINE>(reinterpret_cast<void *>(
        GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "LoadLibraryW")));
    const HANDLE thread = CreateRemoteThread(process, nullptr, 0, loader, there, 0, nullptr);
    DWORD result = 0;
    return thread != nullptr && WaitForSingleObject(thread, INFINITE) == WAIT_OBJECT_0 &&
           GetExitCodeThread(thread, &result) != 0 && result != 0;
}
} // namespace

int main()
{
    std::wstring command = remainingArguments();
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION program{};
    if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr,
                       nullptr, &start, &program) == 0)
        return refuse("the program does not start");
    if (!load(program.hProcess, besideThis(L"serial_aid.dll"))) {
        TerminateProcess(program.hProcess, notStarted);
        return refuse("the program does not load the aid");
    }
    ResumeThread(program.hThread);
    WaitForSingleObject(program.hProcess, INFINITE);
    DWORD status = notStarted;
    GetExitCodeProcess(program.hProcess, &status);
    return static_cast<int>(status);
}
