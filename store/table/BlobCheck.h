#pragma once

#include <functional>
#include <string>
#include <vector>

#include "store/table/BlobStore.h"

namespace quillon::store {

// Accounts for every block of a file of contents: tell it each reference that a record holds, then finish. Faults are
// told in words that name the file; nothing is raised for them.
class BlobCheck {
 public:
  using Fault = std::function<void(const std::string&)>;

  // `pages` is PageSpace::pages of the file.
  BlobCheck(PageFile& file, const BlobSpace& space, std::uint32_t pages, Fault fault);

  // Whether the content is readable and its blocks belong to no other.
  bool content(const BlobRef& ref);
  // Walks the free blocks; then every block must have been met once, and be marked in its page as it was met.
  void finish();

 private:
  enum class Use : std::uint8_t { unknown, content, free };
  bool mark(std::uint32_t block, Use use);
  bool told(const std::string& what);
  void checkFree();
  void checkPage(PageNo number);

  PageFile& file_;
  const BlobSpace& space_;
  Fault fault_;
  std::vector<Use> uses_;  // by block id
};

}  // namespace quillon::store
