// standin.exe: stands in for a technician's program. It writes down how it was started, one line a start, and ends.
// With "/hold PATH" it keeps that file to itself instead, until it is ended.
#include <windows.h>
// behind windows.h
#include <wchar.h>

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    if (const wchar_t* held = wcsstr(GetCommandLineW(), L" /hold ")) {
        CreateFileW(held + 7, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
        Sleep(INFINITE);
    }
    HANDLE file = CreateFileW(L"C:\\started.txt", FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                              OPEN_ALWAYS, 0, nullptr);
    char line[8192];
    int size = WideCharToMultiByte(CP_UTF8, 0, GetCommandLineW(), -1, line, sizeof line - 1, nullptr, nullptr);
    DWORD written = 0;
    line[size - 1] = '\n';
    WriteFile(file, line, (DWORD)size, &written, nullptr);
    CloseHandle(file);
    return 0;
}
