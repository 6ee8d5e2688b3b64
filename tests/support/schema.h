// A column collection built from names and type codes, for table tests.
#pragma once

#include <initializer_list>

#include "columns/mutable_columns.h"
#include "support/test_support.h"

namespace brevo::testing {

struct ColumnDef {
  const OLECHAR* name;
  ULONG type;
};

inline com_ptr<IMutableColumns> Schema(std::initializer_list<ColumnDef> defs = {}) {
  const com_ptr<IMutableColumns> columns(make_object<MutableColumns>().get());
  for (const ColumnDef& def : defs) {
    com_ptr<IMutableColumn> added;
    EXPECT_EQ(columns->AddColumn(_bstr_t(def.name).GetBSTR(), def.type, added.put()), S_OK);
  }
  return columns;
}

}  // namespace brevo::testing
