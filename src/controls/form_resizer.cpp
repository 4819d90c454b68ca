#include "controls/form_resizer.h"

#include "system/text.h"

namespace {

// value * now / design, rounded to the nearest; 64 bits so that no size overflows.
int Scale(int value, int now, int design) {
    int64_t doubled = 2 * static_cast<int64_t>(value) * now + design;
    return static_cast<int>(doubled / (2 * static_cast<int64_t>(design)));
}

}  // namespace

void FormResizer::InitResizeArray(Form& resized) {
    form = &resized;
    designWidth = form->Width();
    designHeight = form->Height();
    entries.clear();
    for (auto& control : form->Controls()) entries.push_back({control->Name(), control->Place()});
}

void FormResizer::ResizeControls() {
    if (!form || designWidth <= 0 || designHeight <= 0) return;
    for (const Entry& entry : entries) {
        Control* control = form->Find(entry.name);
        if (!control) continue;
        auto across = [this](int value) { return Scale(value, form->Width(), designWidth); };
        auto down = [this](int value) { return Scale(value, form->Height(), designHeight); };
        const Box& box = entry.box;
        control->SetPlace({across(box.left), down(box.top), across(box.width), down(box.height)});
    }
}

void FormResizer::SetControlProperties(const std::string& controlName, const Box& place) {
    for (Entry& entry : entries)
        if (EqualNoCase(entry.name, controlName)) entry.box = place;
}
