#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "store/pages/PageCache.h"

namespace quillon::store {

class File;

// Where a file's pages end and which are free. Lives in the table's meta page; changes with the overlay.
struct PageSpace {
  std::uint32_t pages = 1;  // pages in use or free; numbers below this exist
  PageNo freeHead = 0;      // first free page, each naming the next
  std::uint32_t freePages = 0;
};

// Scratch for overlays beyond the memory bound: one unlinked file a process, pages by slot.
class SpillFile {
 public:
  explicit SpillFile(std::unique_ptr<File> file);
  ~SpillFile();
  std::uint32_t put(const std::byte* page);
  void get(std::uint32_t slot, std::byte* page);  // and frees the slot
  void drop(std::uint32_t slot) { free_.push_back(slot); }

 private:
  std::unique_ptr<File> file_;
  std::vector<std::uint32_t> free_;
  std::uint32_t slots_ = 0;
};

// The pages of one file of a table as this process sees them: its own uncommitted changes (the overlay) before the
// committed pages. Whoever reads holds the table's apply lock or a lock that keeps others from publishing; whoever
// writes holds the table's write lock. References from `read` and `write` keep their page in place.
//
// Errors: `damaged` naming the file when a page fails its checksum; IoError.
class PageFile {
 public:
  // `space` must outlive this and is changed by allocate and release.
  PageFile(PageCache& cache, std::unique_ptr<File> file, std::string name, std::uint64_t fileId, PageSpace& space);
  PageFile(const PageFile&) = delete;
  PageFile& operator=(const PageFile&) = delete;
  ~PageFile();

  PageRef read(PageNo number);
  // The page as part of the overlay; what stood there before is kept until the overlay is published or discarded.
  PageRef write(PageNo number);
  // A page of zeros with number and kind set, from the free list or the end of the file (whose growth is reserved on
  // the disk here, so that a full disk is refused before anything is decided).
  PageRef allocate(PageKind kind);
  void release(PageNo number);

  // The overlay.
  std::size_t dirtyPages() const { return dirty_.size() + spilled_.size(); }
  std::vector<PageNo> dirtyNumbers() const;  // ascending
  struct Dirty {
    PageRef page;
    bool fresh;             // no committed content to compare with
    const std::byte* base;  // the committed page, or null where it was not kept
  };
  Dirty dirtyPage(PageNo number);
  void readCommitted(PageNo number, std::byte* page);  // past the overlay, from the disk
  void published();                                    // the overlay is now what is committed: its pages become clean
  void discard();                                      // the overlay never was
  // Writes the given sealed overlay pages, ascending, in place.
  void writeInPlace(const std::vector<PageNo>& numbers);

  // Committed pages changed outside: forget what is cached.
  void forget();
  void forget(PageNo number);

  // Others may have cut the file since it was last looked at.
  void measure();
  // Gives the space behind the last page back. With an empty journal and the table open exclusively.
  void cut();

  // Where to spill; asked for when it is first needed. Without one the overlay stays in memory.
  void setSpill(std::function<SpillFile*()> spill) { makeSpill_ = std::move(spill); }
  File& file() { return *file_; }
  const std::string& name() const { return name_; }
  std::uint64_t fileId() const { return fileId_; }
  // A clean page above this stamp is no part of the committed state that is being read.
  void setNewestStamp(std::uint64_t stamp) { newest_ = stamp; }
  // While set, pages are read without a lock: one that is newer or half written raises changedMeanwhile, never damaged.
  void setUnlocked(bool unlocked) { unlocked_ = unlocked; }

 private:
  friend class PageCache;
  Frame* load(PageNo number);
  void makeDirty(Frame* frame, bool fresh);
  void spillSome();
  void grow();

  PageCache& cache_;
  std::unique_ptr<File> file_;
  std::string name_;
  std::uint64_t fileId_;
  PageSpace& space_;
  std::vector<Frame*> dirty_;
  struct Spilled {
    std::uint32_t slot;
    bool fresh;
  };
  std::unordered_map<PageNo, Spilled> spilled_;
  std::function<SpillFile*()> makeSpill_;
  SpillFile* spill_ = nullptr;
  std::uint64_t reserved_ = 0;  // bytes known to be set aside on the disk
  std::uint64_t newest_ = ~std::uint64_t{0};
  bool unlocked_ = false;
};

}  // namespace quillon::store
