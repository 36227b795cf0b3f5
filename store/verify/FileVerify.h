#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "store/pages/PageFile.h"
#include "store/table/TableFiles.h"

namespace quillon::store {

// Checks one file of a table: that every page is sound, and that each is used exactly once. Tell it each page that is
// used, then finish. Made and used inside one Table::Reading; what it finds is told and not raised.
class FileVerify {
 public:
  using Tell = std::function<void(const std::string&)>;
  using Entry = std::function<void(std::string_view key, std::string_view payload)>;

  // `stamp` is the table's live stamp.
  FileVerify(PageFile& file, Role role, const PageSpace& space, std::uint64_t stamp, Tell tell);

  // Reads every page past the cache: checksum, number, stamp, and that the cache has the same.
  void checkPages(const std::function<void(std::uint32_t pages)>& progress);
  // Walks a tree of the file; its pages are used. Whether all of it is sound.
  bool checkTree(PageNo root, const Entry& entry);
  // Notes a page as used; false, and told: it does not exist, or it is used already.
  bool use(PageNo number);
  void useAll(PageKind kind);  // every page of this kind
  // Follows the free pages; then no page may be left that nobody uses.
  void finish();

  bool tell(const std::string& what);  // about this file; always false
  // Whether every page that was named could be read and was named once: then a page that nobody used is lost.
  bool inReach() const { return inReach_; }
  bool isBad(PageNo number) const { return bad_.count(number) > 0; }
  std::uint32_t pages() const { return static_cast<std::uint32_t>(used_.size()); }  // that are there
  PageFile& file() { return file_; }

 private:
  bool lose(PageNo number, const std::string& what);
  void checkFirstPage(const std::byte* page);
  void checkPage(PageNo number, const std::byte* page);
  void checkFreePages();

  PageFile& file_;
  Role role_;
  const PageSpace& space_;
  std::uint64_t stamp_;
  Tell tell_;
  std::vector<bool> used_;
  std::vector<PageKind> kinds_;
  std::set<PageNo> bad_;  // unreadable
  bool inReach_ = true;
};

}  // namespace quillon::store
