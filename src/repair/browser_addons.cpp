#include "repair/browser_addons.h"

#include <algorithm>

#include "controls/panel_links.h"
#include "platform/messages.h"
#include "system/files.h"
#include "system/paths.h"
#include "system/program_state.h"
#include "system/registry.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

constexpr const char* toolbarKey = "Software\\Microsoft\\Internet Explorer\\Toolbar";
constexpr const char* bhoKey = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Browser Helper Objects\\";
constexpr const char* scopesTail = "\\Microsoft\\Internet Explorer\\SearchScopes\\";
constexpr const char* scopesWarning =
    "WARNING:  If you delete all of the search scopes, IE's built-in search bar will no longer work!  Proceed?";
constexpr size_t bhoLocation = 2, scopeLocation = 3;  // columns

using Rows = std::vector<ListRow>;

Rows ToolbarRows() {
    std::string list;
    fEnumValue("HKLM", toolbarKey, list);
    Rows rows;
    for (const std::string& entry : SplitList(list)) {
        size_t equals = entry.find('=');
        if (equals == std::string::npos) continue;
        // The data stands first and the name second, as the delete steps expect.
        rows.push_back({{entry.substr(equals + 1), entry.substr(0, equals)}});
    }
    return rows;
}

void ChkBHOsHere(const std::string& hive, const std::string& keyPath, Rows& rows) {
    std::string list;
    fEnumKey(hive, keyPath, list);
    for (const std::string& classId : SplitList(list)) {
        std::string name = ReadRegistryText(hive, keyPath + classId, ""), file;
        std::string location = hive + "\\" + keyPath + classId;
        if (!name.empty()) file = GetRealFilePath(name);
        rows.push_back({{name, file, location, classId}});
    }
}

Rows ChkBHOs() {
    Rows rows;
    ChkBHOsHere("HKLM", bhoKey, rows);
    return rows;
}

void ChkSearchScopesHere(const std::string& hive, const std::string& root, Rows& rows) {
    std::string list, keyPath = root + scopesTail;
    fEnumKey(hive, keyPath, list);
    for (const std::string& scope : SplitList(list)) {
        auto read = [&](const char* name) { return ReadRegistryText(hive, keyPath + scope, name); };
        rows.push_back({{read(""), read("DisplayName"), read("URL"), hive + "\\" + keyPath + scope}});
    }
}

// Top keys of HKLM that are mounted hives of a guest system.
std::vector<std::string> GuestHives(int32_t& status) {
    std::string list;
    status = fEnumKey("HKLM", "", list);
    std::vector<std::string> hives;
    for (const std::string& name : SplitList(list))
        if (StartsWith(LowerCase(name), "guest_")) hives.push_back(name);
    return hives;
}

Rows ChkSearchScopes() {
    Rows rows;
    if (!IsGuestOS(Target().sTargetDrive)) {
        ChkSearchScopesHere("HKLM", "Software", rows);
        ChkSearchScopesHere("HKCU", "Software", rows);
        return rows;
    }
    int32_t status = 0;
    std::vector<std::string> hives = GuestHives(status);
    DebugOutput(status == 0 ? "ChkSearchScopes: Successfully enumerated HKLM."
                            : "ChkSearchScopes:  Error enumerating HKLM, cannot check for Guest hives!");
    for (const std::string& hive : hives) {
        if (StartsWith(LowerCase(hive), "guest_system")) continue;
        DebugOutput("ChkSearchScopes: Calling ChkSearchScopesHere on: " + hive);
        ChkSearchScopesHere("HKLM", hive, rows);
    }
    return rows;
}

void LoadLists(Form& form) {
    form.Find("ListView1")->SetRows(ToolbarRows());
    form.Find("ListView2")->SetRows(ChkBHOs());
    form.Find("ListView3")->SetRows(ChkSearchScopes());
    for (const char* list : {"ListView1", "ListView2", "ListView3"}) form.Find(list)->FitColumns();
}

void DeleteToolbar(const ListRow& row) {
    bool notFound = false;
    fDeleteValue("HKLM", toolbarKey, row.cells[1], notFound);
}

// A location is hive, "\" and key path; the key's name is the last part.
struct Location {
    std::string hive, path;
    explicit Location(const std::string& text)
        : hive(text.substr(0, text.find('\\'))), path(text.substr(std::min(text.size(), text.find('\\') + 1))) {}
};

void DeleteKeyAt(const std::string& hive, const std::string& path) {
    bool notFound = false;
    fDeleteKey(hive, StripNameFromPath(path), StripPath(path), notFound);
}

void DeleteBHOKey(const std::string& hive, const std::string& path) {
    std::string list;
    if (fEnumKey(hive, path, list) != 0) {
        DebugOutput("BHO Delete - Does not exist:  " + hive + "\\" + path);
        return;
    }
    bool notFound = false;
    if (fDeleteKey(hive, StripNameFromPath(path), StripPath(path), notFound) != 0)
        DebugOutput("BHO Delete - Failure to delete:  " + hive + "\\" + path);
}

