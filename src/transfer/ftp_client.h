// A small FTP client: one connection, plain file and folder operations, and block-wise transfers with progress.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/ftp.h"

// One entry of a listing. Times are days since 1899-12-30, local.
struct cDirItem {
    std::string name;
    uint32_t size = 0;  // bytes, low 32 bits
    uint32_t attributes = 0;
    double created = 0, accessed = 0, modified = 0;
};

// A listing of a folder on the server.
class cDirList {
public:
    void Add(const pc::FtpItem& item);
    void Clear() { items.clear(); }
    const cDirItem& Item(size_t index) const { return items[index]; }  // from 0
    size_t Count() const { return items.size(); }
    auto begin() const { return items.begin(); }
    auto end() const { return items.end(); }

private:
    std::vector<cDirItem> items;
};

// Members that return bool give true on success; what failed stands in GetLastErrorMessage.
class cFTP {
public:
    std::function<void(int32_t bytesDone, int32_t bytesTotal)> FileTransferProgress;

    cDirList& Directory() { return directory; }
    const std::string& GetLastErrorMessage() const { return strLastError; }
    bool OpenConnection(const std::string& host, const std::string& user, const std::string& password);
    void CloseConnection();
    bool SimpleFTPPutFile(const std::string& localPath, const std::string& remotePath);
    bool RenameFTPFile(const std::string& oldName, const std::string& newName);
    bool CreateFTPDirectory(const std::string& name);
    bool RemoveFTPDirectory(const std::string& name);
    bool DeleteFTPFile(const std::string& name);
    bool FTPUploadFile(const std::string& localPath, const std::string& remotePath);
    // A failed download leaves no local file.
    bool FTPDownloadFile(const std::string& localPath, const std::string& remotePath);
    bool SimpleFTPGetFile(const std::string& remotePath, const std::string& localPath);
    std::string GetFTPDirectory();
    bool SetFTPDirectory(const std::string& name);
    // Bytes; -2 when no file matches, -1 on another failure.
    int32_t GetFTPFileSize(const std::string& name);
    // Null when the listing failed.
    cDirList* GetDirectoryListing(const std::string& pattern);
    // Modes must be set before OpenConnection.
    void SetTransferASCII() { lTransferType = pc::ftpAscii; }
    void SetTransferBinary() { lTransferType = pc::ftpBinary; }
    void SetModeActive() { lMode = 0; }
    void SetModePassive() { lMode = pc::ftpPassive; }

private:
    bool Check(bool succeeded, const char* name);
    void RecordError(uint32_t code, const std::string& name);
    void Report(uint64_t done, uint64_t total);

    pc::InternetHandle hInternet, hConnection, hFile;
    uint32_t lTransferType = 0, lMode = 0;
    std::string strLastError;
    cDirList directory;
};
