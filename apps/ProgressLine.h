#pragma once

#include <cstddef>
#include <string>

namespace quillon::apps {

// How far long work has come: one line on standard error that is written over and over, and is gone at the end. Nothing
// is shown where standard error is no terminal.
class ProgressLine {
 public:
  ProgressLine() = default;
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;
  ~ProgressLine() { show(""); }

  void show(const std::string& text);

 private:
  static bool hasTerminal();

  const bool shown_ = hasTerminal();
  std::size_t width_ = 0;
};

}  // namespace quillon::apps
