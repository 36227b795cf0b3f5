#include "form/Registry.h"

#include <algorithm>

#include "base/Text.h"
#include "form/Screen.h"

namespace quillon::form {
namespace {

// "GL > JVs" of "&GL > &JVs", folded, for comparing.
std::string foldedPath(std::string_view path) {
  std::string result;
  while (!path.empty()) {
    const std::size_t end = std::min(path.find('>'), path.size());
    result += foldCase(plainCaption(trim(path.substr(0, end)))) + ">";
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return result;
}

}  // namespace

bool endsWithPath(std::string_view path, std::string_view ending) {
  return (">" + foldedPath(path)).ends_with(">" + foldedPath(ending));
}

std::string plainCaption(std::string_view caption) {
  std::string plain;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == '&' && ++i == caption.size()) break;  // what stands behind the mark is told as it is, a mark too
    plain += caption[i];
  }
  if (plain.ends_with("...")) plain.resize(plain.size() - 3);
  return plain;
}

void Registry::add(ScreenEntry entry) {
  const auto found = std::ranges::find(screens_, entry.className, &ScreenEntry::className);
  if (found == screens_.end()) {
    screens_.push_back(std::move(entry));
    return;
  }
  if (entry.help != 0) found->help = entry.help;
  if (entry.make) found->make = std::move(entry.make);
}

const ScreenEntry* Registry::find(std::string_view className) const {
  const auto found =
      std::ranges::find_if(screens_, [&](const ScreenEntry& entry) { return equalFolded(entry.className, className); });
  return found == screens_.end() ? nullptr : &*found;
}

const ScreenEntry* Registry::findInstance(std::string_view instanceName) const {
  const auto found = std::ranges::find_if(
      screens_, [&](const ScreenEntry& entry) { return equalFolded(entry.instanceName(), instanceName); });
  return found == screens_.end() ? nullptr : &*found;
}

const ReportEntry* Registry::findReport(std::string_view className) const {
  const auto found =
      std::ranges::find_if(reports_, [&](const ReportEntry& entry) { return equalFolded(entry.className, className); });
  return found == reports_.end() ? nullptr : &*found;
}

std::vector<const MenuRow*> Registry::menuRows(std::string_view path) const {
  const std::string wanted = foldedPath(path);
  std::vector<const MenuRow*> whole, ends;
  for (const MenuRow& row : menu_) {
    if (foldedPath(row.path) == wanted) whole.push_back(&row);
    if (endsWithPath(row.path, path)) ends.push_back(&row);
  }
  return whole.empty() ? ends : whole;
}

}  // namespace quillon::form
