// GetExternalIP.exe: asks the maker's server for this PC's public address and leaves it in "External.IP" beside
// itself. Takes no arguments and shows nothing. Plain buffers instead of the C++ library keep it at some 20 KB, since
// the panel carries it as a resource.

#include <windows.h>
#include <wininet.h>

#include "../../src/system/build_constants.h"
#include "address_text.h"

namespace {

constexpr DWORD timeLimit = 20000;  // milliseconds for the whole question
constexpr DWORD answerSize = 64;    // an address is at most 45 characters

wchar_t workFile[MAX_PATH], partFile[MAX_PATH], resultFile[MAX_PATH];

// Closes what WinINet opened.
struct Internet {
    HINTERNET handle;
    ~Internet() {
        if (handle) InternetCloseHandle(handle);
    }
};

bool BesideProgram(const wchar_t* name, wchar_t* path) {
    DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    while (length > 0 && path[length - 1] != L'\\') --length;
    if (length == 0 || length + lstrlenW(name) >= MAX_PATH) return false;
    lstrcpyW(path + length, name);
    return true;
}

bool WriteBytes(const wchar_t* path, const char* bytes, DWORD size) {
    HANDLE file = CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    DWORD written = 0;
    bool done = WriteFile(file, bytes, size, &written, nullptr) && written == size;
    return CloseHandle(file) && done;
}

DWORD ReadBytes(const wchar_t* path, char* bytes, DWORD size) {
    HANDLE file = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return 0;
    DWORD count = 0;
    if (!ReadFile(file, bytes, size, &count, nullptr)) count = 0;
    CloseHandle(file);
    return count;
}

// Stores the server's answer in the work file. False unless it is a short page with status 200.
bool FetchAnswer() {
    Internet session{InternetOpenW(L"Brevanta", INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0)};
    if (!session.handle) return false;
    char address[256] = "http://";
    lstrcatA(address, build::externalIpHost);
    lstrcatA(address, "/IPCheck.php");
    Internet page{InternetOpenUrlA(session.handle, address, nullptr, 0,
                                   INTERNET_FLAG_RELOAD | INTERNET_FLAG_NO_CACHE_WRITE | INTERNET_FLAG_PRAGMA_NOCACHE |
                                       INTERNET_FLAG_NO_COOKIES | INTERNET_FLAG_NO_UI | INTERNET_FLAG_NO_AUTO_REDIRECT,
                                   0)};
    DWORD status = 0, statusSize = sizeof status;
    if (!page.handle ||
        !HttpQueryInfoW(page.handle, HTTP_QUERY_STATUS_CODE | HTTP_QUERY_FLAG_NUMBER, &status, &statusSize, nullptr) ||
        status != 200)
        return false;
    char answer[answerSize];
    DWORD length = 0, count = 0;
    while (length < answerSize && InternetReadFile(page.handle, answer + length, answerSize - length, &count) && count)
        length += count;
    return length < answerSize && WriteBytes(workFile, answer, length);
}

// Writes the finished file under another name first: the panel may look at any moment.
void LeaveAddress(const char* address) {
    char text[answerSize + 32] = "[IP]\r\nExternal=";
    lstrcatA(text, address);
    lstrcatA(text, "\r\n");
    if (!WriteBytes(partFile, text, lstrlenA(text)) || !MoveFileExW(partFile, resultFile, MOVEFILE_REPLACE_EXISTING))
        DeleteFileW(partFile);
}

DWORD WINAPI Ask(void*) {
    if (!FetchAnswer()) return 0;
    char answer[answerSize] = "";
    DWORD length = ReadBytes(workFile, answer, answerSize - 1);
    while (length > 0 && static_cast<unsigned char>(answer[length - 1]) <= ' ') answer[--length] = '\0';
    char* start = answer;
    while (*start && static_cast<unsigned char>(*start) <= ' ') ++start;
    if (!IsAddressText(start)) return 0;
    LeaveAddress(start);
    return 1;
}

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    if (!BesideProgram(L"WAN.IP", workFile) || !BesideProgram(L"External.tmp", partFile) ||
        !BesideProgram(L"External.IP", resultFile))
        return 1;
    // The question runs on a thread of its own, since no time-out of the library covers a name server that is silent.
    DWORD learned = 0;
    HANDLE thread = CreateThread(nullptr, 0, Ask, nullptr, 0, nullptr);
    bool ended = thread && WaitForSingleObject(thread, timeLimit) == WAIT_OBJECT_0;
    if (ended) GetExitCodeThread(thread, &learned);
    if (!learned) LeaveAddress("Unknown");
    DeleteFileW(workFile);
    ExitProcess(0);
}
