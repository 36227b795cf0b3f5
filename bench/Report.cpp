#include "bench/Report.h"

#include <cstdio>

namespace quillon::bench {
namespace {

constexpr const char* kNone = "-";

std::string number(double value, const char* format) {
  char text[64];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

const char* precision(double value) { return value >= 1000 ? "%.0f" : value >= 100 ? "%.1f" : "%.3f"; }

}  // namespace

void Report::heading(const std::string& text) {
  if (!tabs_)
    std::printf("%s\n%-24s %11s %11s %8s %6s  %s\n", text.c_str(), "", "ours", "theirs", "ratio", "aim", "unit");
  std::fflush(stdout);
}

void Report::add(const Figure& figure) {
  const std::string ours = number(figure.ours, precision(figure.ours));
  const std::string theirs = figure.theirs ? number(*figure.theirs, precision(*figure.theirs)) : kNone;
  const double ratio = figure.theirs && *figure.theirs > 0 ? figure.ours / *figure.theirs : 0;
  const std::string shown = ratio > 0 ? number(ratio, "%.3f") : kNone;
  const bool above = figure.aim > 0 && ratio > figure.aim;
  if (tabs_) {
    std::printf("%s\t%s\t%s\t%s\n", figure.name.c_str(), ours.c_str(), theirs.c_str(), shown.c_str());
  } else {
    const std::string aim = figure.aim > 0 ? number(figure.aim, "%.1f") : std::string();
    std::printf("%-24s %11s %11s %8s %5s%c  %s%s%s\n", figure.name.c_str(), ours.c_str(), theirs.c_str(), shown.c_str(),
                aim.c_str(), above ? '!' : ' ', figure.unit.c_str(), figure.note.empty() ? "" : "; ",
                figure.note.c_str());
  }
  std::fflush(stdout);
}

}  // namespace quillon::bench
