#include "console/fields.h"

#include <algorithm>
#include <array>

#include "console/pages.h"
#include "system/text.h"

namespace {

const std::array<Page, 15>& Pages() {
    static const std::array<Page, 15> pages = {{
        {"picBranding", "Branding and Logo", brandingPage},
        {"picSkins", "Skins and Interface", skinsPage},
        {"picEmail", "Email Config", emailPage},
        {"picSMTP", "SMTP Config", smtpPage},
        {"picRemote", "Remote Button", remotePage},
        {"picAutoSRP", "Automatic SRP", restorePointPage},
        {"picMaintenance", "Maintenance Button", maintenancePage},
        {"picCustomAppsMaint", "Custom Maintenance Apps", appEditorPage},
        {"picFixButton", "Fix Button", fixPage},
        {"picCustom", "Custom Button 0", customPage, 0},
        {"picCustom1", "Custom Button 1", customPage, 1},
        {"picCustom2", "Custom Button 2", customPage, 2},
        {"picCustom3", "Custom Button 3", customPage, 3},
        {"picCustom4", "Custom Button 4", customPage, 4},
        {"picAutoUpdate", "Nimbra/Auto Updating", autoUpdatePage},
    }};
    return pages;
}

// Keys of section "Branding" that are saved with the logo and remote support, after the custom buttons.
bool IsLogoOrRemoteKey(const std::string& key) {
    return ContainsNoCase(key, "logo") || ContainsNoCase(key, "remote") || key == "TeamviewerOverride" ||
           key == "UseIBForSupportURL" || key == "UseIBForPreSupportURL";
}

// Where in the save order a field stands.
int SaveStage(const Field& field) {
    struct Stage {
        const char* section;
        int stage;
    };
    static constexpr Stage stages[] = {{"Nimbra", 0},    {"Install", 1},   {"Branding", 2}, {"EmailConfig", 2},
                                       {"Fix", 5},       {"Maint", 6},     {"Config", 6},   {"CustomRP0", 7},
                                       {"CustomRP1", 7}, {"CustomRP2", 7}, {"CustomRP", 8}, {"ScheduledTasks", 9}};
    if (StartsWith(field.section, "CustomButton")) return 3;
    if (field.section == "Branding" && IsLogoOrRemoteKey(field.key)) return 4;
    for (const Stage& row : stages)
        if (field.section == row.section) return row.stage;
    return 10;
}

void AddScheduleFields(std::vector<Field>& fields) {
    struct Column {
        const char* control;
        const char* key;
        Item item;
        const char* designed;
    };
    static constexpr Column columns[] = {{"comboRPDay", "Freq", Item::combo, "Daily"},
                                         {"txtRPTime", "Time", Item::text, "10:00:00"},
                                         {"txtRPName", "Name", Item::text, ""},
                                         {"chkEnableRP", "Enable", Item::check, ""}};
    for (int row = 0; row < 3; ++row)
        for (const Column& column : columns)
            fields.push_back({std::string(column.control) + "(" + NumberText(row) + ")", "CustomRP" + NumberText(row),
                              column.key, "", column.item, Keep::asText, column.designed});
}

}  // namespace

std::span<const Page> ConsolePages() { return Pages(); }

std::string ControlName(const Page& page, const PageItem& item) {
    return page.copy && *item.control ? item.control + NumberText(page.copy) : item.control;
}

std::string SectionName(const Page& page, const PageItem& item) {
    return page.copy ? item.section + NumberText(page.copy) : item.section;
}

const std::vector<Field>& ConsoleFields() {
    static const std::vector<Field> fields = [] {
        std::vector<Field> all;
        for (const Page& page : ConsolePages())
            for (const PageItem& item : page.items)
                if (*item.key)
                    all.push_back({ControlName(page, item), SectionName(page, item), item.key, item.value, item.item,
                                   item.keep, item.designed});
        AddScheduleFields(all);
        std::stable_sort(all.begin(), all.end(),
                         [](const Field& a, const Field& b) { return SaveStage(a) < SaveStage(b); });
        return all;
    }();
    return fields;
}
