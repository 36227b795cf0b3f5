#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>

#include "platform/Descriptor.h"

namespace quillon::platform {

// Writes all of `bytes` or raises Error, which calls the file `name`.
void writeAll(const Descriptor& file, std::string_view bytes, const std::string& name);
// What was written to the file survives a power loss once this returns.
void syncFile(const Descriptor& file, const std::string& name);
// The same for names made, renamed and removed in the folder.
void syncFolder(const std::string& folder);

// New contents for a file, written beside it and put in its place whole or not at all: a reader, and the disk after a
// power loss, has either the old contents or the new ones. Two at once for one target must not be.
// Calls raise Error and then name the target.
class ReplacementFile {
 public:
  // Starts `beside` empty; it must lie on the target's disk.
  ReplacementFile(std::string target, std::string beside, mode_t mode = 0666);
  // Removes what was not put in place.
  ~ReplacementFile();
  ReplacementFile(const ReplacementFile&) = delete;
  ReplacementFile& operator=(const ReplacementFile&) = delete;

  void write(std::string_view bytes) { writeAll(file_, bytes, target_); }
  // Syncs and renames. The name is safe after syncFolder.
  void putInPlace();

 private:
  std::string target_, beside_;
  Descriptor file_;
  bool placed_ = false;
};

}  // namespace quillon::platform
