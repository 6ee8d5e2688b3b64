// Rows without a list: records over a shared column collection (an INT32 key
// and a text column), and client callbacks that read the key.
#pragma once

#include <algorithm>
#include <functional>
#include <vector>

#include "columns/mutable_columns.h"
#include "lists/list_interfaces.h"
#include "records/mutable_record.h"
#include "support/test_support.h"

namespace brevo::testing {

inline com_ptr<IMutableColumns> NewColumns() {
  const com_ptr<IMutableColumns> columns(make_object<MutableColumns>().get());
  com_ptr<IMutableColumn> added;
  EXPECT_EQ(columns->AddColumn(_bstr_t(OLESTR("key")).GetBSTR(), 10, added.put()), S_OK);
  EXPECT_EQ(columns->AddColumn(_bstr_t(OLESTR("name")).GetBSTR(), 1, added.put()), S_OK);
  return columns;
}

// A record as the list makes one: element 0 of its cells is the record itself.
inline Row NewRow(IMutableColumns* columns, LONG key) {
  auto made = make_object<MutableRecord>();
  const Row record(made.get());
  static_cast<IMutableRecordRaw*>(made.get())->Create(columns);
  LONG size = 0;
  columns->get_Size(&size);
  std::vector<unique_variant> cells(static_cast<std::size_t>(size) + 1);
  VARIANT self;
  VariantInit(&self);
  self.vt = VT_UNKNOWN;
  self.punkVal = record.get();
  cells[0] = unique_variant(self);  // a counted copy, as the record expects
  static_cast<IMutableRecordRaw*>(made.get())->AssignValues(cells);
  EXPECT_EQ(record->SetValueAsInt32(0, key), S_OK);
  return record;
}

// Over a collection of their own: a record's last release clears its columns.
inline RowSequence NewRows(const std::vector<LONG>& keys, com_ptr<IMutableColumns> columns = NewColumns()) {
  RowSequence rows;
  for (const LONG key : keys) rows.push_back(NewRow(columns.get(), key));
  return rows;
}

// The key of a mutable record or of its read-only view.
inline LONG KeyOf(IUnknown* record) {
  LONG key = -1;
  const com_ptr<IUnknown> held(record);
  if (const auto mutableRecord = held.try_query<IMutableRecord>()) {
    EXPECT_EQ(mutableRecord->GetValueAsInt32(0, &key), S_OK);
  } else if (const auto view = held.try_query<IRecord>()) {
    EXPECT_EQ(view->GetValueAsInt32(0, &key), S_OK);
  }
  return key;
}

inline std::vector<LONG> KeysOf(const RowSequence& rows) {
  std::vector<LONG> keys;
  for (const Row& row : rows) keys.push_back(KeyOf(row.get()));
  return keys;
}

// Whether after holds exactly the records of before, each once.
inline bool SameRecords(const RowSequence& before, const RowSequence& after) {
  return std::is_permutation(before.begin(), before.end(), after.begin(), after.end());
}

// Answers `answer` for the record with `key`, VARIANT_FALSE for the others,
// or fails with `result`.
class KeyCondition : public implements<KeyCondition, IRecordCondition> {
 public:
  static constexpr CLSID kClassId = {0x93A31959, 0x4AD3, 0x458E, {0x81, 0x1B, 0xFF, 0xA8, 0x7D, 0x38, 0x5E, 0x42}};

  KeyCondition(LONG key, VARIANT_BOOL answer, HRESULT result = S_OK) : key_(key), answer_(answer), result_(result) {}

  STDMETHODIMP Evaluate(IMutableRecord* record, VARIANT_BOOL* RetVal) override {
    if (FAILED(result_)) return result_;
    *RetVal = KeyOf(record) == key_ ? answer_ : VARIANT_FALSE;
    return S_OK;
  }

 private:
  LONG key_;
  VARIANT_BOOL answer_;
  HRESULT result_;
};

// Answers what `order` says of the two records' keys, counting the calls;
// fails at call number `failAt` when it is given.
class KeyComparator : public implements<KeyComparator, IRecordComparator> {
 public:
  static constexpr CLSID kClassId = {0xE481D119, 0x8A9B, 0x4519, {0x99, 0x64, 0x66, 0x92, 0x48, 0x13, 0x01, 0x83}};

  explicit KeyComparator(std::function<LONG(LONG, LONG)> order, long failAt = 0)
      : order_(std::move(order)), failAt_(failAt) {}

  STDMETHODIMP Compare(VARIANT first, VARIANT second, LONG* RetVal) override {
    if (++calls == failAt_) return E_FAIL;
    if (first.vt != VT_UNKNOWN || second.vt != VT_UNKNOWN) ++badArguments;
    *RetVal = order_(KeyOf(first.punkVal), KeyOf(second.punkVal));
    return S_OK;
  }

  long calls = 0;
  long badArguments = 0;

 private:
  std::function<LONG(LONG, LONG)> order_;
  long failAt_;
};

inline LONG FirstMinusSecond(LONG first, LONG second) { return first - second; }

}  // namespace brevo::testing
