// The library, called as a client calls it: through its interfaces, checking
// every result, releasing everything it is handed.
#include <cstdio>
#include <cstdlib>
#include <map>

#include "bench/workload.h"
#include "columns/mutable_columns.h"
#include "factory/record_list_utils.h"
#include "lists/mutable_record_list.h"

namespace bench {
namespace {

using brevo::_bstr_t;
using brevo::com_ptr;
using brevo::IMutableRecord;
using brevo::IMutableRecordList;

void Check(HRESULT hr) {
  if (FAILED(hr)) {
    std::fprintf(stderr, "library call failed: 0x%08X\n", static_cast<unsigned>(hr));
    std::abort();
  }
}

ULONG TypeCodeOf(Kind kind) {
  switch (kind) {
    case Kind::Integer: return 10;
    case Kind::Real: return 4;
    case Kind::Text: return 1;
    case Kind::Boolean: return 2;
  }
  return 0;
}

class CountingListener
    : public brevo::implements<CountingListener, brevo::IRecordListValueChangeListener> {
 public:
  static constexpr CLSID kClassId = {0x5E1A0C33, 0x0B7D, 0x4A41, {0x8E, 0x22, 0x61, 0x0F, 0x3C, 0x9B, 0x70, 0x01}};
  STDMETHODIMP ValueBeforeChange(brevo::IRecordListValueChangeEvent*) override {
    ++notifications;
    return S_OK;
  }
  STDMETHODIMP ValueAfterChange(brevo::IRecordListValueChangeEvent*) override {
    ++notifications;
    return S_OK;
  }
  std::uint64_t notifications = 0;
};

class EverySecond : public brevo::implements<EverySecond, brevo::IRecordCondition> {
 public:
  static constexpr CLSID kClassId = {0x5E1A0C33, 0x0B7D, 0x4A41, {0x8E, 0x22, 0x61, 0x0F, 0x3C, 0x9B, 0x70, 0x02}};
  STDMETHODIMP Evaluate(IMutableRecord* record, VARIANT_BOOL* result) override {
    LONG id = 0;
    const HRESULT hr = record->GetValueAsInt32(kIdColumn, &id);
    *result = logic.Keep(id) ? VARIANT_TRUE : VARIANT_FALSE;
    return hr;
  }
  KeepsEverySecond logic;
};

// The records arrive as IUnknown: a client asks each for its record interface.
class KeyComparator : public brevo::implements<KeyComparator, brevo::IRecordComparator> {
 public:
  static constexpr CLSID kClassId = {0x5E1A0C33, 0x0B7D, 0x4A41, {0x8E, 0x22, 0x61, 0x0F, 0x3C, 0x9B, 0x70, 0x03}};
  STDMETHODIMP Compare(VARIANT first, VARIANT second, LONG* result) override {
    *result = logic.Compare(KeyOf(first), KeyOf(second));
    return S_OK;
  }
  ByKey logic;

