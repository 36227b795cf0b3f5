// A general ledger's history, from its table to pages, and these to a PDF, beside libharu, and to a spreadsheet: the
// time, the memory beside what was there before, the files' sizes, and how they grow when the lines double. Then the
// ledger's standing reports over the books of years.
#include <cstdio>
#include <filesystem>
#include <functional>

#include "base/Errors.h"
#include "bench/Options.h"
#include "bench/PeakMemory.h"
#include "bench/Report.h"
#include "bench/Scratch.h"
#include "bench/Timing.h"
#include "bench/forms/Office.h"
#include "bench/reports/Books.h"
#include "bench/reports/History.h"
#include "bench/reports/Theirs.h"
#include "reports/Pages.h"
#include "reports/WritePdf.h"
#include "reports/WriteSpreadsheet.h"

namespace quillon::bench {
namespace {

constexpr int kRounds = 5;

struct Cost {
  double seconds = 0, memory = 0, size = 0;  // MiB, MB
};
struct Costs {
  Cost layout, ours, theirs, sheet;
  double firstPage = 0;  // milliseconds
};

double megabytes(const std::string& path) { return static_cast<double>(std::filesystem::file_size(path)) / 1e6; }

double memoryOf(const std::function<void()>& work) {
  forgetPeak();
  const double before = peakMemory();
  work();
  return peakMemory() - before;
}

Round timed(const std::function<void()>& work) {
  return [work](int, Stopwatch& watch) {
    watch.start();
    work();
    watch.stop();
    return std::int64_t{0};
  };
}

std::vector<reports::Pen> pensOf(const reports::PreparedPages& pages) {
  std::vector<reports::Pen> pens;
  for (const reports::Page& page : pages.pages)
    for (const reports::Element& element : page.elements)
      if (element.kind == reports::Element::Kind::text) pens.push_back(penOf(element, page.textOf(element)));
  return pens;
}

// Lays out all pages; the last round's are kept.
std::shared_ptr<reports::PreparedPages> layOut(shell::Session& session, Costs& costs) {
  std::shared_ptr<form::PageSource> pages;
  const auto first = [&] { startHistory(session)->step(); };
  const auto all = [&] {
    pages.reset();
    const std::unique_ptr<form::PageRun> run = startHistory(session);
    while (run->step()) {
    }
    pages = run->pages();
  };
  costs.layout.memory = memoryOf(all);
  costs.layout.seconds = alternate(kRounds, 1'000'000, timed(all), timed([] {})).ours;
  costs.firstPage = alternate(kRounds, 1'000, timed(first), timed([] {})).ours;
  return std::static_pointer_cast<reports::PreparedPages>(pages);
}

void write(const reports::PreparedPages& pages, const std::string& folder, Costs& costs) {
  const std::vector<reports::Pen> pens = pensOf(pages);
  const std::string ourPath = folder + "/ours.pdf", theirPath = folder + "/theirs.pdf";
  const auto ours = [&] { writePdf(pages, ourPath); };
  const auto theirs = [&] { writeTheirPdf(pages, pens, theirPath); };
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
}

void history(const std::string& scratch, std::int64_t rows, Report& report) {
  Costs before;
  for (const std::int64_t lines : {rows, 2 * rows}) {
    const std::string company = emptyFolder(scratch + "/company");
    makeHistory(company, lines);
    Office office(company, report);
    Costs costs;
    const auto pages = layOut(office.session, costs);
    write(*pages, scratch, costs);
    report.heading(std::to_string(lines) + " lines on " + std::to_string(pages->pageCount()) + " pages");
    const std::string of = "." + std::to_string(lines);
    report.add({"first page" + of, costs.firstPage, {}, "ms"});
    report.add({"pages" + of, costs.layout.seconds, {}, "s"});
    report.add({"pages memory" + of, costs.layout.memory, {}, "MiB"});
    report.add({"pdf" + of, costs.ours.seconds, costs.theirs.seconds, "s", 1});
    report.add({"pdf memory" + of, costs.ours.memory, costs.theirs.memory, "MiB", 1});
    report.add({"pdf size" + of, costs.ours.size, costs.theirs.size, "MB", 1});
    report.add({"xlsx" + of, costs.sheet.seconds, {}, "s"});
    report.add({"xlsx memory" + of, costs.sheet.memory, {}, "MiB"});
    report.add({"xlsx size" + of, costs.sheet.size, {}, "MB"});
    if (lines > rows) {
      report.add({"pages growth", costs.layout.seconds / before.layout.seconds, {}, "times for twice the lines"});
      report.add({"pdf growth", costs.ours.seconds / before.ours.seconds, {}, "likewise"});
      report.add({"xlsx growth", costs.sheet.seconds / before.sheet.seconds, {}, "likewise"});
    }
    before = costs;
  }
}

void books(const std::string& scratch, std::int64_t rows, Report& report) {
  report.heading("statement, trial balance and general ledger");
  const BooksCosts one = measureBooks(scratch, rows, report), two = measureBooks(scratch, 2 * rows, report);
  report.add({"statement growth", two.statement / one.statement, {}, "times for twice the accounts"});
  report.add({"trial balance growth", two.trialBalance / one.trialBalance, {}, "likewise"});
  report.add({"general ledger growth", two.ledger / one.ledger, {}, "times for twice the lines and accounts"});
}

void run(int count, char** words) {
  const Options options = readOptions(count, words, "bench_reports", {"history", "books"}, 100'000);
  const Scratch scratch;
  Report report(options.tabs);
  if (options.only != "books") history(scratch.path(), options.rows, report);
  if (options.only != "history") books(scratch.path(), options.rows, report);
}

}  // namespace
}  // namespace quillon::bench

int main(int count, char** words) { return quillon::bench::exitStatus(count, words, quillon::bench::run); }
