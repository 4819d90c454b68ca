// Page picCustomAppsMaint: the technician's maintenance apps and their order.
#include "console/console_parts.h"
#include "controls/input_box.h"
#include "maintenance/custom_apps.h"
#include "platform/files.h"
#include "platform/messages.h"
#include "repair/internet.h"
#include "system/files.h"
#include "system/paths.h"
#include "system/program_state.h"
#include "system/settings.h"
#include "system/text.h"
#include "system/trace.h"
#include "transfer/archives.h"
#include "transfer/download.h"
#include "transfer/zip_format.h"

namespace {

// Controls and app file keys in the order of writing.
struct AppField {
    const char* key;
    const char* control;
    enum Kind { text, tick, platform } kind;
};
constexpr AppField appFields[] = {
    {"App", "txtFileName(0)", AppField::text},       {"App64", "txtFileName(1)", AppField::text},
    {"AppParms", "txtCmdParms", AppField::text},     {"AppURL64", "txtAppURL(1)", AppField::text},
    {"AppDLName64", "txtDLName(1)", AppField::text}, {"AppURL", "txtAppURL(0)", AppField::text},
    {"AppDLName", "txtDLName(0)", AppField::text},   {"AlwaysAttemptDownload", "chkAlwaysDLCustomApp", AppField::tick},
    {"32", "chkCustom32", AppField::platform},       {"64", "chkCustom64", AppField::platform},
    {"XP", "chkCustomXP", AppField::platform},       {"Vista", "chkCustomVista", AppField::platform},
    {"7", "chkCustom7", AppField::platform},         {"8", "chkCustom8", AppField::platform},
};

std::string ToolsFolder() { return GetAppPath() + "3rd Party Tools"; }
std::string Indexed(const char* name, int index) { return std::string(name) + "(" + NumberText(index) + ")"; }
std::string AppName(Form& form) { return CleanAppName(form.Text("txtName")); }

void SaveSortOrder(Form& form) {
    std::string order;
    for (const std::string& name : form.Find("listApps")->Items()) order += name + "|";
    SaveTextToFile(SortOrderFile(), order, true);
}

void ClearAppFields(Form& form) {
    form.SetText("txtName", "");
    for (const AppField& field : appFields) {
        if (field.kind == AppField::text)
            form.SetText(field.control, "");
        else
            form.SetValue(field.control, field.kind == AppField::platform);
    }
}

void OpenApp(Form& form) {
    const Control& list = *form.Find("listApps");
    if (list.Selected() < 0) return;
    std::string name = list.Items()[static_cast<size_t>(list.Selected())];
    ClearAppFields(form);
    form.SetText("txtName", name);
    for (const AppField& field : appFields) {
        std::string value = ReadIni(AppFile(name), "Config", field.key);
        if (field.kind == AppField::text)
            form.SetText(field.control, value);
        else if (field.kind == AppField::platform)
            form.SetValue(field.control, Ne0(value));
        else
            form.SetValue(field.control, ToInt16(value).value_or(0) != 0);
    }
}

bool IsListed(const Control& list, const std::string& name) {
    for (const std::string& item : list.Items())
        if (EqualNoCase(item, name)) return true;
    return false;
}

// The order file has a name of its own among the app files, and a device name is no file's.
bool IsUsableName(const std::string& name) {
    return !name.empty() && !EqualNoCase(name, "SortOrder") && zip::SafePath(name + ".cfg").has_value();
}

bool SaveCustomApp(Form& form) {
    std::string name = AppName(form);
    if (name.empty()) return false;
    if (!IsUsableName(name)) {
        pc::ShowMessage("An app can't have this name:  " + name, "", pc::styleExclamation);
        return false;
    }
    Control& list = *form.Find("listApps");
    if (!IsListed(list, name)) list.AddItem(name);
    for (const AppField& field : appFields) {
        const Control& control = *form.Find(field.control);
        std::string value = field.kind == AppField::text ? ReplaceAll(ReplaceAll(control.Text(), "\r", ""), "\n", " ")
                                                         : NumberText(control.Value());
        WriteIni(AppFile(name), "Config", field.key, value);
    }
    return true;
}

void SaveAppAndReload(Form& form) {
    if (!SaveCustomApp(form)) return;
    SaveSortOrder(form);
    pc::ShowMessage("App " + AppName(form) + " Saved!");
    ClearAppFields(form);
    LoadAppList(form);
}

void SaveAndTestApp(Form& form) {
    std::string name = AppName(form);
    if (!SaveCustomApp(form)) return;
    RunCustomMaintApp(name);
    pc::ShowMessage("Test run completed.");
}

void TestAppDownload(const std::string& url, const std::string& fileName) {
    if (IsDownloading()) return;
    std::string file = ToolsFolder() + "\\" + fileName;
    std::string folder = file.substr(0, file.size() - 4);
    if (!zip::SafePath(fileName) || fileName.size() <= 4) {
        pc::ShowMessage("Failed to receive download!");
        return;
    }
    pc::RemoveFile(file);
    if (DoesDirExist(folder)) clsFSO().KillDir(folder, false);
    if (!DownloadFile(url, file, "Receiving:  " + StripPath(file), false, true)) {
        pc::ShowMessage("Failed to receive download!");
    } else if (EndsWithNoCase(fileName, "zip")) {
        bool extracted = UnzipFile(file, folder, false);
        pc::RemoveFile(file);
        pc::ShowMessage(extracted ? "Successfully Downloaded and Extracted the App!" : "Failed to Extract Download!");
    } else {
        pc::ShowMessage("Successfully Downloaded the App!");
    }
}

void TestDownload(Form& form, int index) {
    std::string url = form.Text(Indexed("txtAppURL", index)), name = form.Text(Indexed("txtDLName", index));
    if (url.empty())
        pc::ShowMessage("You must specify a download URL!");
    else if (name.empty())
        pc::ShowMessage("You must specify a download file name!");
    else if (!State().bInternetPresent && !IsInternetPresent())
        pc::ShowMessage("I cannot detect an internet connection!  Aborting.");
    else
        TestAppDownload(url, name);
}

void MoveListItem(Control& list, bool up) {
    std::vector<std::string> items = list.Items();
    int from = list.Selected(), to = up ? from - 1 : from + 1;
    if (from < 0 || to < 0 || to >= static_cast<int>(items.size())) return;
    std::swap(items[static_cast<size_t>(from)], items[static_cast<size_t>(to)]);
    list.SetItems(std::move(items));
    list.Select(to);
}

void RenameApp(Form& form) {
    Control& list = *form.Find("listApps");
    if (list.Selected() < 0) return;
    std::vector<std::string> items = list.Items();
    std::string oldName = items[static_cast<size_t>(list.Selected())],
                newName = CleanAppName(InputBox("Type a new name for the item:  " + oldName, oldName));
    if (newName.empty() || newName == oldName) return;
    // Another app's file would be written over.
    bool isTaken = !EqualNoCase(oldName, newName) && IsListed(list, newName);
    if (isTaken || !IsUsableName(newName)) {
        pc::ShowMessage("An app can't have this name:  " + newName, "", pc::styleExclamation);
        return;
    }
    items[static_cast<size_t>(list.Selected())] = newName;
    list.SetItems(std::move(items));
    // The two keys that only a hand edit sets go along with the file.
    for (const char* key : {"RunInCMD", "RunWithSystemAccess"}) {
        std::string value = ReadIni(AppFile(oldName), "Config", key);
        if (!value.empty()) WriteIni(AppFile(newName), "Config", key, value);
    }
    if (!EqualNoCase(oldName, newName)) pc::RemoveFile(AppFile(oldName));
    form.SetText("txtName", newName);
    SaveAppAndReload(form);
}

void DeleteApp(Form& form) {
    Control& list = *form.Find("listApps");
    if (list.Selected() < 0) return;
    std::string name = AppName(form);
    if (IsUsableName(name) && DoesFileExist(AppFile(name))) pc::RemoveFile(AppFile(name));
    std::vector<std::string> items = list.Items();
    items.erase(items.begin() + list.Selected());
    list.SetItems(std::move(items));
    ClearAppFields(form);
}

void BrowseForApp(Form& form, int index) {
    std::string folder = ToolsFolder();
    if (!DoesDirExist(folder)) MakeFolderPath(folder);
    std::string path = ShowFilePicker(folder, "Pick an Executable:", "*.exe;*.com;*.bat;*.cmd;*.msi");
    if (path.empty()) return;
    bool inside = StartsWith(LowerCase(path), LowerCase(folder + "\\"));
    form.SetText(Indexed("txtFileName", index), inside ? path.substr(folder.size() + 1) : path);
    if (form.Text("txtName").empty()) form.SetText("txtName", clsFSO().Get_FileNoExtension(path));
}

void ListCommand(Form& form, int index) {
    Control& list = *form.Find("listApps");
    if (index < 2) MoveListItem(list, index == 0);
    if (index == 2) RenameApp(form);
    if (index == 3) DeleteApp(form);
    SaveSortOrder(form);
}

constexpr const char* page = "picCustomAppsMaint";
constexpr int formLeft = 3660, formWidth = 7320, halfWidth = 3540, right = 7440;

constexpr ControlSpec controls[] = {
    {Kind::label, "lblAppsTitle", "Custom Maintenance Apps", {300, 240, 10680, 420}, page, heading | noPrefix},
    {Kind::label, "lblAppsList", "&Apps in running order:", {300, 840, 3060, 240}, page},
    {Kind::list, "listApps", "", {300, 1110, 3060, 5580}, page},
    {Kind::button, "cmdListMove(0)", "Move &Up", {300, 6780, 1470, 390}, page},
    {Kind::button, "cmdListMove(1)", "Move &Down", {1890, 6780, 1470, 390}, page},
    {Kind::button, "cmdListMove(2)", "&Rename", {300, 7260, 1470, 390}, page},
    {Kind::button, "cmdListMove(3)", "De&lete", {1890, 7260, 1470, 390}, page},
    {Kind::label, "lblAppName", "App &Name", {formLeft, 840, formWidth, 240}, page},
    {Kind::textBox, "txtName", "", {formLeft, 1110, formWidth, 345}, page},
    {Kind::label, "lblApp32", "32-bit", {formLeft, 1620, halfWidth, 270}, page, bold},
    {Kind::label, "lblApp64", "64-bit", {right, 1620, halfWidth, 270}, page, bold},
    {Kind::label, "lblFileName0", "App &Path/Executable Name ", {formLeft, 1950, halfWidth, 240}, page},
    {Kind::textBox, "txtFileName(0)", "", {formLeft, 2220, 2580, 345}, page},
    {Kind::button, "cmdBrowseForApp(0)", "&Browse", {6300, 2205, 900, 375}, page},
    {Kind::label, "lblFileName1", "App Pat&h/Executable Name ", {right, 1950, halfWidth, 240}, page},
    {Kind::textBox, "txtFileName(1)", "", {right, 2220, 2580, 345}, page},
    {Kind::button, "cmdBrowseForApp(1)", "Bro&wse", {10080, 2205, 900, 375}, page},
    {Kind::label, "lblAppURL0", "App D&ownload URL:", {formLeft, 2760, halfWidth, 240}, page},
    {Kind::textBox, "txtAppURL(0)", "", {formLeft, 3030, halfWidth, 345}, page},
    {Kind::label, "txtAppURL(0)Note", "", {formLeft, 3375, halfWidth, 210}, page, note | noPrefix},
    {Kind::label, "lblDLName0", "Download &File Name (Required)", {formLeft, 3630, halfWidth, 240}, page},
    {Kind::textBox, "txtDLName(0)", "", {formLeft, 3900, 2580, 345}, page},
    {Kind::button, "cmdMaint(0)", "&Test", {6300, 3885, 900, 375}, page},
    {Kind::label, "lblAppURL1", "App Download URL:", {right, 2760, halfWidth, 240}, page},
    {Kind::textBox, "txtAppURL(1)", "", {right, 3030, halfWidth, 345}, page},
    {Kind::label, "txtAppURL(1)Note", "", {right, 3375, halfWidth, 210}, page, note | noPrefix},
    {Kind::label, "lblDLName1", "Download File Name (Required)", {right, 3630, halfWidth, 240}, page},
    {Kind::textBox, "txtDLName(1)", "", {right, 3900, 2580, 345}, page},
    {Kind::button, "cmdMaint(1)", "T&est", {10080, 3885, 900, 375}, page},
    {Kind::checkBox,
     "chkAlwaysDLCustomApp",
     "Always attempt to download a fresh &copy.",
     {formLeft, 4440, formWidth, 285},
     page},
    {Kind::label, "lblCmdParms", "App Command Line Para&meters:", {formLeft, 4920, formWidth, 240}, page},
    {Kind::textBox, "txtCmdParms", "", {formLeft, 5190, formWidth, 345}, page},
    {Kind::label, "lblPlatforms", "Run App On These Platforms:", {formLeft, 5760, formWidth, 270}, page, bold},
    {Kind::checkBox, "chkCustom32", "&32-bit", {formLeft, 6120, 1500, 285}, page},
    {Kind::checkBox, "chkCustom64", "&64-bit", {5280, 6120, 1500, 285}, page},
    {Kind::checkBox, "chkCustomXP", "Windows &XP", {formLeft, 6480, 1500, 285}, page},
    {Kind::checkBox, "chkCustomVista", "Windows V&ista", {5280, 6480, 1680, 285}, page},
    {Kind::checkBox, "chkCustom7", "Windows &7", {7080, 6480, 1500, 285}, page},
    {Kind::checkBox, "chkCustom8", "Windows &8 and later", {8640, 6480, 2340, 285}, page},
    {Kind::button, "cmdMaint(2)", "Save and Te&st", {6960, 7230, 1920, 420}, page},
    {Kind::button, "cmdMaint(3)", "Sa&ve App", {9060, 7230, 1920, 420}, page},
};

}  // namespace

