// Every step of a workload, run once per allocation it makes with exactly that
// allocation failing: the call fails with an out-of-memory result (or succeeds),
// leaves the table as it was (or, failing while it announces the change, made),
// and nothing it made outlives the table.
#include <algorithm>
#include <cstdio>
#include <functional>
#include <initializer_list>
#include <string_view>
#include <vector>

#include "allocation_countdown.h"
#include "core/module_lock.h"
#include "factory/record_list_utils.h"
#include "sweep_table.h"

namespace brevo::testing {
namespace {

// Lets through the records whose cell `column` holds `wanted`.
class CellCondition : public implements<CellCondition, IRecordCondition> {
 public:
  static constexpr CLSID kClassId = {0x2F4C8B61, 0x0D7E, 0x4A93, {0x8C, 0x15, 0x5B, 0xE2, 0x47, 0x90, 0x1A, 0x3C}};
  CellCondition(ULONG column, LONG wanted) : column_(column), wanted_(wanted) {}
  STDMETHODIMP Evaluate(IMutableRecord* record, VARIANT_BOOL* RetVal) override {
    LONG value = 0;
    const HRESULT hr = record->GetValueAsInt32(column_, &value);
    *RetVal = hr == S_OK && value == wanted_ ? VARIANT_TRUE : VARIANT_FALSE;
    return hr;
  }

 private:
  ULONG column_;
  LONG wanted_;
};

// Orders records by the text of cell `column`, descending; allocates nothing
// of its own.
class TextComparator : public implements<TextComparator, IRecordComparator> {
 public:
  static constexpr CLSID kClassId = {0x7B3A0E52, 0x6C1D, 0x4F08, {0xA4, 0x9E, 0x2D, 0x61, 0xB8, 0x07, 0x5F, 0xC3}};
  explicit TextComparator(ULONG column) : column_(column) {}
  STDMETHODIMP Compare(VARIANT first, VARIANT second, LONG* RetVal) override {
    unique_variant a, b;
    HRESULT hr = com_ptr<IUnknown>(first.punkVal).query<IMutableRecord>()->GetValue(column_, a.put());
    if (hr == S_OK) hr = com_ptr<IUnknown>(second.punkVal).query<IMutableRecord>()->GetValue(column_, b.put());
    if (hr != S_OK) return hr;
    const std::basic_string_view<OLECHAR> x(a->vt == VT_BSTR && a->bstrVal ? a->bstrVal : OLESTR(""));
    const std::basic_string_view<OLECHAR> y(b->vt == VT_BSTR && b->bstrVal ? b->bstrVal : OLESTR(""));
    *RetVal = y.compare(x);
    return S_OK;
  }