 private:
  static LONG KeyOf(const VARIANT& row) {
    com_ptr<IMutableRecord> record;
    Check(row.punkVal->QueryInterface(brevo::iid_of<IMutableRecord>(), record.put_void()));
    LONG key = 0;
    Check(record->GetValueAsInt32(kKeyColumn, &key));
    return key;
  }
};

struct Table {
  com_ptr<brevo::IMutableColumns> columns;
  com_ptr<IMutableRecordList> list;
  std::vector<com_ptr<IMutableRecord>> records;  // the client's own handles, for reading
};

void Build(Table& table, std::size_t rows, bool keepRecords, brevo::IRecordListValueChangeListener* listener) {
  const Dataset& data = DatasetOf(rows);
  const std::vector<_bstr_t>* texts[] = {&BstrTextsOf(rows, 0), &BstrTextsOf(rows, 1)};
  table.columns = com_ptr<brevo::IMutableColumns>(brevo::make_object<brevo::MutableColumns>().get());
  for (const ColumnDef& column : kColumnDefs) {
    com_ptr<brevo::IMutableColumn> added;
    Check(table.columns->AddColumn(_bstr_t(column.name).GetBSTR(), TypeCodeOf(column.kind), added.put()));
  }
  table.list = com_ptr<IMutableRecordList>(brevo::make_object<brevo::MutableRecordList>().get());
  Check(table.list->Create(table.columns.get()));
  if (listener != nullptr) Check(table.list->AddRecordListValueChangeListener(listener));
  if (keepRecords) table.records.reserve(rows);
  for (std::size_t i = 0; i < rows; ++i) {
    com_ptr<IMutableRecord> record;
    Check(table.list->AddRecord(record.put()));
    Check(record->SetValueAsInt32(0, data.ints[0][i]));
    Check(record->SetValueAsInt32(1, data.ints[1][i]));
    Check(record->SetValueAsInt32(2, data.ints[2][i]));
    Check(record->SetValueAsDouble(3, data.reals[0][i]));
    Check(record->SetValueAsDouble(4, data.reals[1][i]));
    Check(record->SetValueAsString(5, (*texts[0])[i].GetBSTR()));
    Check(record->SetValueAsString(6, (*texts[1])[i].GetBSTR()));
    Check(record->SetValueAsBoolean(7, data.flags[i] ? VARIANT_TRUE : VARIANT_FALSE));
    if (keepRecords) table.records.push_back(std::move(record));
  }
}

Table& CachedTable(std::size_t rows) {
  return TableOf<Table>("library", rows, [&] {
    auto table = std::make_shared<Table>();
    Build(*table, rows, true, nullptr);
    return table;
  });
}

// Every cell through the typed getters, in column order.
template <class Record>
void ReadRecord(Record* record, Checksum& sum) {
  for (ULONG c = 0; c < kColumns; ++c) {
    switch (kColumnDefs[c].kind) {
      case Kind::Integer: {
        LONG value = 0;
        Check(record->GetValueAsInt32(c, &value));
        sum.AddInt(value);
        break;
      }
      case Kind::Real: {
        double value = 0;
        Check(record->GetValueAsDouble(c, &value));
        sum.AddReal(value);
        break;
      }
      case Kind::Text: {
        BSTR value = nullptr;
        Check(record->GetValueAsString(c, &value));
        sum.AddText(value, SysStringLen(value));
        SysFreeString(value);
        break;
      }
      case Kind::Boolean: {
        VARIANT_BOOL value = VARIANT_FALSE;
        Check(record->GetValueAsBoolean(c, &value));
        sum.AddBool(value != VARIANT_FALSE);
        break;
      }
    }
  }
}

// The same reads by dispatch id (the mutable record's late-bound ids).
void ReadRecordLate(IDispatch* record, Checksum& sum) {
  for (ULONG c = 0; c < kColumns; ++c) {
    DISPID id = 0;
    switch (kColumnDefs[c].kind) {
      case Kind::Integer: id = 14; break;  // GetValueAsInt32
      case Kind::Real: id = 10; break;     // GetValueAsDouble
      case Kind::Text: id = 20; break;     // GetValueAsString
      case Kind::Boolean: id = 8; break;   // GetValueAsBoolean
    }
    VARIANT index;
    VariantInit(&index);
    index.vt = VT_I4;
    index.lVal = static_cast<LONG>(c);
    DISPPARAMS params = {&index, nullptr, 1, 0};
    VARIANT result;
    VariantInit(&result);
    Check(record->Invoke(id, GUID_NULL, 0, DISPATCH_METHOD, &params, &result, nullptr, nullptr));
    switch (result.vt) {
      case VT_I4: sum.AddInt(result.lVal); break;
      case VT_R8: sum.AddReal(result.dblVal); break;
      case VT_BSTR: sum.AddText(result.bstrVal, SysStringLen(result.bstrVal)); break;
      case VT_BOOL: sum.AddBool(result.boolVal != VARIANT_FALSE); break;
      default: Check(E_UNEXPECTED);
    }
    VariantClear(&result);
  }
}

// Walks an iterator to its end, handing each record to visit.
template <class Visit>
void Walk(brevo::IRecordListIterator* rows, Visit&& visit) {
  VARIANT_BOOL more = VARIANT_FALSE;
  while (true) {
    Check(rows->HasNext(&more));
    if (more == VARIANT_FALSE) break;
    com_ptr<IDispatch> next;
    Check(rows->Next(next.put()));
    com_ptr<IMutableRecord> record;
    Check(next->QueryInterface(brevo::iid_of<IMutableRecord>(), record.put_void()));
    visit(record.get());
  }
}

// The id of every row an iterator yields.
void SumIds(brevo::IRecordListIterator* rows, Checksum& sum) {
  Walk(rows, [&](IMutableRecord* record) {
    LONG id = 0;
    Check(record->GetValueAsInt32(kIdColumn, &id));
    sum.AddInt(id);
  });
}

Checksum ReadAll(const Table& table) {
  Checksum sum;
  com_ptr<brevo::IRecordListIterator> rows;
  Check(table.list->GetIterator(VARIANT_TRUE, rows.put()));
  Walk(rows.get(), [&](IMutableRecord* record) { ReadRecord(record, sum); });
  return sum;
}

void BuildWorkload(Runner& run, bool listened) {
  DropTable();
  const std::size_t rows = run.rows();
  BstrTextsOf(rows, 0), BstrTextsOf(rows, 1), DatasetOf(rows);
  const auto listener = brevo::make_object<CountingListener>();
  run.RunBuild<Table>([&](Table& table) { Build(table, rows, false, listened ? listener.get() : nullptr); },
                      [](const Table& table) { return ReadAll(table); },
                      listened ? &listener->notifications : nullptr);
}

void BuildPlain(Runner& run) { BuildWorkload(run, false); }
void BuildListened(Runner& run) { BuildWorkload(run, true); }

void Read(Runner& run) {
  Table& table = CachedTable(run.rows());
  run.RunSummed([&](Checksum& sum) {
    for (const auto& record : table.records) ReadRecord(record.get(), sum);
  });
}

void WalkRows(Runner& run) {
  Table& table = CachedTable(run.rows());
  run.RunSummed([&](Checksum& sum) {
    com_ptr<brevo::IRecordListIterator> rows;
    Check(table.list->GetIterator(VARIANT_TRUE, rows.put()));
    SumIds(rows.get(), sum);
  });
}

void Filter(Runner& run) {
  Table& table = CachedTable(run.rows());
  run.RunSummed([&](Checksum& sum) {
    const auto condition = brevo::make_object<EverySecond>();
    com_ptr<brevo::IRecordListIterator> rows;
    Check(table.list->GetFilteredIterator(condition.get(), VARIANT_TRUE, rows.put()));
    SumIds(rows.get(), sum);
  });
}

void Sort(Runner& run) {
  Table& table = CachedTable(run.rows());
  Checksum sum;
  std::uint64_t compares = 0;
  std::int64_t passes = 0;
  run.Run([&] {
    sum = Checksum();
    const auto comparator = brevo::make_object<KeyComparator>();
    com_ptr<brevo::IRecordListIterator> rows;
    Check(table.list->GetSortedIterator(comparator.get(), VARIANT_TRUE, rows.put()));
    Walk(rows.get(), [&](IMutableRecord* record) {
      LONG key = 0;
      LONG id = 0;
      Check(record->GetValueAsInt32(kKeyColumn, &key));
      Check(record->GetValueAsInt32(kIdColumn, &id));
      sum.AddInt(key);
      sum.AddUnordered(id);
    });
    compares += comparator->logic.calls;
    ++passes;
  });
  run.SetChecksum(sum);
  run.SetCounter("compares_per_row", static_cast<double>(compares) / static_cast<double>(passes * run.rows()));
}

void Grouped(Runner& run) {
  Table& table = CachedTable(run.rows());
  Checksum sum;
  com_ptr<IMutableRecordList> grouped;
  run.Run(
      [&] {
        sum = Checksum();
        const auto utils = brevo::make_object<brevo::RecordListUtils>();
        Check(utils->GetMutableRecordListByGroup(table.list.get(), _bstr_t(kGroup).GetBSTR(), grouped.put()));
        com_ptr<brevo::IRecordListIterator> rows;
        Check(grouped->GetIterator(VARIANT_TRUE, rows.put()));
        Walk(rows.get(), [&](IMutableRecord* record) { ReadRecord(record, sum); });
      },
      [&](std::int64_t) {
        // The grouped list and its source hold each other until it leaves
        // the source's registries.
        Check(table.list->RemoveRecordListChangeListener(grouped.query<brevo::IRecordListChangeListener>().get()));
        Check(table.list->RemoveRecordListValueChangeListener(
            grouped.query<brevo::IRecordListValueChangeListener>().get()));
        Check(table.columns->RemoveColumnsChangeListener(grouped.query<brevo::IColumnsChangeListener>().get()));
        grouped.reset();
      });
  run.SetChecksum(sum);
}

void LateBound(Runner& run) {
  Table& table = CachedTable(run.rows());
  run.RunSummed([&](Checksum& sum) {
    for (const auto& record : table.records) ReadRecordLate(record.get(), sum);
  });
}

const char* Version() { return "this checkout"; }

}  // namespace

const Implementation kLibrary = {
    "library", &Version, {&BuildPlain, &BuildListened, &Read, &WalkRows, &Filter, &Sort, &Grouped, &LateBound}};

}  // namespace bench
