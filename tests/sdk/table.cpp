#include "table.h"

#include <stdexcept>

namespace sdk_test {
namespace {

void Check(HRESULT hr, const char* what) {
  if (FAILED(hr)) throw std::runtime_error(what);
}

}  // namespace

Table::Table(const std::vector<Row>& rows)
    : columns(Create<IMutableColumns>(CLSID_MutableColumns)), list(Create<IMutableRecordList>(CLSID_MutableRecordList)) {
  for (const auto& [name, type] : {std::pair{L"Name", kTextColumn}, {L"Price", kRealColumn}}) {
    com_ptr<IMutableColumn> column;
    Check(columns->AddColumn(Bstr(name).get(), type, column.put()), "AddColumn");
  }
  Check(list->Create(columns.get()), "Create");
  for (const Row& row : rows) Add(row);
}

com_ptr<IMutableRecord> Table::Add(const Row& row) {
  com_ptr<IMutableRecord> record;
  Check(list->AddRecord(record.put()), "AddRecord");
  Check(record->SetValueAsString(0, Bstr(row.name).get()), "SetValueAsString");
  Check(record->SetValueAsDouble(1, row.price), "SetValueAsDouble");
  return record;
}

std::vector<std::wstring> Table::Names(IRecordListIterator* rows) {
  std::vector<std::wstring> names;
  for (VARIANT_BOOL more = VARIANT_FALSE; SUCCEEDED(rows->HasNext(&more)) && more;) {
    com_ptr<IDispatch> next;
    Check(rows->Next(next.put()), "Next");
    const auto mutableRecord = next.as<IMutableRecord>();
    names.push_back(mutableRecord ? Name(mutableRecord.get()) : Name(next.as<IRecord>().get()));
  }
  return names;
}

std::wstring Table::Name(IMutableRecord* record) {
  return record ? ReadText([&](BSTR* out) { return record->GetValueAsString(0, out); }) : L"?";
}

std::wstring Table::Name(IRecord* record) {
  return record ? ReadText([&](BSTR* out) { return record->GetValueAsString(0, out); }) : L"?";
}

std::wstring LastErrorText() {
  com_ptr<IErrorInfo> info;
  if (GetErrorInfo(0, info.put()) != S_OK || !info) return L"(no error info)";
  return ReadText([&](BSTR* out) { return info->GetDescription(out); });
}

}  // namespace sdk_test
