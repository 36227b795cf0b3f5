#include "store/verify/FileVerify.h"

#include <algorithm>
#include <cstring>

#include "store/Errors.h"
#include "store/tree/TreeCheck.h"
#include "store/vfs/File.h"

namespace quillon::store {
namespace {

constexpr std::size_t kIdentityEnd = 32;
constexpr std::size_t kLiveStart = 64, kLiveEnd = 88;
constexpr PageNo kReadPages = 64;  // at once
constexpr std::size_t kFreeNext = kPageBody;

bool allZero(const std::byte* from, const std::byte* to) {
  return std::all_of(from, to, [](std::byte byte) { return byte == std::byte{0}; });
}

}  // namespace

FileVerify::FileVerify(PageFile& file, Role role, const PageSpace& space, std::uint64_t stamp, Tell tell)
    : file_(file), role_(role), space_(space), stamp_(stamp), tell_(std::move(tell)) {
  const std::uint64_t there = file_.file().size() / kPageSize;
  inReach_ = space_.pages <= there;
  if (!inReach_)
    this->tell("is cut short: " + std::to_string(space_.pages) + " pages are in use, " + std::to_string(there) +
               " are there");
  used_.resize(std::min<std::uint64_t>(space_.pages, there));
  kinds_.resize(used_.size());
}

bool FileVerify::tell(const std::string& what) {
  tell_("'" + file_.name() + "': " + what);
  return false;
}

// Tells a fault of a page that may keep others out of reach.
bool FileVerify::lose(PageNo number, const std::string& what) {
  inReach_ = false;
  return tell("page " + std::to_string(number) + " " + what);
}

void FileVerify::checkPages(const std::function<void(std::uint32_t)>& progress) {
  std::vector<std::byte> bytes(std::size_t{kReadPages} * kPageSize);
  for (PageNo first = 0; first < pages(); first += kReadPages) {
    const PageNo count = std::min(kReadPages, pages() - first);
    const std::size_t wanted = std::size_t{count} * kPageSize;
    if (file_.file().read(std::uint64_t{first} * kPageSize, bytes.data(), wanted) != wanted) {
      inReach_ = tell("became shorter while it was read");
      return;
    }
    for (PageNo i = 0; i < count; ++i) checkPage(first + i, bytes.data() + std::size_t{i} * kPageSize);
    progress(count);
  }
}

void FileVerify::checkFirstPage(const std::byte* page) {
  if (role_ == kDat) {
    if (!allZero(page + kIdentityEnd, page + kLiveStart) || !allZero(page + kLiveEnd, page + kPageSize))
      lose(0, "has bytes where there should be none");
    if (loadAt<std::uint32_t>(page, kLiveStart + 8) > 1 || loadAt<std::uint32_t>(page, kLiveStart + 12) > 1)
      lose(0, "has marks of no meaning");
  } else if (!allZero(page + kIdentityEnd, page + kPageSize)) {
    lose(0, "has bytes where there should be none");
  }
  used_[0] = true;
  kinds_[0] = PageKind::identity;
}

void FileVerify::checkPage(PageNo number, const std::byte* page) {
  if (number == 0) return checkFirstPage(page);
  kinds_[number] = pageKind(page);
  if (!pageIsSound(page, file_.fileId(), number)) {
    bad_.insert(number);
    lose(number, "is damaged (its checksum or number is wrong)");
  } else if (pageStamp(page) > stamp_) {
    bad_.insert(number);
    lose(number, "is of commit " + std::to_string(pageStamp(page)) + ", the table is at " + std::to_string(stamp_));
  } else if (std::memcmp(page, file_.read(number).data(), kPageSize) != 0) {
    lose(number, "is not the same in memory");
  }
}

bool FileVerify::checkTree(PageNo root, const Entry& entry) {
  bool told = false, allGood = true;
  TreeCheckSink sink;
  sink.page = [&](PageNo number) {
    told = !use(number) || isBad(number);
    allGood = allGood && !told;
  };
  sink.entry = entry;
  sink.fault = [&](const std::string& what) {
    if (told) return;
    allGood = inReach_ = false;
    tell_(what);
  };
  store::checkTree(file_, root, sink);
  return allGood;
}

bool FileVerify::use(PageNo number) {
  if (number == 0 || number >= pages()) return lose(number, "is used but is not there");
  if (used_[number]) return lose(number, "is used twice");
  used_[number] = true;
  return true;
}

void FileVerify::useAll(PageKind kind) {
  for (PageNo number = 1; number < pages(); ++number)
    if (kinds_[number] == kind) use(number);
}

void FileVerify::checkFreePages() {
  std::uint32_t met = 0;
  for (PageNo number = space_.freeHead; number != 0; ++met) {
    if (!use(number) || isBad(number)) return;
    if (kinds_[number] != PageKind::free) {
      lose(number, "is among the free pages and is none");
      return;
    }
    number = loadAt<PageNo>(file_.read(number).data(), kFreeNext);
  }
  if (met != space_.freePages)
    tell("has " + std::to_string(met) + " free pages, its header says " + std::to_string(space_.freePages));
}

void FileVerify::finish() {
  checkFreePages();
  // Behind a fault pages are out of reach, which says nothing about them.
  if (!inReach()) return;
  for (PageNo number = 1; number < pages(); ++number)
    if (!used_[number])
      tell("page " + std::to_string(number) + " is lost (of kind " + std::to_string(static_cast<int>(kinds_[number])) +
           ", used by nothing)");
}

}  // namespace quillon::store
