// A small table made through the module: Name (text) and Price (real)
// columns, and rows added with their values.
#pragma once

#include <string>
#include <vector>

#include "module.h"
#include "text.h"

namespace sdk_test {

constexpr ULONG kTextColumn = 8;
constexpr ULONG kRealColumn = 4;

struct Row {
  const wchar_t* name;
  double price;
};

class Table {
 public:
  explicit Table(const std::vector<Row>& rows = {});

  com_ptr<IMutableRecord> Add(const Row& row);
  // The names of the rows an iterator hands out, in its order.
  static std::vector<std::wstring> Names(IRecordListIterator* rows);
  static std::wstring Name(IMutableRecord* record);
  static std::wstring Name(IRecord* record);

  com_ptr<IMutableColumns> columns;
  com_ptr<IMutableRecordList> list;
};

// The description of the error object the calling thread holds.
std::wstring LastErrorText();

}  // namespace sdk_test
