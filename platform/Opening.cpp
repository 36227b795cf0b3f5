#include "platform/Opening.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

#include "base/Errors.h"
#include "base/Text.h"

namespace quillon::platform {
namespace {

constexpr std::string_view kSchemes[] = {"http:", "https:", "mailto:", "file:"};
constexpr std::chrono::seconds kTaken{2};
constexpr std::size_t kLongest = 131071;  // that the system passes to a program as one argument

bool isLink(const std::string& target) {
  const bool clean = std::none_of(target.begin(), target.end(), [](unsigned char c) { return c <= ' ' || c == 0x7F; });
  return clean && std::any_of(std::begin(kSchemes), std::end(kSchemes),
                              [&](std::string_view scheme) { return startsWithFolded(target, scheme); });
}

// Absolute, so that no name can look like an option or a link.
std::string openable(const std::string& target) {
  if (target.size() > kLongest)
    throw Error("The link cannot be opened: it has " + std::to_string(target.size()) + " characters, and at most " +
                std::to_string(kLongest) + " can be passed on");
  if (isLink(target)) return target;
  std::error_code ignored;
  if (target.empty() || !std::filesystem::exists(target, ignored))
    throw Error("'" + target + "' cannot be opened: it is neither a file nor a link");
  return std::filesystem::absolute(target).string();
}

}  // namespace

void Opening::open(const std::string& target) {
  std::erase_if(running_, [](DetachedProgram& program) { return program.wait({}).has_value(); });
  auto program = DetachedProgram::start({"xdg-open", openable(target)});
  if (!program)
    throw Error("To open '" + target +
                "' the program 'xdg-open' is needed, which is not installed (package xdg-utils)");
  const auto status = program->wait(kTaken);
  if (!status)
    running_.push_back(*program);
  else if (*status != 0)
    throw Error("'" + target + "' could not be opened: the desktop has no program for it, or the program failed");
}

}  // namespace quillon::platform
