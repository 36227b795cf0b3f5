#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/pages/PageFile.h"
#include "store/table/TableFiles.h"

namespace quillon::store {

// What can still be read of a table whose files may be damaged, cut or missing. A page is believed when its checksum,
// which knows the file and the place, holds; nothing else in the files needs to.
//
// Method: the file id comes from the first page of .DAT or, where that is destroyed, of .IDX or .BLB. Records are in
// the leaf pages of .DAT: those of the records' tree where the whole tree can be walked, otherwise all that are there.
//
// Made and used with the table open exclusively and the journal's records in place. IoError passes through: a disk that
// cannot be read is no damage that a repair mends.
class Salvage {
 public:
  // Called with what is lost, in words.
  using Lost = std::function<void(const std::string&)>;

  // `dat` is the .DAT file. Raises foreign when nothing in it is of a table, headerDamaged when no file tells the id by
  // which its pages can be believed, newerFormat.
  Salvage(FileSystem& files, PageCache& cache, const std::string& folder, const std::string& name,
          std::unique_ptr<File> dat, const Lost& lost);

  std::uint64_t fileId() const { return fileId_; }
  // Where the header cannot be read, or is older than the pages, its numbers mean nothing.
  bool headerSound() const { return headerSound_; }
  const TableMeta& meta() const { return meta_; }
  std::optional<TableDef> definition();  // none: it cannot be read any more

  bool wholeTree() const { return wholeTree_; }         // every record is there
  std::uint64_t rowsExpected() const { return rows_; }  // as the tree's root tells; 0 where it cannot
  std::size_t leaves() const { return leaves_.size(); }
  // Each row with its payload, by rising row id where leaves do not overlap; an id may come twice, the newer one first.
  // `leafDone` after each leaf.
  void eachRow(const std::function<void(RowId, std::string_view payload)>& row, const std::function<void()>& leafDone);
  // The record in a payload; false: its other pages cannot be read.
  bool record(std::string_view payload, std::string& record);
  // False: it cannot be read.
  bool content(const BlobRef& ref, std::string& content);
  // Row ids that readable index pages know.
  void eachKnownRow(const std::function<void(RowId)>& row);

 private:
  struct Leaf {
    PageNo page;
    RowId first, last;
    std::uint64_t stamp;
  };
  using Entry = std::function<void(std::string_view key, std::string_view payload)>;
  // Calls for each page of the file that is sound, up to `end`.
  void eachPage(Role role, const std::function<void(PageNo, const std::byte*)>& sound,
                const std::function<void(PageNo, const std::byte*)>& damaged);
  void identify(FileSystem& files, const std::string& folder, std::unique_ptr<File> dat);
  std::uint64_t soundPages(File& dat, std::uint64_t fileId);
  void readHeader();
  void findLeaves();
  void keepTreeLeaves();
  void eachEntry(PageFile& file, PageNo page, const Entry& entry);
  std::optional<TableDef> looseDefinition();

  std::string name_;
  const Lost& lost_;
  PageCache& cache_;
  std::uint64_t fileId_ = 0;
  TableMeta meta_;
  bool headerSound_ = false;
  std::array<PageSpace, 3> noSpace_;
  std::array<std::unique_ptr<PageFile>, 3> files_;  // null: there is none
  std::vector<Leaf> leaves_;
  std::uint64_t newest_ = 0;  // stamp
  std::uint64_t rows_ = 0;
  bool wholeTree_ = false;
};

}  // namespace quillon::store
