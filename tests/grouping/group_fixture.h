// Source tables for the grouped views, and a listener that describes what the
// grouped objects hand out (null events, wrapped records, event sources).
#pragma once

#include <initializer_list>
#include <string>

#include "columns/mutable_columns.h"
#include "grouping/group_interfaces.h"
#include "lists/mutable_record_list.h"
#include "support/recording_listener.h"

namespace brevo::testing {

// "name/type/display" of each column of a collection or of its view.
inline Transcript SchemaOf(IDispatch* columns) {
  const auto raw = RawColumnsOf(columns);
  Transcript schema;
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

inline Transcript Walk(IRecordListIterator* iterator) {
  Transcript seen;
  VARIANT_BOOL more = VARIANT_FALSE;
  while (seen.size() < 10 && iterator->HasNext(&more) == S_OK && more != VARIANT_FALSE) {
    com_ptr<IDispatch> next;
    EXPECT_EQ(iterator->Next(next.put()), S_OK);
    seen.push_back(Describe(next.get()));
  }
  return seen;
}

// Writes "<name>.<Method>(<index>, <record shape and value>)", or "(null
// event)": the shared recorder can do neither. Counts events whose source is
// not `owner`.
class EventLog : public implements<EventLog, IRecordChangeListener, IRecordListChangeListener,
                                   IRecordListValueChangeListener> {
 public:
  static constexpr CLSID kClassId = {0x5D1E7A40, 0x3B2C, 0x4E19, {0x8F, 0x60, 0x2A, 0x77, 0x91, 0x0C, 0x5E, 0x32}};
  EventLog(std::string name, Transcript& lines, IUnknown* owner)
      : name_(std::move(name)), lines_(lines), owner_(identity_of(owner).get()) {}

  bool stop = false;
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
    if (identity_of(source.get()).get() != owner_) ++foreignSources;
    return stop ? e->Stop() : S_OK;
  }

  std::string name_;
  Transcript& lines_;
  IUnknown* owner_;  // identity only
};

// A column collection (int32 columns by default) and a mutable list over it.
// `gated` puts a listener first that calls Stop, which lets column additions
// and removals past listeners that never do (the grouped views).
struct SourceTable {
  explicit SourceTable(std::initializer_list<const OLECHAR*> names = {}, bool gated = false) {
    if (gated) {
      const auto gate = MakeRecorder("gate", gateHeard);
      gate->stop = true;
      columns->AddColumnsChangeListener(gate.get());
    }
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

  Transcript gateHeard;
  com_ptr<IMutableColumns> columns{make_object<MutableColumns>().get()};
  com_ptr<IMutableRecordList> list{make_object<MutableRecordList>().get()};
};

}  // namespace brevo::testing
