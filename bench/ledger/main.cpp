// Measures what the ledger's screens do with many rows, beside the same rows and statements on the other side.
#include <cstdio>
#include <string_view>
#include <vector>

#include "bench/Options.h"
#include "bench/Scratch.h"
#include "bench/ledger/Measurements.h"

namespace quillon::bench {
namespace {

struct Measurement {
  std::string_view name;
  void (*run)(LedgerBench& bench);
};

constexpr Measurement kTable[] = {{"bank", bank}, {"year-end", yearEnd}};
constexpr std::int64_t kRows = 100'000;  // where nothing else is said

void runAll(int count, char** words) {
  std::vector<std::string_view> names;
  for (const Measurement& one : kTable) names.push_back(one.name);
  std::vector<char*> all(words, words + count);
  std::string option = "--rows", rows = std::to_string(kRows);
  all.insert(all.begin() + 1, {option.data(), rows.data()});
  const Options options = readOptions(static_cast<int>(all.size()), all.data(), "bench_ledger", names);
  const Scratch scratch;
  Report report(options.tabs);
  LedgerBench bench{scratch.path(), options.rows, report};
  report.heading("Medians, with what a window shows read each time");
  for (const Measurement& one : kTable)
    if (options.only.empty() || options.only == one.name) one.run(bench);
}

}  // namespace
}  // namespace quillon::bench

int main(int count, char** words) { return quillon::bench::exitStatus(count, words, quillon::bench::runAll); }
