// Measures our statements beside an embedded SQL engine's C API: the same rows and indexes, a cache of the same size,
// the same machine and the same minutes. Figures are times; what counts is their ratio.
#include <cstdio>
#include <string_view>
#include <vector>

#include "bench/Options.h"
#include "bench/Scratch.h"
#include "bench/sql/Compare.h"

namespace quillon::bench {
namespace {

struct Measurement {
  std::string_view name;
  void (*run)(Bench& bench);
};

constexpr Measurement kTable[] = {{"group-sum", groupSum},
                                  {"join-3", joinThree},
                                  {"top-1", topOne},
                                  {"in-select", inSelect},
                                  {"not-in-delete", notInDelete},
                                  {"update-100k", updateRange},
                                  {"order-nocase", orderNocase},
                                  {"aged", aged},
                                  {"filter", filtered}};

void runAll(int count, char** words) {
  std::vector<std::string_view> names;
  for (const Measurement& one : kTable) names.push_back(one.name);
  const Options options = readOptions(count, words, "bench_sql", names);
  const Scratch scratch;
  Report report(options.tabs);
  Bench bench(scratch.path(), options.rows, report);
  report.heading("Time for one statement, medians; ! is above the aim");
  for (const Measurement& one : kTable)
    if (options.only.empty() || options.only == one.name) one.run(bench);
}

}  // namespace
}  // namespace quillon::bench

int main(int count, char** words) { return quillon::bench::exitStatus(count, words, quillon::bench::runAll); }
