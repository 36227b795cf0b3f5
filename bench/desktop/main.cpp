// Measures the windows, to the painted frame, on a company with a million accounts and vouchers. Without a display they
// are painted into memory.
#include <QApplication>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "bench/Options.h"
#include "bench/Scratch.h"
#include "bench/desktop/Windows.h"
#include "bench/forms/Office.h"

namespace quillon::bench {
namespace {

void runAll(int count, char** words) {
  const Options options = readOptions(count, words, "bench_desktop", {"start", "lists"});
  const Scratch scratch;
  const std::string folder = emptyFolder(scratch.path() + "/company");
  Report report(options.tabs);
  makeCompany(folder, options.rows);
  report.heading("Windows, medians, to the painted frame");
  if (options.only != "lists") starts(std::filesystem::read_symlink("/proc/self/exe"), folder, report);
  if (options.only == "start") return;
  const QApplication application(count, words);
  QApplication::setQuitOnLastWindowClosed(false);
  lists(folder, options.rows, report);
}

}  // namespace
}  // namespace quillon::bench

int main(int count, char** words) {
  ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
  ::setenv("QT_LOGGING_RULES", "*=false", 0);  // of what painting into memory cannot do
  try {
    if (count > 1 && std::strcmp(words[1], "--start") == 0) return quillon::bench::startOnce(count, words);
    quillon::bench::runAll(count, words);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
