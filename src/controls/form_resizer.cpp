#include "controls/form_resizer.h"

#include "system/text.h"

namespace {

// value * now / design, rounded to the nearest (halves up); 64 bits so that no size overflows. design is above 0.
int Scale(int value, int now, int design) {
    int64_t numerator = 2 * static_cast<int64_t>(value) * now + design, denominator = 2 * static_cast<int64_t>(design);
    int64_t quotient = numerator / denominator;
    return static_cast<int>(quotient - (numerator % denominator < 0));
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
