#include "bench/Options.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "base/Errors.h"
#include "bench/Timing.h"

namespace quillon::bench {

Options readOptions(int count, char** words, std::string_view program, const std::vector<std::string_view>& names,
                    std::int64_t rows) {
  Options options;
  options.rows = rows;
  for (int i = 1; i < count; ++i) {
    const std::string_view word = words[i];
    if (word == "--tsv") {
      options.tabs = true;
    } else if (word == "--cpu") {
      Stopwatch::clock = CLOCK_PROCESS_CPUTIME_ID;
    } else if (word == "--rows" && i + 1 < count) {
      options.rows = std::atoll(words[++i]);
    } else if (word == "--only" && i + 1 < count) {
      options.only = words[++i];
    } else {
      options.rows = 0;
    }
  }
  constexpr std::int64_t kLeastRows = 1000;
  const bool known = options.only.empty() || std::find(names.begin(), names.end(), options.only) != names.end();
  if (options.rows >= kLeastRows && known) return options;
  std::string usage = std::string(program) + " [--tsv] [--cpu] [--rows N] [--only NAME], N from 1000 up; names:";
  for (const std::string_view name : names) usage += " " + std::string(name);
  throw Error(usage);
}

int exitStatus(int count, char** words, void (*run)(int count, char** words)) {
  try {
    run(count, words);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}

}  // namespace quillon::bench
