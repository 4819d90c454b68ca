#include "controls/form.h"

#include <algorithm>

#include "controls/form_host.h"
#include "system/text.h"

namespace {

std::vector<std::unique_ptr<Form>> loaded;    // oldest first
std::vector<std::unique_ptr<Form>> unloaded;  // freed when the next handler starts on an empty stack
int handlersOnStack = 0;

bool IsLoaded(const Form* form) {
    return std::any_of(loaded.begin(), loaded.end(), [form](auto& entry) { return entry.get() == form; });
}

void Retire(Form& form) {
    auto entry = std::find_if(loaded.begin(), loaded.end(), [&form](auto& each) { return each.get() == &form; });
    unloaded.push_back(std::move(*entry));
    loaded.erase(entry);
}

}  // namespace

// What was unloaded is freed at the next start, not at the end: a form may unload itself while it loads, and LoadForm's
// caller still gets to look at it.
HandlerScope::HandlerScope() {
    if (handlersOnStack++ == 0) unloaded.clear();
}
HandlerScope::~HandlerScope() { handlersOnStack--; }

Form::Form(const FormDefinition& formDefinition)
    : definition(formDefinition),
      name(formDefinition.name),
      caption(formDefinition.caption),
      width(formDefinition.width),
      height(formDefinition.height) {
    for (const ControlSpec& spec : definition.controls) controls.push_back(std::make_unique<Control>(*this, spec));
}

Form::~Form() = default;

void Form::SetCaption(const std::string& newCaption) {
    if (newCaption == caption) return;
    caption = newCaption;
    if (hosted) host::UpdateCaption(*this);
}

Control* Form::Find(std::string_view controlName) const {
    for (auto& control : controls)
        if (EqualNoCase(control->Name(), controlName)) return control.get();
    return nullptr;
}

std::string Form::Text(std::string_view control) const {
    Control* found = Find(control);
    return found ? found->Text() : "";
}

void Form::SetText(std::string_view control, const std::string& text) {
    if (Control* found = Find(control)) found->SetText(text);
}

void Form::SetVisible(std::string_view control, bool shown) {
    if (Control* found = Find(control)) found->SetVisible(shown);
}

void Form::SetEnabled(std::string_view control, bool enabled) {
    if (Control* found = Find(control)) found->SetEnabled(enabled);
}

bool Form::Checked(std::string_view control) const {
    Control* found = Find(control);
    return found && found->Value() != 0;
}

void Form::SetValue(std::string_view control, int value) {
    if (Control* found = Find(control)) found->SetValue(value);
}

void Form::OnClick(std::string_view control, std::function<void()> handler) {
    if (Control* found = Find(control)) found->onClick = std::move(handler);
}

void Form::SetVisible(bool shown) {
    if (shown == visible || !hosted) return;
    visible = shown;
    host::SetShown(*this, shown);
}

// How much the container of a control has grown: as the form, when it follows the form's edges.
void Form::PlaceByFlags(Control& control, int widthGained, int heightGained) {
    uint32_t follows = growWidth | growHeight;
    for (const Control* outer = Find(control.Container()); outer; outer = Find(outer->Container()))
        follows &= outer->Flags();
    if (!(follows & growWidth)) widthGained = 0;
    if (!(follows & growHeight)) heightGained = 0;

    Box box = control.Place();
    if (control.Flags() & moveRight) box.left += widthGained;
    if (control.Flags() & moveDown) box.top += heightGained;
    if (control.Flags() & growWidth) box.width += widthGained;
    if (control.Flags() & growHeight) box.height += heightGained;
    const Box& old = control.Place();
    if (box.left != old.left || box.top != old.top || box.width != old.width || box.height != old.height)
        control.SetPlace(box);
}

void Form::Resized(int newWidth, int newHeight) {
    int widthGained = newWidth - width, heightGained = newHeight - height;
    if (widthGained == 0 && heightGained == 0) return;
    width = newWidth;
    height = newHeight;
    HandlerScope scope;
    for (auto& control : controls) PlaceByFlags(*control, widthGained, heightGained);
    if (auto handler = onResize) handler();
}

void Form::SetIcon(const std::string& newIcon) {
    icon = newIcon;
    if (hosted) host::UpdateIcon(*this);
}

Form& LoadForm(const FormDefinition& definition) {
    if (Form* form = FindForm(definition.name)) return *form;
    HandlerScope scope;
    loaded.push_back(std::make_unique<Form>(definition));
    Form& form = *loaded.back();
    if (definition.build) definition.build(form);
    host::Create(form);
    form.hosted = true;
    if (auto handler = form.onLoad) handler();
    return form;
}

Form& ShowForm(const FormDefinition& definition) {
    Form& form = LoadForm(definition);
    if (form.Visible()) host::SetShown(form, true);  // comes to the front
    form.SetVisible(true);
    return form;
}

void ShowFormModal(const FormDefinition& definition) {
    HandlerScope scope;
    Form& form = LoadForm(definition);
    if (!IsLoaded(&form) || form.modal) return;
    form.modal = true;
    form.SetVisible(true);
    host::RunModal(form);
    form.modal = false;
}

bool UnloadForm(Form& form, bool fromUser) {
    if (!IsLoaded(&form) || form.unloading) return true;
    HandlerScope scope;
    if (auto handler = form.onQueryUnload; handler && !handler(fromUser)) return !IsLoaded(&form);
    // The question may have let the form's own work end and unload it.
    if (!IsLoaded(&form) || form.unloading) return true;
    form.unloading = true;
    if (auto handler = form.onUnload) handler();
    form.visible = false;
    form.hosted = false;
    host::Destroy(form);
    Retire(form);
    return true;
}

Form* FindForm(std::string_view name) {
    for (auto& form : loaded)
        if (EqualNoCase(form->Name(), name)) return form.get();
    return nullptr;
}

bool IsFormLoaded(std::string_view name) { return FindForm(name) != nullptr; }

std::vector<Form*> LoadedForms() {
    std::vector<Form*> forms;
    for (auto& form : loaded) forms.push_back(form.get());
    return forms;
}

void UnloadAllFormsBut(Form* keep) {
    HandlerScope scope;
    for (Form* form : LoadedForms())
        if (form != keep && IsLoaded(form)) UnloadForm(*form);
}

void ForgetForms() {
    loaded.clear();
    unloaded.clear();
}
