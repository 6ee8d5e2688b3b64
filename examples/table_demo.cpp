#include "examples/table_demo.h"

#include <cstdio>
#include <string>

#include "columns/mutable_columns.h"
#include "factory/record_list_utils.h"
#include "lists/mutable_record_list.h"

namespace {

using brevo::_bstr_t;
using brevo::com_ptr;

constexpr ULONG kText = 1;
constexpr ULONG kReal = 4;
constexpr ULONG kInteger = 10;

// Keeps the rows whose quantity is a multiple of seven.
class MultipleOfSeven : public brevo::implements<MultipleOfSeven, brevo::IRecordCondition> {
 public:
  static constexpr CLSID kClassId = {0x3F0C2B6A, 0x77E1, 0x4C55, {0x9B, 0x0D, 0x2E, 0x61, 0x5A, 0x18, 0xC4, 0x02}};
  STDMETHODIMP Evaluate(brevo::IMutableRecord* record, VARIANT_BOOL* result) override {
    LONG quantity = 0;
    const HRESULT hr = record->GetValueAsInt32(1, &quantity);
    *result = quantity % 7 == 0 ? VARIANT_TRUE : VARIANT_FALSE;
    return hr;
  }
};

// Orders by price; a positive answer puts the first record first, so first
// minus second gives the dearest rows first.
class ByPrice : public brevo::implements<ByPrice, brevo::IRecordComparator> {
 public:
  static constexpr CLSID kClassId = {0x3F0C2B6A, 0x77E1, 0x4C55, {0x9B, 0x0D, 0x2E, 0x61, 0x5A, 0x18, 0xC4, 0x03}};
  STDMETHODIMP Compare(VARIANT first, VARIANT second, LONG* result) override {
    double a = 0, b = 0;
    com_ptr<IUnknown>(first.punkVal).query<brevo::IMutableRecord>()->GetValueAsDouble(2, &a);
    com_ptr<IUnknown>(second.punkVal).query<brevo::IMutableRecord>()->GetValueAsDouble(2, &b);
    *result = a > b ? 1 : a < b ? -1 : 0;
    return S_OK;
  }
};

void PrintRows(const char* title, brevo::IRecordListIterator* rows, int limit) {
  std::printf("%s\n  %-12s %8s %10s\n", title, "Item.Name", "Quantity", "Price");
  VARIANT_BOOL more = VARIANT_FALSE;
  for (int shown = 0; shown < limit && SUCCEEDED(rows->HasNext(&more)) && more; ++shown) {
    com_ptr<IDispatch> next;
    rows->Next(next.put());
    const auto record = next.query<brevo::IMutableRecord>();
    BSTR name = nullptr;
    LONG quantity = 0;
    double price = 0;
    record->GetValueAsString(0, &name);
    record->GetValueAsInt32(1, &quantity);
    record->GetValueAsDouble(2, &price);
    std::printf("  %-12s %8ld %10.2f\n", static_cast<const char*>(_bstr_t(name, false)), static_cast<long>(quantity),
                price);
  }
  std::printf("\n");
}

// The column groups of the table, and the rows seen through one of them.
void ShowGroups(brevo::IMutableRecordList* list) {
  const auto utils = brevo::make_object<brevo::RecordListUtils>();
  ULONG groups = 0;
  utils->GetMutableGroupCount(list, &groups);
  std::printf("Column groups:");
  for (ULONG i = 0; i < groups; ++i) {
    BSTR name = nullptr;
    utils->GetMutableGroupName(list, i, &name);
    std::printf(" %s", static_cast<const char*>(_bstr_t(name, false)));
  }
  std::printf("\n");

  // A view needs every column in its group: group the Stock columns of a
  // table that holds only them.
  const auto stockColumns = brevo::make_object<brevo::MutableColumns>();
  com_ptr<brevo::IMutableColumn> column;
  stockColumns->AddColumn(_bstr_t(OLESTR("Stock.Warehouse")).GetBSTR(), kText, column.put());
  stockColumns->AddColumn(_bstr_t(OLESTR("Stock.Count")).GetBSTR(), kInteger, column.put());
  const auto stock = brevo::make_object<brevo::MutableRecordList>();
  stock->Create(stockColumns.get());
  for (int i = 0; i < 3; ++i) {
    com_ptr<brevo::IMutableRecord> record;
    stock->AddRecord(record.put());
    record->SetValueAsString(0, _bstr_t(i == 1 ? "south" : "north").GetBSTR());
    record->SetValueAsInt32(1, 10 * (i + 1));
  }
  com_ptr<brevo::IMutableRecordList> grouped;
  if (FAILED(utils->GetMutableRecordListByGroup(stock.get(), _bstr_t(OLESTR("Stock")).GetBSTR(), grouped.put()))) {
    return;
  }
  std::printf("Grouped view of Stock:\n");
  com_ptr<brevo::IRecordListIterator> rows;
  grouped->GetIterator(VARIANT_TRUE, rows.put());
  VARIANT_BOOL more = VARIANT_FALSE;
  while (SUCCEEDED(rows->HasNext(&more)) && more) {
    com_ptr<IDispatch> next;
    rows->Next(next.put());
    BSTR warehouse = nullptr;
    LONG count = 0;
    const auto record = next.query<brevo::IMutableRecord>();
    record->GetValueAsString(0, &warehouse);
    record->GetValueAsInt32(1, &count);
    std::printf("  %-8s %4ld\n", static_cast<const char*>(_bstr_t(warehouse, false)), static_cast<long>(count));
  }
  std::printf("\n");
  // The grouped list and its source hold each other until it leaves the
  // source's registries.
  stock->RemoveRecordListChangeListener(grouped.query<brevo::IRecordListChangeListener>().get());
  stock->RemoveRecordListValueChangeListener(grouped.query<brevo::IRecordListValueChangeListener>().get());
  stockColumns->RemoveColumnsChangeListener(grouped.query<brevo::IColumnsChangeListener>().get());
}

}  // namespace

