#include "platform/SettingsText.h"

#include <algorithm>

#include "base/Errors.h"
#include "base/Text.h"

namespace quillon::platform {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string quoted(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') result += '\\';
    if (c == '\n')
      result += "\\n";
    else if (c == '\r')
      result += "\\r";
    else
      result += c;
  }
  return result + '"';
}

bool standsPlain(std::string_view text) {
  return trim(text).size() == text.size() && !text.starts_with('"') &&
         text.find_first_of("\n\r") == std::string_view::npos;
}

std::string writtenValue(std::string_view value) { return standsPlain(value) ? std::string(value) : quoted(value); }

std::string writtenKey(std::string_view key) {
  const bool plain = standsPlain(key) && !key.empty() && key.find('=') == std::string_view::npos &&
                     std::string_view(";#[").find(key.front()) == std::string_view::npos;
  return plain ? std::string(key) : quoted(key);
}

// Takes a quotation off the front of `text`; nothing, and `text` as it was, when it is none.
std::optional<std::string> takeQuoted(std::string_view& text) {
  if (!text.starts_with('"')) return std::nullopt;
  std::string result;
  for (std::size_t i = 1; i < text.size(); ++i) {
    char c = text[i];
    if (c == '"') {
      text.remove_prefix(i + 1);
      return result;
    }
    if (c == '\\' && i + 1 < text.size()) {
      c = text[++i];
      if (c == 'n') c = '\n';
      if (c == 'r') c = '\r';
    }
    result += c;
  }
  return std::nullopt;
}

std::string readValue(std::string_view text) {
  std::string_view rest = text = trim(text);
  const auto inside = takeQuoted(rest);
  return inside && rest.empty() ? *inside : std::string(text);
}

}  // namespace

SettingsText::Line SettingsText::read(std::string_view text) {
  Line line;
  line.text = text;
  std::string_view rest = text.starts_with(kByteOrderMark) ? text.substr(kByteOrderMark.size()) : text;
  rest = trim(rest);
  if (rest.empty() || rest.front() == ';' || rest.front() == '#') return line;
  if (rest.front() == '[') {
    const std::size_t close = rest.find(']');
    if (close == rest.npos) return line;
    line.kind = Kind::section;
    line.name = trim(rest.substr(1, close - 1));
    return line;
  }
  auto key = takeQuoted(rest);
  const std::size_t equals = rest.find('=');
  // Text between a quotation and the '=' means that the quotation marks are part of the key.
  if (equals == rest.npos || (key && !trim(rest.substr(0, equals)).empty())) return line;
  if (!key) key = trim(rest.substr(0, equals));
  line.kind = Kind::entry;
  line.name = *key;
  line.value = readValue(rest.substr(equals + 1));
  rest.remove_prefix(equals + 1);
  const std::string_view value = trim(rest);
  line.valueAt = static_cast<std::size_t>((value.empty() ? rest.data() : value.data()) - text.data());
  return line;
}

SettingsText::SettingsText(std::string_view contents) {
  while (!contents.empty()) {
    const std::size_t feed = contents.find('\n');
    std::string_view text = contents.substr(0, feed);
    contents.remove_prefix(feed == contents.npos ? contents.size() : feed + 1);
    std::string end = feed == contents.npos ? "" : "\n";
    if (text.ends_with('\r')) {
      text.remove_suffix(1);
      end = '\r' + end;
    }
    lines_.push_back(read(text));
    lines_.back().end = end;
  }
}

std::size_t SettingsText::lineOf(std::string_view section, std::string_view key) const {
  bool inside = false;
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const Line& line = lines_[i];
    if (line.kind == Kind::section) inside = equalFolded(line.name, section);
    if (line.kind == Kind::entry && inside && equalFolded(line.name, key)) return i;
  }
  return lines_.size();
}

std::optional<std::string> SettingsText::find(std::string_view section, std::string_view key) const {
  const std::size_t at = lineOf(section, key);
  if (at == lines_.size()) return std::nullopt;
  return lines_[at].value;
}

std::vector<std::string> SettingsText::keys(std::string_view section) const {
  std::vector<std::string> keys;
  bool inside = false;
  for (const Line& line : lines_) {
    if (line.kind == Kind::section) inside = equalFolded(line.name, section);
    if (line.kind != Kind::entry || !inside) continue;
    const auto same = [&](const std::string& key) { return equalFolded(key, line.name); };
    if (std::none_of(keys.begin(), keys.end(), same)) keys.push_back(line.name);
  }
  return keys;
}

void SettingsText::insert(std::size_t at, std::string_view text) {
  const std::string end = lines_.empty() || lines_.front().end.empty() ? "\n" : lines_.front().end;
  if (at > 0 && lines_[at - 1].end.empty()) lines_[at - 1].end = end;
  Line line = read(text);
  line.end = end;
  lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(at), line);
}

void SettingsText::set(std::string_view section, std::string_view key, std::string_view value) {
  if (trim(section).empty() || trim(section) != section || section.find_first_of("]\r\n") != section.npos)
    throw Error("'" + std::string(section) + "' is no name for a section of settings");
  const std::size_t at = lineOf(section, key);
  if (at < lines_.size()) {
    Line& line = lines_[at];
    if (line.value == value) return;
    const std::string end = line.end;
    line = read(line.text.substr(0, line.valueAt) + writtenValue(value));
    line.end = end;
    return;
  }
  // Behind the section's last line that says something, so that blank lines go on parting the sections.
  std::size_t place = 0;
  bool inside = false;
  for (std::size_t i = 0; i < lines_.size() && (inside || place == 0); ++i) {
    if (lines_[i].kind == Kind::section) inside = equalFolded(lines_[i].name, section);
    if (inside && !trim(lines_[i].text).empty()) place = i + 1;
  }
  if (place == 0) {
    if (!lines_.empty() && !trim(lines_.back().text).empty()) insert(lines_.size(), "");
    insert(lines_.size(), "[" + std::string(section) + "]");
    place = lines_.size();
  }
  insert(place, writtenKey(key) + "=" + writtenValue(value));
}

void SettingsText::remove(std::string_view section, std::string_view key) {
  for (std::size_t at; (at = lineOf(section, key)) < lines_.size();)
    lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(at));
}

std::string SettingsText::contents() const {
  std::string contents;
  for (const Line& line : lines_) contents += line.text + line.end;
  return contents;
}

}  // namespace quillon::platform
