// Reading and making columns for the column tests.
#pragma once

#include "columns/mutable_column.h"
#include "events/scripted_listener.h"

namespace brevo::testing {

template <class C>
std::string Read(C* column, HRESULT (STDMETHODCALLTYPE C::*getter)(BSTR*)) {
  BSTR text = nullptr;
  EXPECT_EQ((column->*getter)(&text), S_OK);
  return Narrow(_bstr_t(text, false));
}
inline std::string NameOf(IMutableColumn* column) { return Read(column, &IMutableColumn::get_ColumnName); }
inline std::string DisplayOf(IMutableColumn* column) { return Read(column, &IMutableColumn::get_DisplayName); }

inline com_ptr<IMutableColumn> NewColumn(const OLECHAR* name, ULONG type, const OLECHAR* display = nullptr) {
  const com_ptr<IMutableColumn> column(make_object<MutableColumn>().get());
  EXPECT_EQ(column->Create(_bstr_t(name).GetBSTR(), type), S_OK);
  if (display != nullptr) {
    EXPECT_EQ(column->put_DisplayName(_bstr_t(display).GetBSTR()), S_OK);
  }
  return column;
}

}  // namespace brevo::testing
