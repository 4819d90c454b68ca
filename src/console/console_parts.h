// What the files of the console share.
#pragma once

#include <string>
#include <vector>

#include "console/fields.h"
#include "controls/form.h"

// console_fields.cpp: one control from and to its setting.
void LoadField(Form& form, const Field& field);
bool SaveField(Form& form, const Field& field);
// Stores just these fields.
void SaveFields(Form& form, const std::vector<std::string>& controls);
// Takes what the controls hold now as saved; a save that succeeds does the same.
void RememberSaved(Form& form);
bool HasUnsavedChanges(Form& form);

// console_rules.cpp: what one control does to others, and quiet marks beside what cannot be right.
void AttachRules(Form& form);
void ApplyRules(Form& form);

// console_actions.cpp: sidebar items of group "Save", and the buttons of the pages.
void SaveAndZip(Form& form);
void SaveAndTest(Form& form);
void SaveAndClose(Form& form);
void AttachActions(Form& form);

// app_editor.cpp
void AttachAppEditor(Form& form);
void LoadAppList(Form& form);

// skins_page.cpp
void AttachSkinsPage(Form& form);
