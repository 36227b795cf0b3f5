#include "store/pages/PageFile.h"

#include <algorithm>
#include <cassert>

#include "store/Errors.h"
#include "store/vfs/File.h"

namespace quillon::store {
namespace {

constexpr std::size_t kFreeNext = kPageBody;  // in a free page: the next free page
constexpr std::size_t kKeptBases = 2048;      // committed pages kept beside their changed ones, a file

Bytes bytesOf(const std::byte* page) { return {page, kPageSize}; }

}  // namespace

SpillFile::SpillFile(std::unique_ptr<File> file) : file_(std::move(file)) {}
SpillFile::~SpillFile() = default;

std::uint32_t SpillFile::put(const std::byte* page) {
  if (free_.empty()) free_.push_back(slots_++);
  const std::uint32_t slot = free_.back();
  file_->write(std::uint64_t{slot} * kPageSize, bytesOf(page));
  free_.pop_back();
  return slot;
}

void SpillFile::get(std::uint32_t slot, std::byte* page) {
  if (file_->read(std::uint64_t{slot} * kPageSize, page, kPageSize) != kPageSize)
    throw StoreError(Code::ioFailed, "The scratch file of a transaction is cut short. Undo the command and try again.");
  free_.push_back(slot);
}

PageFile::PageFile(PageCache& cache, std::unique_ptr<File> file, std::string name, std::uint64_t fileId,
                   PageSpace& space)
    : cache_(cache), file_(std::move(file)), name_(std::move(name)), fileId_(fileId), space_(space) {
  reserved_ = file_->size();
}

PageFile::~PageFile() { cache_.removeFile(this); }

Frame* PageFile::load(PageNo number) {
  if (Frame* frame = cache_.find(this, number)) return frame;
  if (!spilled_.empty()) {
    if (const auto found = spilled_.find(number); found != spilled_.end()) {
      const Spilled spilled = found->second;
      spillSome();
      Frame* frame = cache_.add(this, number);
      try {
        spill_->get(spilled.slot, frame->data);
      } catch (...) {
        cache_.remove(frame);
        throw;
      }
      spilled_.erase(number);
      makeDirty(frame, spilled.fresh);
      return frame;
    }
  }
  Frame* frame = cache_.add(this, number);
  try {
    readCommitted(number, frame->data);
  } catch (...) {
    cache_.remove(frame);
    throw;
  }
  return frame;
}

void PageFile::readCommitted(PageNo number, std::byte* page) {
  const std::size_t got = file_->read(std::uint64_t{number} * kPageSize, page, kPageSize);
  if (got == kPageSize && pageIsSound(page, fileId_, number) && pageStamp(page) <= newest_) return;
  if (unlocked_) throw StoreError(Code::changedMeanwhile, "'" + name_ + "' was changed while it was read. Try again.");
  throw StoreError(Code::damaged, "Page " + std::to_string(number) + " of '" + name_ +
                                      "' is damaged. Run Pack/Repair on the company, or bring back a backup.");
}

PageRef PageFile::read(PageNo number) { return PageRef(load(number)); }

PageRef PageFile::write(PageNo number) {
  Frame* frame = load(number);
  if (frame->dirty) return PageRef(frame);
  PageRef ref(frame);
  if (cache_.dirtyPages() >= cache_.capacity()) spillSome();
  if (dirty_.size() < kKeptBases) {
    frame->base = std::make_unique_for_overwrite<std::byte[]>(kPageSize);
    std::memcpy(frame->base.get(), frame->data, kPageSize);
  }
  makeDirty(frame, false);
  return ref;
}

void PageFile::makeDirty(Frame* frame, bool fresh) {
  frame->dirty = true;
  frame->fresh = fresh;
  dirty_.push_back(frame);
  ++cache_.dirty_;
}

PageRef PageFile::allocate(PageKind kind) {
  PageRef page;
  if (space_.freeHead != 0) {
    const PageNo number = space_.freeHead;
    page = write(number);
    if (pageKind(page.data()) != PageKind::free)
      throw StoreError(Code::damaged, "The list of free pages of '" + name_ + "' is damaged. Run Pack/Repair.");
    space_.freeHead = loadAt<PageNo>(page.data(), kFreeNext);
    --space_.freePages;
    Frame* frame = cache_.find(this, number);
    frame->fresh = true;
    frame->base.reset();
  } else {
    grow();
    if (cache_.dirtyPages() >= cache_.capacity()) spillSome();
    const PageNo number = space_.pages;
    if (Frame* stale = cache_.find(this, number)) cache_.remove(stale);
    Frame* frame = cache_.add(this, number);
    makeDirty(frame, true);
    page = PageRef(frame);
    ++space_.pages;
  }
  std::memset(page.writable() + 8, 0, kPageSize - 8);
  storeAt<PageNo>(page.writable(), 16, page.number());
  page.writable()[20] = static_cast<std::byte>(kind);
  return page;
}

void PageFile::release(PageNo number) {
  const PageRef page = write(number);
  page.writable()[20] = static_cast<std::byte>(PageKind::free);
  storeAt<PageNo>(page.writable(), kFreeNext, space_.freeHead);
  space_.freeHead = number;
  ++space_.freePages;
}

void PageFile::grow() {
  const std::uint64_t needed = (std::uint64_t{space_.pages} + 1) * kPageSize;
  if (needed <= reserved_) return;
  if (space_.pages == ~PageNo{0})
    throw StoreError(Code::limitReached, "'" + name_ + "' has reached the largest size of a table file (16 TB).");
  const std::uint64_t step = std::clamp<std::uint64_t>(space_.pages / 8, 4, 1024) * kPageSize;
  file_->reserve(needed + step);
  reserved_ = needed + step;
}

void PageFile::spillSome() {
  if ((!spill_ && !makeSpill_) || cache_.dirtyPages() < cache_.capacity()) return;
  if (!spill_) spill_ = makeSpill_();
  // Pages not used since the last round go first; the round clears the marks, so that the next one finds some.
  const std::size_t wanted = dirty_.size() / 2;
  std::size_t gone = 0;
  for (std::size_t i = 0; i < dirty_.size() && gone < wanted;) {
    Frame* frame = dirty_[i];
    if (frame->pins > 0 || frame->recent) {
      frame->recent = false;
      ++i;
      continue;
    }
    const std::uint32_t slot = spill_->put(frame->data);  // a failure leaves no entry behind
    spilled_[frame->number] = {slot, frame->fresh};
    cache_.remove(frame);
    dirty_[i] = dirty_.back();
    dirty_.pop_back();
    ++gone;
  }
}

std::vector<PageNo> PageFile::dirtyNumbers() const {
  std::vector<PageNo> numbers;
  numbers.reserve(dirtyPages());
  for (const Frame* frame : dirty_) numbers.push_back(frame->number);
  for (const auto& entry : spilled_) numbers.push_back(entry.first);
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}

PageFile::Dirty PageFile::dirtyPage(PageNo number) {
  Frame* frame = load(number);
  assert(frame->dirty);
  return {PageRef(frame), frame->fresh, frame->base.get()};
}

void PageFile::published() {
  for (Frame* frame : dirty_) {
    frame->dirty = frame->fresh = false;
    frame->base.reset();
  }
  cache_.dirty_ -= dirty_.size();
  dirty_.clear();
  for (const auto& entry : spilled_) spill_->drop(entry.second.slot);
  spilled_.clear();
}

void PageFile::discard() {
  for (Frame* frame : dirty_) {
    assert(frame->pins == 0);
    cache_.remove(frame);
  }
  dirty_.clear();
  for (const auto& entry : spilled_) spill_->drop(entry.second.slot);
  spilled_.clear();
}

void PageFile::writeInPlace(const std::vector<PageNo>& numbers) {
  constexpr std::size_t kRun = 256;
  std::vector<PageRef> refs;
  std::vector<Bytes> parts;
  for (std::size_t i = 0; i < numbers.size();) {
    const std::size_t start = i;
    refs.clear();
    parts.clear();
    do {
      refs.push_back(read(numbers[i]));
      parts.push_back(bytesOf(refs.back().data()));
      ++i;
    } while (i < numbers.size() && numbers[i] == numbers[i - 1] + 1 && parts.size() < kRun);
    file_->writeParts(std::uint64_t{numbers[start]} * kPageSize, parts);
  }
}

void PageFile::measure() { reserved_ = file_->size(); }

void PageFile::cut() {
  file_->truncate(std::uint64_t{space_.pages} * kPageSize);
  reserved_ = std::uint64_t{space_.pages} * kPageSize;
}

void PageFile::forget() { cache_.removeClean(this); }

void PageFile::forget(PageNo number) {
  Frame* frame = cache_.find(this, number);
  if (frame && !frame->dirty && frame->pins == 0) cache_.remove(frame);
}

}  // namespace quillon::store
