/* The generated header from C: the interfaces through their vtables
   (COBJMACROS) and the identifiers BrevoRecordList_i.c defines. */
#define COBJMACROS
#include "c_client.h"

LONG CAddNameColumn(IMutableColumns* columns) {
  BSTR name = SysAllocString(L"Name");
  IMutableColumn* column = NULL;
  LONG size = -1;
  HRESULT hr = name ? IMutableColumns_AddColumn(columns, name, 8, &column) : E_OUTOFMEMORY;
  SysFreeString(name);
  if (SUCCEEDED(hr)) {
    IMutableColumn_Release(column);
    hr = IMutableColumns_get_Size(columns, &size);
  }
  return SUCCEEDED(hr) ? size : -1;
}

const GUID* CLibraryId(void) { return &LIBID_BrevoRecordListLib; }
