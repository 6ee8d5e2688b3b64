#include "sweep_table.h"

#include <sstream>
#include <type_traits>

#include "allocation_countdown.h"
#include "columns/column_interfaces.h"
#include "columns/mutable_columns.h"
#include "lists/mutable_record_list.h"

namespace brevo::testing {
namespace {

std::string Text(const VARIANT& value) {
  std::ostringstream text;
  text << value.vt << ':';
  if (value.vt == VT_BSTR) text << Narrow(value.bstrVal);
  if (value.vt == VT_I4) text << value.lVal;
  if (value.vt == VT_R8) text << value.dblVal;
  return text.str();
}

// The references an object holds besides the caller's; a registry holds one
// per registration.
ULONG ReferencesOf(IUnknown* object) {
  object->AddRef();
  return object->Release();
}

void DescribeValues(std::ostringstream& out, IMutableRecord* record, LONG columns) {
  for (LONG i = 0; i < columns; ++i) {
    unique_variant value;
    const HRESULT hr = record->GetValue(static_cast<ULONG>(i), value.put());
    out << ' ' << (hr == S_OK ? Text(value.get()) : "fails");
  }
  out << '\n';
}

}  // namespace

HRESULT Probe::Hear(const char* method, IColumnsChangeEvent* stoppable) {
  {
    const PausedCountdown paused;
    heard_.push_back(name_ + "." + method);
  }
  return stoppable != nullptr ? stoppable->Stop() : S_OK;
}

Table::Table() {
  const PausedCountdown paused;
  probe = make_object<Probe>("probe", heard);
  visitor = make_object<Probe>("visitor", heard);
  list = com_ptr<IMutableRecordList>(make_object<MutableRecordList>().get());
  columns = com_ptr<IMutableColumns>(make_object<MutableColumns>().get());
  EXPECT_EQ(list->Create(columns.get()), S_OK);
  EXPECT_EQ(columns->AddColumnsChangeListener(probe.get()), S_OK);
  EXPECT_EQ(columns->AddPropertyChangeListener(probe.get()), S_OK);
  EXPECT_EQ(list->AddRecordListChangeListener(probe.get()), S_OK);
  EXPECT_EQ(list->AddRecordListValueChangeListener(probe.get()), S_OK);

  groupSource = com_ptr<IMutableRecordList>(make_object<MutableRecordList>().get());
  groupColumns = com_ptr<IMutableColumns>(make_object<MutableColumns>().get());
  // The probe lets column changes past the grouped view, which never does.
  EXPECT_EQ(groupColumns->AddColumnsChangeListener(probe.get()), S_OK);
  for (const OLECHAR* name : {OLESTR("Address.City"), OLESTR("Address.Zip")}) {
    com_ptr<IMutableColumn> column;
    EXPECT_EQ(groupColumns->AddColumn(_bstr_t(name).GetBSTR(), 1, column.put()), S_OK);
  }
  EXPECT_EQ(groupSource->Create(groupColumns.get()), S_OK);
  EXPECT_EQ(groupSource->AddRecord(groupRecord.put()), S_OK);
  EXPECT_EQ(groupSource->get_RecordList(groupView.put()), S_OK);
  heard.clear();
}

// A grouped list lives as long as it is registered on its source.
Table::~Table() {
  const PausedCountdown paused;
  if (grouped) {
    EXPECT_EQ(LetGroupedGo(), S_OK);
  }
  if (mutableGrouped) {
    EXPECT_EQ(LetMutableGroupedGo(), S_OK);
  }
}

namespace {

template <class Grouped, class Source>
HRESULT LetGo(com_ptr<Grouped>& grouped, Source* source, IMutableColumns* columns) {
  const auto changes = grouped.template query<IRecordListChangeListener>();
  const auto values = grouped.template query<IRecordListValueChangeListener>();
  const auto columnsListener = grouped.template query<IColumnsChangeListener>();
  HRESULT hr = Counted([&] { return source->RemoveRecordListChangeListener(changes.get()); });
  if (SUCCEEDED(hr)) hr = Counted([&] { return source->RemoveRecordListValueChangeListener(values.get()); });
  if (SUCCEEDED(hr)) hr = Counted([&] { return columns->RemoveColumnsChangeListener(columnsListener.get()); });
  if (SUCCEEDED(hr)) grouped.reset();
  return hr;
}

template <class Grouped>
void DescribeGrouped(std::ostringstream& out, Grouped* grouped) {
  ULONG rows = 0;
  LONG size = 0;
  grouped->get_Size(&rows);
  out << "grouped: " << rows << " rows, ";
  if constexpr (std::is_same_v<Grouped, IRecordList>) {
    com_ptr<IColumns> columns;
    grouped->get_Columns(columns.put());
    columns->get_Size(&size);
  } else {
    com_ptr<IMutableColumns> columns;
    grouped->get_Columns(columns.put());
    columns->get_Size(&size);
  }
  out << size << " columns\n";
}

}  // namespace

HRESULT Table::LetGroupedGo() { return LetGo(grouped, groupView.get(), groupColumns.get()); }

HRESULT Table::LetMutableGroupedGo() { return LetGo(mutableGrouped, groupSource.get(), groupColumns.get()); }

LONG Table::IndexOf(const OLECHAR* name) {
  LONG index = -1;
  columns->IndexOf(_bstr_t(name).GetBSTR(), &index);
  return index;
}

namespace {

// A list's schema with each column's references, its index map and its rows.
void DescribeList(std::ostringstream& out, IMutableRecordList* list, IMutableColumns* columns) {
  LONG size = 0;
  columns->get_Size(&size);
  out << "columns:";
  for (LONG i = 0; i < size; ++i) {
    com_ptr<IMutableColumn> column;
    columns->get_MutableColumn(static_cast<ULONG>(i), column.put());
    BSTR name = nullptr, display = nullptr;
    column->get_ColumnName(&name);
    column->get_DisplayName(&display);
    const unique_bstr heldName(name), heldDisplay(display);
    ULONG type = 0;
    column->get_ColumnType(&type);
    out << ' ' << Narrow(name) << '/' << Narrow(display) << '/' << type << '/' << ReferencesOf(column.get());
  }
  out << "\nmap:";
  const auto manager = com_ptr<IMutableColumns>(columns).query<IMutableColumnsManager>();
  try {
    for (ULONG i = 0;; ++i) out << ' ' << manager->GetIndexOfColumn(i);
  } catch (const InvalidParameterRaised&) {
    // past the map's end
  }
  ULONG rows = 0;
  list->get_Size(&rows);
  out << "\nrows " << rows << ":\n";
  com_ptr<IRecordListIterator> walk;
  list->GetIterator(VARIANT_FALSE, walk.put());
  for (VARIANT_BOOL more = VARIANT_FALSE; walk->HasNext(&more) == S_OK && more != VARIANT_FALSE;) {
    com_ptr<IDispatch> next;
    walk->Next(next.put());
    DescribeValues(out, next.query<IMutableRecord>().get(), size);
  }
}

}  // namespace

Table::Sections Table::State() {
  const PausedCountdown paused;
  const ScopedThrowingInvalidParameter bounds;
  Sections sections;
  std::ostringstream out;
  DescribeList(out, list.get(), columns.get());
  LONG size = 0;
  columns->get_Size(&size);
  out << "records handed out:\n";
  for (const auto& record : records) DescribeValues(out, record.get(), size);
  sections.push_back(out.str());

  out.str("");
  out << "grouping source ";
  DescribeList(out, groupSource.get(), groupColumns.get());
  sections.push_back(out.str());

  out.str("");
  if (grouped) DescribeGrouped(out, grouped.get());
  sections.push_back(out.str());
  out.str("");
  if (mutableGrouped) DescribeGrouped(out, mutableGrouped.get());
  sections.push_back(out.str());

  out.str("");
  out << "listener references: " << ReferencesOf(identity_of(probe.get()).get()) << ' '
      << ReferencesOf(identity_of(visitor.get()).get()) << '\n';
  sections.push_back(out.str());
  return sections;
}

}  // namespace brevo::testing
