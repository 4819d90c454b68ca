// Forms without windows.
#include "pc/headless_host.h"

#include <algorithm>
#include <deque>
#include <map>
#include <stdexcept>

#include "controls/form_host.h"
#include "pc/names.h"
#include "pc/simulated_programs.h"

namespace {

struct Scripts {
    std::deque<std::function<void(Form&)>> waiting;
    bool used = false;
};

struct HostState {
    std::map<Control*, uint64_t> timers;     // when they tick next, in elapsed milliseconds
    std::vector<Form*> modal;                // innermost last
    std::map<std::string, Scripts> scripts;  // by folded form name
};
HostState& TheHost() { return Pc().Of<HostState>(); }

void ArmTimer(Control& control) {
    if (control.Enabled() && control.Interval() > 0)
        TheHost().timers[&control] = Pc().elapsed + static_cast<uint64_t>(control.Interval());
    else
        TheHost().timers.erase(&control);
}

void RunDueTimers() {
    std::vector<Control*> due;
    for (const auto& [control, time] : TheHost().timers)
        if (time <= Pc().elapsed) due.push_back(control);
    for (Control* control : due) {
        if (!TheHost().timers.contains(control)) continue;  // gone by an earlier one
        ArmTimer(*control);
        control->TimerTicked();
    }
}

bool SomethingPends() {
    const Programs& programs = ThePrograms();
    return !TheHost().timers.empty() || !programs.later.empty() || !programs.atPump.empty();
}

bool IsStillShown(const Form& form) { return FindForm(form.Name()) == &form && form.Visible(); }

// The form, when the user can reach it.
Form* Reachable(const std::string& name, const std::string& deed) {
    Form& form = FormNamed(name);
    const auto& modal = TheHost().modal;
    if (form.Visible() && (modal.empty() || modal.back() == &form)) return &form;
    complain(deed + ": the form is " + (form.Visible() ? "blocked by " + modal.back()->Name() : "not shown"));
    return nullptr;
}

// The control, when the user can use it.
Control* Usable(const std::string& name, const std::string& controlName, const std::string& verb) {
    std::string deed = verb + " " + name + "." + controlName;
    Form* form = Reachable(name, deed);
    Control* control = form ? form->Find(controlName) : nullptr;
    if (control && control->Shown() && control->Enabled()) return control;
    if (form) complain(deed + ": the control is " + (!control ? "missing" : control->Shown() ? "disabled" : "hidden"));
    return nullptr;
}

void PressButton(const std::string& form, uint32_t flag, const std::string& deed) {
    for (const auto& control : FormNamed(form).Controls())
        if ((control->Flags() & flag) && control->Shown() && control->Enabled()) return Click(form, control->Name());
    complain(deed + " on " + form + ": no such button");
}

}  // namespace

namespace host {

void Start() {}

void Create(Form& form) {
    Pc().onPump = RunDueTimers;
    for (const auto& control : form.Controls())
        if (control->GetKind() == Kind::timer) ArmTimer(*control);
}

void Destroy(Form& form) {
    for (const auto& control : form.Controls()) TheHost().timers.erase(control.get());
}

void Update(Control& control, Change change) {
    if (change == Change::timer) ArmTimer(control);
}

void UpdateCaption(Form&) {}
void UpdateIcon(Form&) {}

void SetShown(Form& form, bool shown) {
    if (!shown) return;
    Pc().shownForms.push_back(form.Name());
    HandlerScope scope;
    if (auto handler = form.onActivate) handler();
}

void RunModal(Form& form) {
    constexpr uint64_t longest = 3'600'000;  // for a form that goes by itself
    if (!IsStillShown(form)) return;
    struct Nesting {
        explicit Nesting(Form& inner) { TheHost().modal.push_back(&inner); }
        ~Nesting() {
            if (!TheHost().modal.empty()) TheHost().modal.pop_back();
        }
    } nesting(form);
    Scripts& scripts = TheHost().scripts[Fold(form.Name())];
    std::function<void(Form&)> script;
    if (!scripts.waiting.empty()) {
        script = scripts.waiting.front();
        if (scripts.waiting.size() > 1) scripts.waiting.pop_front();
        scripts.used = true;
        script(form);
    }
    for (uint64_t start = Pc().elapsed; IsStillShown(form) && SomethingPends() && Pc().elapsed - start < longest;)
        Pc().Pass(10);
    if (!IsStillShown(form)) return;
    complain("modal form " + form.Name() +
             (script ? " is still there at the end of its script" : " came up without a script"));
    if (!UnloadForm(form, true)) {
        form.onQueryUnload = nullptr;
        UnloadForm(form, true);
    }
}

// As long as the test has something coming.
void RunUntilNoForms() {
    while (!LoadedForms().empty() && (!ThePrograms().later.empty() || !ThePrograms().atPump.empty())) Pc().Pass(10);
}

void ShowHandCursor() {}
intptr_t WindowOf(const Form&) { return 0; }
intptr_t WindowOf(const Control&) { return 0; }
int ScalePercent() { return 100; }

}  // namespace host

