#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "store/pages/Page.h"

namespace quillon::store {

class PageFile;

// One page in memory. Owned by the cache; it stays in place while it is pinned or dirty.
struct Frame {
  std::byte* data = nullptr;
  PageFile* file = nullptr;           // null: unused
  std::unique_ptr<std::byte[]> base;  // of a dirty page: the committed page, where it is kept
  PageNo number = 0;
  std::uint32_t pins = 0;
  bool dirty = false;   // part of the private overlay
  bool fresh = false;   // dirty and without a committed page that matters
  bool recent = false;  // second chance of the eviction clock
};

// Keeps a frame in place while it lives.
class PageRef {
 public:
  PageRef() = default;
  explicit PageRef(Frame* frame) : frame_(frame) { ++frame_->pins; }
  PageRef(const PageRef& other) : frame_(other.frame_) {
    if (frame_) ++frame_->pins;
  }
  PageRef(PageRef&& other) noexcept : frame_(other.frame_) { other.frame_ = nullptr; }
  PageRef& operator=(PageRef other) noexcept {
    std::swap(frame_, other.frame_);
    return *this;
  }
  ~PageRef() {
    if (frame_) --frame_->pins;
  }
  explicit operator bool() const { return frame_ != nullptr; }
  const std::byte* data() const { return frame_->data; }
  std::byte* writable() const { return frame_->data; }  // only of a page got from PageFile::write or allocate
  PageNo number() const { return frame_->number; }

 private:
  Frame* frame_ = nullptr;
};

// The page cache of a process: at most `capacity` clean pages over all files, evicted by a clock, and the dirty pages
// of the overlays, which it never evicts (PageFile spills them).
class PageCache {
 public:
  explicit PageCache(std::size_t capacityPages = 16384) : capacity_(capacityPages) { rehash(1024); }
  PageCache(const PageCache&) = delete;
  PageCache& operator=(const PageCache&) = delete;
  ~PageCache();

  Frame* find(const PageFile* file, PageNo number);
  // A frame for a page that `find` does not have; its bytes are undefined.
  Frame* add(PageFile* file, PageNo number);
  void remove(Frame* frame);              // not pinned
  void removeFile(const PageFile* file);  // all its frames, dirty ones too; none pinned
  void removeClean(const PageFile* file);
  std::size_t dirtyPages() const { return dirty_; }
  std::size_t capacity() const { return capacity_; }
  std::size_t frames() const { return used_; }

 private:
  friend class PageFile;
  void rehash(std::size_t slots);
  std::size_t slotOf(const PageFile* file, PageNo number) const;
  Frame* takeUnused();
  void addBlock();
  bool evictOne();

  std::size_t capacity_;
  std::size_t used_ = 0;  // frames in the table
  std::size_t dirty_ = 0;
  std::size_t hand_ = 0;
  struct Release {
    void operator()(std::byte* block) const;
  };
  std::vector<std::unique_ptr<std::byte[], Release>> blocks_;
  std::vector<std::unique_ptr<Frame[]>> frameBlocks_;
  std::vector<Frame*> all_;
  std::vector<Frame*> unused_;
  std::vector<Frame*> table_;  // open addressing, linear probing
};

}  // namespace quillon::store
