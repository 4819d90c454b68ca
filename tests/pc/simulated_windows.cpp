// What a fresh Windows of each version has: environment, folders, tools, accounts, registry.
#include "pc/names.h"
#include "pc/simulated_programs.h"

namespace {

struct Edition {
    Windows windows;
    uint32_t major, minor, build;
    uint16_t servicePack;
    bool is64Bit;
    uint8_t productType;
    uint32_t sku;
    const char* productName;
};

// Edition numbers: 1 ultimate, 7 standard server, 48 professional. Windows 11 still calls itself 10 here.
constexpr Edition editions[] = {
    {Windows::w2000, 5, 0, 2195, 4, false, 1, 0, "Microsoft Windows 2000"},
    {Windows::xp, 5, 1, 2600, 3, false, 1, 0, "Microsoft Windows XP"},
    {Windows::xpX64, 5, 2, 3790, 2, true, 1, 0, "Microsoft Windows XP"},
    {Windows::server2003, 5, 2, 3790, 2, false, 3, 0, "Microsoft Windows Server 2003"},
    {Windows::vista, 6, 0, 6002, 2, false, 1, 1, "Windows Vista (TM) Ultimate"},
    {Windows::vistaX64, 6, 0, 6002, 2, true, 1, 1, "Windows Vista (TM) Ultimate"},
    {Windows::server2008, 6, 0, 6002, 2, false, 3, 7, "Windows Server (R) 2008 Standard"},
    {Windows::seven, 6, 1, 7601, 1, false, 1, 48, "Windows 7 Professional"},
    {Windows::sevenX64, 6, 1, 7601, 1, true, 1, 48, "Windows 7 Professional"},
    {Windows::server2008R2, 6, 1, 7601, 1, true, 3, 7, "Windows Server 2008 R2 Standard"},
    {Windows::eight, 6, 2, 9200, 0, false, 1, 48, "Windows 8 Pro"},
    {Windows::eightX64, 6, 2, 9200, 0, true, 1, 48, "Windows 8 Pro"},
    {Windows::eightOne, 6, 3, 9600, 0, false, 1, 48, "Windows 8.1 Pro"},
    {Windows::eightOneX64, 6, 3, 9600, 0, true, 1, 48, "Windows 8.1 Pro"},
    {Windows::server2012, 6, 2, 9200, 0, true, 3, 7, "Windows Server 2012 Standard"},
    {Windows::server2012R2, 6, 3, 9600, 0, true, 3, 7, "Windows Server 2012 R2 Standard"},
    {Windows::ten, 10, 0, 19045, 0, false, 1, 48, "Windows 10 Pro"},
    {Windows::tenX64, 10, 0, 19045, 0, true, 1, 48, "Windows 10 Pro"},
    {Windows::eleven, 10, 0, 22631, 0, true, 1, 48, "Windows 10 Pro"},
    {Windows::server2022, 10, 0, 20348, 0, true, 3, 7, "Windows Server 2022 Standard"},
};

struct Tool {
    const char* file;
    uint32_t since = 0, gone = 99;  // major versions
    bool only64 = false;            // on a 64-bit system not in the 32-bit programs' folder
};
constexpr Tool tools[] = {{"cmd.exe"},
                          {"net.exe"},
                          {"netsh.exe"},
                          {"ipconfig.exe"},
                          {"rundll32.exe"},
                          {"msiexec.exe"},
                          {"cscript.exe"},
                          {"wscript.exe"},
                          {"regsvr32.exe"},
                          {"control.exe"},
                          {"shutdown.exe", 5},
                          {"xcopy.exe"},
                          {"attrib.exe"},
                          {"ping.exe"},
                          {"sc.exe"},
                          {"cleanmgr.exe"},
                          {"chkdsk.exe"},
                          {"taskmgr.exe"},
                          {"eventvwr.exe"},
                          {"mmc.exe"},
                          {"notepad.exe"},
                          {"calc.exe"},
                          {"mshta.exe"},
                          {"appwiz.cpl"},
                          {"firewall.cpl"},
                          {"wscui.cpl"},
                          {"compmgmt.msc"},
                          {"devmgmt.msc"},
                          {"schtasks.exe"},
                          {"reg.exe"},
                          {"taskkill.exe"},
                          {"tasklist.exe"},
                          {"systeminfo.exe"},
                          {"sfc.exe"},
                          {"route.exe"},
                          {"defrag.exe", 0, 99, true},
                          {"tskill.exe", 0, 99, true},
                          {"vssadmin.exe", 0, 99, true},
                          {"bcdedit.exe", 6, 99, true},
                          {"rstrui.exe", 6, 99, true},
                          {"msconfig.exe", 6, 99, true},
                          {"msra.exe", 6, 99, true},
                          {"wuapp.exe", 6, 7},
                          {"icacls.exe", 6},
                          {"takeown.exe", 6},
                          {"robocopy.exe", 6},
                          {"wusa.exe", 6},
                          {"slui.exe", 6, 99, true},
                          {"msg.exe", 0, 99, true}};

void AddTools(SimulatedPc& pc) {
    bool is2000 = pc.version.major == 5 && pc.version.minor == 0;
    for (const Tool& tool : tools) {
        std::string name = tool.file;
        bool missing = pc.version.major < tool.since || pc.version.major >= tool.gone ||
                       (is2000 && (name == "reg.exe" || name == "schtasks.exe" || name == "taskkill.exe" ||
                                   name == "tasklist.exe" || name == "systeminfo.exe" || name == "shutdown.exe"));
        if (missing) continue;
        pc.AddFile("C:\\Windows\\System32\\" + name, "MZ");
        if (pc.is64Bit && !tool.only64) pc.AddFile("C:\\Windows\\SysWOW64\\" + name, "MZ");
    }
    for (const char* name : {"regedit.exe", "explorer.exe", "notepad.exe"})
        pc.AddFile(std::string("C:\\Windows\\") + name, "MZ");
    if (pc.is64Bit) pc.AddFile("C:\\Windows\\SysWOW64\\regedit.exe", "MZ");
    if (pc.version.major < 6) pc.AddFile("C:\\Windows\\System32\\Restore\\rstrui.exe", "MZ");
}

// Folders of the profile layout, and the names by which the shell knows them (CSIDL numbers).
void AddFolders(SimulatedPc& pc) {
    bool vista = pc.version.major >= 6;
    std::string user = pc.Env("userprofile"), all = pc.Env("allusersprofile"),
                everybody = vista ? pc.Env("public") : all;
    std::string roaming = user + (vista ? "\\AppData\\Roaming" : "\\Application Data");
    std::string local = user + (vista ? "\\AppData\\Local" : "\\Local Settings");
    std::string localData = vista ? local : local + "\\Application Data";
    std::string menu = vista ? roaming + "\\Microsoft\\Windows\\Start Menu" : user + "\\Start Menu";
    std::string allMenu = vista ? all + "\\Microsoft\\Windows\\Start Menu" : all + "\\Start Menu";
    std::string docs = user + (vista ? "\\Documents" : "\\My Documents");
    std::string cache =
        vista ? local + "\\Microsoft\\Windows\\Temporary Internet Files" : local + "\\Temporary Internet Files";
    std::string programs = pc.is64Bit ? "C:\\Program Files (x86)" : "C:\\Program Files";
    auto& special = pc.specialFolders;
    special = {{0x00, user + "\\Desktop"},
               {0x10, user + "\\Desktop"},
               {0x02, menu + "\\Programs"},
               {0x05, docs},
               {0x06, user + "\\Favorites"},
               {0x07, menu + "\\Programs\\Startup"},
               {0x08, vista ? roaming + "\\Microsoft\\Windows\\Recent" : user + "\\Recent"},
               {0x09, vista ? roaming + "\\Microsoft\\Windows\\SendTo" : user + "\\SendTo"},
               {0x0B, menu},
               {0x0D, vista ? user + "\\Music" : docs + "\\My Music"},
               {0x14, "C:\\Windows\\Fonts"},
               {0x16, allMenu},
               {0x17, allMenu + "\\Programs"},
               {0x18, allMenu + "\\Programs\\Startup"},
               {0x19, everybody + "\\Desktop"},
               {0x1A, roaming},
               {0x1C, localData},
               {0x1F, user + "\\Favorites"},
               {0x20, cache},
               {0x21, vista ? roaming + "\\Microsoft\\Windows\\Cookies" : user + "\\Cookies"},
               {0x22, vista ? local + "\\Microsoft\\Windows\\History" : local + "\\History"},
               {0x23, vista ? all : all + "\\Application Data"},
               {0x24, "C:\\Windows"},
               {0x25, "C:\\Windows\\System32"},
               {0x26, programs},
               {0x27, vista ? user + "\\Pictures" : docs + "\\My Pictures"},
               {0x28, user},
               {0x29, pc.is64Bit ? "C:\\Windows\\SysWOW64" : "C:\\Windows\\System32"},
               {0x2A, programs},
               {0x2B, programs + "\\Common Files"},
               {0x2E, everybody + "\\Documents"}};
    for (const auto& [number, path] : special) pc.AddFolder(path);
    for (const std::string& path :
         {std::string("C:\\Windows\\Temp"), std::string("C:\\Windows\\inf"), local + "\\Temp", std::string("C:\\Panel"),
          std::string("C:\\Windows\\System32\\drivers\\etc"), std::string("C:\\Program Files\\Common Files")})
        pc.AddFolder(path);
    if (!vista) return;
    // The names of the older layout lead on to the new ones, and nobody may list them.
    const std::pair<std::string, std::string> links[] = {{"C:\\Documents and Settings", "C:\\Users"},
                                                         {user + "\\Application Data", roaming},
                                                         {user + "\\Local Settings", local},
                                                         {user + "\\AppData\\Local\\Application Data", local},
                                                         {user + "\\My Documents", docs},
                                                         {user + "\\Start Menu", menu}};
    for (const auto& [path, target] : links) {
        pc.AddJunction(path, target);
        Resolve(path, false, false).node->attributes |= pc::attributeHidden | pc::attributeSystem;
    }
}

void AddEnvironment(SimulatedPc& pc) {
    bool vista = pc.version.major >= 6;
    std::string profiles = vista ? "C:\\Users" : "C:\\Documents and Settings", user = profiles + "\\Client";
    std::string temp = user + (vista ? "\\AppData\\Local\\Temp" : "\\Local Settings\\Temp");
    const std::pair<const char*, std::string> values[] = {
        {"systemdrive", "C:"},
        {"systemroot", "C:\\Windows"},
        {"windir", "C:\\Windows"},
        {"homedrive", "C:"},
        {"homepath", user.substr(2)},
        {"userprofile", user},
        {"username", "Client"},
        {"userdomain", "DESK"},
        {"computername", "DESK"},
        {"temp", temp},
        {"tmp", temp},
        {"os", "Windows_NT"},
        {"comspec", "C:\\Windows\\System32\\cmd.exe"},
        {"path", "C:\\Windows\\System32;C:\\Windows"},
        {"appdata", user + (vista ? "\\AppData\\Roaming" : "\\Application Data")},
        {"allusersprofile", vista ? "C:\\ProgramData" : profiles + "\\All Users"},
        {"programfiles", pc.is64Bit ? "C:\\Program Files (x86)" : "C:\\Program Files"},
        {"processor_architecture", "x86"}};
    for (const auto& [name, value] : values) pc.SetEnv(name, value);
    pc.SetEnv("commonprogramfiles", pc.Env("programfiles") + "\\Common Files");
    if (vista) {
        pc.SetEnv("public", "C:\\Users\\Public");
        pc.SetEnv("programdata", "C:\\ProgramData");
        pc.SetEnv("localappdata", user + "\\AppData\\Local");
    }
    if (!pc.is64Bit) return;
    pc.SetEnv("programfiles(x86)", "C:\\Program Files (x86)");
    pc.SetEnv("processor_architew6432", "AMD64");
    if (vista) pc.SetEnv("programw6432", "C:\\Program Files");
}

void AddRegistry(SimulatedPc& pc, const Edition& edition) {
    for (const char* software : {"HKLM\\Software\\", "HKLM\\Software\\Wow6432Node\\"}) {
        if (!pc.is64Bit && std::string(software).find("Wow") != std::string::npos) continue;
        std::string key = std::string(software) + "Microsoft\\Windows NT\\CurrentVersion";
        bool is10 = edition.major >= 10;
        std::string version = is10 ? "6.3" : Decimal(edition.major) + "." + Decimal(edition.minor);
        pc.SetText(key, "ProductName", edition.productName);
        pc.SetText(key, "CurrentVersion", version);
        pc.SetText(key, "CurrentBuildNumber", Decimal(edition.build));
        pc.SetText(key, "SystemRoot", "C:\\Windows");
        if (!pc.version.csdVersion.empty()) pc.SetText(key, "CSDVersion", pc.version.csdVersion);
        pc.AddKey(std::string(software) + "Microsoft\\Windows\\CurrentVersion\\Run");
    }
    std::string list = "HKLM\\Software\\Microsoft\\Windows NT\\CurrentVersion\\ProfileList\\";
    bool vista = pc.version.major >= 6;
    std::string services = vista ? "%systemroot%\\ServiceProfiles\\" : "%SystemDrive%\\Documents and Settings\\";
    const std::pair<const char*, std::string> profiles[] = {
        {"S-1-5-18", "%systemroot%\\system32\\config\\systemprofile"},
        {"S-1-5-19", services + "LocalService"},
        {"S-1-5-20", services + "NetworkService"}};
    for (const auto& [sid, path] : profiles) pc.SetRaw(list + sid, "ProfileImagePath", pc::typeExpandSz, path + '\0');
    pc.SetRaw(list + pc.UserSid(), "ProfileImagePath", pc::typeExpandSz, pc.Env("userprofile") + '\0');
    pc.AddKey("HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings");
    pc.AddKey("HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Run");
    pc.AddKey("HKLM\\System\\CurrentControlSet\\Services");
    pc.AddKey("HKU\\.DEFAULT\\Software");
    pc.AddKey("HKU\\S-1-5-18\\Software");
}

}  // namespace

