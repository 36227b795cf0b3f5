#pragma once

#include <functional>
#include <memory>
#include <string>

namespace quillon::form {

class PageSource;
struct Open;

// A report at work: pages are laid out one after the other, so that the first can be looked at early.
class PageRun {
 public:
  virtual ~PageRun() = default;
  // Lays out the next page, if there is one; false when all are there.
  virtual bool step() = 0;
  // Those that are there; outlive the run.
  virtual std::shared_ptr<PageSource> pages() const = 0;
};

// How a report is found, as a screen is.
struct ReportEntry {
  std::string className;  // "TrptJVs"
  std::string screen;     // that it is asked for in, with the same right; empty: none
  // The run over the rows that are asked for.
  std::function<std::unique_ptr<PageRun>(const Open& open)> make;
};

}  // namespace quillon::form
