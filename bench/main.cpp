// Registers every implementation's workloads, N by N (so that one table at a
// time is alive), runs them and fails when the checksums disagree.
//   brevo_bench [--sizes=10000,100000] [--repetitions=3] [benchmark flags]
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "bench/workload.h"

namespace {

std::vector<std::size_t> sizes = {10000, 100000, 1000000};
int repetitions = 3;

// Our own flags go before Google Benchmark sees the rest.
void TakeOwnFlags(int& argc, char** argv) {
  int kept = 1;
  for (int i = 1; i < argc; ++i) {
    if (std::strncmp(argv[i], "--sizes=", 8) == 0) {
      sizes.clear();
      for (const char* p = argv[i] + 8; *p != 0;) {
        char* end = nullptr;
        sizes.push_back(std::strtoull(p, &end, 10));
        p = *end == ',' ? end + 1 : end;
      }
    } else if (std::strncmp(argv[i], "--repetitions=", 14) == 0) {
      repetitions = std::atoi(argv[i] + 14);
    } else {
      argv[kept++] = argv[i];
    }
  }
  argc = kept;
}

void RegisterAll() {
  const bench::Implementation* implementations[] = {&bench::kLibrary, &bench::kFloor, &bench::kQt, &bench::kSqlite};
  for (const std::size_t rows : sizes) {
    for (const bench::Implementation* implementation : implementations) {
      for (std::size_t w = 0; w < std::size(bench::kWorkloads); ++w) {
        const bench::WorkloadFn fn = implementation->workloads[w];
        if (fn == nullptr) continue;
        const bench::Workload workload = bench::kWorkloads[w];
        const std::string name = std::string(bench::NameOf(workload)) + "/" + implementation->name;
        const char* implementationName = implementation->name;
        benchmark::RegisterBenchmark(name.c_str(),
                                     [=](benchmark::State& state) {
                                       bench::Runner run(state, workload, implementationName, rows);
                                       fn(run);
                                       run.Report();
                                     })
            ->Arg(static_cast<std::int64_t>(rows))
            ->Unit(benchmark::kMillisecond)
            // A million rows take seconds per pass: one pass is enough there.
            ->Repetitions(rows >= 1000000 ? 1 : repetitions);
      }
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  TakeOwnFlags(argc, argv);
  RegisterAll();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::AddCustomContext("compiler", "g++ " __VERSION__);
  for (const bench::Implementation* implementation : {&bench::kLibrary, &bench::kFloor, &bench::kQt, &bench::kSqlite}) {
    benchmark::AddCustomContext(std::string(implementation->name) + "_version", implementation->version());
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  bench::DropTable();
  return bench::ChecksumsAgree() ? 0 : 1;
}
