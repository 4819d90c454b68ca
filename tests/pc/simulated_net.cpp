#include "pc/simulated_net.h"

#include <algorithm>

#include "pc/simulated_pc.h"
#include "platform/files.h"
#include "platform/ftp.h"
#include "platform/http.h"
#include "platform/mail_object.h"
#include "platform/pictures.h"
#include "platform/processes.h"

SimulatedNet& Net() { return Pc().Of<SimulatedNet>(); }

namespace {

bool abortAsked = false;
constexpr uint32_t aborted = 0x80004004, cannotConnect = 0x800C0005, notAuthenticated = 0x800C0009;
constexpr size_t piece = 4096;

uint32_t Transfer(const SimulatedNet::Page& page, const std::string& path, const pc::FetchEvents& events) {
    if (page.result) return page.result;
    if (!page.user.empty()) {
        std::string user, password;
        if (events.authenticate) events.authenticate(user, password);
        if (user != page.user) return notAuthenticated;
    }
    size_t size = std::min(page.bytes.size(), page.cutAfter);
    auto total = static_cast<uint32_t>(page.tellsLength ? page.bytes.size() : 0);
    for (size_t done = 0; done < size && !abortAsked;) {
        done = std::min(size, done + piece);
        if (Net().atProgress) Net().atProgress(done);
        if (events.progress) events.progress(static_cast<uint32_t>(done), total);
    }
    if (abortAsked) return aborted;
    return pc::WriteWholeFile(path, page.bytes.substr(0, size)) ? 0 : 0x80070070;
}

// --- FTP ---

enum HandleKind : uintptr_t { session = 1, connection, file };
struct FtpState {
    uint32_t error = 0;
    std::string response, folder = "/", path, bytes;
    size_t position = 0;
    bool writing = false;
};
FtpState& Ftp() { return Pc().Of<FtpState>(); }

bool Answer(bool done, const char* reply) {
    Ftp().error = done ? 0 : pc::errorInternetExtended;
    if (!done) Ftp().response = reply;
    return done;
}

std::string FullName(const std::string& name) {
    return name.starts_with("/") ? name : (Ftp().folder == "/" ? "/" : Ftp().folder + "/") + name;
}

bool NameMatches(const std::string& pattern, const std::string& name) {
    if (pattern == "*" || pattern == "*.*" || pattern.empty()) return true;
    if (pattern.size() != name.size()) return false;
    for (size_t i = 0; i < name.size(); ++i)
        if (pattern[i] != '?' && pattern[i] != name[i]) return false;
    return true;
}

}  // namespace

