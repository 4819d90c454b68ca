// The collapsible sidebar: builds the groups of a sideBar control.
#pragma once

#include <string>

#include "controls/form.h"

// Fills one sidebar; it keeps nothing itself.
class XPexplorerbar {
public:
    explicit XPexplorerbar(Control& sideBar) : control(sideBar) {}

    void Clear();
    // Each adds a group and returns its number, from 1.
    int AddNormalItem(const std::string& caption);
    int AddSpecialItem(const std::string& caption);
    int AddDetailItem(const std::string& heading, const std::string& subHeading, const std::string& text);
    // Adds an item to a group; its number in the group, from 1. A group that is not there gives 0.
    int AddSubItem(int group, const std::string& caption);
    void Collapse(int group);
    void Expand(int group);

private:
    Control& control;
};
