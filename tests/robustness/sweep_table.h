// The table an allocation sweep works on: a list with its schema, records
// handed out by it, an iterator, a grouped view of a second list, and one
// listener of every kind
// attached from the start so that every change builds its events.
#pragma once

#include <string>
#include <vector>

#include "core/implements.h"
#include "events/listener_interfaces.h"
#include "lists/list_interfaces.h"
#include "records/record_interfaces.h"
#include "support/test_support.h"

namespace brevo::testing {

// Writes the name of every notification it hears; lets column changes go on
// (column events start stopped). Its own bookkeeping never fails.
class Probe : public implements<Probe, IColumnsChangeListener, IPropertyChangeListener, IRecordChangeListener,
                                IRecordListChangeListener, IRecordListValueChangeListener> {
 public:
  static constexpr CLSID kClassId = {0x6E0D2B17, 0x41A3, 0x4C55, {0x9B, 0x2E, 0x70, 0x18, 0xC4, 0x5A, 0x3D, 0x91}};
  Probe(std::string name, std::vector<std::string>& heard) : name_(std::move(name)), heard_(heard) {}

  STDMETHODIMP ColumnBeforeAdd(IColumnsChangeEvent* e) override { return Hear("ColumnBeforeAdd", e); }
  STDMETHODIMP ColumnAfterAdd(IColumnsChangeEvent* e) override { return Hear("ColumnAfterAdd", e); }
  STDMETHODIMP ColumnBeforeRemove(IColumnsChangeEvent* e) override { return Hear("ColumnBeforeRemove", e); }
  STDMETHODIMP ColumnAfterRemove(IColumnsChangeEvent* e) override { return Hear("ColumnAfterRemove", e); }
  STDMETHODIMP PropertyChange(IPropertyChangeEvent*) override { return Hear("PropertyChange"); }
  STDMETHODIMP ValueBeforeChange(IRecordChangeEvent*) override { return Hear("ValueBeforeChange"); }
  STDMETHODIMP ValueAfterChange(IRecordChangeEvent*) override { return Hear("ValueAfterChange"); }
  STDMETHODIMP RecordBeforeAdd(IRecordListChangeEvent*) override { return Hear("RecordBeforeAdd"); }
  STDMETHODIMP RecordAfterAdd(IRecordListChangeEvent*) override { return Hear("RecordAfterAdd"); }
  STDMETHODIMP RecordBeforeRemove(IRecordListChangeEvent*) override { return Hear("RecordBeforeRemove"); }
  STDMETHODIMP RecordAfterRemove(IRecordListChangeEvent*) override { return Hear("RecordAfterRemove"); }
  STDMETHODIMP ValueBeforeChange(IRecordListValueChangeEvent*) override { return Hear("ListValueBeforeChange"); }
  STDMETHODIMP ValueAfterChange(IRecordListValueChangeEvent*) override { return Hear("ListValueAfterChange"); }

 private:
  HRESULT Hear(const char* method, IColumnsChangeEvent* stoppable = nullptr);

  std::string name_;
  std::vector<std::string>& heard_;
};

struct Table {
  Table();
  ~Table();
  Table(const Table&) = delete;
  Table& operator=(const Table&) = delete;

  // Column `name`'s visible index, or -1.
  LONG IndexOf(const OLECHAR* name);

  // Everything a client can read back, one section per object: the list
  // (schema, index map, rows, the records handed out), the grouping source,
  // the grouped view, and the listeners' reference counts (one per
  // registration). Reading it changes nothing.
  using Sections = std::vector<std::string>;
  Sections State();

  std::vector<std::string> heard;
  com_ptr<CComObject<Probe>> probe;
  com_ptr<CComObject<Probe>> visitor;  // added and removed by the workload
  com_ptr<IMutableRecordList> list;
  com_ptr<IMutableColumns> columns;
  std::vector<com_ptr<IMutableRecord>> records;
  com_ptr<IRecordListIterator> iterator;
  // Grouping needs a source whose every column is in the group: a second list
  // over Address.City and Address.Zip with one record.
  com_ptr<IMutableRecordList> groupSource;
  com_ptr<IMutableColumns> groupColumns;
  com_ptr<IMutableRecord> groupRecord;
  com_ptr<IRecordList> groupView;  // the source the grouped view is made over
  com_ptr<IRecordList> grouped;
  com_ptr<IMutableRecordList> mutableGrouped;  // made over the list itself

  // Take a grouped list's three registrations off its source.
  HRESULT LetGroupedGo();
  HRESULT LetMutableGroupedGo();
};

}  // namespace brevo::testing
