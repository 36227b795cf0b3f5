#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

#include "base/Errors.h"
#include "bench/Bench.h"

namespace quillon::bench {
namespace {

struct Child {
  pid_t process;
  int from;
};

[[noreturn]] void runChild(int to, const std::function<double()>& work) {
  int status = 1;
  try {
    const double result = work();
    if (::write(to, &result, sizeof result) == sizeof result) status = 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "bench: %s\n", error.what());
  }
  ::_exit(status);
}

Child startChild(const std::function<double()>& work) {
  int ends[2];
  if (::pipe(ends) != 0) throw Error("No pipe can be made");
  const pid_t process = ::fork();
  if (process < 0) throw Error("No process can be made");
  if (process == 0) runChild(ends[1], work);
  ::close(ends[1]);
  return {process, ends[0]};
}

}  // namespace

std::vector<double> inProcesses(const std::vector<std::function<double()>>& works) {
  std::vector<Child> children;
  for (const auto& work : works) children.push_back(startChild(work));
  std::vector<double> results;
  for (const Child& child : children) {
    double result = 0;
    if (::read(child.from, &result, sizeof result) == sizeof result) results.push_back(result);
    ::close(child.from);
    ::waitpid(child.process, nullptr, 0);
  }
  if (results.size() != works.size()) throw Error("A process of the measurement failed");
  return results;
}

}  // namespace quillon::bench
