#include "platform/ftp.h"

#include "platform/win32/late_wininet.h"
#include "platform/win32/wide.h"

namespace pc {

namespace {

uint32_t lastError = 0;

HINTERNET Native(const InternetHandle& handle) { return reinterpret_cast<HINTERNET>(handle.value); }

bool Done(BOOL succeeded) {
    lastError = succeeded ? 0 : GetLastError();
    return succeeded != FALSE;
}

bool Keep(HINTERNET made, InternetHandle& handle) {
    lastError = made ? 0 : GetLastError();
    handle.Close();
    handle.value = reinterpret_cast<uintptr_t>(made);
    return made != nullptr;
}

uint64_t Join(const FILETIME& time) { return static_cast<uint64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime; }

}  // namespace

InternetHandle& InternetHandle::operator=(InternetHandle&& other) noexcept {
    if (this != &other) {
        Close();
        value = other.value;
        other.value = 0;
    }
    return *this;
}

void InternetHandle::Close() {
    if (value) InternetCloseHandle(reinterpret_cast<HINTERNET>(value));
    value = 0;
}

uint32_t FtpError() { return lastError; }

std::string FtpErrorText(uint32_t code) {
    wchar_t text[257] = L"";
    FormatMessageW(FORMAT_MESSAGE_FROM_HMODULE | FORMAT_MESSAGE_IGNORE_INSERTS, GetModuleHandleW(L"wininet.dll"), code,
                   0, text, 256, nullptr);
    return Utf8(text);
}

std::string FtpResponseText() {
    wchar_t text[2048] = L"";
    DWORD code = 0, size = 2047;
    if (!InternetGetLastResponseInfoW(&code, text, &size)) return "";
    text[2047] = 0;
    return Utf8(text);
}

bool GoOnline() { return Done(InternetAutodial(INTERNET_AUTODIAL_FORCE_ONLINE, nullptr)); }

bool FtpOpenSession(const std::string& agent, InternetHandle& session) {
    if (!Keep(InternetOpenW(Wide(agent).c_str(), INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0), session))
        return false;
    struct {
        DWORD option, value;
    } const bounds[] = {{INTERNET_OPTION_CONNECT_TIMEOUT, 20000},
                        {INTERNET_OPTION_CONNECT_RETRIES, 1},
                        {INTERNET_OPTION_SEND_TIMEOUT, 60000},
                        {INTERNET_OPTION_RECEIVE_TIMEOUT, 60000}};
    for (auto bound : bounds) InternetSetOptionW(Native(session), bound.option, &bound.value, sizeof bound.value);
    return true;
}

bool FtpConnect(const InternetHandle& session, const std::string& host, const std::string& user,
                const std::string& password, uint32_t modeFlags, InternetHandle& connection) {
    return Keep(InternetConnectW(Native(session), Wide(host).c_str(), INTERNET_INVALID_PORT_NUMBER, Wide(user).c_str(),
                                 Wide(password).c_str(), INTERNET_SERVICE_FTP, modeFlags, 0),
                connection);
}

bool FtpPut(const InternetHandle& connection, const std::string& localPath, const std::string& remotePath,
            uint32_t transferType) {
    return Done(FtpPutFileW(Native(connection), Wide(localPath).c_str(), Wide(remotePath).c_str(), transferType, 0));
}

bool FtpGet(const InternetHandle& connection, const std::string& remotePath, const std::string& localPath,
            uint32_t transferType) {
    return Done(FtpGetFileW(Native(connection), Wide(remotePath).c_str(), Wide(localPath).c_str(), FALSE,
                            FILE_ATTRIBUTE_NORMAL, transferType, 0));
}

bool FtpRename(const InternetHandle& connection, const std::string& from, const std::string& to) {
    return Done(FtpRenameFileW(Native(connection), Wide(from).c_str(), Wide(to).c_str()));
}

bool FtpMakeFolder(const InternetHandle& connection, const std::string& name) {
    return Done(FtpCreateDirectoryW(Native(connection), Wide(name).c_str()));
}

bool FtpRemoveFolder(const InternetHandle& connection, const std::string& name) {
    return Done(FtpRemoveDirectoryW(Native(connection), Wide(name).c_str()));
}

bool FtpDelete(const InternetHandle& connection, const std::string& name) {
    return Done(FtpDeleteFileW(Native(connection), Wide(name).c_str()));
}

bool FtpSetFolder(const InternetHandle& connection, const std::string& name) {
    return Done(FtpSetCurrentDirectoryW(Native(connection), Wide(name).c_str()));
}

std::optional<std::string> FtpFolder(const InternetHandle& connection) {
    wchar_t folder[1024] = L"";
    DWORD size = 1024;
    if (!Done(FtpGetCurrentDirectoryW(Native(connection), folder, &size))) return {};
    return Utf8(folder);
}

bool FtpOpenFile(const InternetHandle& connection, const std::string& remotePath, bool forWriting,
                 uint32_t transferType, InternetHandle& file) {
    return Keep(FtpOpenFileW(Native(connection), Wide(remotePath).c_str(), forWriting ? GENERIC_WRITE : GENERIC_READ,
                             transferType, 0),
                file);
}

bool FtpWrite(const InternetHandle& file, const void* data, uint32_t size) {
    DWORD written = 0;
    return Done(InternetWriteFile(Native(file), data, size, &written)) && written == size;
}

std::optional<uint32_t> FtpRead(const InternetHandle& file, void* buffer, uint32_t size) {
    uint32_t have = 0;
    while (have < size) {
        DWORD count = 0;
        if (!Done(InternetReadFile(Native(file), static_cast<char*>(buffer) + have, size - have, &count))) return {};
        if (count == 0) break;
        have += count;
    }
    return have;
}

uint32_t FtpList(const InternetHandle& connection, const std::string& pattern,
                 const std::function<bool(const FtpItem&)>& each) {
    WIN32_FIND_DATAW data = {};
    InternetHandle find;
    if (!Keep(FtpFindFirstFileW(Native(connection), Wide(pattern).c_str(), &data, INTERNET_FLAG_RELOAD, 0), find)) {
        // Some systems leave the code at 0 when nothing matches.
        if (lastError == 0) lastError = errorNoMoreFiles;
        return lastError;
    }
    do {
        FtpItem item = {Utf8(data.cFileName),      data.nFileSizeLow,           data.dwFileAttributes,
                        Join(data.ftCreationTime), Join(data.ftLastAccessTime), Join(data.ftLastWriteTime)};
        if (!each(item)) return lastError = errorNoMoreFiles;
    } while (InternetFindNextFileW(Native(find), &data));
    lastError = GetLastError();
    return lastError == 0 ? errorNoMoreFiles : lastError;
}

bool ToLocalFileTime(uint64_t fileTime, uint64_t& local) {
    FILETIME utc = {static_cast<DWORD>(fileTime), static_cast<DWORD>(fileTime >> 32)}, converted = {};
    if (!Done(FileTimeToLocalFileTime(&utc, &converted))) return false;
    local = Join(converted);
    return true;
}

}  // namespace pc
