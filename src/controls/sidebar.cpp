#include "controls/sidebar.h"

namespace {

int Append(Control& control, SideBarGroup group) {
    std::vector<SideBarGroup> groups = control.Groups();
    groups.push_back(std::move(group));
    control.SetGroups(std::move(groups));
    return static_cast<int>(control.Groups().size());
}

}  // namespace

void XPexplorerbar::Clear() { control.SetGroups({}); }

int XPexplorerbar::AddNormalItem(const std::string& caption) { return Append(control, {caption, "", false, true, {}}); }

int XPexplorerbar::AddSpecialItem(const std::string& caption) { return Append(control, {caption, "", true, true, {}}); }

int XPexplorerbar::AddDetailItem(const std::string& heading, const std::string& subHeading, const std::string& text) {
    return Append(control, {heading, subHeading, false, true, {{"", text}}});
}

int XPexplorerbar::AddSubItem(int group, const std::string& caption) {
    std::vector<SideBarGroup> groups = control.Groups();
    if (group < 1 || group > static_cast<int>(groups.size())) return 0;
    std::vector<SideBarItem>& items = groups[static_cast<size_t>(group) - 1].items;
    items.push_back({caption, ""});
    int number = static_cast<int>(items.size());
    control.SetGroups(std::move(groups));
    return number;
}

void XPexplorerbar::Collapse(int group) { control.Expand(static_cast<size_t>(group), false); }

void XPexplorerbar::Expand(int group) { control.Expand(static_cast<size_t>(group), true); }
