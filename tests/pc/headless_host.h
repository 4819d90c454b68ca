// Forms without windows: what a test does to them. Who clicks what a user could not click fails the test.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "controls/form.h"

// The loaded form of this name; fails the test and throws when there is none.
Form& FormNamed(const std::string& form);

// What a user does on a form that is shown and not blocked by a modal one. The control must be shown and enabled.
void Click(const std::string& form, const std::string& control);
void Type(const std::string& form, const std::string& control, const std::string& text);
void Choose(const std::string& form, const std::string& control, int index);  // of a combo or list
void CheckRow(const std::string& form, const std::string& control, size_t row, bool checked);
void ClickItem(const std::string& form, const std::string& sideBar, int group, int item);  // both from 1
void PressEnter(const std::string& form);                                                  // the default button
void PressEscape(const std::string& form);                                                 // the cancel button
// By the close box; false when the form refused.
bool CloseByUser(const std::string& form);
// Text of a control whether shown or not.
std::string TextOn(const std::string& form, const std::string& control);
// Whether the control is shown with all its containers on a shown form.
bool IsShown(const std::string& form, const std::string& control);

// What the user does when the form comes up modal; scripts of one form are used in order, the last one for all later
// times. A form still there at its end, and a modal form without a script that does not go by itself, is closed and
// the test fails.
void OnModal(const std::string& form, std::function<void(Form&)> script);
// Forms whose script was never used.
std::vector<std::string> UnusedScripts();
