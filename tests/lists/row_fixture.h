// Lists and rows over a column collection of an INT32 key and a text column,
// and client callbacks that read the key.
#pragma once

#include <functional>
#include <vector>

#include "lists/mutable_record_list.h"
#include "support/schema.h"

namespace brevo::testing {

inline com_ptr<IMutableColumns> NewColumns() { return Schema({{OLESTR("key"), 10}, {OLESTR("name"), 1}}); }

// A list with one record per key; a negative key leaves the cell empty.
inline com_ptr<IMutableRecordList> ListOf(const std::vector<LONG>& keys,
                                          com_ptr<IMutableColumns> columns = NewColumns()) {
  const com_ptr<IMutableRecordList> list(make_object<MutableRecordList>().get());
  EXPECT_EQ(list->Create(columns.get()), S_OK);
  for (const LONG key : keys) {
    com_ptr<IMutableRecord> record;
    EXPECT_EQ(list->AddRecord(record.put()), S_OK);
    EXPECT_TRUE(key < 0 || record->SetValueAsInt32(0, key) == S_OK);
  }
  return list;
}

// The key of a mutable record or of its read-only view.
inline LONG KeyOf(IUnknown* record) {
  LONG key = -1;
  const com_ptr<IUnknown> held(record);
  if (const auto mutableRecord = held.try_query<IMutableRecord>()) mutableRecord->GetValueAsInt32(0, &key);
  if (const auto view = held.try_query<IRecord>()) view->GetValueAsInt32(0, &key);
  return key;
}

// The records an iterator walks to (a bounded walk).
inline RowSequence Records(IRecordListIterator* it) {
  RowSequence records;
  VARIANT_BOOL more = VARIANT_FALSE;
  while (it != nullptr && it->HasNext(&more) == S_OK && more != VARIANT_FALSE && records.size() < 10000) {
    com_ptr<IDispatch> record;
    EXPECT_EQ(it->Next(record.put()), S_OK);
    records.push_back(record.query<IMutableRecord>());
  }
  return records;
}

inline std::vector<LONG> KeysOf(const RowSequence& rows) {
  std::vector<LONG> keys;
  for (const Row& row : rows) keys.push_back(KeyOf(row.get()));
  return keys;
}

// The records of such a list, without the list; by default over a collection
// of their own, as a record's last release clears its columns.
inline RowSequence NewRows(const std::vector<LONG>& keys, com_ptr<IMutableColumns> columns = NewColumns()) {
  com_ptr<IRecordListIterator> it;
  EXPECT_EQ(ListOf(keys, std::move(columns))->GetIterator(VARIANT_FALSE, it.put()), S_OK);
  return Records(it.get());
}

// Answers `answer` for the record with `key`, VARIANT_FALSE for the others.
class KeyCondition : public implements<KeyCondition, IRecordCondition> {
 public:
  static constexpr CLSID kClassId = {0x93A31959, 0x4AD3, 0x458E, {0x81, 0x1B, 0xFF, 0xA8, 0x7D, 0x38, 0x5E, 0x42}};
  KeyCondition(LONG key, VARIANT_BOOL answer) : key(key), answer(answer) {}
  STDMETHODIMP Evaluate(IMutableRecord* record, VARIANT_BOOL* RetVal) override {
    *RetVal = KeyOf(record) == key ? answer : VARIANT_FALSE;
    return S_OK;
  }
  const LONG key;
  const VARIANT_BOOL answer;
};

// Answers what `order` says of the two records' keys, counting the calls;
// fails at call number `failAt` when it is given.
class KeyComparator : public implements<KeyComparator, IRecordComparator> {
 public:
  static constexpr CLSID kClassId = {0xE481D119, 0x8A9B, 0x4519, {0x99, 0x64, 0x66, 0x92, 0x48, 0x13, 0x01, 0x83}};
  explicit KeyComparator(std::function<LONG(LONG, LONG)> order, long failAt = 0)
      : order(std::move(order)), failAt(failAt) {}
  STDMETHODIMP Compare(VARIANT first, VARIANT second, LONG* RetVal) override {
    if (++calls == failAt) return E_FAIL;
    EXPECT_TRUE(first.vt == VT_UNKNOWN && second.vt == VT_UNKNOWN) << "records come as VT_UNKNOWN";
    *RetVal = order(KeyOf(first.punkVal), KeyOf(second.punkVal));
    return S_OK;
  }
  const std::function<LONG(LONG, LONG)> order;
  const long failAt;
  long calls = 0;
};

inline LONG FirstMinusSecond(LONG first, LONG second) { return first - second; }

}  // namespace brevo::testing
