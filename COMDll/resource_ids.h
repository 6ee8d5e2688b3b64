// Identifiers of the module's resources, read by the resource compiler as well
// as by the code, hence plain macros.
#pragma once

#define IDS_PROJECT_NAME 100
#define IDR_APPID_SCRIPT 101
