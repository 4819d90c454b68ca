#include <algorithm>

#include "controls/form.h"
#include "controls/form_host.h"
#include "system/text.h"

namespace {

std::vector<std::string> Entries(const char* items) { return *items ? Split(items, '|') : std::vector<std::string>(); }

int IndexOf(const std::vector<std::string>& items, const std::string& text) {
    auto found = std::find(items.begin(), items.end(), text);
    return found == items.end() ? -1 : static_cast<int>(found - items.begin());
}

// The handler may unload the form or replace itself, so a copy runs.
template <typename Handler, typename... Values>
void Run(const Handler& handler, Values... values) {
    if (Handler copy = handler) copy(values...);
}

}  // namespace

Control::Control(Form& form, const ControlSpec& spec)
    : owner(form),
      name(spec.name),
      container(spec.container),
      text(spec.caption),
      kind(spec.kind),
      flags(spec.flags),
      group(spec.group),
      box(spec.box),
      visible(!(spec.flags & hidden)),
      enabled(!(spec.flags & disabled)),
      isBold((spec.flags & bold) != 0) {
    (kind == Kind::listView ? columns : items) = Entries(spec.items);
    if (kind == Kind::combo) selected = IndexOf(items, text);
}

void Control::Tell(Change change) {
    if (owner.hosted) host::Update(*this, change);
}

void Control::SetText(const std::string& newText) {
    if (newText == text) return;
    text = newText;
    if (kind == Kind::combo) selected = IndexOf(items, text);
    Tell(Change::text);
}

void Control::SetVisible(bool newVisible) {
    if (newVisible == visible) return;
    visible = newVisible;
    Tell(Change::visible);
}

bool Control::Shown() const {
    const Control* control = this;
    while (control && control->visible && !control->container.empty()) control = owner.Find(control->container);
    return !control || control->visible;
}

void Control::SetEnabled(bool newEnabled) {
    if (newEnabled == enabled) return;
    enabled = newEnabled;
    Tell(kind == Kind::timer ? Change::timer : Change::enabled);
}

void Control::SetValue(int newValue) {
    if (kind != Kind::sideBar) newValue = kind == Kind::progress ? std::clamp(newValue, 0, maximum) : newValue != 0;
    if (newValue == value) return;
    value = newValue;
    Tell(Change::value);
    if (kind != Kind::option || value == 0) return;
    for (auto& other : owner.Controls())
        if (Excludes(*other)) other->SetValue(0);
}

bool Control::Excludes(const Control& other) const {
    return &other != this && kind == Kind::option && other.kind == Kind::option && other.group == group &&
           EqualNoCase(other.container, container);
}

void Control::SetMaximum(int newMaximum) {
    newMaximum = std::max(newMaximum, 1);
    if (newMaximum == maximum) return;
    maximum = newMaximum;
    value = std::min(value, maximum);
    Tell(Change::value);
}

void Control::SetColour(uint32_t newColour) {
    if (newColour == colour) return;
    colour = newColour;
    Tell(Change::look);
}

void Control::SetBold(bool newBold) {
    if (newBold == isBold) return;
    isBold = newBold;
    Tell(Change::look);
}

void Control::SetUnderline(bool newUnderline) {
    if (newUnderline == isUnderlined) return;
    isUnderlined = newUnderline;
    Tell(Change::look);
}

void Control::SetAlign(uint32_t alignFlag) {
    flags = (flags & ~(alignCenter | alignRight)) | (alignFlag & (alignCenter | alignRight));
    Tell(Change::look);
}

void Control::SetToolTip(const std::string& newToolTip) {
    toolTip = newToolTip;
    Tell(Change::toolTip);
}

void Control::SetPlace(const Box& place) {
    box = place;
    Tell(Change::place);
}

void Control::SetPicture(const std::string& newPicture) {
    picture = newPicture;
    Tell(Change::picture);
}

void Control::SetStretch(bool newStretch) {
    flags = newStretch ? flags | stretch : flags & ~uint32_t{stretch};
    Tell(Change::picture);
}

void Control::SetInterval(int milliseconds) {
    interval = std::max(milliseconds, 0);
    Tell(Change::timer);
}

void Control::SetItems(std::vector<std::string> values) {
    items = std::move(values);
    selected = kind == Kind::combo ? IndexOf(items, text) : -1;
    Tell(Change::items);
}

void Control::AddItem(const std::string& item) {
    items.push_back(item);
    if (kind == Kind::combo && selected < 0 && item == text) selected = static_cast<int>(items.size()) - 1;
    Tell(Change::items);
}

void Control::Select(int index) {
    if (kind == Kind::listView) {
        selected = index >= 0 && index < static_cast<int>(rows.size()) ? index : -1;
        for (size_t row = 0; row < rows.size(); row++) rows[row].selected = static_cast<int>(row) == selected;
    } else {
        selected = index >= 0 && index < static_cast<int>(items.size()) ? index : -1;
        if (selected >= 0)
            text = items[static_cast<size_t>(selected)];
        else if (kind == Kind::list || (flags & dropList))
            text.clear();
    }
    Tell(Change::value);
}

void Control::SetRows(std::vector<ListRow> values) {
    rows = std::move(values);
    selected = -1;
    for (size_t row = 0; row < rows.size(); row++)
        if (rows[row].selected && selected < 0) selected = static_cast<int>(row);
    Tell(Change::items);
}

void Control::CheckRow(size_t row, bool checked) {
    if (row >= rows.size() || rows[row].checked == checked) return;
    rows[row].checked = checked;
    Tell(Change::value);
}

void Control::FitColumns() { Tell(Change::look); }

void Control::SetGroups(std::vector<SideBarGroup> values) {
    groups = std::move(values);
    Tell(Change::items);
}

void Control::Expand(size_t groupNumber, bool expanded) {
    if (groupNumber < 1 || groupNumber > groups.size() || groups[groupNumber - 1].expanded == expanded) return;
    groups[groupNumber - 1].expanded = expanded;
    Tell(Change::value);
}

void Control::Navigate(const std::string& newAddress) {
    address = newAddress;
    Tell(Change::address);
}

void Control::SetFocus() { Tell(Change::focus); }

void Control::UserClicked() {
    if (!enabled || !Shown()) return;
    HandlerScope scope;
    if (kind == Kind::checkBox) SetValue(value == 0);
    if (kind == Kind::option) SetValue(1);
    bool picked = kind == Kind::checkBox || kind == Kind::option;
    Run(onClick);
    if (picked) Run(onChange);
}

void Control::UserTyped(const std::string& newText) {
    HandlerScope scope;
    text = newText;
    if (kind == Kind::combo) selected = IndexOf(items, text);
    Run(onChange);
}

void Control::UserSelected(int index) {
    HandlerScope scope;
    Select(index);
    Run(onChange);
}

void Control::UserCheckedRow(size_t row, bool checked) {
    HandlerScope scope;
    CheckRow(row, checked);
    Run(onChange);
}

void Control::UserClickedItem(int groupNumber, int item) {
    if (!enabled || !Shown()) return;
    HandlerScope scope;
    Run(onItemClick, groupNumber, item);
}

void Control::TimerTicked() {
    // A handler that lets events run is not entered again.
    if (!enabled || ticking) return;
    HandlerScope scope;
    ticking = true;
    Run(onTimer);
    ticking = false;
}
