#include "store/pages/PageCache.h"

#include <sys/mman.h>

#include <cassert>
#include <cstdlib>
#include <new>

namespace quillon::store {
namespace {

constexpr std::size_t kSmallBlock = 64;    // frames
constexpr std::size_t kLargeBlock = 512;   // frames: as large as a large page of the processor
constexpr std::size_t kManyFrames = 1024;  // with fewer large pages gain nothing

}  // namespace

void PageCache::Release::operator()(std::byte* block) const { std::free(block); }

PageCache::~PageCache() = default;

std::size_t PageCache::slotOf(const PageFile* file, PageNo number) const {
  const auto mixed = (reinterpret_cast<std::uintptr_t>(file) >> 4) * 0x9E3779B97F4A7C15u + number * 0xD1B54A32D192ED03u;
  return (mixed ^ (mixed >> 29)) & (table_.size() - 1);
}

Frame* PageCache::find(const PageFile* file, PageNo number) {
  for (std::size_t slot = slotOf(file, number);; slot = (slot + 1) & (table_.size() - 1)) {
    Frame* frame = table_[slot];
    if (!frame) return nullptr;
    if (frame->number == number && frame->file == file) {
      frame->recent = true;
      return frame;
    }
  }
}

Frame* PageCache::add(PageFile* file, PageNo number) {
  while (used_ - dirty_ >= capacity_ && evictOne()) {
  }
  if ((used_ + 1) * 2 > table_.size()) rehash(table_.size() * 2);
  Frame* frame = takeUnused();
  frame->file = file;
  frame->number = number;
  frame->recent = true;
  frame->dirty = frame->fresh = false;
  std::size_t slot = slotOf(file, number);
  while (table_[slot]) slot = (slot + 1) & (table_.size() - 1);
  table_[slot] = frame;
  ++used_;
  return frame;
}

void PageCache::remove(Frame* frame) {
  assert(frame->pins == 0);
  std::size_t hole = slotOf(frame->file, frame->number);
  while (table_[hole] != frame) hole = (hole + 1) & (table_.size() - 1);
  // Linear probing without tombstones: entries behind the hole move up where their own place allows it.
  for (std::size_t next = (hole + 1) & (table_.size() - 1); table_[next]; next = (next + 1) & (table_.size() - 1)) {
    const std::size_t home = slotOf(table_[next]->file, table_[next]->number);
    if (((next - home) & (table_.size() - 1)) >= ((next - hole) & (table_.size() - 1))) {
      table_[hole] = table_[next];
      hole = next;
    }
  }
  table_[hole] = nullptr;
  if (frame->dirty) --dirty_;
  frame->file = nullptr;
  frame->dirty = frame->fresh = false;
  frame->base.reset();
  unused_.push_back(frame);
  --used_;
}

void PageCache::removeFile(const PageFile* file) {
  for (Frame* frame : all_)
    if (frame->file == file) remove(frame);
}

void PageCache::removeClean(const PageFile* file) {
  for (Frame* frame : all_)
    if (frame->file == file && !frame->dirty && frame->pins == 0) remove(frame);
}

void PageCache::rehash(std::size_t slots) {
  table_.assign(slots, nullptr);
  for (Frame* frame : all_) {
    if (!frame->file) continue;
    std::size_t slot = slotOf(frame->file, frame->number);
    while (table_[slot]) slot = (slot + 1) & (slots - 1);
    table_[slot] = frame;
  }
}

Frame* PageCache::takeUnused() {
  if (unused_.empty()) addBlock();
  Frame* frame = unused_.back();
  unused_.pop_back();
  return frame;
}

// Reads jump about in a cache of many megabytes: in ordinary pages of the processor each jump would cost a walk through
// its page tables too, so a cache that has grown asks for large ones. The system may refuse, and then costs as before.
void PageCache::addBlock() {
  const bool large = all_.size() >= kManyFrames && all_.size() + kLargeBlock <= capacity_ + dirty_ + kSmallBlock;
  const std::size_t frames = large ? kLargeBlock : kSmallBlock, bytes = frames * kPageSize;
  blocks_.emplace_back(static_cast<std::byte*>(std::aligned_alloc(large ? bytes : kPageSize, bytes)));
  if (!blocks_.back()) throw std::bad_alloc();
  if (large) ::madvise(blocks_.back().get(), bytes, MADV_HUGEPAGE);
  frameBlocks_.push_back(std::make_unique<Frame[]>(frames));
  for (std::size_t i = 0; i < frames; ++i) {
    Frame* frame = &frameBlocks_.back()[i];
    frame->data = blocks_.back().get() + i * kPageSize;
    all_.push_back(frame);
    unused_.push_back(frame);
  }
}

bool PageCache::evictOne() {
  for (std::size_t tries = 0; tries < 2 * all_.size(); ++tries) {
    if (++hand_ >= all_.size()) hand_ = 0;
    Frame* frame = all_[hand_];
    if (!frame->file || frame->dirty || frame->pins > 0) continue;
    if (frame->recent) {
      frame->recent = false;
      continue;
    }
    remove(frame);
    return true;
  }
  return false;
}

}  // namespace quillon::store
