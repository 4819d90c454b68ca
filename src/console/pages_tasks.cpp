// Pages that set up what the panel does: restore points, maintenance, repair, custom buttons, updates.
#include "console/pages.h"

namespace {

// The three schedule rows stand in RestoreScheduleControls.
const PageItem restorePoint[] = {
    {Item::check, "chkShowRP",
     "Show config button  (New Interface &Only:  allows user to control the Restore Point creation schedule.)",
     "CustomRP", "ShowOption", 0},
    {Item::text, "txtSRPButton", "&Button Name:", "CustomRP", "ButtonCaption", 1, "System Restore Points"},
    {Item::button, "Command10", "Set Schedule on THIS &PC"},
};

const PageItem maintenance[] = {
    {Item::title, "", "Maintenance Button"},
    {Item::text, "txtMaintButtonCaption", "Button &Caption", "Branding", "MaintButtonCaption", 1, "Run Maintenance"},
    {Item::group, "", "Clean", "", "", 1},
    {Item::check, "chkDeleteTempFiles", "&Delete Temp Files", "Maint", "DelTemps", 1, "1"},
    {Item::check, "chkDelTempInternet", "Temp &Internet Files", "Maint", "DelTempInternet", 1, "1"},
    {Item::check, "chkDelHistory", "Internet &History", "Maint", "DelHistory", 1},
    {Item::check, "chkDelCookies", "C&ookies", "Maint", "DelCookies", 1},
    {Item::check, "chkCleanMgr", "Clean&Mgr.exe", "Maint", "CleanMgr", 1},
    {Item::check, "chkProcessIdleTasks", "&Process Idle Tasks", "Maint", "ProcIdleTasks", 1},
    {Item::check, "chkDefragStartup", "Defrag S&tartup Items (requires Sysinternals Contig.exe)", "Maint",
     "DefragStartup", 1},
    {Item::check, "chkDefragReg",
     "Defrag Paging &File && Reg on Reboot (XP only, requires Sysinternals PageDefrag.exe)", "Maint", "DefragReg", 1},
    {Item::group, "", "On Completion", "", "", 2},
    {Item::check, "chkDoSystemRP", "Create &Restore Point on Completion", "Maint", "DoSystemRP", 2},
    {Item::text, "txtSystemRPName", "System Restore Point &Name", "Maint", "SystemRPName", 2, "After Maintenance"},
    {Item::check, "chkShowURLAfterMaint", "Show &URL on Completion", "Maint", "ShowURLAfterMaint", 2},
    {Item::text, "txtPostMaintURL", "", "Maint", "PostMaintURL", 2},
    {Item::check, "chkShowURLAfterMaintInIB", "Use Internal &Browser", "Maint", "ShowURLAfterMaintInIB", 2},
    {Item::check, "chkCloseAppAfterMaintenance", "Close This &App after Maintenance", "Maint", "CloseAppAfterMaint", 2},
    {Item::check, "chkDateFormat", "Store Last Maint Time as DD/MM/&YYYY", "Config", "FormatDateDayFirst", 2},
    {Item::group, "", "Schedule a Maintenance Check and Reminder", "", "", 2},
    {Item::check, "chkMaintCheck", "&Enable during Installation", "Maint", "MaintCheckEnabled", 2},
    {Item::combo, "comboMaintReminder", "Sho&w Reminder After Number of Days since Last Maintenance:", "Maint",
     "MaintReminderDays", 2},
    {Item::button, "Command9", "&Set Schedule on THIS PC", "", "", 2},
};

const PageItem fix[] = {
    {Item::title, "", "Fix Button"},
    {Item::check, "chkShowFix", "&Show Fix Button", "Branding", "ShowFixButton", 1, "1"},
    {Item::text, "txtFixButtonCaption", "Fix Button &Caption", "Branding", "FixButtonCaption", 1, "Fix Internet"},
    {Item::text, "txtFixConfirmation", "Confirmation button &prompt (it is an OK/Cancel prompt)", "Fix",
     "FixConfirmation", 1, "Attempt to fix internet problems?"},
    {Item::group, "", "Repairs", "", "", 1},
    {Item::check, "chkResetHosts", "&Overwrite HOSTS file with default", "Fix", "ResetHosts", 1},
    {Item::check, "chkRestartIE", "Set &IE Work Offline mode to disabled.  (This option will close and restart IE)",
     "Fix", "RestartIE", 1},
    {Item::check, "chkRemIEToolbars", "Disable all IE &Toolbars", "Fix", "RemIEToolbars", 1},
    {Item::check, "chkRemIEBHOs", "Disable all IE &BHOs", "Fix", "RemIEBHOs", 1},
    {Item::check, "chkClearProxy", "C&lear Proxy Settings", "Fix", "ClearProxy", 1, "1"},
    {Item::check, "chkResetNet", "Reset &Network Interfaces", "Fix", "ResetNet", 1, "1"},
    {Item::list, "List1", "What that does:", "", "", 2, "", Keep::none, "", 0,
     "netsh winsock reset|netsh winsock reset catalog|netsh interface ip reset (if DHCP)|"
     "netsh interface reset all (if DHCP)|netsh interface ip delete arpcache|ipconfig /flushdns|"
     "ipconfig /registerdns|Reinstall TCP/IP (WinXP)|ipconfig /release all|ipconfig /renew all"},
    {Item::group, "", "On Completion", "", "", 2},
    {Item::option, "optShowNetRestartMsg", "Show Fix Internet Restart &Message", "Fix", "ShowNetMsg", 2, "1",
     Keep::optionFlag, "", 4},
    {Item::option, "optShowNetRestartURL", "Show &URL", "Fix", "ShowNetURL", 2, "", Keep::optionFlag, "", 4},
    {Item::text, "txtNetRestartURL", "", "Fix", "NetURL", 2},
    {Item::check, "chkUseIBForFixURL", "Us&e Internal Browser", "Fix", "UseIBForNetURL", 2},
};

// One table for five pages; the section and the control names take the page's number.
const PageItem custom[] = {
    {Item::title, "", "Custom Button"},
    {Item::check, "chkShowCustomButton", "&Enable Custom Button", "CustomButton", "ShowButton", 1},
    {Item::text, "txtCustomButtonCaption", "&Button Caption", "CustomButton", "ButtonCaption", 2},
    {Item::group, "", "Button Action"},
    {Item::option, "optCustomWU", "Open Windows U&pdate", "CustomButton", "Type", 1, "", Keep::whenChosen, "WU", 5},
    {Item::option, "optCustomSR", "Open System &Restore", "CustomButton", "Type", 1, "", Keep::whenChosen, "SR", 5},
    {Item::option, "optCustomCPQ", "&Clear Print Queue", "CustomButton", "Type", 1, "", Keep::whenChosen, "CPQ", 5},
    {Item::option, "optCustomSafe", "Reboot to &Safe Mode w/Networking", "CustomButton", "Type", 1, "",
     Keep::whenChosen, "SAFE", 5},
    {Item::option, "optCustomEXE", "Run an E&XE", "CustomButton", "Type", 2, "", Keep::whenChosen, "EXE", 5},
    {Item::option, "optCustomURL", "Open a &URL", "CustomButton", "Type", 2, "", Keep::whenChosen, "URL", 5},
    {Item::option, "optCustomDE", "&Download && Execute", "CustomButton", "Type", 2, "", Keep::whenChosen, "Download",
     5},
    {Item::text, "txtCustomButtonAction", "Enter your custom EXE &or URL below", "CustomButton", "ButtonAction", 0},
    {Item::check, "chkCustomURLinIB", "Show URL &inside internal browser.", "CustomButton", "ShowCustomURLinIB", 0},
    {Item::text, "txtCustomEXEParms",
     "Custom Para&meters for the executable:  (Applies to Run an EXE and Download && Execute)", "CustomButton",
     "CustomEXEParms", 0},
    {Item::text, "txtCustomDE", "Download &Filename:  (can be an executable or ZIP)", "CustomButton", "DownloadName",
     1},
    {Item::text, "txtCustomEXEinZIP", "EXE/COM/MSI Filename to ru&n:  (If download is a ZIP)", "CustomButton",
     "CustomEXEinZIP", 2},
    {Item::note, "", "(Leave blank if only one executable is inside the ZIP)", "", "", 2},
    {Item::text, "txtCustomAppName", "&Application Name:", "CustomButton", "CustomAppName", 1},
};

const PageItem autoUpdate[] = {
    {Item::title, "", "Nimbra/Auto Updating"},
    {Item::text, "txtCloudUser", "Nimbra &Username:", "Nimbra", "UserName", 1},
    {Item::secret, "txtCloudPass", "Nimbra &Password:", "Nimbra", "Password", 2, "", Keep::scrambled},
    {Item::check, "chkCloudUpdate", "Update Configuration from Nimbra at every &launch.", "Nimbra", "UpdateAtLaunch",
     0},
    {Item::button, "Command2", "Upload &Now", "", "", 1},
    {Item::button, "Command3", "&Download Now", "", "", 2},
    {Item::group, "", "Automatic Updates"},
    {Item::check, "chkUpdateApp", "Automatically Update the Brevanta &Application from", "ScheduledTasks", "UpdateApp",
     0},
    {Item::check, "chkUpdateConfig", "Automatically Update your Brevanta &Configuration", "ScheduledTasks",
     "UpdateConfig", 0},
    {Item::text, "txtUpdateLoc", "&Web location of your Brevanta Configuration Set:", "ScheduledTasks",
     "UpdateConfigLoc", 0},
    {Item::note, "", "for example \"/[ClientID]_BrevantaConfig.zip\" on a web host"},
    {Item::check, "chkOpenTS", "Check this box to always &open the Windows Task Scheduler after install",
     "ScheduledTasks", "OpenTSAfterInstall", 0},
    {Item::button, "Command1", "&Set Schedules on THIS PC"},
};

}  // namespace

const std::span<const PageItem> restorePointPage = restorePoint, maintenancePage = maintenance, appEditorPage = {},
                                fixPage = fix, customPage = custom, autoUpdatePage = autoUpdate;
