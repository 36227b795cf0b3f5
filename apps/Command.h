#pragma once

#include <span>
#include <stdexcept>
#include <string_view>

namespace quillon::apps {

// What quillonctl ends with.
enum class ExitStatus : int {
  done = 0,
  failed = 1,  // refused or failed
  usage = 2,   // called wrongly
};

// The words behind the command's name; they live as long as the program.
using Arguments = std::span<const std::string_view>;

// Raised by a command that was called wrongly; the message says what is wrong. The usage line is added to it.
class UsageError final : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// One word of the command line tool. `run` writes its answer to std::cout and nothing else; what went wrong it raises,
// or, when the answer itself says so, it returns `failed` after one line on std::cerr.
struct Command {
  std::string_view name;
  std::string_view arguments;  // as the usage shows them
  std::string_view purpose;
  ExitStatus (*run)(Arguments);
  std::string_view details;  // lines of its own help, behind the purpose
  // Of the options that every command may be given, those that it reads; it does not see the others.
  Arguments reads = {};
  bool hasOwnOptions = false;  // and refuses what it does not know itself
};

}  // namespace quillon::apps
