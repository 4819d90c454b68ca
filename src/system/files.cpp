// Making, moving, copying, renaming and reading files.
#include "system/files.h"

#include <algorithm>

#include "platform/files.h"
#include "platform/machine.h"
#include "platform/messages.h"
#include "system/file_walk.h"
#include "system/paths.h"
#include "system/processes.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

bool IsSamePath(const std::string& left, const std::string& right) {
    return EqualNoCase(pc::FullPath(left), pc::FullPath(right));
}

bool IsFolderHere(const std::string& path) {
    std::optional<pc::FileInfo> folder = pc::GetFileInfo(path);
    return folder && folder->IsFolder();
}

// The target takes the source's attributes, as far as they can be set.
void CarryAttributes(const std::string& target, uint32_t attributes) {
    uint32_t settable =
        attributes & (pc::attributeReadOnly | pc::attributeHidden | pc::attributeSystem | pc::attributeArchive);
    pc::ChangeAttributes(target, settable != 0 ? settable : pc::attributeNormal);
}

bool TraceRename(const std::string& oldPath, const std::string& newPath, bool isRenamed) {
    DebugOutput("clsFSO\\RenFile: Rename to \"" + newPath + (isRenamed ? "\" succeeded." : "\" failed."));
    DebugOutput("\t- Input: " + oldPath);
    return isRenamed;
}

}  // namespace

bool clsFSO::Create_Dir_Struct(const std::string& path) {
    if (path.empty()) return false;
    std::string whole = EndsWith(path, "\\") ? path : path + "\\";
    // The drive, or server and share, cannot be made.
    size_t start = whole.substr(1, 1) == ":" ? 3 : 1;
    if (StartsWith(whole, "\\\\")) start = whole.find('\\', std::min(whole.find('\\', 2), whole.size() - 1) + 1);
    for (size_t slash = start; (slash = whole.find('\\', slash)) != std::string::npos; ++slash) {
        std::string prefix = whole.substr(0, slash);
        if (!IsFolderHere(prefix) && !pc::MakeFolder(prefix)) return false;
    }
    return true;
}

bool clsFSO::Move_Dir(const std::string& source, const std::string& destination) {
    // Into the destination when that ends in a backslash.
    std::string target = EndsWith(destination, "\\") ? destination + Get_Filename(source) : destination;
    return IsFolderHere(source) && pc::MovePath(source, target, false);
}

bool clsFSO::AskReplace(const std::string& source, const std::string& destination) {
    std::string text = "\r\nFile already exist at\r\n" + destination + "\r\n\r\n";
    for (const std::string& file : {destination, source}) {
        Get_FileInfo(file);
        text += file + "\r\n" + fileFields[fieldSize] + " bytes, " + fileFields[fieldDateLastModified] + "\r\n\r\n";
    }
    text += "Do you want to replace it?";
    return pc::ShowMessage(text, "Replace File?", pc::styleYesNo | pc::styleQuestion) == pc::answerYes;
}

// The old file gives way only to the new one: when that cannot be had, the old one stays.
bool clsFSO::PlaceFile(const char* procedure, const std::string& source, const std::string& destination,
                       bool bOverwrite, bool isMove) {
    if (!DoesFileExist(source)) {
        DebugOutput(std::string("clsFSO\\") + procedure + " - Source file does not exist, aborting routine.");
        DebugOutput("\tFile:  " + source);
        return false;
    }
    if (IsSamePath(source, destination)) return false;
    bool isThere = DoesFileExist(destination);
    if (isThere && !bOverwrite && !AskReplace(source, destination)) return false;
    RedirectionOff redirectionOff;
    std::optional<pc::FileInfo> file = pc::GetFileInfo(source), old = pc::GetFileInfo(destination);
    if (old) pc::ChangeAttributes(destination, pc::attributeNormal);
    bool isPlaced =
        isMove ? pc::MovePath(source, destination, isThere) : pc::CopyOneFile(source, destination, !isThere);
    const std::optional<pc::FileInfo>& origin = isPlaced ? file : old;
    if (origin) CarryAttributes(destination, origin->attributes);
    return isPlaced;
}

bool clsFSO::Move_File(const std::string& source, const std::string& destination, bool bOverwrite) {
    return PlaceFile("Move_File", source, destination, bOverwrite, true);
}

bool clsFSO::Copy_File(const std::string& source, const std::string& destination, bool bOverwrite) {
    return PlaceFile("Copy_File", source, destination, bOverwrite, false);
}

bool clsFSO::RenFile(const std::string& oldPath, const std::string& newName) {
    std::string newPath = JoinPath(StripNameFromPath(oldPath), StripPath(newName));
    if (!DoesFileExist(oldPath)) {
        DebugOutput("clsFSO\\RenFile: Failed.");
        DebugOutput("\t- File Not Found: " + oldPath);
        return false;
    }
    bool isOtherCase = IsSamePath(oldPath, newPath);
    if (!isOtherCase && DoesFileExist(newPath) && !KillFile(newPath)) {
        DebugOutput("clsFSO\\RenFile: Failed, exiting function.");
        DebugOutput("\t- File Already Exists: " + newPath);
        DebugOutput("\t- Input: " + oldPath);
        return false;
    }
    RedirectionOff redirectionOff;
    return TraceRename(oldPath, newPath, pc::MovePath(oldPath, newPath, false));
}

void clsFSO::FileToArray(const std::string& path, std::vector<std::string>& array) {
    if (!DoesFileExist(path)) {
        DebugOutput("clsFSO\\FileToArray: failed");
        DebugOutput("\t- File Not Found:" + path);
        DebugOutput("\t- Creating dummy file to proceed with array creation.");
        SaveTextToFile(path, "", true);
    }
    std::string text = pc::ReadWholeFile(path).value_or("");
    size_t start = 0;
    for (size_t line = 0; line < array.size() && start < text.size(); ++line) {
        DoEvents();
        size_t end = std::min(text.find('\n', start), text.size());
        bool hasReturn = end > start && text[end - 1] == '\r';
        array[line] = pc::FromAnsi(text.substr(start, end - start - (hasReturn ? 1 : 0)));
        start = end + 1;
    }
}

std::string clsFSO::BrowseForFolder(const std::string& prompt) {
    std::string folder = Remove_Nulls(pc::PickFolder(prompt));
    DebugOutput("clsFSO\\BrowseForFolder - Returned: " + folder);
    return folder;
}
