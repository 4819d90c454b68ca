#include "transfer/self_update.h"

#include <algorithm>

#include "controls/branding.h"
#include "controls/panel_links.h"
#include "platform/files.h"
#include "platform/machine.h"
#include "platform/messages.h"
#include "platform/processes.h"
#include "system/build_constants.h"
#include "system/files.h"
#include "system/paths.h"
#include "system/processes.h"
#include "system/program_state.h"
#include "system/registry.h"
#include "system/settings.h"
#include "system/text.h"
#include "system/trace.h"
#include "transfer/archives.h"
#include "transfer/download.h"
#include "transfer/zip_reader.h"

namespace {

// The three program files; the first is the main one.
constexpr const char* programFiles[] = {"Brevanta", "Pelmark", "BrevantaMCStub"};
constexpr const char* manifestArchive = "TalvenmoorUpdates.zip";
constexpr const char* updateArchive = "BrevantaEXE.zip";
// Starts the moved-aside program at the next logon, should the swap be cut off with no main program in place.
constexpr const char* runOnceKey = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnce";
constexpr const char* runOnceValue = "Brevanta Update Recovery";

std::string InPanel(const std::string& name) { return GetAppPath() + name; }
std::string NewName(const char* program) { return InPanel(std::string(program) + ".exe"); }
std::string OldName(const char* program) { return InPanel(std::string(program) + "_old.exe"); }
std::string UpdateUrl(const char* file) { return std::string("http://") + build::updateHost + "/" + file; }

void Remove(const std::string& path) {
    RedirectionOff redirection;
    pc::RemoveFile(path);
}

void Rename(const std::string& from, const std::string& to) {
    RedirectionOff redirection;
    if (DoesFileExist(from)) pc::MovePath(from, to, false);
}

void PutBack(const std::string& mainProgram) {
    Rename(OldName(programFiles[0]), mainProgram);
    Rename(OldName(programFiles[1]), NewName(programFiles[1]));
    Rename(OldName(programFiles[2]), NewName(programFiles[2]));
}

void RemoveOldCopies() {
    for (const char* program : programFiles) Remove(OldName(program));
}

void ForgetRecovery() {
    bool notFound = false;
    fDeleteValue("HKLM", runOnceKey, runOnceValue, notFound);
}

std::string RunningVersion() {
    pc::ProgramVersion version = pc::GetProgramVersion();
    return NumberText(version.major) + "." + NumberText(version.minor) + "." + NumberText(version.revision);
}

// First three numbers of a file's version.
std::string VersionOf(const std::string& path) {
    std::string version = pc::FileVersion(path);
    size_t last = version.rfind('.');
    return last == std::string::npos ? "" : version.substr(0, last);
}

// Whether every entry of the archive is sound and its main program is a Windows executable that is not older.
bool IsSoundUpdate(const std::string& archive) {
    ZipExtractionClass zip;
    std::vector<std::string> names;
    bool sound = zip.OpenZip(archive) && zip.Test(names);
    zip.CloseZip();
    if (!sound) return false;
    std::string folder = InPanel("UpdateTemp");
    std::string program = folder + "\\Brevanta.exe";
    clsFSO files;
    files.KillDir(folder, false);
    bool fits = false;
    if (UnzipFile(archive, folder, true)) {
        char head[2] = {};
        pc::File file;
        if (file.Open(program, pc::FileMode::read)) file.Read(head, sizeof head);
        file.Close();
        std::string version = VersionOf(program);
        fits = head[0] == 'M' && head[1] == 'Z' && !version.empty() && !IsNewerVersion(version, RunningVersion());
    }
    files.KillDir(folder, false);
    return fits;
}

// Whether each program file that the archive brings is there: a disk may have been full in the middle.
bool AllCame(const std::string& archive) {
    ZipExtractionClass zip;
    std::vector<std::string> names;
    if (!zip.OpenZip(archive) || !zip.Test(names)) return false;
    return std::all_of(names.begin(), names.end(), [](const std::string& name) {
        return DoesFileExist(InPanel(name)) || name.find('\\') != std::string::npos || !EndsWithNoCase(name, ".exe");
    });
}

void Stage(Form& form, const char* text) {
    form.SetText("Label1", text);
    DoEvents();
}

// When it does not come, an earlier one may still stand there and is used.
void FetchManifest() {
    std::string archive = InPanel(manifestArchive);
    DownloadFile(UpdateUrl(manifestArchive), archive, "", false, false);
    bool there = DoesFileExist(archive);
    DebugOutput(std::string(there ? "DOWNLOAD SUCCEEDED:  " : "DOWNLOAD FAILED:  ") + manifestArchive);
    if (!there) return;
    UnzipFile(archive, GetAppPath(), true);
    Remove(archive);
}

void SwapProgramFiles(Form& form, const std::string& archive) {
    std::string running = GetEXEPath();
    fWriteValue("HKLM", runOnceKey, runOnceValue, 'S', "\"" + OldName(programFiles[0]) + "\"");
    Remove(OldName(programFiles[0]));
    Rename(running, OldName(programFiles[0]));
    for (const char* program : {programFiles[1], programFiles[2]}) {
        Remove(OldName(program));
        Rename(NewName(program), OldName(program));
    }
    Pause(1);
    Stage(form, "Unzipping Update...");
    UnzipFile(archive, GetAppPath(), true);
    bool whole = DoesFileExist(NewName(programFiles[0])) && AllCame(archive);
    Remove(archive);
    if (whole) {
        RemoveOldCopies();
    } else {
        for (const char* program : programFiles)
            if (DoesFileExist(OldName(program))) Remove(NewName(program));
        PutBack(running);
    }
    ForgetRecovery();
}

void ApplyUpdate(Form& form) {
    Stage(form, "Downloading Update...");
    std::string archive = InPanel(updateArchive);
    DownloadFile(UpdateUrl(updateArchive), archive, "", false, false);
    if (!DoesFileExist(archive)) {
        DebugOutput(std::string("DOWNLOAD FAILED:  ") + updateArchive);
        return;
    }
    DebugOutput(std::string("DOWNLOAD SUCCEEDED:  ") + updateArchive);
    Stage(form, "Preparing for update...");
    if (!IsSoundUpdate(archive)) {
        DebugOutput(std::string("UPDATE REFUSED, NOT SOUND OR OLDER:  ") + updateArchive);
        Remove(archive);
        return;
    }
    SwapProgramFiles(form, archive);
}

void FinishUpdate(Form& form, bool bUpdateNeeded) {
    if (bUpdateNeeded) {
        ApplyUpdate(form);
        if (State().commandLine != "/updateonly") {
            Stage(form, "Restarting...");
            ShellX(NewName(programFiles[0]), "", false, 1);
        }
    }
    UnloadForm(form);
    pc::EndProcess(0);
}

void RunUpdate(Form& form) {
    // A second update beside a running one would move its files away.
    if (!pc::HoldSingleInstance("BrevantaUpdate")) {
        FinishUpdate(form, false);
        return;
    }
    FetchManifest();
    std::string manifest = InPanel("TalvenmoorUpdates.ini");
    bool bUpdateNeeded = IsNewerVersion(RunningVersion(), ReadIni(manifest, "Brevanta", "CurrentVersion"));
    FinishUpdate(form, bUpdateNeeded);
}

const ControlSpec controls[] = {
    {Kind::image, "AlphaImgCtl1", "", {240, 240, 2295, 1575}},
    {Kind::label, "Label1", "Looking for updates...", {2760, 780, 3600, 480}, "", bold | wrap},
    {Kind::timer, "Timer1", "", {}, "", disabled},
};

}  // namespace

