// The floor: rows of VARIANT cells in a std::vector, with the copy in and the
// copy out and clear that the library's setters and getters make per access,
// and nothing else. What the library costs beyond this is the library.
#include <algorithm>
#include <map>

#include "bench/workload.h"
#include "core/bstr_t.h"
#include "core/unique_variant.h"

namespace bench {
namespace {

using brevo::_bstr_t;
using brevo::unique_variant;

using Row = std::vector<unique_variant>;
struct Table {
  std::vector<Row> rows;
};

// A change listener reached through a virtual call, told before and after.
struct Listener {
  virtual ~Listener() = default;
  virtual void Changed(std::size_t row, int column) = 0;
};
struct CountingListener final : Listener {
  void Changed(std::size_t, int) override { ++notifications; }
  std::uint64_t notifications = 0;
};

// A typed setter: the value made into a VARIANT and copied into the cell.
void Set(Row& row, std::size_t index, int column, const VARIANT& value, Listener* listener) {
  if (listener != nullptr) listener->Changed(index, column);
  row[static_cast<std::size_t>(column)] = unique_variant(value);
  if (listener != nullptr) listener->Changed(index, column);
}

void Build(Table& table, std::size_t rows, Listener* listener) {
  const Dataset& data = DatasetOf(rows);
  const std::vector<_bstr_t>* texts[] = {&BstrTextsOf(rows, 0), &BstrTextsOf(rows, 1)};
  VARIANT value;
  VariantInit(&value);
  for (std::size_t i = 0; i < rows; ++i) {
    Row& row = table.rows.emplace_back(kColumns);
    value.vt = VT_I4;
    for (int c = 0; c < 3; ++c) {
      value.lVal = data.ints[c][i];
      Set(row, i, c, value, listener);
    }
    value.vt = VT_R8;
    for (int c = 0; c < 2; ++c) {
      value.dblVal = data.reals[c][i];
      Set(row, i, 3 + c, value, listener);
    }
    value.vt = VT_BSTR;
    for (int c = 0; c < 2; ++c) {
      value.bstrVal = (*texts[c])[i].GetBSTR();
      Set(row, i, 5 + c, value, listener);
    }
    value.vt = VT_BOOL;
    value.boolVal = data.flags[i] ? VARIANT_TRUE : VARIANT_FALSE;
    Set(row, i, 7, value, listener);
  }
}

Table& CachedTable(std::size_t rows) {
  return TableOf<Table>("floor", rows, [&] {
    auto table = std::make_shared<Table>();
    Build(*table, rows, nullptr);
    return table;
  });
}

// A typed getter: a copy of the cell, read, then cleared.
LONG IntAt(const Row& row, int column) {
  const unique_variant copy(row[static_cast<std::size_t>(column)].get());
  return copy->vt == VT_I4 ? copy->lVal : 0;
}

void ReadCell(const Row& row, int column, Checksum& sum) {
  unique_variant copy(row[static_cast<std::size_t>(column)].get());
  switch (kColumnDefs[column].kind) {
    case Kind::Integer: sum.AddInt(copy->vt == VT_I4 ? copy->lVal : 0); break;
    case Kind::Real: sum.AddReal(copy->vt == VT_R8 ? copy->dblVal : 0.0); break;
    case Kind::Text: {
      // The string the caller owns is the copy's own.
      BSTR text = copy->vt == VT_BSTR ? copy.release().bstrVal : nullptr;
      sum.AddText(text, SysStringLen(text));
      SysFreeString(text);
      break;
    }
    case Kind::Boolean: sum.AddBool(copy->vt == VT_BOOL && copy->boolVal != VARIANT_FALSE); break;
  }
}

void ReadRow(const Row& row, Checksum& sum) {
  for (int c = 0; c < kColumns; ++c) ReadCell(row, c, sum);
}

void BuildWorkload(Runner& run, bool listened) {
  DropTable();
  const std::size_t rows = run.rows();
  BstrTextsOf(rows, 0), BstrTextsOf(rows, 1), DatasetOf(rows);
  CountingListener listener;
  run.RunBuild<Table>([&](Table& table) { Build(table, rows, listened ? &listener : nullptr); },
                      [](const Table& table) {
                        Checksum sum;
                        for (const Row& row : table.rows) ReadRow(row, sum);
                        return sum;
                      },
                      listened ? &listener.notifications : nullptr);
}

void BuildPlain(Runner& run) { BuildWorkload(run, false); }
void BuildListened(Runner& run) { BuildWorkload(run, true); }

void Read(Runner& run) {
  const Table& table = CachedTable(run.rows());
  run.RunSummed([&](Checksum& sum) {
    for (const Row& row : table.rows) ReadRow(row, sum);
  });
}

void Walk(Runner& run) {
  const Table& table = CachedTable(run.rows());
  run.RunSummed([&](Checksum& sum) {
    for (const Row& row : table.rows) sum.AddInt(IntAt(row, kIdColumn));
  });
}

void Filter(Runner& run) {
  const Table& table = CachedTable(run.rows());
  run.RunSummed([&](Checksum& sum) {
    KeepsEverySecond condition;
    std::vector<const Row*> kept;
    for (const Row& row : table.rows) {
      if (condition.Keep(IntAt(row, kIdColumn))) kept.push_back(&row);
    }
    for (const Row* row : kept) sum.AddInt(IntAt(*row, kIdColumn));
  });
}

void Sort(Runner& run) {
  const Table& table = CachedTable(run.rows());
  Checksum sum;
  std::uint64_t compares = 0;
  std::int64_t passes = 0;
  run.Run([&] {
    sum = Checksum();
    ByKey comparator;
    std::vector<const Row*> order;
    order.reserve(table.rows.size());
    for (const Row& row : table.rows) order.push_back(&row);
    std::sort(order.begin(), order.end(), [&](const Row* x, const Row* y) {
      return comparator.Compare(IntAt(*x, kKeyColumn), IntAt(*y, kKeyColumn)) > 0;
    });
    for (const Row* row : order) {
      sum.AddInt(IntAt(*row, kKeyColumn));
      sum.AddUnordered(IntAt(*row, kIdColumn));
    }
    compares += comparator.calls;
    ++passes;
  });
  run.SetChecksum(sum);
  run.SetCounter("compares_per_row", static_cast<double>(compares) / static_cast<double>(passes * run.rows()));
}

// A view of one column group: every read goes through its index map.
void Grouped(Runner& run) {
  const Table& table = CachedTable(run.rows());
  run.RunSummed([&](Checksum& sum) {
    std::vector<int> sourceColumn(kColumns);
    for (int c = 0; c < kColumns; ++c) sourceColumn[static_cast<std::size_t>(c)] = c;
    for (const Row& row : table.rows) {
      for (int c = 0; c < kColumns; ++c) ReadCell(row, sourceColumn[static_cast<std::size_t>(c)], sum);
    }
  });
}

const char* Version() { return "std::vector of VARIANT rows"; }

}  // namespace

const Implementation kFloor = {
    "floor", &Version, {&BuildPlain, &BuildListened, &Read, &Walk, &Filter, &Sort, &Grouped, nullptr}};

}  // namespace bench
