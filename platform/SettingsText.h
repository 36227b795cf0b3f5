#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::platform {

// The text of a settings file: "[section]" lines, "key=value" lines below them, comments that begin with ';' or '#'.
//
// Keeps every line that it is not asked to change as it stands: comments, blank lines, order, line ends, and lines that
// mean nothing. Case does not count in names. Where a name comes twice the first one counts.
// Blanks around a key or a value do not belong to it. What could not stand so (blanks or a quotation mark in front, a
// line end inside, and in a key '=', or ';', '#' or '[' in front) stands in quotation marks, with \" \\ \n \r inside.
class SettingsText {
 public:
  explicit SettingsText(std::string_view contents);

  std::optional<std::string> find(std::string_view section, std::string_view key) const;
  // As they are spelled, in the order of the text.
  std::vector<std::string> keys(std::string_view section) const;
  // Error for a section name that is empty or holds ']' or a line end.
  void set(std::string_view section, std::string_view key, std::string_view value);
  void remove(std::string_view section, std::string_view key);
  std::string contents() const;

 private:
  enum class Kind { other, section, entry };
  struct Line {
    std::string text;  // without its end
    std::string end;   // "\n", "\r\n", or nothing on a last line
    Kind kind = Kind::other;
    std::string name, value;
    std::size_t valueAt = 0;  // in text
  };

  static Line read(std::string_view text);
  std::size_t lineOf(std::string_view section, std::string_view key) const;
  void insert(std::size_t at, std::string_view text);

  std::vector<Line> lines_;
};

}  // namespace quillon::platform