std::span<const ControlSpec> AppEditorControls() { return controls; }

void LoadAppList(Form& form) {
    std::vector<std::string> names, lower;
    auto listed = [&lower](const std::string& name) {
        for (const std::string& item : lower)
            if (item == name) return true;
        return false;
    };
    auto add = [&](const std::string& name) {
        names.push_back(name);
        lower.push_back(LowerCase(name));
    };
    for (const std::string& name : ReadSortOrder())
        if (DoesFileExist(AppFile(name)) && !listed(LowerCase(name))) add(name);
    bool joined = false;
    std::vector<std::string> files;
    FindFiles(StripTrailingCharacters(GetAppPath(), '\\'), "*.cfg", files, false);
    for (const std::string& file : files) {
        std::string name = clsFSO().Get_FileNoExtension(file);
        if (EqualNoCase(name, "SortOrder") || listed(LowerCase(name))) continue;
        add(name);
        joined = true;
    }
    form.Find("listApps")->SetItems(std::move(names));
    if (joined) SaveSortOrder(form);
}

void AttachAppEditor(Form& form) {
    ClearAppFields(form);
    form.Find("listApps")->onChange = [&form] { OpenApp(form); };
    form.OnClick("cmdMaint(0)", [&form] { TestDownload(form, 0); });
    form.OnClick("cmdMaint(1)", [&form] { TestDownload(form, 1); });
    form.OnClick("cmdMaint(2)", [&form] { SaveAndTestApp(form); });
    form.OnClick("cmdMaint(3)", [&form] { SaveAppAndReload(form); });
    for (int index = 0; index < 4; ++index)
        form.OnClick(Indexed("cmdListMove", index), [&form, index] { ListCommand(form, index); });
    for (int index = 0; index < 2; ++index)
        form.OnClick(Indexed("cmdBrowseForApp", index), [&form, index] { BrowseForApp(form, index); });
}
