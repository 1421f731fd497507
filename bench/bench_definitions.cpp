// Reading gandrel.def at start-up: many die types (ranges and lists, names of
// a few lengths) or many always-add items. Times grow about in proportion to
// the file.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "app/modGandrel.h"
#include "dice/modDiceCalc.h"

namespace {

// A gandrel.def of n lines in a temporary file, removed at the end.
class DefinitionsFile {
 public:
  DefinitionsFile(long n, bool dieTypes) {
    char name[] = "/tmp/gandrel-bench-XXXXXX";
    int fd = mkstemp(name);
    if (fd >= 0) close(fd);
    path_ = name;
    std::ofstream file(path_, std::ios::binary);
    for (long i = 0; i < n; ++i) {
      if (!dieTypes) {
        file << i << "d6+" << i << "\r\n";
      } else if (i % 2) {
        file << "define dt" << i << " = 1 to " << i % 100 + 1 << "\r\n";
      } else {
        file << "define dl" << i << " = 1,2," << i << "\r\n";
      }
    }
  }
  ~DefinitionsFile() { std::remove(path_.c_str()); }
  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

void ReadMany(benchmark::State& state, bool dieTypes) {
  DefinitionsFile file(state.range(0), dieTypes);
  for (auto _ : state) {
    gandrel::ClearDieTypes();
    gandrel::AlwaysAddItems.assign(1, "");
    gandrel::ReadDefinitions(file.Path());
    benchmark::DoNotOptimize(gandrel::dieTypes.Define.size() + gandrel::AlwaysAddItems.size());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_ReadDefinitionsDieTypes(benchmark::State& state) {
  ReadMany(state, true);
}
void BM_ReadDefinitionsAlwaysAddItems(benchmark::State& state) {
  ReadMany(state, false);
}

BENCHMARK(BM_ReadDefinitionsDieTypes)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadDefinitionsAlwaysAddItems)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond);

}  // namespace
