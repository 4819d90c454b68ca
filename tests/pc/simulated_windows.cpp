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

// Tools by the system that brought them. Those with a "*" are not in the 32-bit programs' folder of a 64-bit system.
constexpr const char* toolsOf2000 =
    "cmd.exe net.exe netsh.exe ipconfig.exe rundll32.exe msiexec.exe cscript.exe wscript.exe regsvr32.exe control.exe "
    "xcopy.exe attrib.exe ping.exe sc.exe cleanmgr.exe chkdsk.exe taskmgr.exe eventvwr.exe mmc.exe notepad.exe "
    "calc.exe "
    "mshta.exe sfc.exe route.exe appwiz.cpl compmgmt.msc devmgmt.msc defrag.exe* tskill.exe* msg.exe*";
constexpr const char* toolsOfXp =
    "schtasks.exe reg.exe taskkill.exe tasklist.exe systeminfo.exe shutdown.exe firewall.cpl wscui.cpl vssadmin.exe*";
constexpr const char* toolsOfVista =
    "bcdedit.exe* rstrui.exe* msconfig.exe* msra.exe* slui.exe* icacls.exe takeown.exe robocopy.exe wusa.exe";

// Names and paths, "|" between them; "{name}" stands for an earlier one. The environment has those in lower case.
constexpr const char* everywhere =
    "systemdrive=C:|systemroot=C:\\Windows|windir=C:\\Windows|homedrive=C:|username=Client|userdomain=DESK|"
    "computername=DESK|os=Windows_NT|comspec=C:\\Windows\\System32\\cmd.exe|path=C:\\Windows\\System32;C:\\Windows|"
    "processor_architecture=x86|commonprogramfiles={programfiles}\\Common Files|";
constexpr const char* sinceVista =
    "homepath=\\Users\\Client|userprofile=C:\\Users\\Client|allusersprofile=C:\\ProgramData|programdata=C:"
    "\\ProgramData|"
    "public=C:\\Users\\Public|appdata={userprofile}\\AppData\\Roaming|localappdata={userprofile}\\AppData\\Local|"
    "temp={localappdata}\\Temp|tmp={temp}|SHELL={appdata}\\Microsoft\\Windows|LOCALSHELL={localappdata}"
    "\\Microsoft\\Windows|"
    "MENU={SHELL}\\Start Menu|ALLMENU={programdata}\\Microsoft\\Windows\\Start Menu|DOCS={userprofile}\\Documents|"
    "CACHE={LOCALSHELL}\\Temporary Internet Files|HISTORY={LOCALSHELL}\\History|COOKIES={SHELL}\\Cookies|"
    "RECENT={SHELL}\\Recent|SENDTO={SHELL}\\SendTo|MUSIC={userprofile}\\Music|PICTURES={userprofile}\\Pictures|"
    "LOCALDATA={localappdata}|ALLDATA={programdata}|EVERYBODY={public}";
constexpr const char* beforeVista =
    "homepath=\\Documents and Settings\\Client|userprofile=C:\\Documents and Settings\\Client|"
    "allusersprofile=C:\\Documents and Settings\\All Users|appdata={userprofile}\\Application Data|"
    "LOCAL={userprofile}\\Local Settings|temp={LOCAL}\\Temp|tmp={temp}|MENU={userprofile}\\Start Menu|"
    "ALLMENU={allusersprofile}\\Start Menu|DOCS={userprofile}\\My Documents|CACHE={LOCAL}\\Temporary Internet Files|"
    "HISTORY={LOCAL}\\History|COOKIES={userprofile}\\Cookies|RECENT={userprofile}\\Recent|SENDTO={userprofile}\\SendTo|"
    "MUSIC={DOCS}\\My Music|PICTURES={DOCS}\\My Pictures|LOCALDATA={LOCAL}\\Application Data|"
    "ALLDATA={allusersprofile}\\Application Data|EVERYBODY={allusersprofile}";
