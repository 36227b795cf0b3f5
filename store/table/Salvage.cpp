#include "store/table/Salvage.h"

#include <algorithm>
#include <map>
#include <set>

#include "store/Errors.h"
#include "store/table/Table.h"
#include "store/tree/TreeCheck.h"
#include "store/vfs/File.h"
#include "store/vfs/FileNames.h"

namespace quillon::store {
namespace {

constexpr PageNo kReadPages = 64;  // at once

bool isDamage(const StoreError& error) {
  return error.code() == Code::damaged || error.code() == Code::headerDamaged || error.code() == Code::foreign;
}

bool allZero(const std::byte* page) {
  return std::all_of(page, page + kPageSize, [](std::byte byte) { return byte == std::byte{0}; });
}

bool holdsAnything(File& file) {
  std::vector<std::byte> page(kPageSize);
  const std::uint64_t size = file.size();
  for (std::uint64_t at = 0; at < size; at += kPageSize) {
    std::fill(page.begin(), page.end(), std::byte{0});
    file.read(at, page.data(), kPageSize);
    if (!allZero(page.data())) return true;
  }
  return false;
}

std::uint64_t pagesOf(File& file) { return file.size() / kPageSize; }

}  // namespace

Salvage::Salvage(FileSystem& files, PageCache& cache, const std::string& folder, const std::string& name,
                 std::unique_ptr<File> dat, const Lost& lost)
    : name_(name), lost_(lost), cache_(cache) {
  identify(files, folder, std::move(dat));
  readHeader();
  findLeaves();
  keepTreeLeaves();
}

void Salvage::identify(FileSystem& files, const std::string& folder, std::unique_ptr<File> dat) {
  std::array<std::unique_ptr<File>, 3> raw;
  raw[kDat] = std::move(dat);
  for (const Role role : {kIdx, kBlb}) {
    const std::string path = findFile(files, folder, name_ + kExtensions[role]);
    if (files.exists(path)) raw[role] = files.open(path, OpenMode::existing);
  }
  std::optional<StoreError> unknown;  // what .DAT is
  std::uint64_t best = 0;
  for (const Role role : {kDat, kIdx, kBlb}) {
    if (!raw[role]) continue;
    try {
      const std::uint64_t id = TableFiles::checkIdentity(*raw[role], name_, role);
      if (role == kDat) {
        fileId_ = id;
        continue;
      }
      if (!unknown) {
        if (id != fileId_)
          lost_("'" + name_ + kExtensions[role] + "' is of another table than '" + name_ +
                ".DAT', and one of them stands in the place of the table's own");
        continue;
      }
      // Of two that say something else, the one that more pages bear out.
      const std::uint64_t pages = soundPages(*raw[kDat], id);
      if (fileId_ == 0 || pages > best) fileId_ = id;
      best = std::max(best, pages);
    } catch (const StoreError& error) {
      if (!isDamage(error)) throw;
      if (role == kDat) unknown = error;
    }
  }
  // Without the right id no page could be believed, and all that is there would be thrown away.
  if (unknown && best == 0 && holdsAnything(*raw[kDat])) {
    if (unknown->code() == Code::foreign) throw *unknown;
    throw StoreError(Code::headerDamaged, "The headers of table '" + name_ +
                                              "' are destroyed in all its files, so that nothing in them can be told "
                                              "from damage. Bring back a backup.");
  }
  for (const Role role : {kDat, kIdx, kBlb})
    if (raw[role])
      files_[role] = std::make_unique<PageFile>(cache_, std::move(raw[role]), name_ + kExtensions[role], fileId_ ^ role,
                                                noSpace_[role]);
}

std::uint64_t Salvage::soundPages(File& dat, std::uint64_t fileId) {
  std::uint64_t sound = 0;
  std::vector<std::byte> page(kPageSize);
  for (PageNo number = 1; number < pagesOf(dat); ++number)
    if (dat.read(std::uint64_t{number} * kPageSize, page.data(), kPageSize) == kPageSize &&
        pageIsSound(page.data(), fileId ^ kDat, number))
      ++sound;
  return sound;
}

void Salvage::eachPage(Role role, const std::function<void(PageNo, const std::byte*)>& sound,
                       const std::function<void(PageNo, const std::byte*)>& damaged) {
  if (!files_[role]) return;
  File& file = files_[role]->file();
  std::uint64_t end = pagesOf(file);
  // Pages behind the mark are left from before the table was emptied.
  if (headerSound_) end = std::min<std::uint64_t>(end, meta_.space[role].pages);
  std::vector<std::byte> bytes(std::size_t{kReadPages} * kPageSize);
  for (std::uint64_t first = 1; first < end; first += kReadPages) {
    const std::size_t wanted = std::min<std::uint64_t>(kReadPages, end - first) * kPageSize;
    const std::size_t got = file.read(first * kPageSize, bytes.data(), wanted);
    for (std::size_t at = 0; at + kPageSize <= got; at += kPageSize) {
      const auto number = static_cast<PageNo>(first + at / kPageSize);
      const std::byte* page = bytes.data() + at;
      (pageIsSound(page, fileId_ ^ role, number) ? sound : damaged)(number, page);
    }
  }
}

void Salvage::readHeader() {
  const std::optional<LiveState> live = soundLiveState(files_[kDat]->file());
  if (live && live->applying)
    lost_("the last change of '" + name_ + ".DAT' may be there in part: nothing tells how it went on");
  try {
    meta_ = TableFiles::readMeta(*files_[kDat], name_);
    headerSound_ = true;
  } catch (const StoreError& error) {
    if (!isDamage(error)) throw;
  }
}

void Salvage::findLeaves() {
  const auto look = [&] {
    std::vector<std::string> lost;
    leaves_.clear();
    eachPage(
        kDat,
        [&](PageNo number, const std::byte* page) {
          newest_ = std::max(newest_, pageStamp(page));
          if (pageKind(page) != PageKind::leaf) return;
          Leaf leaf{number, 0, 0, pageStamp(page)};
          eachEntry(*files_[kDat], number, [&](std::string_view key, std::string_view) {
            if (key.size() != KeyCodec::kRowBytes) return;
            leaf.last = Table::rowOfKey(key);
            if (leaf.first == 0) leaf.first = leaf.last;
          });
          if (leaf.first != 0) leaves_.push_back(leaf);
        },
        [&](PageNo number, const std::byte* page) {
          if (headerSound_ || !allZero(page))
            lost.push_back("page " + std::to_string(number) + " of '" + name_ + ".DAT' cannot be read");
        });
    return lost;
  };
  std::vector<std::string> lost = look();
  if (headerSound_ && newest_ > meta_.stamp) {
    headerSound_ = false;
    lost = look();
  }
  if (headerSound_ && meta_.space[kDat].pages > pagesOf(files_[kDat]->file()))
    lost.push_back("'" + name_ + ".DAT' is cut short: " +
                   std::to_string(meta_.space[kDat].pages - pagesOf(files_[kDat]->file())) + " pages are missing");
  if (files_[kDat]->file().size() == 0)
    lost.assign({"'" + name_ + ".DAT' is gone, and every record with it"});
  else if (!headerSound_)
    lost.insert(lost.begin(), "the header of '" + name_ +
                                  ".DAT' cannot be read or is older than its records: whether " +
                                  "any are missing is not known");
  for (const std::string& what : lost) lost_(what);
  std::sort(leaves_.begin(), leaves_.end(), [](const Leaf& a, const Leaf& b) { return a.first < b.first; });
  const bool overlap = std::adjacent_find(leaves_.begin(), leaves_.end(), [](const Leaf& a, const Leaf& b) {
                         return b.first <= a.last;
                       }) != leaves_.end();
  if (overlap)
    std::stable_sort(leaves_.begin(), leaves_.end(), [](const Leaf& a, const Leaf& b) { return a.stamp > b.stamp; });
}

void Salvage::keepTreeLeaves() {
  if (!headerSound_) return;
  std::set<PageNo> pages;
  wholeTree_ = true;
  TreeCheckSink sink;
  sink.page = [&](PageNo page) { pages.insert(page); };
  sink.fault = [&](const std::string&) { wholeTree_ = false; };
  if (meta_.rows != 0) checkTree(*files_[kDat], meta_.rows, sink);
  if (wholeTree_) std::erase_if(leaves_, [&](const Leaf& leaf) { return !pages.contains(leaf.page); });
  try {
    rows_ = Tree(*files_[kDat], meta_.rows).count();
  } catch (const StoreError& error) {
    if (!isDamage(error)) throw;
  }
}

void Salvage::eachEntry(PageFile& file, PageNo page, const Entry& entry) {
  std::vector<TreeCell> cells;
  const PageRef ref = file.read(page);
  try {
    const TreePage leaf(ref.data(), file);
    leaf.requireSound(0);
    for (unsigned i = 0; i < leaf.count(); ++i) cells.push_back(leaf.leafCell(i));
  } catch (const StoreError& error) {
    if (!isDamage(error)) throw;
  }
  for (const TreeCell& cell : cells) entry(cell.key, cell.payload);
}

void Salvage::eachRow(const std::function<void(RowId, std::string_view)>& row, const std::function<void()>& leafDone) {
  for (const Leaf& leaf : leaves_) {
    eachEntry(*files_[kDat], leaf.page, [&](std::string_view key, std::string_view payload) {
      if (key.size() == KeyCodec::kRowBytes) row(Table::rowOfKey(key), payload);
    });
    leafDone();
  }
}

bool Salvage::record(std::string_view payload, std::string& record) {
  try {
    std::string scratch;
    const auto pages = static_cast<std::uint32_t>(pagesOf(files_[kDat]->file()));
    record.assign(Table::record(*files_[kDat], pages, name_, payload, scratch));
    return true;
  } catch (const StoreError& error) {
    if (!isDamage(error)) throw;
    return false;
  }
}

bool Salvage::content(const BlobRef& ref, std::string& content) {
  if (!files_[kBlb]) return false;
  try {
    BlobSpace unused;
    content = BlobStore(*files_[kBlb], unused).get(ref);
    return true;
  } catch (const StoreError& error) {
    if (!isDamage(error)) throw;
    return false;
  }
}

void Salvage::eachKnownRow(const std::function<void(RowId)>& row) {
  eachPage(
      kIdx,
      [&](PageNo number, const std::byte* page) {
        if (pageKind(page) != PageKind::leaf) return;
        eachEntry(*files_[kIdx], number, [&](std::string_view key, std::string_view) {
          if (key.size() >= KeyCodec::kRowBytes) row(KeyCodec::rowOf(key));
        });
      },
      [](PageNo, const std::byte*) {});
}

std::optional<TableDef> Salvage::definition() {
  if (headerSound_) {
    try {
      const std::string schema = TableFiles::readSchema(*files_[kDat], name_, meta_.schema, meta_.schemaBytes);
      return TableDef::decode(std::as_bytes(std::span(schema)));
    } catch (const StoreError& error) {
      if (!isDamage(error)) throw;
    }
  }
  return looseDefinition();
}

// Without the header nobody tells where the definition begins and how long it is: it begins in a page that no other
// names, and its length is the one that makes sense of it.
std::optional<TableDef> Salvage::looseDefinition() {
  std::map<PageNo, PageNo> next;
  std::set<PageNo> named;
  eachPage(
      kDat,
      [&](PageNo number, const std::byte* page) {
        if (pageKind(page) != PageKind::schema) return;
        next[number] = loadAt<PageNo>(page, kPageBody);
        named.insert(next[number]);
      },
      [](PageNo, const std::byte*) {});
  for (const auto& [first, second] : next) {
    if (named.contains(first)) continue;
    std::size_t pages = 0;
    for (PageNo page = first; page != 0 && next.contains(page) && pages <= next.size(); page = next[page]) ++pages;
    const std::size_t room = pages * (kPageSize - kPageBody - 4);
    try {
      std::string schema = TableFiles::readSchema(*files_[kDat], name_, first, static_cast<std::uint32_t>(room));
      while (!schema.empty()) {
        try {
          return TableDef::decode(std::as_bytes(std::span(schema)));
        } catch (const StoreError&) {
          if (schema.back() != 0) break;  // beyond the zeros behind it there is nothing to be left out
          schema.pop_back();
        }
      }
    } catch (const StoreError& error) {
      if (!isDamage(error)) throw;
    }
  }
  return {};
}

}  // namespace quillon::store
