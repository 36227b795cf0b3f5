#include "store/tree/Tree.h"
#include "store/tree/TreePage.h"
#include "support/VerifiedCompany.h"

namespace quillon::store {
namespace {

using namespace verified;
using testing::HasSubstr;

RowId rowWithContent(Table& table, RowId after, BlobRef& ref) {
  TreeWalk walk(table.rows());
  for (bool more = walk.seek(Table::rowKey(after + 1)); more; more = walk.next()) {
    std::string scratch;
    const std::string record(table.record(walk.payload(), scratch));
    const RecordView view(table.layout(), record);
    if (view.isNull(9) || record.size() > 1000) continue;
    ref = view.blobRef(9);
    return Table::rowOfKey(walk.key());
  }
  return 0;
}

void rewrite(Table& table, RowId row, const std::function<void(RowBuffer&)>& change) {
  std::string record;
  ASSERT_TRUE(table.readRow(row, record));
  RowBuffer buffer(table.layout());
  buffer.load(record);
  change(buffer);
  table.rows().replace(Table::rowKey(row), std::string(1, '\0') + buffer.encode());
}

std::string keyAt(Table& table, int index, std::uint64_t rank) {
  TreeWalk walk(table.index(index));
  walk.seekRank(rank);
  return std::string(walk.key());
}

struct Planted {
  const char* name;
  std::function<void(Table&)> change;
  const char* told;
};

std::vector<Planted> faultsOfRowsAndIndexes() {
  return {
      {"a missing key", [](Table& t) { t.index(1).erase(keyAt(t, 1, 7)); }, "has no key in the index 'ByName'"},
      {"an extra key",
       [](Table& t) {
         std::string key = keyAt(t, 2, 7);
         key[1] = static_cast<char>(key[1] ^ 1);
         t.index(2).insert(key, {});
       },
       "the index 'ByBalance' has a key of record"},
      {"a key of no record",
       [](Table& t) {
         std::string key = keyAt(t, 0, 7);
         t.index(0).erase(key);
         key.replace(key.size() - 5, 5, Table::rowKey(99999));
         t.index(0).insert(key, {});
       },
       "the primary index has a key of record 99999, which is not there"},
      {"a changed record", [](Table& t) { rewrite(t, 2, [](RowBuffer& row) { row.set(8, Money::fromRaw(-77)); }); },
       "record 2 has no key in the index 'ByBalance'"},
      {"a repeated unique key",
       [](Table& t) {
         rewrite(t, 2, [](RowBuffer& row) { row.set(1, "NAME0"); });
         std::string key = keyAt(t, 1, 0);
         key.replace(key.size() - 5, 5, Table::rowKey(2));
         t.index(1).insert(key, {});
       },
       "the index 'ByName' has the same key for the records 1 and 2"},
      {"a payload in an index", [](Table& t) { t.index(1).replace(keyAt(t, 1, 7), "x"); }, "has a payload"},
      {"half a record",
       [](Table& t) {
         std::string record;
         t.readRow(5, record);
         t.rows().replace(Table::rowKey(5), std::string(1, '\0') + record.substr(0, record.size() - 1));
       },
       "record 5 is not well formed"},
      {"a record of no kind", [](Table& t) { t.rows().replace(Table::rowKey(5), "\x07 x"); }, "no known kind"},
      {"a long record nowhere",
       [](Table& t) { t.rows().replace(Table::rowKey(5), std::string("\x01\x01\0\0\0\x50\0\0\0", 9)); }, "page 1"},
      {"an automatic number above the counter", [](Table& t) { t.files().meta().autoInc = 3; },
       "has the automatic number 400, the header is at 3"},
      {"a row at the next number", [](Table& t) { t.files().meta().nextRow = 400; },
       "record 400 is not below the next row number 400"},
      {"an index too many", [](Table& t) { t.files().meta().indexes[9] = 1; }, "not defined"},
  };
}

std::vector<Planted> faultsOfPages() {
  const auto root = [](Table& t, Role role) {
    return t.files().file(role).write(role == kDat ? t.files().meta().rows : t.files().meta().indexes[0]);
  };
  return {
      {"a wrong count in an inner page",
       [root](Table& t) {
         TreePageEditor page(root(t, kDat).writable(), t.files().file(kDat));
         ASSERT_FALSE(page.leaf());
         page.addRows(1, 1);
       },
       "the count of entry 1 is wrong"},
      {"keys out of order",
       [root](Table& t) {
         TreePageEditor page(root(t, kIdx).writable(), t.files().file(kIdx));
         ASSERT_FALSE(page.leaf());
         const PageRef leaf = t.files().file(kIdx).write(page.child(1));
         std::byte* slots = leaf.writable() + kTreeSlots;
         std::swap_ranges(slots, slots + 2, slots + 2);
       },
       "keys out of order"},
      {"a lost page of rows", [](Table& t) { t.files().file(kDat).allocate(PageKind::overflow); }, "is lost"},
      {"a lost page of an index", [](Table& t) { t.files().file(kIdx).allocate(PageKind::leaf); }, "is lost"},
      {"a free page that is used",
       [](Table& t) { t.files().meta().space[kIdx].freeHead = t.files().meta().indexes[2]; }, "is used twice"},
      {"a wrong count of free pages", [](Table& t) { ++t.files().meta().space[kDat].freePages; }, "its header says"},
      {"two indexes with one tree", [](Table& t) { t.files().meta().indexes[1] = t.files().meta().indexes[0]; },
       "is used twice"},
      {"a forgotten end of the file", [](Table& t) { --t.files().meta().space[kIdx].pages; },
       "is used but is not there"},
  };
}

std::vector<Planted> faultsOfContents() {
  return {
      {"a block used twice",
       [](Table& t) {
         BlobRef first, second;
         rowWithContent(t, 0, first);
         const RowId row = rowWithContent(t, rowWithContent(t, 0, first), second);
         rewrite(t, row, [&](RowBuffer& buffer) { buffer.setBlobRef(9, first); });
       },
       "is used twice"},
      {"a lost content",
       [](Table& t) {
         BlobRef ref;
         rewrite(t, rowWithContent(t, 0, ref), [](RowBuffer& buffer) { buffer.setNull(9); });
       },
       "is lost"},
      {"changed bytes of a content",
       [](Table& t) {
         BlobRef ref;
         rowWithContent(t, 0, ref);
         const PageRef page = t.files().file(kBlb).write(blobPage(ref.firstBlock));
         page.writable()[blobOffset(ref.firstBlock) + 20] ^= std::byte{1};
       },
       "the content of 'Notes' of record"},
      {"forgotten free blocks", [](Table& t) { t.files().meta().blobs = {}; }, "is lost"},
      {"a wrong count of free blocks", [](Table& t) { ++t.files().meta().blobs.freeBlocks; }, "count of free blocks"},
      {"a mark that is wrong",
       [](Table& t) {
         BlobRef ref;
         rowWithContent(t, 0, ref);
         t.files().file(kBlb).write(blobPage(ref.firstBlock)).writable()[kBlobTaken] ^= std::byte{0xFE};
       },
       ""},
  };
}

TEST_F(VerifiedCompany, FindsFaultsBehindValidChecksums) {
  std::array<std::string, 3> sound;
  for (const Role role : {kDat, kIdx, kBlb}) sound[role] = load(path("Cust", role));
  for (const auto& list : {faultsOfRowsAndIndexes(), faultsOfPages(), faultsOfContents()}) {
    for (const Planted& planted : list) {
      plant(planted.change);
      const VerifyReport report = verify();
      expectOnly(report, "Cust", planted.name);
      EXPECT_THAT(textOf(report), HasSubstr(planted.told)) << planted.name;
      for (const Role role : {kDat, kIdx, kBlb}) save(path("Cust", role), sound[role]);
    }
  }
  EXPECT_TRUE(verify().clean());
}

}  // namespace
}  // namespace quillon::store
