// Measures the screens through the same calls that a window makes, on a company with a million accounts and vouchers.
#include <cstdio>

#include "bench/Options.h"
#include "bench/PeakMemory.h"
#include "bench/Scratch.h"
#include "bench/forms/Office.h"

namespace quillon::bench {
namespace {

void runAll(int count, char** words) {
  const Options options = readOptions(count, words, "bench_forms", {"vouchers", "lists"});
  const Scratch scratch;
  const std::string folder = emptyFolder(scratch.path() + "/company");
  Report report(options.tabs);
  makeCompany(folder, options.rows);
  Office office(folder, report);
  forgetPeak();
  const double before = peakMemory();
  report.heading("Screens, medians, with what a window shows read each time");
  if (options.only != "lists") vouchers(office);
  if (options.only != "vouchers") lists(office, options.rows);
  report.add({.name = "memory", .ours = peakMemory() - before, .unit = "MiB", .note = "more than when it was opened"});
}

}  // namespace
}  // namespace quillon::bench

int main(int count, char** words) { return quillon::bench::exitStatus(count, words, quillon::bench::runAll); }
