// The records factory: free-standing mutable records for clients.
#pragma once

#include "records/record_interfaces.h"

namespace brevo {

struct IRecordsFactory : IDispatch {
  STDMETHOD(CreateMutableRecord)(IMutableRecord** RetVal) = 0;
  STDMETHOD(CreateMutableRecordFromColumns)(IMutableColumns* columns, IMutableRecord** RetVal) = 0;
};

}  // namespace brevo

BREVO_INTERFACE_ID(brevo::IRecordsFactory, 0xE43CD5AD, 0xE577, 0x4F25, 0xBA, 0xD9, 0x98, 0x84, 0x0E, 0x1C, 0x87, 0x30);
