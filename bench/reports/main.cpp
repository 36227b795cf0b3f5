// Pages of a general ledger's history to a PDF, beside libharu, and to a spreadsheet: the time, the memory beside the
// pages' own, the files' sizes, and how they grow when the lines double.
#include <cstdio>
#include <filesystem>
#include <functional>

#include "base/Errors.h"
#include "bench/Options.h"
#include "bench/PeakMemory.h"
#include "bench/Report.h"
#include "bench/Scratch.h"
#include "bench/Timing.h"
#include "bench/reports/History.h"
#include "bench/reports/Theirs.h"
#include "reports/WritePdf.h"
#include "reports/WriteSpreadsheet.h"

namespace quillon::bench {
namespace {

constexpr int kRounds = 5;

struct Cost {
  double seconds = 0, memory = 0, size = 0;  // MiB, MB
};
struct Costs {
  Cost ours, theirs, sheet;
};

double megabytes(const std::string& path) { return static_cast<double>(std::filesystem::file_size(path)) / 1e6; }

double memoryOf(const std::function<void()>& work) {
  forgetPeak();
  const double before = peakMemory();
  work();
  return peakMemory() - before;
}

std::vector<reports::Pen> pensOf(const reports::PreparedPages& pages) {
  std::vector<reports::Pen> pens;
  for (const reports::Page& page : pages.pages)
    for (const reports::Element& element : page.elements)
      if (element.kind == reports::Element::Kind::text) pens.push_back(penOf(element, page.textOf(element)));
  return pens;
}

Round timed(const std::function<void()>& work) {
  return [work](int, Stopwatch& watch) {
    watch.start();
    work();
    watch.stop();
    return std::int64_t{0};
  };
}

Costs measure(const reports::PreparedPages& pages, const std::string& folder) {
  const std::vector<reports::Pen> pens = pensOf(pages);
  const std::string ourPath = folder + "/ours.pdf", theirPath = folder + "/theirs.pdf";
  const auto ours = [&] { writePdf(pages, ourPath); };
  const auto theirs = [&] { writeTheirPdf(pages, pens, theirPath); };
  Costs costs;
  costs.ours.memory = memoryOf(ours);
  costs.theirs.memory = memoryOf(theirs);
  const Pair pair = alternate(kRounds, 1'000'000, timed(ours), timed(theirs));  // one operation is then in seconds
  costs.ours.seconds = pair.ours, costs.theirs.seconds = pair.theirs;
  const std::string sheetPath = folder + "/ours.xlsx";
  const auto sheet = [&] { writeSpreadsheet(pages, sheetPath); };
  costs.sheet.memory = memoryOf(sheet);
  costs.sheet.seconds = alternate(kRounds, 1'000'000, timed(sheet), timed([] {})).ours;
  costs.sheet.size = megabytes(sheetPath);
  costs.ours.size = megabytes(ourPath), costs.theirs.size = megabytes(theirPath);
  return costs;
}

void run(int count, char** words) {
  const Options options = readOptions(count, words, "bench_reports", {}, 100'000);
  const Scratch scratch;
  Report report(options.tabs);
  Costs before;
  for (const std::int64_t lines : {options.rows, 2 * options.rows}) {
    const reports::PreparedPages pages = ledgerHistory(lines);
    const Costs costs = measure(pages, scratch.path());
    report.heading(std::to_string(lines) + " lines on " + std::to_string(pages.pageCount()) + " pages");
    const std::string of = "." + std::to_string(lines);
    report.add({"pdf" + of, costs.ours.seconds, costs.theirs.seconds, "s", 1});
    report.add({"pdf memory" + of, costs.ours.memory, costs.theirs.memory, "MiB", 1});
    report.add({"pdf size" + of, costs.ours.size, costs.theirs.size, "MB", 1});
    report.add({"xlsx" + of, costs.sheet.seconds, {}, "s"});
    report.add({"xlsx memory" + of, costs.sheet.memory, {}, "MiB"});
    report.add({"xlsx size" + of, costs.sheet.size, {}, "MB"});
    if (lines > options.rows) {
      report.add({"pdf growth", costs.ours.seconds / before.ours.seconds, {}, "times for twice the lines"});
      report.add({"xlsx growth", costs.sheet.seconds / before.sheet.seconds, {}, "likewise"});
    }
    before = costs;
  }
}

}  // namespace
}  // namespace quillon::bench

int main(int count, char** words) {
  try {
    quillon::bench::run(count, words);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
