#include "reports/xlsx/SheetText.h"

#include <algorithm>

#include "base/Text.h"

namespace quillon::reports {
namespace {

constexpr std::size_t kMostOfCell = 32'767, kMostOfName = 31;  // in units of UTF-16
constexpr std::string_view kReplacement = "\uFFFD";

// "_x0041_" would be read as "A".
bool isEscape(std::string_view text) {
  const auto isHexDigit = [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
  };
  return text.size() >= 7 && text[1] == 'x' && text[6] == '_' && std::ranges::all_of(text.substr(2, 4), isHexDigit);
}

// Of the character `c`, which stands at the front of `rest`; `own` is it as it stands.
std::string_view escaped(char32_t c, std::string_view own, std::string_view rest) {
  switch (c) {
    case U'&':
      return "&amp;";
    case U'<':
      return "&lt;";
    case U'>':
      return "&gt;";
    case U'"':
      return "&quot;";
    case U'\t':
    case U'\n':
      return own;
    case U'\r':
      return "_x000D_";
    case U'_':
      return isEscape(rest) ? "_x005F_" : own;
    case U'\uFFFD':  // or a byte that is none
    case U'\uFFFE':
    case U'\uFFFF':
      return kReplacement;
    default:
      return c < U' ' ? kReplacement : own;
  }
}

}  // namespace

void appendSheetText(std::string& out, std::string_view text) {
  std::size_t units = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t begin = at;
    const char32_t c = nextCodePoint(text, at);
    units += c < 0x10000 ? 1 : 2;
    if (units >= kMostOfCell && at < text.size()) {
      out += "…";
      return;
    }
    out += escaped(c, text.substr(begin, at - begin), text.substr(begin));
  }
}

std::string sheetName(std::string_view title) {
  std::string name;
  for (const char c : title) name += std::string_view("[]:*?/\\").find(c) == std::string_view::npos ? c : ' ';
  std::string_view shown = trim(name);
  while (shown.starts_with('\'')) shown.remove_prefix(1);
  std::size_t units = 0, end = 0;
  for (std::size_t at = 0; at < shown.size(); end = at) {
    units += nextCodePoint(shown, at) < 0x10000 ? 1 : 2;
    if (units > kMostOfName) break;
  }
  shown = shown.substr(0, end);
  while (shown.ends_with('\'') || shown.ends_with(' ')) shown.remove_suffix(1);
  // One name is kept for a program's own sheet.
  if (shown.empty() || equalFolded(shown, "History")) return "Report";
  return std::string(shown);
}

}  // namespace quillon::reports