void InstallWindows(SimulatedPc& pc, Windows windows) {
    const Edition* edition = editions;
    while (edition->windows != windows) ++edition;
    pc.version.major = edition->major;
    pc.version.minor = edition->minor;
    pc.version.build = edition->build;
    pc.version.servicePackMajor = edition->servicePack;
    pc.version.productType = edition->productType;
    pc.version.suiteMask = 0x100;  // single-user remote desktop
    if (edition->servicePack) pc.version.csdVersion = "Service Pack " + Decimal(edition->servicePack);
    pc.is64Bit = edition->is64Bit;
    pc.sku = edition->sku;
    pc.AddDrive("C:");
    pc.AddAccount("Client", "S-1-5-21-1004336348-1177238915-682003330-1001");
    for (const auto& [name, sid] : {std::pair{"Administrator", "S-1-5-21-1004336348-1177238915-682003330-500"},
                                    {"System", "S-1-5-18"},
                                    {"Everyone", "S-1-1-0"},
                                    {"Administrators", "S-1-5-32-544"},
                                    {"Users", "S-1-5-32-545"},
                                    {"Guests", "S-1-5-32-546"},
                                    {"Power Users", "S-1-5-32-547"}})
        pc.AddAccount(name, sid);
    AddEnvironment(pc);
    AddFolders(pc);
    AddTools(pc);
    AddRegistry(pc, *edition);
    pc.AddFile(pc.programPath, "MZ");
    RunningProgram& own = ThePrograms().processes[ownProcessId];
    own.name = LastPart(pc.programPath);
    own.image = Resolve(pc.programPath).node;
    ++own.image->images;
    for (const char* name : {"System", "smss.exe", "csrss.exe", "winlogon.exe", "services.exe", "lsass.exe"})
        pc.AddProcess(name, {.runs = Behaviour::forever, .isProtected = true});
    pc.AddProcess("explorer.exe");
}
