// Measures our table store beside an embedded SQL engine's C API: the same rows and indexes, a cache of the same size,
// the same machine and the same minutes. Figures are times; what counts is their ratio.
#include <cstdio>
#include <string_view>
#include <vector>

#include "bench/Bench.h"
#include "bench/Options.h"
#include "bench/Scratch.h"

namespace quillon::bench {
namespace {

struct Measurement {
  std::string_view name;
  void (*run)(Bench& bench);
};

constexpr Measurement kTable[] = {
    {"lookup-alone", lookupAlone},   {"lookup-held", lookupHeld}, {"walk-ordered", walkOrdered},
    {"insert-glhist", insertGlHist}, {"insert-5", insertFive},    {"insert-durable", insertDurable},
    {"update-money", updateMoney},   {"count-range", countRange}, {"goto-kth", goToKth},
    {"two-writers", twoWriters},
};
constexpr Measurement kBeside[] = {
    {"space", space}, {"memory", memory}, {"doubling", doubling}, {"maintain", maintain}};

std::vector<std::string_view> names() {
  std::vector<std::string_view> result;
  for (const Measurement& one : kTable) result.push_back(one.name);
  for (const Measurement& one : kBeside) result.push_back(one.name);
  return result;
}

void runAll(const Options& options) {
  const Scratch scratch;
  Report report(options.tabs);
  Bench bench(scratch.path(), options.rows, report);
  const auto run = [&](const Measurement& one) {
    if (options.only.empty() || options.only == one.name) one.run(bench);
  };
  report.heading("Time for one operation, medians; ! is above the aim");
  for (const Measurement& one : kTable) run(one);
  report.heading("Beside the times");
  for (const Measurement& one : kBeside) run(one);
}

}  // namespace
}  // namespace quillon::bench

int main(int count, char** words) {
  try {
    using namespace quillon::bench;
    runAll(readOptions(count, words, "bench_store", names()));
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