const FormDefinition frmCompUpdateBeta = {"frmCompUpdateBeta", "", 6600, 2055, Border::fixed, controls, [](Form& form) {
                                              form.onLoad = [&form] {
                                                  SetFormIcon(form);
                                                  form.SetCaption(BrandName() + "  -  Support Control Panel");
                                                  form.Find("AlphaImgCtl1")->SetPicture(LogoFile());
                                                  form.Find("Timer1")->SetInterval(100);
                                                  form.SetEnabled("Timer1", true);
                                              };
                                              form.Find("Timer1")->onTimer = [&form] {
                                                  form.SetEnabled("Timer1", false);
                                                  RunUpdate(form);
                                              };
                                              // Closing in the midst of the swap would leave the program without its
                                              // files.
                                              form.onQueryUnload = [](bool fromUser) { return !fromUser; };
                                          }};

void RecoverInterruptedUpdate() {
    bool waiting = false;
    for (const char* program : programFiles)
        waiting = waiting || (DoesFileExist(OldName(program)) && !DoesFileExist(NewName(program)));
    if (!waiting) return;
    DebugOutput("RecoverInterruptedUpdate: ");
    std::string archive = InPanel(updateArchive);
    if (DoesFileExist(archive) && IsSoundUpdate(archive)) UnzipFile(archive, GetAppPath(), true);
    Remove(archive);
    for (const char* program : programFiles)
        if (!DoesFileExist(NewName(program))) Rename(OldName(program), NewName(program));
    ForgetRecovery();
}