// The shell's folders by CSIDL number.
constexpr const char* shellFolders =
    "0={userprofile}\\Desktop|16={userprofile}\\Desktop|2={MENU}\\Programs|5={DOCS}|6={userprofile}\\Favorites|"
    "7={MENU}\\Programs\\Startup|8={RECENT}|9={SENDTO}|11={MENU}|13={MUSIC}|20={windir}\\Fonts|22={ALLMENU}|"
    "23={ALLMENU}\\Programs|24={ALLMENU}\\Programs\\Startup|25={EVERYBODY}\\Desktop|26={appdata}|28={LOCALDATA}|"
    "31={userprofile}\\Favorites|32={CACHE}|33={COOKIES}|34={HISTORY}|35={ALLDATA}|36={windir}|37={windir}\\System32|"
    "38={programfiles}|39={PICTURES}|40={userprofile}|41={SYSTEM32}|42={programfiles}|43={commonprogramfiles}|"
    "46={EVERYBODY}\\Documents";
// Names of the older layout, which lead on to the new ones.
constexpr const char* oldNames =
    "C:\\Documents and Settings=C:\\Users|{userprofile}\\Application Data={appdata}|{userprofile}\\My Documents={DOCS}|"
    "{userprofile}\\Local Settings={localappdata}|{localappdata}\\Application Data={localappdata}|"
    "{userprofile}\\Start Menu={MENU}|{userprofile}\\Cookies={COOKIES}|C:\\Users\\Default User=C:\\Users\\Default|"
    "C:\\Users\\All Users=C:\\ProgramData";

using Names = std::map<std::string, std::string>;

std::string Filled(std::string text, const Names& names) {
    for (size_t open; (open = text.find('{')) != std::string::npos;) {
        size_t close = text.find('}', open);
        text.replace(open, close - open + 1, names.at(text.substr(open + 1, close - open - 1)));
    }
    return text;
}

// Calls each with the two sides of every entry, filled in.
template <typename Each>
void ForEachEntry(const std::string& table, const Names& names, Each each) {
    for (const std::string& entry : Pieces(table, '|')) {
        size_t equals = entry.find('=');
        if (equals != std::string::npos)
            each(Filled(entry.substr(0, equals), names), Filled(entry.substr(equals + 1), names));
    }
}

void AddEnvironmentAndFolders(SimulatedPc& pc) {
    bool vista = pc.version.major >= 6;
    Names names = {{"programfiles", pc.is64Bit ? "C:\\Program Files (x86)" : "C:\\Program Files"}};
    auto name = [&](const std::string& key, const std::string& value) { names[key] = value; };
    ForEachEntry(std::string(everywhere) + (vista ? sinceVista : beforeVista), names, name);
    if (pc.is64Bit) name("programfiles(x86)", names["programfiles"]);
    if (pc.is64Bit) name("processor_architew6432", "AMD64");
    if (pc.is64Bit && vista) name("programw6432", "C:\\Program Files");
    for (const auto& [key, value] : names)
        if (key[0] >= 'a') pc.SetEnv(key, value);
    name("SYSTEM32", pc.is64Bit ? "C:\\Windows\\SysWOW64" : "C:\\Windows\\System32");
    ForEachEntry(shellFolders, names, [&](const std::string& number, const std::string& path) {
        pc.specialFolders[std::stoi(number)] = path;
        pc.AddFolder(path);
    });
    for (const std::string& path : {names["temp"], std::string("C:\\Windows\\Temp"), std::string("C:\\Windows\\inf"),
                                    std::string("C:\\Windows\\System32\\drivers\\etc"), std::string("C:\\Panel"),
                                    std::string("C:\\Program Files\\Common Files")})
        pc.AddFolder(path);
    for (const std::string profile : {"Default User", "LocalService", "NetworkService"})
        if (!vista) pc.AddFolder("C:\\Documents and Settings\\" + profile);
    if (vista) pc.AddFolder("C:\\Users\\Default");
    if (vista)
        ForEachEntry(oldNames, names, [&](const std::string& path, const std::string& target) {
            pc.AddJunction(path, target);
            Resolve(path, false, false).node->attributes |= pc::attributeHidden | pc::attributeSystem;
        });
}

