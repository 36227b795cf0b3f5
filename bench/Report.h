#pragma once

#include <optional>
#include <string>

namespace quillon::bench {

struct Figure {
  std::string name;
  double ours = 0;
  std::optional<double> theirs = {};  // none: there is nothing to compare with
  std::string unit = {};
  double aim = 0;  // the ratio that is wanted at most; 0: none is
  std::string note = {};
};

// Prints figures as they come: as a table, or name, ours, theirs and ratio with tabs between.
class Report {
 public:
  explicit Report(bool tabs) : tabs_(tabs) {}
  void heading(const std::string& text);  // of a table only
  void add(const Figure& figure);

 private:
  bool tabs_;
};

}  // namespace quillon::bench
