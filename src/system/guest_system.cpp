// The folders of the Windows under work, which may be another one than the running one.
#include "platform/files.h"
#include "platform/machine.h"
#include "platform/messages.h"
#include "system/paths.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

std::string Question(bool askUser, const std::string& prompt) {
    return askUser ? UpperCase(Target().sTargetDrive) + prompt : "";
}

std::string Pick(const std::string& prompt) { return prompt.empty() ? "" : pc::PickFolder(prompt); }

// Cuts a leading text.
std::string Without(const std::string& text, const char* head) {
    return StartsWith(text, head) ? text.substr(std::string(head).size()) : text;
}

// Without the quotes around it; what stands behind the closing quote goes as well.
std::string Unquoted(const std::string& text) {
    if (text.empty() || text[0] != '"') return text;
    if (text.size() > 1 && text.back() == '"') return text.substr(1, text.size() - 2);
    return StripEndOfString(text.substr(1), "\"", true);
}

}  // namespace

bool IsGuestOS(const std::string& drive) {
    std::string upper = UpperCase(drive);
    return upper != UpperCase(pc::Environment("homedrive")) &&
           upper != UpperCase(pc::Environment("windir").substr(0, 2));
}

std::string GetWinDir(bool askUser) {
    std::string drive = Target().sTargetDrive;
    if (!IsGuestOS(drive)) {
        std::string folder = pc::WindowsFolder();
        DebugOutput("IsGuestOS is false, GetWinDir is using GetWindowsDirectory, returns:  " + folder);
        return folder;
    }
    std::string folder;
    for (const char* name : {"\\Windows", "\\Winnt"})
        if (DoesFileExist(drive + name + "\\explorer.exe")) folder = drive + name;
    if (!folder.empty()) return folder;
    DebugOutput("GetWinDir:  could not find %windir%, moving to manual selection.");
    return Pick(Question(askUser, " drive.                 Please select the correct Windows folder for " +
                                      UpperCase(drive) + " drive now:"));
}

std::string GetSysDir(bool askUser) {
    if (!IsGuestOS(Target().sTargetDrive)) return pc::SystemFolder();
    std::string windows = GetWinDir(askUser);
    if (DoesFileExist(windows + "\\system32\\winlogon.exe")) return windows + "\\system32";
    if (DoesFileExist(windows + "\\system\\system.dat")) return windows + "\\system";
    return Pick(Question(askUser, "               Please select the correct System or System32 folder now:"));
}

std::string GetUserProf(bool askUser) {
    std::string drive = Target().sTargetDrive;
    if (IsVistaProfileLayout()) return drive + "\\Users";
    if (DoesDirExist(drive + "\\Documents and Settings")) return drive + "\\Documents and Settings";
    DebugOutput("GetUserProf:  Win9x suspected, no code here.");
    return Pick(Question(askUser, "  Please select the correct folder (e.g. \\Users or \\Documents and Settings)"));
}

bool IsVistaProfileLayout() {
    auto there = [](const char* tail) { return DoesDirExist(Target().sTargetDrive + tail); };
    return there("\\Users") && (there("\\Users\\Default") || there("\\Users\\Default User")) &&
           (there("\\Users\\Public") || there("\\Users\\All Users")) && there("\\ProgramData");
}

void LoadProfileList(bool askUser) {
    std::string folder = GetUserProf(askUser);
    Target().profiles.clear();
    // Not through a list of joined names: a profile's name may hold the character that parts them.
    RedirectionOff redirection;
    pc::ListFolder(folder, "*", [&](const pc::FileInfo& item) {
        if (item.IsFolder()) Target().profiles.push_back(folder + "\\" + item.name);
        return true;
    });
}

std::string GetRealFilePath(const std::string& commandText) {
    std::string drive = Target().sTargetDrive;
    bool bRegistryGuestMode = LowerCase(pc::Environment("systemdrive")) != LowerCase(drive);
    std::string text = LowerCase(commandText);
    for (const char* launcher :
         {"%windir%\\system32\\rundll32.exe", "%systemroot%\\system32\\rundll32.exe", "rundll32.exe", "rundll32"})
        text = Strip(text, launcher);
    text = StripCommandArguments(Unquoted(text));
    if (StartsWith(text, "system32")) text = drive + "\\windows\\" + text;
    const std::pair<const char*, std::string> replacements[] = {
        {"\\systemroot\\", drive + "\\windows\\"},     {"\\%systemroot%\\", drive + "\\windows\\"},
        {"%systemroot%", drive + "\\windows"},         {"%windir%", drive + "\\windows"},
        {"%programfiles%", drive + "\\program files"}, {"%programfiles(x86)%", drive + "\\program files (x86)"},
    };
    for (const auto& [from, to] : replacements) text = ReplaceAll(text, from, to);
    text = Without(text, StartsWith(text, "\\??\\") ? "\\??\\" : "\\\\.\\");
    text = Without(Without(text, "globalroot"), "\\\\.\\globalroot");
    text = drive + StripDriveLetter(text);  // a bare name stays a bare name behind the drive
    DebugOutput("GetRealFilePath: (bRegistryGuestMode=" + TraceValue(bRegistryGuestMode).Text() + ")");
    DebugOutput("\t- Passed:  " + commandText);
    DebugOutput("\t- Returned:  " + text);
    return text;
}
