// Downloads and FTP transfers from servers on this machine against the bare calls of the system's libraries.
// transfer_bench.py gives it the servers.
#include "comparison.h"

#include <urlmon.h>
#include <wininet.h>

#include "controls/form_host.h"
#include "system/program_state.h"
#include "system/scramble.h"
#include "system/settings.h"
#include "system/trace.h"
#include "transfer/cloud.h"
#include "transfer/download.h"
#include "transfer/ftp_client.h"

namespace {

constexpr const wchar_t* localFile = L"C:\\Brevanta\\transfer.bin";
constexpr DWORD block = 255;

void Expect(bool holds, const char* what) {
    if (holds) return;
    std::printf("FAILED: %s (%lu)\n", what, GetLastError());
    std::exit(1);
}

int64_t SizeOf(const wchar_t* path) {
    WIN32_FILE_ATTRIBUTE_DATA facts = {};
    if (!GetFileAttributesExW(path, GetFileExInfoStandard, &facts)) return -1;
    return static_cast<int64_t>(facts.nFileSizeHigh) << 32 | facts.nFileSizeLow;
}

void PlantFile(const wchar_t* path, DWORD size) {
    std::vector<char> bytes(size, 'x');
    HANDLE file = CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(file, bytes.data(), size, &written, nullptr);
    CloseHandle(file);
}

void CompareDownloads(DWORD size, int rounds) {
    std::string megabytes = std::to_string(size / 1000000), url = "http://127.0.0.1/" + megabytes;
    std::wstring wideUrl(url.begin(), url.end());
    std::vector<double> ours, whole, bare;
    for (int round = 0; round < rounds; ++round) {
        DeleteFileW(localFile);
        bare.push_back(Measure([&] { URLDownloadToFileW(nullptr, wideUrl.c_str(), localFile, 0, nullptr); }));
        Expect(SizeOf(localFile) == size, "bare download");
        DeleteFileW(localFile);
        ours.push_back(Measure([&] { Download().StartDownload(url, "C:\\Brevanta\\transfer.bin", "", ""); }));
        Expect(SizeOf(localFile) == size, "our download");
        whole.push_back(Measure([&] { DownloadFile(url, "C:\\Brevanta\\transfer.bin", "", false, true); }));
        Expect(SizeOf(localFile) == size, "download with its window");
    }
    Row(("download " + megabytes + " MB, ms").c_str(), Median(ours), Median(bare), 1 / 0.95);
    Row(("download " + megabytes + " MB with its window, ms").c_str(), Median(whole), Median(bare), 0);
    DeleteFileW(localFile);
}

struct BareConnection {
    BareConnection() {
        session = InternetOpenW(L"bare", INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0);
        connection = InternetConnectW(session, L"127.0.0.1", INTERNET_INVALID_PORT_NUMBER, L"tech", L"secret",
                                      INTERNET_SERVICE_FTP, INTERNET_FLAG_PASSIVE, 0);
        Expect(connection, "bare connection");
    }
    ~BareConnection() {
        InternetCloseHandle(connection);
        InternetCloseHandle(session);
    }
    HINTERNET session, connection;
};

void BareUpload(const BareConnection& ftp) {
    HINTERNET remote = FtpOpenFileW(ftp.connection, L"bare.bin", GENERIC_WRITE, FTP_TRANSFER_TYPE_BINARY, 0);
    HANDLE file = CreateFileW(localFile, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    char bytes[block];
    for (DWORD count = 0, sent = 0; ReadFile(file, bytes, block, &count, nullptr) && count;)
        Expect(InternetWriteFile(remote, bytes, count, &sent), "bare upload");
    CloseHandle(file);
    InternetCloseHandle(remote);
}

// The size comes first, as for us: without it there is no progress to show.
void BareDownload(const BareConnection& ftp) {
    WIN32_FIND_DATAW found = {};
    HINTERNET find = FtpFindFirstFileW(ftp.connection, L"bare.bin", &found, INTERNET_FLAG_RELOAD, 0);
    Expect(find && found.nFileSizeLow, "bare size");
    InternetCloseHandle(find);
    HINTERNET remote = FtpOpenFileW(ftp.connection, L"bare.bin", GENERIC_READ, FTP_TRANSFER_TYPE_BINARY, 0);
    HANDLE file = CreateFileW(localFile, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    char bytes[block];
    for (DWORD count = 0, written = 0; InternetReadFile(remote, bytes, block, &count) && count;)
        WriteFile(file, bytes, count, &written, nullptr);
    CloseHandle(file);
    InternetCloseHandle(remote);
}

void CompareFtp(DWORD size, int rounds) {
    std::string megabytes = std::to_string(size / 1000000);
    PlantFile(localFile, size);
    BareConnection bareFtp;
    cFTP ftp;
    ftp.SetModePassive();
    ftp.SetTransferBinary();
    Expect(ftp.OpenConnection("127.0.0.1", "tech", "secret"), "our connection");
    int64_t steps = 0;
    ftp.FileTransferProgress = [&](int32_t, int32_t) { ++steps; };
    std::vector<double> up, bareUp, down, bareDown;
    for (int round = 0; round < rounds; ++round) {
        bareUp.push_back(Measure([&] { BareUpload(bareFtp); }));
        up.push_back(
            Measure([&] { Expect(ftp.FTPUploadFile("C:\\Brevanta\\transfer.bin", "ours.bin"), "our upload"); }));
        bareDown.push_back(Measure([&] { BareDownload(bareFtp); }));
        Expect(SizeOf(localFile) == size, "bare FTP download");
        down.push_back(Measure(
            [&] { Expect(ftp.FTPDownloadFile("C:\\Brevanta\\transfer.bin", "ours.bin"), "our FTP download"); }));
        Expect(SizeOf(localFile) == size, "our FTP download is whole");
    }
    Expect(steps >= rounds * 2 * static_cast<int64_t>(size / block), "progress for each block");
    Row(("FTP upload " + megabytes + " MB, ms").c_str(), Median(up), Median(bareUp), 1 / 0.95);
    Row(("FTP download " + megabytes + " MB, ms").c_str(), Median(down), Median(bareDown), 1 / 0.95);

    // The form that the console shows, with its bar; a tenth of a second of it is the timer that closes it.
    const wchar_t* packed = L"C:\\Brevanta\\BrevantaConfig.zip";
    std::vector<double> form;
    for (int round = 0; round < rounds; ++round) {
        CopyFileW(localFile, packed, FALSE);
        form.push_back(Measure([] { ShowFormModal(frmFTPUL); }));
    }
    DeleteFileW(packed);
    Row(("FTP upload " + megabytes + " MB by the console's form, ms").c_str(), Median(form), Median(bareUp), 0);
}

}  // namespace

int main() {
    InitPaths(true, true);
    WriteSetting("Nimbra", "UserName", "tech");
    WriteSetting("Nimbra", "Password", EncryptString("secret", passwordKey));
    host::Start();
    Head();
    CompareDownloads(1'000'000, 9);
    CompareDownloads(50'000'000, 9);
    CompareFtp(1'000'000, 9);
    CompareFtp(50'000'000, 3);
    return 0;
}
