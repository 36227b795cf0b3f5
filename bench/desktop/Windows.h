#pragma once

#include <cstdint>
#include <string>

#include "bench/Report.h"

namespace quillon::bench {

// From the start of a process to a main window that can be used, with the company in that folder, and the memory that
// it took. `program` is this one, which does in a new process what the program of the windows does.
void starts(const std::string& program, const std::string& folder, Report& report);
// That new process: prints when it was done, on the clock of Stopwatch's seconds, and its memory.
int startOnce(int count, char** words);

// A list of the company's accounts: on view, turned, and searched in, to the painted frame.
void lists(const std::string& folder, std::int64_t rows, Report& report);

}  // namespace quillon::bench
