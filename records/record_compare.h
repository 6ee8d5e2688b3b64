// Record comparison, shared by every record shape.
#pragma once

#include "records/record_interfaces.h"

namespace brevo {

// At the first unequal cell: -1 when the own cell is empty, 1 otherwise,
// whatever the magnitudes; with all shared cells equal, by column count
// (-1 when the other has fewer, 1 when it has more).
LONG CompareRecords(IRecordRaw& own, IRecordRaw& other);

}  // namespace brevo
