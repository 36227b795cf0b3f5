#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

// Other programs, found on the path and started without a shell: an argument is passed as it stands, whatever is in it.
namespace quillon::platform {

// The name, then the arguments.
using CommandLine = std::vector<std::string>;

struct ProgramResult {
  int status = 0;      // as of exit(); 128 and the signal's number when a signal ended it
  std::string output;  // standard output and standard error, as they came
};

// Runs a program to its end, in English and without input. Null when there is no such program. One that takes longer
// than `patience` is killed and raises Error.
std::optional<ProgramResult> run(const CommandLine& command, std::chrono::milliseconds patience);

// A program that may go on when we end: in a session of its own, its output thrown away.
class DetachedProgram {
 public:
  // Null when there is no such program.
  static std::optional<DetachedProgram> start(const CommandLine& command);

  // The status it ended with; null when it has not ended after `patience`.
  std::optional<int> wait(std::chrono::milliseconds patience);

 private:
  explicit DetachedProgram(pid_t process) : process_(process) {}

  pid_t process_;
};

}  // namespace quillon::platform
