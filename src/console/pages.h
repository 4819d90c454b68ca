// The page tables, joined in fields.cpp.
#pragma once

#include "console/fields.h"

extern const std::span<const PageItem> brandingPage, skinsPage, emailPage, smtpPage, remotePage;
extern const std::span<const PageItem> restorePointPage, maintenancePage, appEditorPage, fixPage, customPage,
    autoUpdatePage;
