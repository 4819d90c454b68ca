#include "transfer/archives.h"

#include "controls/status_window.h"
#include "platform/files.h"
#include "platform/machine.h"
#include "system/paths.h"
#include "system/resources.h"
#include "system/text.h"
#include "system/trace.h"
#include "transfer/zip_reader.h"
#include "transfer/zip_writer.h"

namespace {

// Adds what lies in folder + below ("" or "sub\"); a link to a folder is not entered.
void AddFolder(ZipClass& zip, const std::string& folder, const std::string& below, bool subfolders, bool relative) {
    std::vector<std::string> deeper;
    pc::ListFolder(folder + "\\" + below, "*", [&](const pc::FileInfo& item) {
        if (item.IsFolder()) {
            if (subfolders && !item.IsLink()) deeper.push_back(below + item.name + "\\");
        } else {
            zip.AddFile(folder + "\\" + below + item.name, relative ? LowerCase(below + item.name) : "", "");
        }
        return true;
    });
    for (const std::string& next : deeper) AddFolder(zip, folder, next, subfolders, relative);
}

bool MakeZip(const std::string& folderGiven, const std::string& zipPath, bool subfolders, bool relative) {
    EnsureZlib();
    std::string folder = StripTrailingCharacters(folderGiven, '\\');
    pc::RemoveFile(zipPath);
    ZipClass zip;
    AddFolder(zip, folder, "", subfolders, relative);
    zip.WriteZip(zipPath, true);
    return DoesFileExist(zipPath);
}

}  // namespace

void EnsureZlib() {
    std::string path = pc::Environment("systemroot") + "\\system32\\zlib.dll";
    // The library is a 32-bit one, so it is looked for and written where the system takes a 32-bit program.
    if (pc::CanOpenFile(path)) return;
    ExtractResource("zlib", path);
}

bool UnzipFile(const std::string& zipPath, const std::string& folder, bool bQuiet) {
    EnsureZlib();
    if (!bQuiet) ShowStatusWindow("Extracting " + StripPath(zipPath), "");
    ZipExtractionClass reader;
    reader.ZipError = [](int32_t code, const std::string& text) {
        DebugOutput("modZip\\UnzipFile: ");
        DebugOutput("\t- Error: " + NumberText(code) + " " + text);
    };
    bool done = reader.OpenZip(zipPath) && reader.Extract(folder, true, true);
    reader.CloseZip();
    if (!bQuiet) UnloadStatusWindow();
    return done;
}

bool ZipFolder(const std::string& folder, const std::string& zipPath) { return MakeZip(folder, zipPath, false, false); }

bool ZipFolderRelative(const std::string& folder, const std::string& zipPath, bool bSubfolders) {
    return MakeZip(folder, zipPath, bSubfolders, true);
}
