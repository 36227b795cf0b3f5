#include "platform/HelpPages.h"

#include <cstdio>
#include <filesystem>

#include "base/Errors.h"

namespace quillon::platform {
namespace {

constexpr const char* kPlaces[] = {"docs/manual", "../share/doc/quillon/manual", "../docs/manual",
                                   "../../../docs/manual"};  // from build/KIND/bin

std::string fileName(int context) {
  char name[32];
  std::snprintf(name, sizeof name, "%03d.html", context);
  return name;
}

}  // namespace

std::string helpPage(const std::string& programFolder, int context) {
  for (const int page : {context, 0}) {
    for (const char* place : kPlaces) {
      const auto path = (std::filesystem::path(programFolder) / place / fileName(page)).lexically_normal();
      std::error_code ignored;
      if (std::filesystem::is_regular_file(path, ignored)) return path.string();
    }
  }
  throw Error("The manual is not installed beside the program in " + programFolder);
}

}  // namespace quillon::platform
