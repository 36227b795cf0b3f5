#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/ReplacementFile.h"

namespace quillon::reports {

// A file that a report is exported to. It appears whole at the end of `finish` or, after an error, not at all; until
// then an old file of this name stays as it is. Calls raise Error and then name the file.
class OutputFile {
 public:
  // Refuses a name that something other than a file has, and a file that the person may not write.
  explicit OutputFile(const std::string& path);

  void write(std::string_view bytes);
  // Of what was written so far.
  std::uint64_t size() const { return size_; }
  // Where the contents stand until the end, for a library that writes a file by its name.
  const std::string& unfinishedPath() const { return unfinished_; }
  void finish();

 private:
  std::string target_, unfinished_;
  platform::ReplacementFile file_;
  std::string buffer_;
  std::uint64_t size_ = 0;
};

}  // namespace quillon::reports
