// FTP through the platform's internet library. Functions that return bool leave their code in FtpError().
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace pc {

// A session, connection or open remote file; closes itself. value 0 means none.
class InternetHandle {
public:
    InternetHandle() = default;
    ~InternetHandle() { Close(); }
    InternetHandle(InternetHandle&& other) noexcept : value(other.value) { other.value = 0; }
    InternetHandle& operator=(InternetHandle&& other) noexcept;
    InternetHandle(const InternetHandle&) = delete;
    InternetHandle& operator=(const InternetHandle&) = delete;
    void Close();

    uintptr_t value = 0;
};

inline constexpr uint32_t ftpAscii = 1;
inline constexpr uint32_t ftpBinary = 2;
inline constexpr uint32_t ftpPassive = 0x08000000;
inline constexpr uint32_t errorNoMoreFiles = 18;
inline constexpr uint32_t errorInternetExtended = 12003;  // the server's own words tell more

// Code of the last failed call of this header, its text from the library's message table, and the server's last reply.
uint32_t FtpError();
std::string FtpErrorText(uint32_t code);
std::string FtpResponseText();

// Dials up if the system must; true when online.
bool GoOnline();
// Waits of the session are bounded: 20 seconds to connect, 60 for an answer.
bool FtpOpenSession(const std::string& agent, InternetHandle& session);
bool FtpConnect(const InternetHandle& session, const std::string& host, const std::string& user,
                const std::string& password, uint32_t modeFlags, InternetHandle& connection);

bool FtpPut(const InternetHandle& connection, const std::string& localPath, const std::string& remotePath,
            uint32_t transferType);
bool FtpGet(const InternetHandle& connection, const std::string& remotePath, const std::string& localPath,
            uint32_t transferType);
bool FtpRename(const InternetHandle& connection, const std::string& from, const std::string& to);
bool FtpMakeFolder(const InternetHandle& connection, const std::string& name);
bool FtpRemoveFolder(const InternetHandle& connection, const std::string& name);
bool FtpDelete(const InternetHandle& connection, const std::string& name);
bool FtpSetFolder(const InternetHandle& connection, const std::string& name);
std::optional<std::string> FtpFolder(const InternetHandle& connection);

// Opens a remote file as a stream; no other command works on the connection until it is closed.
bool FtpOpenFile(const InternetHandle& connection, const std::string& remotePath, bool forWriting,
                 uint32_t transferType, InternetHandle& file);
bool FtpWrite(const InternetHandle& file, const void* data, uint32_t size);
// Bytes read, less than size only at the end; nothing on failure.
std::optional<uint32_t> FtpRead(const InternetHandle& file, void* buffer, uint32_t size);

// An entry of the server's listing.
struct FtpItem {
    std::string name;
    uint32_t size = 0;  // low 32 bits, bytes
    uint32_t attributes = 0;
    uint64_t created = 0, accessed = 0, modified = 0;  // file times, UTC
};
// Calls each for every match until it returns false. The result is the code that ended the walk: 18 at its natural
// end and when nothing matches.
uint32_t FtpList(const InternetHandle& connection, const std::string& pattern,
                 const std::function<bool(const FtpItem&)>& each);
// A UTC file time as local file time; false when it cannot be converted.
bool ToLocalFileTime(uint64_t fileTime, uint64_t& local);

}  // namespace pc
