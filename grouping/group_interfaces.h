// The grouped views as other objects of the library reach them.
#pragma once

#include "lists/list_interfaces.h"

namespace brevo {

struct IGroupRecordRaw : IDispatch {
  // source: a record of any shape; columns: grouped columns whose index map
  // leads each grouped position to a source column.
  virtual void Create(IDispatch* source, IMutableColumns* columns, const _bstr_t& group) = 0;
  virtual com_ptr<IDispatch> GetSource() = 0;
};

struct IGroupMutableColumnsRaw : IDispatch {
  virtual void Create(IMutableColumns* source, const _bstr_t& group) = 0;
  virtual com_ptr<IMutableColumns> GetGroupedColumns() = 0;
};

struct IGroupRecordListRaw : IDispatch {
  virtual void Create(IDispatch* source, const _bstr_t& group) = 0;
  virtual com_ptr<IDispatch> GetSource() = 0;
  // Leaves the source's registries (a Create that failed is dropped this way).
  virtual void Unregister() = 0;
};

}  // namespace brevo

BREVO_INTERFACE_ID(brevo::IGroupRecordRaw, 0x87C47DD9, 0xE240, 0x4D91, 0xA0, 0xEA, 0x0C, 0xC9, 0x9A, 0xDA, 0x9C, 0x03);
BREVO_INTERFACE_ID(brevo::IGroupMutableColumnsRaw, 0x174B5E3E, 0x2883, 0x4E25, 0xB4, 0x5F, 0xCE, 0x1E, 0xEF, 0xD4, 0x64, 0x78);
BREVO_INTERFACE_ID(brevo::IGroupRecordListRaw, 0xA7441A33, 0xC369, 0x44CF, 0xB3, 0x58, 0x0A, 0xC2, 0x56, 0x77, 0x04, 0xB5);
