// Measures our table store beside an embedded SQL engine's C API: the same rows and indexes, a cache of the same size,
// the same machine and the same minutes. Figures are times; what counts is their ratio.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "base/Errors.h"
#include "bench/Bench.h"
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
constexpr Measurement kBeside[] = {{"space", space}, {"memory", memory}, {"doubling", doubling}};

struct Options {
  bool tabs = false;
  std::int64_t rows = 1'000'000;
  std::string only;
};

Options read(int count, char** words) {
  Options options;
  for (int i = 1; i < count; ++i) {
    const std::string_view word = words[i];
    if (word == "--tsv") {
      options.tabs = true;
    } else if (word == "--rows" && i + 1 < count) {
      options.rows = std::atoll(words[++i]);
    } else if (word == "--only" && i + 1 < count) {
      options.only = words[++i];
    } else {
      options.rows = 0;
    }
  }
  constexpr std::int64_t kLeastRows = 1000;
  bool known = options.only.empty();
  for (const Measurement& one : kTable) known |= one.name == options.only;
  for (const Measurement& one : kBeside) known |= one.name == options.only;
  if (options.rows >= kLeastRows && known) return options;
  std::string names;
  for (const Measurement& one : kTable) names += " " + std::string(one.name);
  for (const Measurement& one : kBeside) names += " " + std::string(one.name);
  throw Error("bench_store [--tsv] [--rows N] [--only NAME], N from 1000 up; names:" + names);
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
    quillon::bench::runAll(quillon::bench::read(count, words));
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
