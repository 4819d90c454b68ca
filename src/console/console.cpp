#include "console/console.h"

#include "console/console_parts.h"
#include "controls/branding.h"
#include "controls/panel_links.h"
#include "controls/sidebar.h"
#include "panel/skin.h"
#include "platform/messages.h"
#include "system/build_constants.h"
#include "system/settings.h"
#include "system/text.h"

namespace {

constexpr uint32_t styleYesNoCancel = 3;

struct SaveItem {
    const char* text;
    void (*run)(Form&);
};
constexpr SaveItem saveItems[] = {
    {"Save and Zip Config", SaveAndZip}, {"Save and Test", SaveAndTest}, {"Save and Close", SaveAndClose}};

void BuildConsoleSideBar(Form& form) {
    XPexplorerbar bar(*form.Find("SideBar"));
    bar.Clear();
    int pages = bar.AddSpecialItem("Brevanta Configuration");
    for (const Page& page : ConsolePages()) bar.AddSubItem(pages, page.sideBarText);
    int save = bar.AddNormalItem("Save");
    for (const SaveItem& item : saveItems) bar.AddSubItem(save, item.text);
}

void ClickSideBar(Form& form, int group, int item) {
    auto pages = ConsolePages();
    if (group == 1 && item >= 1 && item <= static_cast<int>(pages.size()))
        ShowPage(form, pages[static_cast<size_t>(item - 1)].control);
    if (group == 2 && item >= 1 && item <= static_cast<int>(std::size(saveItems))) saveItems[item - 1].run(form);
}

// The designed states, before any setting is read.
void SetDesigned(Form& form) {
    for (const Field& field : ConsoleFields()) {
        Control* control = form.Find(field.control);
        if (!control) continue;
        if (field.item == Item::check || field.item == Item::option)
            control->SetValue(field.designed == "1");
        else
            control->SetText(field.designed);
    }
    form.SetText("txtCustomButtonCaption", "Windows Update");
    form.SetText("txtCustomButtonCaption1", "System Restore");
}

void FillReminderDays(Form& form) {
    std::vector<std::string> days;
    for (int day = 0; day < 30; ++day) days.push_back(NumberText(day));
    Control& reminder = *form.Find("comboMaintReminder");
    reminder.SetItems(std::move(days));
    // Set behind the load: the console always opens with this number.
    reminder.SetText("29");
}

void OpenConsole(Form& form) {
    SetFormIcon(form);
    SetDesigned(form);
    HideAllPages(form);
    ShowPage(form, "picBranding");
    LoadAppList(form);
    LoadConsole(form);
    FillReminderDays(form);
    form.SetText("lblSkin", Setting("Branding", "Skin"));
    form.SetText("chkUpdateApp", form.Text("chkUpdateApp") + " " + build::updateHost);
    form.Find("imgLogoPreview")->SetPicture(LogoFile());
    BuildConsoleSideBar(form);
    ApplyRules(form);
    RememberSaved(form);
}

// Closing saves nothing by itself, but what was typed is not lost by a slip.
bool MayClose(Form& form, bool fromUser) {
    if (!fromUser || !HasUnsavedChanges(form)) return true;
    int answer = pc::ShowMessage("There are unsaved changes.  Save them?", "", styleYesNoCancel | pc::styleQuestion);
    if (answer == pc::answerYes) return SaveConsole(form);
    return answer == pc::answerNo;
}

void BuildConsole(Form& form) {
    form.onLoad = [&form] { OpenConsole(form); };
    form.onQueryUnload = [&form](bool fromUser) { return MayClose(form, fromUser); };
    form.onActivate = [&form] { ExemptFromSkin(form.Find("SideBar")); };
    form.Find("SideBar")->onItemClick = [&form](int group, int item) { ClickSideBar(form, group, item); };
    AttachRules(form);
    AttachActions(form);
    AttachAppEditor(form);
    AttachSkinsPage(form);
}

}  // namespace

// The layout of the fifteen pages is made at the first use: a panel never needs it.
const FormDefinition& frmConfig() {
    static const FormDefinition definition = {"frmConfig",     "Config",        consoleWidth, consoleHeight,
                                              Border::sizable, LayoutConsole(), BuildConsole};
    return definition;
}

void HideAllPages(Form& form) {
    for (const Page& page : ConsolePages()) form.SetVisible(page.control, false);
}

void ShowPage(Form& form, const char* page) {
    HideAllPages(form);
    form.SetVisible(page, true);
    int number = 1;
    for (const Page& row : ConsolePages()) {
        if (std::string_view(row.control) == page) form.SetValue("SideBar", number);
        ++number;
    }
}
