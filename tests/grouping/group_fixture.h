// Source tables for the grouped views, and a listener that describes what the
// grouped objects hand out (null events, wrapped records, event sources).
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "columns/mutable_columns.h"
#include "grouping/group_interfaces.h"
#include "lists/mutable_record_list.h"
#include "support/test_support.h"

namespace brevo::testing {

using Lines = std::vector<std::string>;

// The text of a returned string, which it frees.
inline std::string Text(BSTR text) {
  const _bstr_t owned(text, false);
  return Narrow(text);
}

// "name/type/display" of each column of a collection or of its view.
inline Lines SchemaOf(IDispatch* columns) {
  const auto raw = RawColumnsOf(columns);
  Lines schema;
  for (ULONG i = 0; i < raw->Size(); ++i) {
    const auto column = raw->MutableColumnAt(i).query<IColumnRaw>();
    schema.push_back(Narrow(column->ColumnName()) + "/" + std::to_string(column->ColumnType()) + "/" +
                     Narrow(column->DisplayName()));
  }
  return schema;
}

// The int32 in column `index` of a record of either shape.
inline LONG IntOf(IDispatch* record, ULONG index = 0) {
  LONG value = -1;
  const com_ptr<IDispatch> held(record);
  if (const auto writable = held.try_query<IMutableRecord>()) writable->GetValueAsInt32(index, &value);
  else held.query<IRecord>()->GetValueAsInt32(index, &value);
  return value;
}

// "none", or the record's shape and the int32 it reads in column 0.
inline std::string Describe(IDispatch* record) {
  if (record == nullptr) return "none";
  const com_ptr<IDispatch> held(record);
  const char* shape = !held.try_query<IGroupRecordRaw>()     ? "record "
                      : held.try_query<IMutableRecord>() ? "GroupMutableRecord "
                                                           : "GroupRecord ";
  return shape + std::to_string(IntOf(record));
}

inline Lines Walk(IRecordListIterator* iterator) {
  Lines seen;
  VARIANT_BOOL more = VARIANT_FALSE;
  while (seen.size() < 10 && iterator->HasNext(&more) == S_OK && more != VARIANT_FALSE) {
    com_ptr<IDispatch> next;
    EXPECT_EQ(iterator->Next(next.put()), S_OK);
    seen.push_back(Describe(next.get()));
  }
  return seen;
}

// Lets column additions and removals past the listeners registered after it
// (a columns "Before" event goes on only past listeners that call Stop).
class Gate : public implements<Gate, IColumnsChangeListener> {
 public:
  static constexpr CLSID kClassId = {0x5D1E7A40, 0x3B2C, 0x4E19, {0x8F, 0x60, 0x2A, 0x77, 0x91, 0x0C, 0x5E, 0x31}};
  STDMETHODIMP ColumnBeforeAdd(IColumnsChangeEvent* e) override { return e->Stop(); }
  STDMETHODIMP ColumnAfterAdd(IColumnsChangeEvent*) override { return S_OK; }
  STDMETHODIMP ColumnBeforeRemove(IColumnsChangeEvent* e) override { return e->Stop(); }
  STDMETHODIMP ColumnAfterRemove(IColumnsChangeEvent*) override { return S_OK; }
};

// Writes "<name>.<Method>(<index>, <record>)", or "(null event)"; counts
// events whose source is not `owner`.
class EventLog : public implements<EventLog, IRecordChangeListener, IRecordListChangeListener,
                                   IRecordListValueChangeListener> {
 public:
  static constexpr CLSID kClassId = {0x5D1E7A40, 0x3B2C, 0x4E19, {0x8F, 0x60, 0x2A, 0x77, 0x91, 0x0C, 0x5E, 0x32}};
  EventLog(std::string name, Lines& lines) : name_(std::move(name)), lines_(lines) {}

  bool stop = false;
  IUnknown* owner = nullptr;  // identity only
  int foreignSources = 0;

  STDMETHODIMP ValueBeforeChange(IRecordChangeEvent* e) override { return Log("ValueBeforeChange", e); }
  STDMETHODIMP ValueAfterChange(IRecordChangeEvent* e) override { return Log("ValueAfterChange", e); }
  STDMETHODIMP RecordBeforeAdd(IRecordListChangeEvent* e) override { return Log("RecordBeforeAdd", e); }
  STDMETHODIMP RecordAfterAdd(IRecordListChangeEvent* e) override { return Log("RecordAfterAdd", e); }
  STDMETHODIMP RecordBeforeRemove(IRecordListChangeEvent* e) override { return Log("RecordBeforeRemove", e); }
  STDMETHODIMP RecordAfterRemove(IRecordListChangeEvent* e) override { return Log("RecordAfterRemove", e); }
  STDMETHODIMP ValueBeforeChange(IRecordListValueChangeEvent* e) override { return Log("ValueBeforeChange", e); }
  STDMETHODIMP ValueAfterChange(IRecordListValueChangeEvent* e) override { return Log("ValueAfterChange", e); }

 private:
  template <class Event>
  HRESULT Log(const char* method, Event* e) {
    std::string what = e == nullptr ? "null event" : "";
    if constexpr (!std::is_same_v<Event, IRecordListChangeEvent>) {
      LONG index = 0;
      if (e != nullptr && e->GetIndex(&index) == S_OK) what = std::to_string(index);
    }
    if constexpr (!std::is_same_v<Event, IRecordChangeEvent>) {
      com_ptr<IDispatch> record;
      if (e != nullptr && e->GetRecordChanged(record.put()) == S_OK) what += (what.empty() ? "" : ", ") + Describe(record.get());
    }
    lines_.push_back(name_ + "." + method + "(" + what + ")");
    com_ptr<IDispatch> source;
    if (e == nullptr || e->GetSource(source.put()) != S_OK) return S_OK;
    if (owner != nullptr && identity_of(source.get()).get() != owner) ++foreignSources;
    return stop ? e->Stop() : S_OK;
  }

  std::string name_;
  Lines& lines_;
};

// A column collection (int32 columns by default) and a mutable list over it.
struct SourceTable {
  explicit SourceTable(std::initializer_list<const OLECHAR*> names = {}, bool gated = false) {
    if (gated) columns->AddColumnsChangeListener(make_object<Gate>().get());
    for (const OLECHAR* name : names) AddColumn(name);
    list->Create(columns.get());
  }
  // `labelled` gives the column the display name "D:<name>".
  HRESULT AddColumn(const OLECHAR* name, ULONG type = 10, bool labelled = false) {
    com_ptr<IMutableColumn> column;
    const HRESULT hr = columns->AddColumn(_bstr_t(name).GetBSTR(), type, column.put());
    if (labelled) column->put_DisplayName(_bstr_t((std::basic_string<OLECHAR>(OLESTR("D:")) + name).c_str()).GetBSTR());
    return hr;
  }
  HRESULT RemoveColumn(const OLECHAR* name) {
    LONG index = -1;
    columns->IndexOf(_bstr_t(name).GetBSTR(), &index);
    return columns->RemoveColumn(static_cast<ULONG>(index));
  }
  com_ptr<IMutableRecord> AddRecord(std::initializer_list<LONG> values) {
    com_ptr<IMutableRecord> record;
    EXPECT_EQ(list->AddRecord(record.put()), S_OK);
    ULONG i = 0;
    for (const LONG value : values) EXPECT_EQ(record->SetValueAsInt32(i++, value), S_OK);
    return record;
  }
  com_ptr<IRecordList> View() {
    com_ptr<IRecordList> view;
    EXPECT_EQ(list->get_RecordList(view.put()), S_OK);
    return view;
  }

  com_ptr<IMutableColumns> columns{make_object<MutableColumns>().get()};
  com_ptr<IMutableRecordList> list{make_object<MutableRecordList>().get()};
};

// Grouped lists that leave their source's registries when the holder goes
// (the pair would otherwise keep itself alive).
struct Hooked {
  ~Hooked() {
    for (const auto& raw : made) raw->Unregister();
  }
  template <class List>
  com_ptr<List> Keep(const com_ptr<List>& list) {
    made.push_back(list.template query<IGroupRecordListRaw>());
    return list;
  }
  std::vector<com_ptr<IGroupRecordListRaw>> made;
};

}  // namespace brevo::testing
