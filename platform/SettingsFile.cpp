#include "platform/SettingsFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <filesystem>
#include <thread>

#include "base/Text.h"
#include "platform/Descriptor.h"
#include "platform/ReplacementFile.h"
#include "platform/SettingsText.h"
#include "platform/SystemError.h"

namespace quillon::platform {
namespace {

struct Contents {
  std::string text;
  mode_t mode = 0600;  // of a file still to be made: folders of companies are nobody else's business
};

Contents contentsOf(const std::string& path) {
  Contents contents;
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file && errno == ENOENT) return contents;
  struct stat entry {};
  if (!file || ::fstat(file.get(), &entry) != 0) throw systemError("read", path, errno);
  contents.mode = entry.st_mode & 0777;
  std::array<char, 16384> buffer;
  for (;;) {
    const ssize_t count = ::read(file.get(), buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw systemError("read", path, errno);
    if (count == 0) return contents;
    contents.text.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

// Held while a change is made. A file of its own, since the settings file is replaced under the lock.
Descriptor lockBeside(const std::string& path) {
  using Clock = std::chrono::steady_clock;
  constexpr std::chrono::seconds kPatience{10};
  Descriptor lock(::open((path + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  if (!lock) throw systemError("save the settings in", path, errno);
  for (const auto end = Clock::now() + kPatience; ::flock(lock.get(), LOCK_EX | LOCK_NB) != 0;) {
    if (errno != EWOULDBLOCK && errno != EINTR) throw systemError("save the settings in", path, errno);
    if (Clock::now() > end)
      throw Error("Could not save the settings in '" + path + "': another program is saving them");
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return lock;
}

// What a link points to is the file that is replaced, and not the link.
std::string followed(const std::string& path) {
  std::error_code missing;
  const auto target = std::filesystem::canonical(path, missing);
  return missing ? std::filesystem::absolute(path).string() : target.string();
}

}  // namespace

std::optional<std::string> SettingsFile::find(std::string_view section, std::string_view key) const {
  return SettingsText(contentsOf(path_).text).find(section, key);
}

std::string SettingsFile::text(std::string_view section, std::string_view key, std::string_view fallback) const {
  return find(section, key).value_or(std::string(fallback));
}

bool SettingsFile::flag(std::string_view section, std::string_view key, bool fallback) const {
  const std::string value = text(section, key);
  for (const std::string_view word : {"1", "true", "yes", "on"})
    if (equalFolded(value, word)) return true;
  for (const std::string_view word : {"0", "false", "no", "off"})
    if (equalFolded(value, word)) return false;
  return fallback;
}

int SettingsFile::number(std::string_view section, std::string_view key, int fallback) const {
  const std::string value = text(section, key);
  int number = 0;
  const char* end = value.data() + value.size();
  const auto [stop, error] = std::from_chars(value.data(), end, number);
  return error == std::errc() && stop == end ? number : fallback;
}

std::vector<std::string> SettingsFile::keys(std::string_view section) const {
  return SettingsText(contentsOf(path_).text).keys(section);
}

void SettingsFile::setText(std::string_view section, std::string_view key, std::string_view value) {
  change([&](SettingsText& text) { text.set(section, key, value); });
}

void SettingsFile::setFlag(std::string_view section, std::string_view key, bool value) {
  setText(section, key, value ? "1" : "0");
}

void SettingsFile::setNumber(std::string_view section, std::string_view key, int value) {
  setText(section, key, std::to_string(value));
}

void SettingsFile::remove(std::string_view section, std::string_view key) {
  change([&](SettingsText& text) { text.remove(section, key); });
}

void SettingsFile::change(const std::function<void(SettingsText&)>& edit) {
  const std::string target = followed(path_);
  const Descriptor lock = lockBeside(target);
  const Contents before = contentsOf(target);
  SettingsText text(before.text);
  edit(text);
  const std::string after = text.contents();
  if (after == before.text) return;
  ReplacementFile file(target, target + ".new", before.mode);
  file.write(after);
  file.putInPlace();
  syncFolder(std::filesystem::path(target).parent_path().string());
}

}  // namespace quillon::platform