void DeleteBHO(const ListRow& row) {
    Location location(row.cells[bhoLocation]);
    DeleteBHOKey(location.hive, location.path);
    std::string sKeyPath = location.path;
    if (!StartsWith(LowerCase(sKeyPath), "software\\")) sKeyPath = "Software\\" + sKeyPath;
    DebugOutput("Delete BHO - Using sKeyPath:  " + sKeyPath);
    DeleteBHOKey(location.hive, sKeyPath);
    int32_t status = 0;
    std::vector<std::string> hives = GuestHives(status);
    if (status != 0) DebugOutput("BHO Delete:  Error enumerating HKLM, cannot check for guest hives!");
    for (const std::string& hive : hives) DeleteBHOKey("HKLM", hive + "\\" + sKeyPath);
}

void DeleteScope(const ListRow& row) {
    Location location(row.cells[scopeLocation]);
    DeleteKeyAt(location.hive, location.path);
}

void ForRows(Form& form, const char* list, bool onlyChecked, void (*action)(const ListRow&)) {
    // The routine may reload the list, so it walks a copy.
    Rows rows = form.Find(list)->Rows();
    for (const ListRow& row : rows)
        if (row.checked || !onlyChecked) action(row);
}

void DeleteAllBHOs(Form& form) { ForRows(form, "ListView2", false, DeleteBHO); }
void DeleteSelectedBHOs(Form& form) { ForRows(form, "ListView2", true, DeleteBHO); }

bool ScopesMayGo() { return pc::ShowMessage(scopesWarning, "", pc::styleYesNo) != pc::answerNo; }

void DeleteEverything(Form& form) {
    if (!ScopesMayGo()) return;
    ForRows(form, "ListView1", false, DeleteToolbar);
    DeleteAllBHOs(form);
    ForRows(form, "ListView3", false, DeleteScope);
    LoadLists(form);
}

void DeleteSelected(Form& form) {
    bool all = true;
    for (const ListRow& row : form.Find("ListView3")->Rows()) all = all && row.checked;
    if (all && !ScopesMayGo()) return;
    ForRows(form, "ListView1", true, DeleteToolbar);
    DeleteSelectedBHOs(form);
    ForRows(form, "ListView3", true, DeleteScope);
    LoadLists(form);
}

void CheckAll(Form& form, bool checked) {
    for (const char* name : {"ListView1", "ListView2", "ListView3"})
        for (size_t row = 0; row < form.Find(name)->Rows().size(); ++row) form.Find(name)->CheckRow(row, checked);
}

void LoadCleanForm(Form& form) {
    SetFormIcon(form);
    LoadLists(form);
    if (State().bRemoveIEBHOs) {
        DeleteAllBHOs(form);
        State().bRemoveIEBHOs = false;
    } else if (State().bRemoveIEToolbars) {
        ForRows(form, "ListView1", false, DeleteToolbar);
        State().bRemoveIEToolbars = false;
    }
}

constexpr int listLeft = 240, listWidth = 11520;
constexpr uint32_t growing = checkRows | growWidth;

const ControlSpec controls[] = {
    {Kind::label, "Label3", "&Toolbars:", {listLeft, 240, 3000, 300}, "", bold},
    {Kind::listView, "ListView1", "", {listLeft, 540, listWidth, 1680}, "", growing, 0, "Value Name|Value Data"},
    {Kind::label, "Label4", "&BHOs:", {listLeft, 2400, 3000, 300}, "", bold},
    {Kind::listView,
     "ListView2",
     "",
     {listLeft, 2700, listWidth, 2040},
     "",
     growing,
     0,
     "Value Name|Value Data|Location|CLSID"},
    {Kind::label, "Label5", "Search &Scopes:", {listLeft, 4920, 3000, 300}, "", bold},
    {Kind::listView,
     "ListView3",
     "",
     {listLeft, 5220, listWidth, 2040},
     "",
     growing | growHeight,
     0,
     "Value Default|Display Name|URL|Location"},
    {Kind::label, "Label1", "Select All", {listLeft, 7560, 1080, 300}, "", moveDown},
    {Kind::label, "Label2", "Select None", {1440, 7560, 1200, 300}, "", moveDown},
    {Kind::button, "Command1", "Delete &Everything", {4080, 7500, 2040, 420}, "", moveRight | moveDown},
    {Kind::button, "Command2", "&Delete Selected", {6240, 7500, 2040, 420}, "", moveRight | moveDown},
    {Kind::button, "Command3", "&Rescan", {8400, 7500, 1620, 420}, "", moveRight | moveDown},
    {Kind::button, "Command4", "&Close", {10140, 7500, 1620, 420}, "", moveRight | moveDown | cancelButton},
};

}  // namespace

const FormDefinition frmCleanIE = {
    "frmCleanIE", "Clean Internet Explorer", 12000, 8160, Border::sizable, controls, [](Form& form) {
        form.onLoad = [&form] { LoadCleanForm(form); };
        form.OnClick("Command1", [&form] { DeleteEverything(form); });
        form.OnClick("Command2", [&form] { DeleteSelected(form); });
        form.OnClick("Command3", [&form] { LoadLists(form); });
        form.OnClick("Command4", [&form] { UnloadForm(form); });
        form.OnClick("Label1", [&form] { CheckAll(form, true); });
        form.OnClick("Label2", [&form] { CheckAll(form, false); });
    }};
