#include "transfer/ftp_client.h"

#include <algorithm>

#include "platform/files.h"
#include "platform/messages.h"
#include "system/processes.h"
#include "system/text.h"

namespace {

// Progress comes once a block; the local file is read and written in larger pieces.
constexpr uint32_t blockSize = 255, pieceSize = 256 * blockSize;

// Days since 1899-12-30 of a file time: milliseconds over a day's, less the days from 1601 on.
double DateOf(uint64_t fileTime) {
    uint64_t local = 0;
    if (!pc::ToLocalFileTime(fileTime, local)) {
        pc::ShowMessage(NumberText(pc::FtpError()));
        return 0;
    }
    return static_cast<double>(local) / 10000.0 / 86400000.0 - 109205;
}

}  // namespace

void cDirList::Add(const pc::FtpItem& item) {
    items.push_back(
        {item.name, item.size, item.attributes, DateOf(item.created), DateOf(item.accessed), DateOf(item.modified)});
}

void cFTP::RecordError(uint32_t code, const std::string& name) {
    strLastError = name + " error code: " + NumberText(code) + " Message: " + pc::FtpErrorText(code);
    if (code == pc::errorInternetExtended) strLastError = pc::FtpResponseText();
}

bool cFTP::Check(bool succeeded, const char* name) {
    if (!succeeded) RecordError(pc::FtpError(), name);
    return succeeded;
}

void cFTP::Report(uint64_t done, uint64_t total) {
    if (FileTransferProgress) FileTransferProgress(static_cast<int32_t>(done), static_cast<int32_t>(total));
}

bool cFTP::OpenConnection(const std::string& host, const std::string& user, const std::string& password) {
    hConnection.Close();
    if (!pc::GoOnline()) return false;
    Check(pc::FtpOpenSession("Fernlea FTP Client", hInternet), "InternetOpen");
    return Check(pc::FtpConnect(hInternet, host, user, password, lMode, hConnection), "InternetConnect");
}

void cFTP::CloseConnection() {
    hConnection.Close();
    hInternet.Close();
}

bool cFTP::SimpleFTPPutFile(const std::string& localPath, const std::string& remotePath) {
    return Check(pc::FtpPut(hConnection, localPath, remotePath, lTransferType), "SimpleFtpPutFile");
}

bool cFTP::SimpleFTPGetFile(const std::string& remotePath, const std::string& localPath) {
    return Check(pc::FtpGet(hConnection, remotePath, localPath, lTransferType), "SimpleFtpGetFile");
}

bool cFTP::RenameFTPFile(const std::string& oldName, const std::string& newName) {
    return Check(pc::FtpRename(hConnection, oldName, newName), "RenameFTPFile");
}

bool cFTP::CreateFTPDirectory(const std::string& name) {
    return Check(pc::FtpMakeFolder(hConnection, name), "CreateFTPDirectory");
}

bool cFTP::RemoveFTPDirectory(const std::string& name) {
    return Check(pc::FtpRemoveFolder(hConnection, name), "RemoveFTPDirectory");
}

bool cFTP::DeleteFTPFile(const std::string& name) { return Check(pc::FtpDelete(hConnection, name), "DeleteFTPFile"); }

bool cFTP::SetFTPDirectory(const std::string& name) {
    return Check(pc::FtpSetFolder(hConnection, name), "FtpSetCurrentDirectory");
}

std::string cFTP::GetFTPDirectory() {
    auto folder = pc::FtpFolder(hConnection);
    Check(folder.has_value(), "FtpGetCurrentDirectory");
    return folder.value_or("");
}

bool cFTP::FTPUploadFile(const std::string& localGiven, const std::string& remoteGiven) {
    std::string localPath = Trim(localGiven), remotePath = Trim(remoteGiven);
    if (localPath.empty() || remotePath.empty()) return false;
    // The local file first: one that is not there must not empty the remote one.
    pc::File local;
    if (!local.Open(localPath, pc::FileMode::read)) return false;
    if (!Check(pc::FtpOpenFile(hConnection, remotePath, true, lTransferType, hFile), "FtpOpenFile:PutFile"))
        return false;
    uint64_t total = local.Size(), done = 0;
    std::string piece(pieceSize, '\0');
    bool whole = true;
    while (whole && done < total) {
        auto size = static_cast<uint32_t>(std::min<uint64_t>(blockSize, total - done));
        auto at = static_cast<size_t>(done % pieceSize);
        if (at == 0) {
            auto wanted = static_cast<size_t>(std::min<uint64_t>(pieceSize, total - done));
            whole = local.Read(piece.data(), wanted) == wanted;
        }
        whole = whole && Check(pc::FtpWrite(hFile, piece.data() + at, size),
                               size == blockSize ? "InternetWriteFile" : "InternetWriteFile2");
        done += size;
        if (!whole || size < blockSize) break;
        DoEventsNowAndThen();
        Report(done, total);
    }
    hFile.Close();
    if (whole) Report(total, total);
    return whole;
}

bool cFTP::FTPDownloadFile(const std::string& localGiven, const std::string& remoteGiven) {
    std::string localPath = Trim(localGiven), remotePath = Trim(remoteGiven);
    if (localPath.empty() || remotePath.empty()) return false;
    int32_t size = GetFTPFileSize(remotePath);
    if (size <= 0) return false;
    if (!Check(pc::FtpOpenFile(hConnection, remotePath, false, lTransferType, hFile), "FtpOpenFile:GetFile"))
        return false;
    pc::File local;
    bool whole = local.Open(localPath, pc::FileMode::write);
    auto total = static_cast<uint32_t>(size);
    std::string piece(pieceSize, '\0');
    for (uint32_t done = 0; whole && done < total;) {
        uint32_t wanted = std::min(blockSize, total - done), at = done % pieceSize;
        auto count = pc::FtpRead(hFile, piece.data() + at, wanted);
        Check(count.has_value(), wanted == blockSize ? "InternetReadFile" : "InternetReadFile2");
        whole = count && *count == wanted;
        done += wanted;
        if (whole && (at + wanted == pieceSize || done == total)) whole = local.Write(piece.data(), at + wanted);
        if (!whole || wanted < blockSize) break;
        DoEventsNowAndThen();
        Report(done, total);
    }
    bool opened = local.IsOpen();
    local.Close();
    hFile.Close();
    if (whole) Report(total, total);
    if (!whole && opened) pc::RemoveFile(localPath);
    return whole;
}

int32_t cFTP::GetFTPFileSize(const std::string& name) {
    int32_t size = -2;
    uint32_t code = pc::FtpList(hConnection, ReplaceAll(name, " ", "?"), [&](const pc::FtpItem& item) {
        size = static_cast<int32_t>(item.size);
        return false;
    });
    if (code == pc::errorNoMoreFiles) return size;
    RecordError(code, "FtpFindFirstFile");
    return -1;
}

cDirList* cFTP::GetDirectoryListing(const std::string& pattern) {
    directory.Clear();
    uint32_t code = pc::FtpList(hConnection, pattern, [&](const pc::FtpItem& item) {
        directory.Add(item);
        return true;
    });
    if (code == pc::errorNoMoreFiles) return &directory;
    RecordError(code, directory.Count() ? "InternetFindNextFile" : "FtpFindFirstFile");
    return nullptr;
}
