// Starting programs, documents and property sheets.
#include <windows.h>
// behind windows.h
#include <shellapi.h>

#include <algorithm>

#include "platform/processes.h"
#include "platform/win32/handles.h"
#include "platform/win32/last_error.h"
#include "platform/win32/lookup.h"

namespace pc {

namespace {

constexpr DWORD errorElevationRequired = 740;  // Vista and later

bool IsFile(const std::wstring& path) {
    DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

// Where the program's name ends in a command line. Without quotes it ends at the first blank that has a program before
// it, as the platform looks for it, or else at the first blank.
size_t ProgramEnd(const std::wstring& line) {
    if (line.starts_with(L'"')) {
        size_t quote = line.find(L'"', 1);
        return quote == std::wstring::npos ? line.size() : quote + 1;
    }
    for (size_t end = 0; end < line.size();) {
        end = std::min(line.find(L' ', end + 1), line.size());
        std::wstring head = line.substr(0, end);
        if (IsFile(head) || IsFile(head + L".exe")) return end;
    }
    return std::min(line.find(L' '), line.size());
}

std::wstring WithoutQuotes(std::wstring text) {
    std::erase(text, L'"');
    return text;
}

// The shell asks the user for the rights that the program wants.
uint32_t StartElevated(const std::wstring& line, uint16_t windowStyle) {
    ComApartment apartment;
    size_t end = ProgramEnd(line);
    std::wstring program = WithoutQuotes(line.substr(0, end)), arguments = line.substr(end);
    SHELLEXECUTEINFOW start = {};
    start.cbSize = sizeof start;
    start.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_DDEWAIT | SEE_MASK_FLAG_NO_UI;
    start.lpFile = program.c_str();
    start.lpParameters = arguments.c_str();
    start.nShow = windowStyle;
    if (!Done(ShellExecuteExW(&start))) return 0;
    KernelHandle process(start.hProcess);
    static auto* idOf = Lookup<DWORD WINAPI(HANDLE)>(L"kernel32.dll", "GetProcessId");
    return process && idOf ? idOf(process.Get()) : 0;
}

}  // namespace

uint32_t StartProcess(const std::string& commandLine, uint16_t windowStyle) {
    std::wstring line = Wide(commandLine), scratch = line;  // the platform writes into its copy
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = windowStyle;
    PROCESS_INFORMATION made = {};
    if (CreateProcessW(nullptr, scratch.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &made)) {
        KernelHandle process(made.hProcess), thread(made.hThread);
        return made.dwProcessId;
    }
    if (GetLastError() == errorElevationRequired) return StartElevated(line, windowStyle);
    Fail(GetLastError());
    return 0;
}

bool RunWithInput(const std::string& commandLine, const std::string& input, std::string& output, uint32_t& exitCode) {
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    KernelHandle childInput, ourInput, childOutput, ourOutput;
    if (!CreatePipe(childInput.Receive(), ourInput.Receive(), &inherited, 0) ||
        !CreatePipe(ourOutput.Receive(), childOutput.Receive(), &inherited, 0))
        return Done(FALSE);
    // Our ends stay ours, else the child would never see the end of its input.
    SetHandleInformation(ourInput.Get(), HANDLE_FLAG_INHERIT, 0);
    SetHandleInformation(ourOutput.Get(), HANDLE_FLAG_INHERIT, 0);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW | STARTF_USESTDHANDLES;
    startup.wShowWindow = SW_HIDE;
    startup.hStdInput = childInput.Get();
    startup.hStdOutput = startup.hStdError = childOutput.Get();
    std::wstring line = Wide(commandLine);
    PROCESS_INFORMATION made = {};
    if (!Done(CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr, nullptr, &startup,
                             &made)))
        return false;
    KernelHandle process(made.hProcess), thread(made.hThread);
    childInput.Reset();
    childOutput.Reset();
    DWORD count = 0;
    WriteFile(ourInput.Get(), input.data(), static_cast<DWORD>(input.size()), &count, nullptr);
    ourInput.Reset();
    for (bool ended = false; !ended;) {
        ended = WaitForSingleObject(process.Get(), 50) != WAIT_TIMEOUT;
        char block[1024];
        while (PeekNamedPipe(ourOutput.Get(), nullptr, 0, nullptr, &count, nullptr) && count > 0 &&
               ReadFile(ourOutput.Get(), block, sizeof block, &count, nullptr))
            output.append(block, count);
        PumpMessages();
    }
    DWORD code = 1;
    GetExitCodeProcess(process.Get(), &code);
    exitCode = code;
    return true;
}

intptr_t ShellOpen(const std::string& file, const std::string& verb, const std::string& parameters, int showCommand) {
    ComApartment apartment;
    std::wstring wideVerb = Wide(verb), wideParameters = Wide(parameters);
    return reinterpret_cast<intptr_t>(
        ShellExecuteW(nullptr, verb.empty() ? nullptr : wideVerb.c_str(), Wide(file).c_str(),
                      parameters.empty() ? nullptr : wideParameters.c_str(), nullptr, showCommand));
}

bool ShowProperties(const std::string& path) {
    ComApartment apartment;
    std::wstring wide = Wide(path);
    SHELLEXECUTEINFOW sheet = {};
    sheet.cbSize = sizeof sheet;
    sheet.fMask = SEE_MASK_INVOKEIDLIST | SEE_MASK_FLAG_NO_UI;
    sheet.lpVerb = L"properties";
    sheet.lpFile = wide.c_str();
    sheet.nShow = SW_SHOWNORMAL;
    return Done(ShellExecuteExW(&sheet));
}

}  // namespace pc
