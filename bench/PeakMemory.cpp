#include "bench/PeakMemory.h"

#include <malloc.h>

#include <fstream>
#include <string>

#include "base/Errors.h"

namespace quillon::bench {

double peakMemory() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with("VmHWM:")) return std::stod(line.substr(6)) / 1024;
  throw Error("The system does not tell the memory of a process");
}

void forgetPeak() {
  ::malloc_trim(0);
  std::ofstream("/proc/self/clear_refs") << "5";
}

}  // namespace quillon::bench
