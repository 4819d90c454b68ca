#include "platform/processes.h"

#include <windows.h>
// behind windows.h
#include <tlhelp32.h>

#include "platform/win32/handles.h"
#include "platform/win32/last_error.h"
#include "platform/win32/pump.h"

namespace pc {

namespace {

HANDLE Native(const Process& process) { return reinterpret_cast<HANDLE>(process.value); }

}  // namespace

Process& Process::operator=(Process&& other) noexcept {
    if (this != &other) {
        Close();
        value = other.value;
        other.value = 0;
    }
    return *this;
}

void Process::Close() {
    if (value) CloseHandle(Native(*this));
    value = 0;
}

bool OpenProcessById(uint32_t processId, uint32_t access, Process& process) {
    process.Close();
    process.value = reinterpret_cast<uintptr_t>(OpenProcess(access, FALSE, processId));
    return Done(process.value != 0);
}

bool GetExitCode(const Process& process, uint32_t& exitCode) {
    DWORD code = 0;
    if (!Done(GetExitCodeProcess(Native(process), &code))) return false;
    exitCode = code;
    return true;
}

bool Terminate(const Process& process, uint32_t exitCode) { return Done(TerminateProcess(Native(process), exitCode)); }

std::vector<ProcessEntry> ListProcesses() {
    std::vector<ProcessEntry> processes;
    FileHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL more = snapshot && Process32FirstW(snapshot.Get(), &entry); more;
         more = Process32NextW(snapshot.Get(), &entry))
        processes.push_back({entry.th32ProcessID, Utf8(entry.szExeFile)});
    return processes;
}

uint32_t OwnProcessId() { return GetCurrentProcessId(); }

PrivilegeStep SetPrivilege(const std::string& name, bool enable, bool* changed) {
    KernelHandle token;
    if (!Done(OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, token.Receive())))
        return PrivilegeStep::openToken;
    TOKEN_PRIVILEGES wanted = {};
    wanted.PrivilegeCount = 1;
    wanted.Privileges[0].Attributes = enable ? SE_PRIVILEGE_ENABLED : 0;
    if (!Done(LookupPrivilegeValueW(nullptr, Wide(name).c_str(), &wanted.Privileges[0].Luid)))
        return PrivilegeStep::lookup;
    TOKEN_PRIVILEGES before = {};
    DWORD size = sizeof before;
    if (!Done(AdjustTokenPrivileges(token.Get(), FALSE, &wanted, size, &before, &size))) return PrivilegeStep::adjust;
    bool wasEnabled = (before.Privileges[0].Attributes & SE_PRIVILEGE_ENABLED) != 0;
    if (changed) *changed = before.PrivilegeCount > 0 && wasEnabled != enable;
    return PrivilegeStep::done;
}

uint32_t TickCount() { return GetTickCount(); }
void SleepFor(uint32_t milliseconds) { Sleep(milliseconds); }

bool (*dialogFilter)(MSG* message) = nullptr;

void HandleMessage(MSG& message) {
    if (dialogFilter && dialogFilter(&message)) return;
    TranslateMessage(&message);
    DispatchMessageW(&message);
}

void PumpMessages() {
    // A timer whose handler is slower than its interval would keep the queue filled for ever.
    constexpr DWORD longest = 200;
    MSG message;
    for (DWORD start = GetTickCount();
         GetTickCount() - start < longest && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);) {
        if (message.message == WM_QUIT) {  // for the outermost loop
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        HandleMessage(message);
    }
}

void EndProcess(uint32_t exitCode) {
    ExitProcess(exitCode);
    __builtin_unreachable();
}

bool HoldSingleInstance(const std::string& name) {
    static KernelHandle held;
    KernelHandle mutex(CreateMutexW(nullptr, FALSE, Wide(name).c_str()));
    if (!mutex || GetLastError() == ERROR_ALREADY_EXISTS) return false;
    held = std::move(mutex);
    return true;
}

}  // namespace pc
