#include "panel/restore_point_page.h"

#include "controls/form_host.h"
#include "maintenance/restore_points.h"
#include "maintenance/scheduled_tasks.h"
#include "panel/dialogs.h"
#include "platform/messages.h"
#include "system/settings.h"
#include "system/text.h"

namespace {

constexpr int scheduleCount = 3;

// One control array and its key in the sections CustomRP0 to CustomRP2, in the order of saving.
struct ScheduleField {
    const char* control;
    const char* key;
    bool keepsDesignText;  // an empty setting leaves the control as designed
};
constexpr ScheduleField scheduleFields[] = {
    {"comboRPDay", "Freq", true},
    {"txtRPTime", "Time", true},
    {"txtRPName", "Name", false},
    {"chkEnableRP", "Enable", true},
};

std::string Section(int row) { return "CustomRP" + NumberText(row); }

Control* FieldControl(Form& form, const ScheduleField& field, int row) {
    return form.Find(field.control + ("(" + NumberText(row) + ")"));
}

void LoadField(Control& control, const ScheduleField& field, const std::string& value) {
    if (control.GetKind() == Kind::checkBox) {
        auto number = ToInt16(value);
        if (number && (*number == 0 || *number == 1)) control.SetValue(*number);
    } else if (!value.empty() || !field.keepsDesignText) {
        control.SetText(value);
    }
}

std::string FieldText(const Control& control) {
    return control.GetKind() == Kind::checkBox ? NumberText(control.Value()) : control.Text();
}

// The one action that leaves its text in the status line.
void CreatePointNow(Form& form) {
    form.SetText("txtStatus", "Creating Restore Point...");
    CreateRestorePoint("User Created Restore Point");
    form.SetText("txtStatus", "Idle...");
    pc::ShowMessage("System Restore Point Created!");
}

// The sidebar would show below the page, which leaves the status line free.
void ShowPage(Form& form, bool shown) {
    form.SetVisible("picSRP", shown);
    form.SetVisible("SideBar", !shown);
}

void SaveSchedules(Form& form) {
    for (const ScheduleField& field : scheduleFields)
        for (int row = 0; row < scheduleCount; ++row)
            if (Control* control = FieldControl(form, field, row))
                WriteSetting(Section(row), field.key, FieldText(*control));
    SetRPSchedules();
    pc::ShowMessage("Schedule Saved!");
    ShowPage(form, false);
}

}  // namespace

void LoadRestorePointPage(Form& form) {
    for (int row = 0; row < scheduleCount; ++row)
        for (const ScheduleField& field : scheduleFields)
            if (Control* control = FieldControl(form, field, row))
                LoadField(*control, field, Setting(Section(row), field.key));
}

void ShowRestorePointPage(Form& form) {
    LoadRestorePointPage(form);
    ShowPage(form, true);
}

void AttachRestorePage(Form& form) {
    form.OnClick("cmdSaveRP", [&form] { SaveSchedules(form); });
    form.OnClick("cmdOpenSR", OpenSystemRestore);
    form.OnClick("Command1", [&form] { CreatePointNow(form); });
    if (Control* back = form.Find("Label12")) {
        back->onClick = [&form] { ShowPage(form, false); };
        back->onMouseMove = host::ShowHandCursor;
    }
}
