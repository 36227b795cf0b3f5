#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::bench {

struct Options {
  bool tabs = false;
  std::int64_t rows = 1'000'000;
  std::string only;  // one measurement's name; empty: all
};

// Reads a program's words; --cpu sets the clock of all stopwatches. Raises Error with the usage when they do not fit.
Options readOptions(int count, char** words, std::string_view program, const std::vector<std::string_view>& names,
                    std::int64_t rows = 1'000'000);

// What the program of a benchmark comes to: runs it, and tells an error in its words.
int exitStatus(int count, char** words, void (*run)(int count, char** words));

}  // namespace quillon::bench