void AddTools(SimulatedPc& pc) {
    bool is2000 = pc.version.major == 5 && pc.version.minor == 0, vista = pc.version.major >= 6;
    std::string tools = std::string(toolsOf2000) + (is2000 ? "" : std::string(" ") + toolsOfXp) +
                        (vista ? std::string(" ") + toolsOfVista : "");
    for (std::string tool : Pieces(tools, ' ')) {
        bool only64 = tool.ends_with('*');
        if (only64) tool.pop_back();
        pc.AddFile("C:\\Windows\\System32\\" + tool, "MZ");
        if (pc.is64Bit && !only64) pc.AddFile("C:\\Windows\\SysWOW64\\" + tool, "MZ");
    }
    for (const char* name : {"regedit.exe", "explorer.exe", "notepad.exe"})
        pc.AddFile(std::string("C:\\Windows\\") + name, "MZ");
    if (pc.is64Bit) pc.AddFile("C:\\Windows\\SysWOW64\\regedit.exe", "MZ");
    if (!vista && !is2000) pc.AddFile("C:\\Windows\\System32\\Restore\\rstrui.exe", "MZ");
}

void AddRegistry(SimulatedPc& pc, const Edition& edition) {
    for (std::string software : {"HKLM\\Software\\", "HKLM\\Software\\Wow6432Node\\"}) {
        if (!pc.is64Bit && software.find("Wow") != std::string::npos) continue;
        std::string key = software + "Microsoft\\Windows NT\\CurrentVersion";
        pc.SetText(key, "ProductName", edition.productName);
        pc.SetText(key, "CurrentVersion",
                   edition.major >= 10 ? "6.3" : Decimal(edition.major) + "." + Decimal(edition.minor));
        pc.SetText(key, "CurrentBuildNumber", Decimal(edition.build));
        pc.SetText(key, "SystemRoot", "C:\\Windows");
        if (!pc.version.csdVersion.empty()) pc.SetText(key, "CSDVersion", pc.version.csdVersion);
        pc.AddKey(software + "Microsoft\\Windows\\CurrentVersion\\Run");
    }
    std::string list = "HKLM\\Software\\Microsoft\\Windows NT\\CurrentVersion\\ProfileList\\";
    bool vista = pc.version.major >= 6;
    std::string services = vista ? "%systemroot%\\ServiceProfiles\\" : "%SystemDrive%\\Documents and Settings\\";
    for (const auto& [sid, path] : {std::pair<std::string, std::string>{"S-1-5-19", services + "LocalService"},
                                    {"S-1-5-18", "%systemroot%\\system32\\config\\systemprofile"},
                                    {"S-1-5-20", services + "NetworkService"},
                                    {pc.UserSid(), pc.Env("userprofile")}})
        pc.SetRaw(list + sid, "ProfileImagePath", pc::typeExpandSz, path + '\0');
    for (const char* key : {"HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings",
                            "HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Run", "HKU\\.DEFAULT\\Software",
                            "HKLM\\System\\CurrentControlSet\\Services", "HKU\\S-1-5-18\\Software"})
        pc.AddKey(key);
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
    ForEachEntry(
        "Client=S-1-5-21-1004336348-1177238915-682003330-1001|System=S-1-5-18|Everyone=S-1-1-0|"
        "Administrator=S-1-5-21-1004336348-1177238915-682003330-500|Administrators=S-1-5-32-544|"
        "Users=S-1-5-32-545|Guests=S-1-5-32-546|Power Users=S-1-5-32-547",
        {}, [&](const std::string& name, const std::string& sid) { pc.AddAccount(name, sid); });
    AddEnvironmentAndFolders(pc);
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
