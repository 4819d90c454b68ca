// Toolbars, browser helper objects and search scopes of Internet Explorer: listed, and removed on demand.
#pragma once

#include "controls/form.h"

// Loaded with State().bRemoveIEToolbars or bRemoveIEBHOs set it works hidden and by itself.
extern const FormDefinition frmCleanIE;
