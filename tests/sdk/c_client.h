// A client written in C against the generated header (c_client.c).
#pragma once

#include "BrevoRecordList.h"

#ifdef __cplusplus
extern "C" {
#endif

// Adds a text column "Name" through the C vtable macros; the collection's
// size afterwards, or -1 on a failure.
LONG CAddNameColumn(IMutableColumns* columns);

// The library identifier as the C translation unit sees it.
const GUID* CLibraryId(void);

#ifdef __cplusplus
}
#endif