namespace pc {

uint32_t FetchToFile(const std::string& url, const std::string& path, const FetchEvents& events) {
    Pc().Note("fetch " + url);
    Pc().contacted.push_back(url);
    abortAsked = false;
    auto page = Net().web.find(url);
    uint32_t result = cannotConnect;
    if (Pc().online && page != Net().web.end() && !Pc().Fails(12029)) {
        if (events.started) events.started();
        result = Transfer(page->second, path, events);
    }
    if (static_cast<int32_t>(result) < 0) RemoveFile(path);
    if (events.stopped) events.stopped(result);
    return result;
}

void AbortFetch() { abortAsked = true; }

InternetHandle& InternetHandle::operator=(InternetHandle&& other) noexcept {
    if (this != &other) {
        Close();
        value = other.value;
        other.value = 0;
    }
    return *this;
}

void InternetHandle::Close() {
    if (value == file && Ftp().writing) Net().ftpFiles[Ftp().path] = Ftp().bytes;
    value = 0;
}

uint32_t FtpError() { return Ftp().error; }
std::string FtpErrorText(uint32_t code) { return code == 12029 ? "A connection could not be established" : ""; }
std::string FtpResponseText() { return Ftp().response; }
bool GoOnline() { return Pc().online; }

bool FtpOpenSession(const std::string&, InternetHandle& handle) {
    handle.value = session;
    return true;
}

bool FtpConnect(const InternetHandle&, const std::string& host, const std::string& user, const std::string& password,
                uint32_t modeFlags, InternetHandle& handle) {
    Pc().contacted.push_back(host);
    Pc().Note("ftp connect " + host + (modeFlags == ftpPassive ? " passive" : " active"));
    Ftp().folder = "/";
    if (!Net().ftpOnline || Pc().Fails(12029)) {
        Ftp().error = 12029;
        return false;
    }
    if (user != Net().ftpUser || password != Net().ftpPassword) return Answer(false, "530 Login incorrect.");
    handle.value = connection;
    return true;
}

bool FtpPut(const InternetHandle&, const std::string& local, const std::string& remote, uint32_t) {
    auto bytes = ReadWholeFile(local);
    if (!bytes || Net().ftpReadOnly) return Answer(false, "550 Permission denied.");
    Pc().Note("ftp put " + FullName(remote));
    Net().ftpFiles[FullName(remote)] = *bytes;
    return true;
}

bool FtpGet(const InternetHandle&, const std::string& remote, const std::string& local, uint32_t) {
    auto found = Net().ftpFiles.find(FullName(remote));
    if (found == Net().ftpFiles.end()) return Answer(false, "550 No such file.");
    return WriteWholeFile(local, found->second);
}

bool FtpRename(const InternetHandle&, const std::string& from, const std::string& to) {
    auto node = Net().ftpFiles.extract(FullName(from));
    if (node.empty()) return Answer(false, "550 No such file.");
    node.key() = FullName(to);
    Net().ftpFiles.insert(std::move(node));
    return true;
}

bool FtpMakeFolder(const InternetHandle&, const std::string& name) {
    Pc().Note("ftp mkdir " + FullName(name));
    if (Net().ftpReadOnly || !Net().ftpFolders.insert(FullName(name)).second)
        return Answer(false, "550 Can't create the folder.");
    return true;
}

bool FtpRemoveFolder(const InternetHandle&, const std::string& name) {
    return Answer(Net().ftpFolders.erase(FullName(name)) == 1, "550 No such folder.");
}

bool FtpDelete(const InternetHandle&, const std::string& name) {
    return Answer(Net().ftpFiles.erase(FullName(name)) == 1, "550 No such file.");
}

bool FtpSetFolder(const InternetHandle&, const std::string& name) {
    Pc().Note("ftp cd " + name);
    if (!Net().ftpFolders.count(FullName(name))) return Answer(false, "550 No such folder.");
    Ftp().folder = FullName(name);
    return true;
}

std::optional<std::string> FtpFolder(const InternetHandle&) { return Ftp().folder; }

bool FtpOpenFile(const InternetHandle&, const std::string& remote, bool forWriting, uint32_t, InternetHandle& handle) {
    std::string path = FullName(remote);
    Pc().Note(std::string("ftp ") + (forWriting ? "stor " : "retr ") + path);
    auto found = Net().ftpFiles.find(path);
    if (forWriting ? Net().ftpReadOnly : found == Net().ftpFiles.end()) return Answer(false, "550 Not possible.");
    Ftp() = {0, "", Ftp().folder, path, forWriting ? "" : found->second, 0, forWriting};
    handle.value = file;
    return true;
}

bool FtpWrite(const InternetHandle&, const void* data, uint32_t size) {
    if (Ftp().bytes.size() + size > Net().ftpCutAfter || Pc().Fails(12031)) return Answer(false, "426 Line cut.");
    Ftp().bytes.append(static_cast<const char*>(data), size);
    return true;
}

std::optional<uint32_t> FtpRead(const InternetHandle&, void* buffer, uint32_t size) {
    if (Ftp().position + size > Net().ftpCutAfter || Pc().Fails(12031)) {
        Answer(false, "426 Line cut.");
        return {};
    }
    size_t count = Ftp().bytes.copy(static_cast<char*>(buffer), size, Ftp().position);
    Ftp().position += count;
    return static_cast<uint32_t>(count);
}

uint32_t FtpList(const InternetHandle&, const std::string& pattern, const std::function<bool(const FtpItem&)>& each) {
    std::string head = Ftp().folder == "/" ? "/" : Ftp().folder + "/";
    for (const auto& [path, bytes] : Net().ftpFiles) {
        if (!path.starts_with(head) || path.find('/', head.size()) != std::string::npos) continue;
        std::string name = path.substr(head.size());
        if (!NameMatches(pattern, name)) continue;
        FileTime time = FileTimeOf(2026, 1, 2);
        if (!each({name, static_cast<uint32_t>(bytes.size()), attributeNormal, time, time, time})) break;
    }
    return Ftp().error = errorNoMoreFiles;
}

bool ToLocalFileTime(uint64_t fileTime, uint64_t& local) {
    local = fileTime;
    return true;
}

// --- the message object ---

MessageObject::~MessageObject() = default;

bool MessageObject::Create() {
    object = Net().mailObject;
    if (object) Pc().Note("mail create");
    return object != 0;
}

static bool NoteMail(uintptr_t object, const std::string& line) {
    if (object) Pc().Note("mail " + line);
    return object != 0;
}

bool MessageObject::SetField(const std::string& name, const std::string& value) {
    return NoteMail(object, name + " = \"" + value + "\"");
}
bool MessageObject::SetField(const std::string& name, int32_t value) {
    return NoteMail(object, name + " = " + std::to_string(value));
}
bool MessageObject::SetField(const std::string& name, bool value) {
    return NoteMail(object, name + (value ? " = True" : " = False"));
}
bool MessageObject::UpdateFields() { return NoteMail(object, "Update"); }
bool MessageObject::SetProperty(const std::string& name, const std::string& value) {
    return NoteMail(object, name + " = \"" + value + "\"");
}
bool MessageObject::AddAttachment(const std::string& path) { return NoteMail(object, "AddAttachment " + path); }

bool MessageObject::Send(int32_t& errorNumber, std::string& errorText) {
    if (NoteMail(object, "Send") && Net().mailSends) return true;
    errorNumber = object ? -2147220973 : 91;
    errorText = object ? "The transport failed to connect to the server." : "Object variable not set";
    return false;
}

bool RunWithInput(const std::string& commandLine, const std::string& input, std::string& output, uint32_t& exitCode) {
    Pc().Note("run hidden " + commandLine);
    if (Pc().Fails(2)) return false;
    std::string shown = input;
    std::replace(shown.begin(), shown.end(), '\0', '|');
    Net().smtpRequests.push_back(shown);
    exitCode = Net().smtpSends ? 0 : 1;
    output = Net().smtpSends ? "" : "Login denied";
    return true;
}

// --- pictures ---

void Bitmap::Free() { value = 0; }
intptr_t DesktopWindow() { return 1; }
int ScreenWidth() { return Net().screenWidth; }
int ScreenHeight() { return Net().screenHeight; }

bool CaptureWindow(intptr_t, bool, int, int, int width, int height, Bitmap& bitmap) {
    bitmap.value = 1;
    bitmap.width = width;
    bitmap.height = height;
    return width > 0 && height > 0;
}

bool ReduceColours(const Bitmap& bitmap, int bitsPerPixel, std::string& palette, std::string& pixels) {
    palette.assign((size_t{1} << bitsPerPixel) * 4, '\x10');
    size_t line = (static_cast<size_t>(bitmap.width) * static_cast<size_t>(bitsPerPixel) + 31) / 32 * 4;
    pixels.assign(line * static_cast<size_t>(bitmap.height), '\x01');
    return true;
}

}  // namespace pc
