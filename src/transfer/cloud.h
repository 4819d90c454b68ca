// The technician's FTP area: three small forms that do their whole job while they load and close themselves.
// Nothing is shown when something fails.
#pragma once

#include "controls/form.h"

extern const FormDefinition frmCloudDL;  // shown modally: fetches "BrevantaConfig.zip" into the application folder
extern const FormDefinition frmCloudUL;  // sends "Usage.ini"; its unload ends the program
extern const FormDefinition frmFTPUL;    // shown modally: sends "BrevantaConfig.zip"