Form& FormNamed(const std::string& form) {
    if (Form* found = FindForm(form)) return *found;
    complain("no form " + form + " is loaded");
    throw std::logic_error("no form " + form + " is loaded");
}

void Click(const std::string& form, const std::string& control) {
    if (Control* found = Usable(form, control, "click on")) found->UserClicked();
}

void Type(const std::string& form, const std::string& control, const std::string& text) {
    Control* found = Usable(form, control, "type into");
    if (found && (found->Flags() & readOnly))
        complain("type into " + form + "." + control + ": it is read-only");
    else if (found)
        found->UserTyped(text);
}

void Choose(const std::string& form, const std::string& control, int index) {
    Control* found = Usable(form, control, "choose in");
    size_t count = !found ? 0 : found->GetKind() == Kind::listView ? found->Rows().size() : found->Items().size();
    if (found && (index < 0 || static_cast<size_t>(index) >= count))
        complain("choose in " + form + "." + control + ": no entry " + std::to_string(index));
    else if (found)
        found->UserSelected(index);
}

void CheckRow(const std::string& form, const std::string& control, size_t row, bool checked) {
    Control* found = Usable(form, control, "check in");
    if (found && row >= found->Rows().size())
        complain("check in " + form + "." + control + ": no row " + std::to_string(row));
    else if (found)
        found->UserCheckedRow(row, checked);
}

void ClickItem(const std::string& form, const std::string& sideBar, int group, int item) {
    Control* found = Usable(form, sideBar, "click in");
    if (!found) return;
    const auto& groups = found->Groups();
    bool there = group > 0 && static_cast<size_t>(group) <= groups.size() &&
                 groups[static_cast<size_t>(group) - 1].expanded && item > 0 &&
                 static_cast<size_t>(item) <= groups[static_cast<size_t>(group) - 1].items.size();
    if (there)
        found->UserClickedItem(group, item);
    else
        complain("click in " + form + "." + sideBar + ": no visible item " + std::to_string(item) + " of group " +
                 std::to_string(group));
}

void PressEnter(const std::string& form) { PressButton(form, defaultButton, "Enter"); }
void PressEscape(const std::string& form) { PressButton(form, cancelButton, "Escape"); }

bool CloseByUser(const std::string& form) {
    Form* found = Reachable(form, "close " + form);
    return found && UnloadForm(*found, true);
}

std::string TextOn(const std::string& form, const std::string& control) { return FormNamed(form).Text(control); }

bool IsShown(const std::string& form, const std::string& control) {
    const Form& found = FormNamed(form);
    const Control* inner = found.Find(control);
    return found.Visible() && inner && inner->Shown();
}

void OnModal(const std::string& form, std::function<void(Form&)> script) {
    TheHost().scripts[Fold(form)].waiting.push_back(std::move(script));
}

std::vector<std::string> UnusedScripts() {
    std::vector<std::string> names;
    for (const auto& [name, scripts] : TheHost().scripts)
        if (!scripts.waiting.empty() && !scripts.used) names.push_back(name);
    return names;
}