 private:
  ULONG column_;
};

// The first failure among library calls made in order, or S_OK.
HRESULT All(std::initializer_list<std::function<HRESULT()>> calls) {
  for (const auto& call : calls) {
    if (const HRESULT hr = Counted(call); FAILED(hr)) return hr;
  }
  return S_OK;
}

HRESULT AddColumn(Table& t, const OLECHAR* name, ULONG type) {
  const _bstr_t text(name);
  com_ptr<IMutableColumn> column;
  return Counted([&] { return t.columns->AddColumn(text.GetBSTR(), type, column.put()); });
}

HRESULT RemoveColumn(Table& t, const OLECHAR* name) {
  const auto index = static_cast<ULONG>(t.IndexOf(name));
  return Counted([&] { return t.columns->RemoveColumn(index); });
}

// Sets a text property of the column at `index`.
HRESULT Put(Table& t, ULONG index, HRESULT (STDMETHODCALLTYPE IMutableColumn::*put)(BSTR), const OLECHAR* value) {
  com_ptr<IMutableColumn> column;
  t.columns->get_MutableColumn(index, column.put());
  const _bstr_t text(value);
  return Counted([&] { return (column.get()->*put)(text.GetBSTR()); });
}

HRESULT Rename(Table& t, const OLECHAR* from, const OLECHAR* to) {
  return Put(t, static_cast<ULONG>(t.IndexOf(from)), &IMutableColumn::put_ColumnName, to);
}

HRESULT AddRecord(Table& t) {
  com_ptr<IMutableRecord> record;
  const HRESULT hr = Counted([&] { return t.list->AddRecord(record.put()); });
  if (SUCCEEDED(hr)) t.records.push_back(record);
  return hr;
}

HRESULT SetText(Table& t, std::size_t record, ULONG column, const OLECHAR* value) {
  const _bstr_t text(value);
  return Counted([&] { return t.records[record]->SetValueAsString(column, text.GetBSTR()); });
}

// Walks an iterator to its end.
HRESULT Walk(IRecordListIterator* iterator) {
  VARIANT_BOOL more = VARIANT_FALSE;
  for (HRESULT hr; (hr = Counted([&] { return iterator->HasNext(&more); })) != S_OK || more != VARIANT_FALSE;) {
    if (FAILED(hr)) return hr;
    com_ptr<IDispatch> record;
    if (FAILED(hr = Counted([&] { return iterator->Next(record.put()); }))) return hr;
  }
  return S_OK;
}

struct Step {
  const char* name;
  bool reads;  // a reader may also fail with its own message
  std::function<HRESULT(Table&)> run;
};

// Run in this order: each step works on what the ones before it made. Only
// the library calls inside a step count.
const std::vector<Step>& Workload() {
  static const std::vector<Step> steps = {
      {"AddColumn Name", false, [](Table& t) { return AddColumn(t, OLESTR("Name"), 1); }},
      {"AddColumn Address.City", false, [](Table& t) { return AddColumn(t, OLESTR("Address.City"), 1); }},
      {"AddColumn Count", false, [](Table& t) { return AddColumn(t, OLESTR("Count"), 10); }},
      {"AddColumn Spare", false, [](Table& t) { return AddColumn(t, OLESTR("Spare"), 1); }},
      {"RemoveColumn Spare", false, [](Table& t) { return RemoveColumn(t, OLESTR("Spare")); }},
      // The map has a taken entry at the new position: the entries move up.
      {"AddColumn Address.Zip", false, [](Table& t) { return AddColumn(t, OLESTR("Address.Zip"), 1); }},
      {"put_ColumnName", false, [](Table& t) { return Rename(t, OLESTR("Name"), OLESTR("Title")); }},
      {"put_DisplayName", false,
       [](Table& t) { return Put(t, 0, &IMutableColumn::put_DisplayName, OLESTR("Heading")); }},
      {"AddRecord first", false, AddRecord},
      {"AddRecord second", false, AddRecord},
      {"SetValueAsString", false, [](Table& t) { return SetText(t, 0, 0, OLESTR("alpha")); }},
      {"SetValueAsInt32", false, [](Table& t) { return Counted([&] { return t.records[0]->SetValueAsInt32(2, 7); }); }},
      {"SetValue", false,
       [](Table& t) {
         const unique_variant value = MakeString(OLESTR("Paris"));
         return Counted([&] { return t.records[1]->SetValue(1, value.get()); });
       }},
      {"SetValueByName", false,
       [](Table& t) {
         const _bstr_t name(OLESTR("Count"));
         const unique_variant value = MakeValue(VT_I4, &VARIANT::lVal, LONG{9});
         return Counted([&] { return t.records[1]->SetValueByName(name.GetBSTR(), value.get()); });
       }},
      {"typed getters", true,
       [](Table& t) {
         BSTR text = nullptr;
         LONG number = 0;
         double real = 0;
         const HRESULT hr = All({[&] { return t.records[0]->GetValueAsString(0, &text); },
                                 [&] { return t.records[0]->GetValueAsInt32(2, &number); },
                                 [&] { return t.records[1]->GetValueAsDouble(2, &real); }});
         SysFreeString(text);
         return hr;
       }},
      {"AddRecordChangeListener", false,
       [](Table& t) { return Counted([&] { return t.records[0]->AddRecordChangeListener(t.visitor.get()); }); }},
      {"SetValueAsString heard by the record's listener", false,
       [](Table& t) { return SetText(t, 0, 0, OLESTR("beta")); }},
      {"RemoveRecordChangeListener", false,
       [](Table& t) { return Counted([&] { return t.records[0]->RemoveRecordChangeListener(t.visitor.get()); }); }},
      {"record events off", false,
       [](Table& t) { return Counted([&] { return t.records[1]->EnableMutableRecordEvents(VARIANT_FALSE); }); }},
      {"SetValueAsInt32 unheard", false,
       [](Table& t) { return Counted([&] { return t.records[1]->SetValueAsInt32(2, 8); }); }},
      {"record events on", false,
       [](Table& t) { return Counted([&] { return t.records[1]->EnableMutableRecordEvents(VARIANT_TRUE); }); }},
      {"column events off", false,
       [](Table& t) { return Counted([&] { return t.columns->EnableMutableColumnsEvents(VARIANT_FALSE); }); }},
      {"AddColumn unheard", false, [](Table& t) { return AddColumn(t, OLESTR("Late"), 4); }},
      {"AddColumn Scratch unheard", false, [](Table& t) { return AddColumn(t, OLESTR("Scratch"), 1); }},
      {"put_ColumnName unheard", false, [](Table& t) { return Rename(t, OLESTR("Late"), OLESTR("Later")); }},
      {"RemoveColumn unheard", false, [](Table& t) { return RemoveColumn(t, OLESTR("Scratch")); }},
      {"column events on", false,
       [](Table& t) { return Counted([&] { return t.columns->EnableMutableColumnsEvents(VARIANT_TRUE); }); }},
      {"AddColumn Flag", false, [](Table& t) { return AddColumn(t, OLESTR("Flag"), 2); }},
      {"AddColumn Small", false, [](Table& t) { return AddColumn(t, OLESTR("Small"), 13); }},
      {"SetValueAsDouble", false,
       [](Table& t) { return Counted([&] { return t.records[0]->SetValueAsDouble(4, 2.5); }); }},
      {"SetValueAsBoolean", false,
       [](Table& t) { return Counted([&] { return t.records[0]->SetValueAsBoolean(5, VARIANT_TRUE); }); }},
      {"SetValueAsInt16", false,
       [](Table& t) { return Counted([&] { return t.records[1]->SetValueAsInt16(5, 3); }); }},
      {"SetValueAsByte", false,
       [](Table& t) { return Counted([&] { return t.records[1]->SetValueAsByte(6, 200); }); }},
      {"AddPropertyChangeListener", false,
       [](Table& t) { return Counted([&] { return t.columns->AddPropertyChangeListener(t.visitor.get()); }); }},
      {"put_DisplayName heard by two", false,
       [](Table& t) { return Put(t, 1, &IMutableColumn::put_DisplayName, OLESTR("Town")); }},
      {"RemovePropertyChangeListener", false,
       [](Table& t) { return Counted([&] { return t.columns->RemovePropertyChangeListener(t.visitor.get()); }); }},
      {"AddRecordListValueChangeListener", false,
       [](Table& t) { return Counted([&] { return t.list->AddRecordListValueChangeListener(t.visitor.get()); }); }},
      {"SetValueAsInt32 heard by two", false,
       [](Table& t) { return Counted([&] { return t.records[0]->SetValueAsInt32(2, 12); }); }},
      {"RemoveRecordListValueChangeListener", false,
       [](Table& t) { return Counted([&] { return t.list->RemoveRecordListValueChangeListener(t.visitor.get()); }); }},
      {"list events off", false,
       [](Table& t) { return Counted([&] { return t.list->EnableMutableRecordListEvents(VARIANT_FALSE); }); }},
      {"SetValueAsInt32 unheard by the list", false,
       [](Table& t) { return Counted([&] { return t.records[0]->SetValueAsInt32(2, 6); }); }},
      {"list events on", false,
       [](Table& t) { return Counted([&] { return t.list->EnableMutableRecordListEvents(VARIANT_TRUE); }); }},
      {"AddRecordListChangeListener", false,
       [](Table& t) { return Counted([&] { return t.list->AddRecordListChangeListener(t.visitor.get()); }); }},
      {"AddRecord third", false, AddRecord},
      {"RemoveRecordListChangeListener", false,
       [](Table& t) { return Counted([&] { return t.list->RemoveRecordListChangeListener(t.visitor.get()); }); }},
      {"AddColumnsChangeListener", false,
       [](Table& t) { return Counted([&] { return t.columns->AddColumnsChangeListener(t.visitor.get()); }); }},
      {"RemoveColumnsChangeListener", false,
       [](Table& t) { return Counted([&] { return t.columns->RemoveColumnsChangeListener(t.visitor.get()); }); }},
      {"sorted iterator", true,
       [](Table& t) {
         const auto comparator = make_object<TextComparator>(0);
         com_ptr<IRecordListIterator> iterator;
         const HRESULT hr =
             Counted([&] { return t.list->GetSortedIterator(comparator.get(), VARIANT_FALSE, iterator.put()); });
         return FAILED(hr) ? hr : Walk(iterator.get());
       }},
      {"filtered iterator", true,
       [](Table& t) {
         const auto condition = make_object<CellCondition>(2, 8);
         return Counted([&] { return t.list->GetFilteredIterator(condition.get(), VARIANT_TRUE, t.iterator.put()); });
       }},
      {"iterator Next", true,
       [](Table& t) {
         com_ptr<IDispatch> record;
         return Counted([&] { return t.iterator->Next(record.put()); });
       }},
      {"iterator Remove", false, [](Table& t) { return Counted([&] { return t.iterator->Remove(); }); }},
      {"unsynchronized iterator Remove", false,
       [](Table& t) {
         com_ptr<IRecordListIterator> iterator;
         com_ptr<IDispatch> record;
         return All({[&] { return t.list->GetIterator(VARIANT_FALSE, iterator.put()); },
                     [&] { return iterator->Next(record.put()); }, [&] { return iterator->Remove(); }});
       }},
      {"GetRecordListByGroup", false,
       [](Table& t) {
         const auto utils = make_object<RecordListUtils>();
         const _bstr_t group(OLESTR("Address"));
         const HRESULT hr =
             Counted([&] { return utils->GetRecordListByGroup(t.groupView.get(), group.GetBSTR(), t.grouped.put()); });
         if (FAILED(hr)) t.grouped.reset();  // what a failed call hands out means nothing
         return hr;
       }},
      {"SetValue heard by the grouped list", false,
       [](Table& t) {
         const _bstr_t text(OLESTR("Oslo"));
         return Counted([&] { return t.groupRecord->SetValueAsString(0, text.GetBSTR()); });
       }},
      {"AddColumn in the group", false,
       [](Table& t) {
         const _bstr_t name(OLESTR("Address.Street"));
         com_ptr<IMutableColumn> column;
         return Counted([&] { return t.groupColumns->AddColumn(name.GetBSTR(), 1, column.put()); });
       }},
      {"RemoveColumn in the group", false,
       [](Table& t) { return Counted([&] { return t.groupColumns->RemoveColumn(2); }); }},
      {"grouped list let go", false, [](Table& t) { return t.LetGroupedGo(); }},
      {"GetMutableRecordListByGroup", false,
       [](Table& t) {
         const auto utils = make_object<RecordListUtils>();
         const _bstr_t group(OLESTR("Address"));
         const HRESULT hr = Counted([&] {
           return utils->GetMutableRecordListByGroup(t.groupSource.get(), group.GetBSTR(), t.mutableGrouped.put());
         });
         if (FAILED(hr)) t.mutableGrouped.reset();
         return hr;
       }},
      {"AddRecord through the grouped list", false,
       [](Table& t) {
         com_ptr<IMutableRecord> record;
         return Counted([&] { return t.mutableGrouped->AddRecord(record.put()); });
       }},
      {"SetValue through a grouped record", false,
       [](Table& t) {
         com_ptr<IRecordListIterator> iterator;
         t.mutableGrouped->GetIterator(VARIANT_FALSE, iterator.put());
         com_ptr<IDispatch> next;
         iterator->Next(next.put());
         const auto record = next.query<IMutableRecord>();
         const _bstr_t text(OLESTR("Bergen"));
         return Counted([&] { return record->SetValueAsString(1, text.GetBSTR()); });
       }},
      {"mutable grouped list let go", false, [](Table& t) { return t.LetMutableGroupedGo(); }},
      {"list Clear", false, [](Table& t) { return Counted([&] { return t.list->Clear(); }); }},
      {"columns Clear", false, [](Table& t) { return Counted([&] { return t.columns->Clear(); }); }},
  };
  return steps;
}

// What a reader may answer besides success and the two out-of-memory results.
bool IsOwnRefusal(const Step& step, HRESULT hr) { return step.reads && hr == DISP_E_EXCEPTION; }

struct Outcome {
  HRESULT hr;
  bool fired;
  bool inRuntime;  // the failed allocation was the runtime's
  Table::Sections state;
  std::vector<std::string> heard;
};

// Runs the steps before `index` unhindered, then step `index` with the k-th
// allocation failing (k = 0: none); `read` sees the table afterwards.
HRESULT RunPoint(std::size_t index, long k, const std::function<void(Table&, HRESULT)>& read) {
  const auto& steps = Workload();
  Table table;
  for (std::size_t i = 0; i < index; ++i) EXPECT_EQ(steps[i].run(table), S_OK) << steps[i].name;
  if (read) read(table, S_OK);
  table.heard.clear();
  ClearErrorInfo();
  if (k > 0) AllocationCountdown::Arm(k);
  HRESULT hr;
  {
    const PausedCountdown paused;
    hr = steps[index].run(table);
  }
  AllocationCountdown::Disarm();
  if (read) read(table, hr);
  ClearErrorInfo();
  return hr;
}

Outcome Observe(std::size_t index, long k, Table::Sections* before = nullptr) {
  Outcome outcome{};
  outcome.hr = RunPoint(index, k, [&](Table& table, HRESULT hr) {
    if (before != nullptr && before->empty()) {
      *before = table.State();
      return;
    }
    outcome.fired = AllocationCountdown::Fired();
    outcome.inRuntime = AllocationCountdown::FiredInRuntime();
    outcome.state = table.State();
    outcome.heard = table.heard;
    // E_UNEXPECTED has no error info of its own; one a listener passed on reads
    // "Unknown Error".
    if (const ErrorSnapshot info = TakeErrorInfo(); hr == E_UNEXPECTED && info.present) {
      EXPECT_EQ(info.description, "Unknown Error") << Workload()[index].name << ", allocation " << k;
    }
  });
  return outcome;
}

// The same run again, reading nothing: every object and block it made is gone
// with the table.
bool Leaks(std::size_t index, long k) {
  const long blocks = AllocationCountdown::LiveBlocks();
  RunPoint(index, k, nullptr);
  return ModuleLock::Count() != 0 || AllocationCountdown::LiveBlocks() != blocks;
}

bool IsPrefix(const std::vector<std::string>& part, const std::vector<std::string>& whole) {
  return part.size() <= whole.size() && std::equal(part.begin(), part.end(), whole.begin());
}

std::string Joined(const Table::Sections& sections) {
  std::string text;
  for (const auto& section : sections) text += section;
  return text;
}

// The notifications heard up to the first "After" one.
std::vector<std::string> BeforeNotifications(const std::vector<std::string>& heard) {
  std::vector<std::string> lines;
  for (const auto& line : heard) {
    if (line.find("After") != std::string::npos) break;
    lines.push_back(line);
  }
  return lines;
}

bool HeardAfter(const std::vector<std::string>& heard) { return BeforeNotifications(heard).size() < heard.size(); }

// A success is the clean run exactly. A failure either changed nothing and
// announced no change, or failed while announcing it: every "Before"
// notification was heard, the rest heard are the clean run's next ones, and
// each object is as after the change or, a listening object whose own
// handling failed (a grouped view), as before it.
bool Whole(const Outcome& point, const Table::Sections& before, const Outcome& clean) {
  if (SUCCEEDED(point.hr)) return point.state == clean.state && point.heard == clean.heard;
  if (point.state == before && !HeardAfter(point.heard)) return true;
  if (!IsPrefix(point.heard, clean.heard) || !IsPrefix(BeforeNotifications(clean.heard), point.heard)) return false;
  for (std::size_t i = 0; i < point.state.size(); ++i) {
    if (point.state[i] != before[i] && point.state[i] != clean.state[i]) return false;
  }
  return true;
}

TEST(AllocationSweep, EveryFailedAllocationLeavesTheTableWholeAndLeaksNothing) {
  if (!AllocationCountdown::RuntimeHooked()) {
    GTEST_SKIP() << "the runtime's allocations cannot be made to fail here";
  }
  Observe(0, 0);  // first-use allocations of the test machinery
  long points = 0, runtimePoints = 0, inconsistent = 0, leaking = 0;
  for (std::size_t index = 0; index < Workload().size(); ++index) {
    const Step& step = Workload()[index];
    Table::Sections before;
    const Outcome clean = Observe(index, 0, &before);
    ASSERT_EQ(clean.hr, S_OK) << step.name;
    for (long k = 1;; ++k) {
      const Outcome point = Observe(index, k);
      if (!point.fired) break;
      ++points;
      if (point.inRuntime) ++runtimePoints;
      if (Leaks(index, k)) {
        ++leaking;
        ADD_FAILURE() << step.name << ", allocation " << k << ": something outlived the table";
      }
      // A string or copy the runtime could not make reads E_OUTOFMEMORY; a
      // C++ allocation reads E_UNEXPECTED, or E_OUTOFMEMORY where it made an
      // object the runtime would make.
      const bool allowed = point.hr == S_OK || point.hr == E_OUTOFMEMORY ||
                           (point.hr == E_UNEXPECTED && !point.inRuntime) || IsOwnRefusal(step, point.hr);
      if (!allowed || !Whole(point, before, clean)) {
        ++inconsistent;
        ADD_FAILURE() << step.name << ", allocation " << k << ": result 0x" << std::hex << point.hr << std::dec
                      << "\nbefore:\n" << Joined(before) << "now:\n" << Joined(point.state) << "clean run:\n"
                      << Joined(clean.state);
      }
    }
  }
  std::printf("allocation sweep: %ld points swept over %zu steps (%ld in the runtime's allocations), "
              "%ld inconsistent, %ld leaking, 0 crashing\n",
              points, Workload().size(), runtimePoints, inconsistent, leaking);
  EXPECT_GT(points, 0);
}

}  // namespace
}  // namespace brevo::testing
