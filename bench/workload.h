// What every implementation is measured on: one table of N rows over eight
// columns, the same values everywhere, the eight workloads, and the checksum
// that shows each implementation did the whole of the work.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "bench/memory.h"
#include "core/bstr_t.h"

namespace bench {

enum class Kind { Integer, Real, Text, Boolean };

// 3 x 32-bit integer, 2 x double, 2 x string, 1 x boolean. Every name carries
// the group key, so one table serves all workloads, the grouped one included.
struct ColumnDef {
  const char* name;
  Kind kind;
};
inline constexpr int kColumns = 8;
extern const ColumnDef kColumnDefs[kColumns];
inline constexpr const char* kGroup = "Group";

// Column 0 is the row number (the filter keeps the even ones), column 1 the
// sort key (a scrambled row number, duplicates included).
inline constexpr int kIdColumn = 0;
inline constexpr int kKeyColumn = 1;

// The values, in neutral form; each implementation converts the strings to its
// own kind once, outside the timed code.
struct Dataset {
  std::size_t rows = 0;
  std::vector<std::int32_t> ints[3];
  std::vector<double> reals[2];
  std::vector<std::string> texts[2];
  std::vector<bool> flags;
};
const Dataset& DatasetOf(std::size_t rows);
// The dataset's strings of text column 0 or 1 as BSTRs, made once per size.
const std::vector<brevo::_bstr_t>& BstrTextsOf(std::size_t rows, int column);

enum class Workload { Build, BuildListened, Read, Walk, Filter, Sort, Grouped, LateBound };
inline constexpr Workload kWorkloads[] = {Workload::Build,  Workload::BuildListened, Workload::Read,
                                          Workload::Walk,   Workload::Filter,        Workload::Sort,
                                          Workload::Grouped, Workload::LateBound};
const char* NameOf(Workload workload);

// The client callbacks, shared by all implementations so that each runs the
// same decisions and counts the same calls.
struct KeepsEverySecond {
  std::uint64_t calls = 0;
  bool Keep(std::int32_t id) {
    ++calls;
    return id % 2 == 0;
  }
};
// Positive puts the first row first: ascending keys.
struct ByKey {
  std::uint64_t calls = 0;
  std::int32_t Compare(std::int32_t first, std::int32_t second) {
    ++calls;
    return first < second ? 1 : first > second ? -1 : 0;
  }
};

// An order-dependent hash of what a workload read (FNV-1a over 64-bit words).
class Checksum {
 public:
  void Add(std::uint64_t value) {
    hash_ ^= value;
    hash_ *= 0x100000001B3ull;
  }
  void AddInt(std::int64_t value) { Add(static_cast<std::uint64_t>(value)); }
  void AddReal(double value);
  void AddText(const char16_t* text, std::size_t length);
  void AddText(const char* utf8, std::size_t length);  // ASCII only, as the data is
  void AddBool(bool value) { Add(value ? 0xB001 : 0xB000); }
  // Rows in any order: the sum goes in last.
  void AddUnordered(std::int64_t value) { unordered_ += static_cast<std::uint64_t>(value); }
  std::uint64_t value() const;

 private:
  std::uint64_t hash_ = 0xCBF29CE484222325ull;
  std::uint64_t unordered_ = 0;
};

// Runs the timed body once per iteration and, untimed after it, `after` with
// the iteration number. Counts the allocations of the timed part and records
// the checksum of the first iteration.
class Runner {
 public:
  Runner(benchmark::State& state, Workload workload, const char* implementation, std::size_t rows)
      : state_(state), workload_(workload), implementation_(implementation), rows_(rows) {}
  std::size_t rows() const { return rows_; }
  template <class Body, class After>
  void Run(Body&& body, After&& after) {
    std::uint64_t allocations = 0;
    std::int64_t iteration = 0;
    for (auto _ : state_) {
      const std::uint64_t before = MallocCalls();
      body();
      allocations += MallocCalls() - before;
      state_.PauseTiming();
      after(iteration++);
      state_.ResumeTiming();
    }
    allocations_ += allocations;
    iterations_ += iteration;
  }
  template <class Body>
  void Run(Body&& body) {
    Run(std::forward<Body>(body), [](std::int64_t) {});
  }
  // The build workloads: build(table) fills a fresh table each pass. After
  // the first pass the heap it holds, the checksum readBack(table) gives and,
  // when counted is given, the notifications it counts per row are reported;
  // the table goes after every pass.
  template <class Table, class Build, class ReadBack>
  void RunBuild(Build&& build, ReadBack&& readBack, const std::uint64_t* counted) {
    const std::size_t before = BytesInUse();
    std::unique_ptr<Table> table;
    Run(
        [&] {
          table = std::make_unique<Table>();
          build(*table);
        },
        [&](std::int64_t iteration) {
          if (iteration == 0) {
            SetMemory(before);
            SetChecksum(readBack(*table));
            if (counted != nullptr) {
              SetCounter("events_per_row", static_cast<double>(*counted) / static_cast<double>(rows_));
            }
          }
          table.reset();
        });
  }

  // Times body(sum) on a fresh checksum each pass; the last pass's is reported.
  template <class Body>
  void RunSummed(Body&& body) {
    Checksum sum;
    Run([&] {
      sum = Checksum();
      body(sum);
    });
    SetChecksum(sum);
  }
  void SetChecksum(const Checksum& checksum) { checksum_ = checksum.value(); }
  void SetCounter(const char* name, double value) { state_.counters[name] = value; }
  // The counters and the checksum, once the workload is done.
  void Report();
  // Heap bytes per row held since `before` (a BytesInUse reading).
  void SetMemory(std::size_t before) {
    SetCounter("bytes_per_row", static_cast<double>(BytesInUse() - before) / static_cast<double>(rows_));
  }

 private:
  benchmark::State& state_;
  Workload workload_;
  const char* implementation_;
  std::size_t rows_;
  std::uint64_t checksum_ = 0;
  std::uint64_t allocations_ = 0;
  std::int64_t iterations_ = 0;
};

// The one table kept between workloads (each of N rows may take a gigabyte):
// asking for another drops the current one first.
void* CachedTable(const char* implementation, std::size_t rows);
void KeepTable(const char* implementation, std::size_t rows, std::shared_ptr<void> table);
void DropTable();
template <class T, class Make>
T& TableOf(const char* implementation, std::size_t rows, Make&& make) {
  if (void* table = CachedTable(implementation, rows)) return *static_cast<T*>(table);
  std::shared_ptr<T> made = make();
  T& result = *made;
  KeepTable(implementation, rows, std::move(made));
  return result;
}

// One implementation's workloads; a null entry is a workload it does not do.
using WorkloadFn = void (*)(Runner& run);
struct Implementation {
  const char* name;
  const char* (*version)();
  WorkloadFn workloads[std::size(kWorkloads)];
};
extern const Implementation kLibrary;
extern const Implementation kFloor;
extern const Implementation kQt;
extern const Implementation kSqlite;

// Checksums by workload, rows and implementation, compared after the run.
void RecordChecksum(Workload workload, std::size_t rows, const char* implementation, std::uint64_t value);
bool ChecksumsAgree();

}  // namespace bench
