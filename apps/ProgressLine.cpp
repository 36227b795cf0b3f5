#include "apps/ProgressLine.h"

#include <unistd.h>

#include <iostream>

namespace quillon::apps {

bool ProgressLine::hasTerminal() { return ::isatty(STDERR_FILENO) == 1; }

void ProgressLine::show(const std::string& text) {
  if (!shown_) return;
  std::cerr << '\r' << std::string(width_, ' ') << '\r' << text << std::flush;
  width_ = text.size();
}

}  // namespace quillon::apps
