// Start of the panel to its visible window against a bare window with as many controls. With a number it is that bare
// window.
#include "comparison.h"

#include <commctrl.h>

#include <cstring>

namespace {

HWND found;
DWORD wantedProcess;

BOOL CALLBACK Look(HWND window, LPARAM) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == wantedProcess && IsWindowVisible(window) && GetPropW(window, L"ControlName")) found = window;
    return !found;
}

BOOL CALLBACK Count(HWND, LPARAM count) {
    ++*reinterpret_cast<int*>(count);
    return TRUE;
}

struct Start {
    double toWindow = 0;
    int controls = 0;
};

Start StartOnce(const std::wstring& command) {
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    std::wstring line = command;
    Start result;
    result.toWindow = Measure([&] {
        CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process);
        wantedProcess = process.dwProcessId;
        for (found = nullptr; !found; Sleep(1)) EnumWindows(Look, 0);
    });
    EnumChildWindows(found, Count, reinterpret_cast<LPARAM>(&result.controls));
    TerminateProcess(process.hProcess, 0);
    WaitForSingleObject(process.hProcess, 5000);
    CloseHandle(process.hProcess);
    CloseHandle(process.hThread);
    return result;
}

// Milliseconds for one setting of a file with a hundred.
double OneSetting() {
    const wchar_t* file = L"C:\\Brevanta\\bench.ini";
    for (int i = 0; i < 100; ++i)
        WritePrivateProfileStringW(L"Branding", (L"Key" + std::to_wstring(i)).c_str(), L"some text", file);
    wchar_t text[255];
    constexpr int reads = 1000;
    return Measure([&] {
               for (int i = 0; i < reads; ++i) GetPrivateProfileStringW(L"Branding", L"Key50", L"", text, 255, file);
           }) /
           reads;
}

int BareWindow(int controls) {
    InitCommonControls();
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.lpszClassName = L"Bare";
    RegisterClassW(&windowClass);
    HWND window =
        CreateWindowW(L"Bare", L"Bare", WS_OVERLAPPEDWINDOW, 100, 100, 700, 560, nullptr, nullptr, nullptr, nullptr);
    SetPropW(window, L"ControlName", reinterpret_cast<HANDLE>(1));
    for (int i = 0; i < controls; ++i)
        CreateWindowW(L"STATIC", L"text", WS_CHILD | WS_VISIBLE, 10 + i % 4 * 160, 10 + i / 4 * 24, 150, 20, window,
                      nullptr, nullptr, nullptr);
    ShowWindow(window, SW_SHOW);
    UpdateWindow(window);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0)) DispatchMessageW(&message);
    return 0;
}

}  // namespace

int main(int count, char** arguments) {
    if (count > 1) return BareWindow(std::atoi(arguments[1]));
    const std::wstring panel = L"C:\\Brevanta\\Brevanta.exe";
    int controls = StartOnce(panel).controls;
    wchar_t own[MAX_PATH];
    GetModuleFileNameW(nullptr, own, MAX_PATH);
    std::wstring bareCommand = L"\"" + std::wstring(own) + L"\" " + std::to_wstring(controls);
    std::vector<double> ours, bare, console;
    for (int round = 0; round < 7; ++round) {
        ours.push_back(StartOnce(panel).toWindow);
        bare.push_back(StartOnce(bareCommand).toWindow);
        console.push_back(StartOnce(panel + L" /config").toWindow);
    }
    Head();
    Row("start to the visible window, ms", Median(ours), Median(bare), 1.3);
    Row("the console's start against the panel's, ms", Median(console), Median(ours), 1.5);
    std::printf("one read of a setting: %.3f ms\n", OneSetting());
    std::printf("controls: %d\n", controls);
    return 0;
}
