#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::platform {

class SettingsText;

// The user's settings, a file of sections and keys (SettingsText tells its form) that people also edit by hand.
//
// Nothing is kept between calls: each one opens the file and closes it, so that another process's and the editor's
// changes are seen at once. A change reads, changes and replaces the file under a lock, so that processes that change
// different keys at once lose neither; it is on the disk when the call returns, and a cut leaves the old file or the
// new one. A file that is not there reads as empty and is made by the first change. Errors name the file.
class SettingsFile {
 public:
  explicit SettingsFile(std::string path) : path_(std::move(path)) {}

  const std::string& path() const { return path_; }

  std::optional<std::string> find(std::string_view section, std::string_view key) const;
  std::string text(std::string_view section, std::string_view key, std::string_view fallback = "") const;
  // 1, true, yes, on; 0, false, no, off; anything else is the fallback.
  bool flag(std::string_view section, std::string_view key, bool fallback) const;
  int number(std::string_view section, std::string_view key, int fallback) const;
  // As they are spelled, in the order of the file.
  std::vector<std::string> keys(std::string_view section) const;

  void setText(std::string_view section, std::string_view key, std::string_view value);
  void setFlag(std::string_view section, std::string_view key, bool value);
  void setNumber(std::string_view section, std::string_view key, int value);
  void remove(std::string_view section, std::string_view key);
  // Several changes that happen wholly or not at all. What `edit` raises leaves the file as it was.
  void change(const std::function<void(SettingsText&)>& edit);

 private:
  std::string path_;
};

}  // namespace quillon::platform