void ShowTable() {
  const auto columns = brevo::make_object<brevo::MutableColumns>();
  com_ptr<brevo::IMutableColumn> column;
  columns->AddColumn(_bstr_t(OLESTR("Item.Name")).GetBSTR(), kText, column.put());
  columns->AddColumn(_bstr_t(OLESTR("Item.Quantity")).GetBSTR(), kInteger, column.put());
  columns->AddColumn(_bstr_t(OLESTR("Item.Price")).GetBSTR(), kReal, column.put());
  columns->AddColumn(_bstr_t(OLESTR("Stock.Warehouse")).GetBSTR(), kText, column.put());

  const auto list = brevo::make_object<brevo::MutableRecordList>();
  list->Create(columns.get());
  constexpr int kRows = 5000;
  for (int i = 0; i < kRows; ++i) {
    com_ptr<brevo::IMutableRecord> record;
    list->AddRecord(record.put());
    record->SetValueAsString(0, _bstr_t(("item-" + std::to_string(i)).c_str()).GetBSTR());
    record->SetValueAsInt32(1, (i * 37) % 1000);
    record->SetValueAsDouble(2, ((i * 7919) % 10007) / 100.0);
    record->SetValueAsString(3, _bstr_t(i % 3 == 0 ? "north" : "south").GetBSTR());
  }
  ULONG size = 0;
  list->get_Size(&size);
  std::printf("A table of %lu rows over 4 columns\n\n", static_cast<unsigned long>(size));

  com_ptr<brevo::IRecordListIterator> rows;
  list->GetIterator(VARIANT_TRUE, rows.put());
  PrintRows("In order of addition (first 5)", rows.get(), 5);

  const auto condition = brevo::make_object<MultipleOfSeven>();
  list->GetFilteredIterator(condition.get(), VARIANT_TRUE, rows.put());
  PrintRows("Quantity a multiple of 7 (first 5)", rows.get(), 5);

  const auto comparator = brevo::make_object<ByPrice>();
  list->GetSortedIterator(comparator.get(), VARIANT_TRUE, rows.put());
  PrintRows("Dearest first (first 5)", rows.get(), 5);

  ShowGroups(list.get());
}
