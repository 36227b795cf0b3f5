// The rows of a table: one change reaches the records' tree, every index and the blobs.
#include <algorithm>

#include "store/Errors.h"
#include "store/table/Table.h"

namespace quillon::store {
namespace {

// A payload of the rows' tree: this byte, then the record or the place of its overflow pages.
constexpr char kInline = 0;
constexpr char kOverflow = 1;
constexpr std::size_t kLongestInline = kMaxTreeEntry - 16;
// An overflow page: u32 next page, u32 bytes used, data.
constexpr std::size_t kOverflowNext = kPageBody;
constexpr std::size_t kOverflowUsed = kPageBody + 4;
constexpr std::size_t kOverflowData = kPageBody + 8;
constexpr std::size_t kOverflowRoom = kPageSize - kOverflowData;

[[noreturn]] void raiseDamaged(const std::string& table, const char* what) {
  throw StoreError(Code::damaged, std::string("Table '") + table + "' is damaged: " + what +
                                      ". Run Pack/Repair on the company, or bring back a backup.");
}

}  // namespace

std::string Table::rowKey(RowId row) {
  std::string key;
  KeyCodec::appendRow(key, row);
  return key;
}

RowId Table::rowOfKey(std::string_view key) { return KeyCodec::rowOf(key); }

std::string_view Table::record(PageFile& dat, std::uint32_t pages, const std::string& table, std::string_view payload,
                               std::string& scratch) {
  if (payload.empty()) raiseDamaged(table, "an empty record");
  if (payload[0] == kInline) return payload.substr(1);
  if (payload[0] != kOverflow || payload.size() != 9) raiseDamaged(table, "a record of no known kind");
  const auto* at = reinterpret_cast<const std::byte*>(payload.data());
  PageNo next = loadAt<PageNo>(at, 1);
  const auto length = loadAt<std::uint32_t>(at, 5);
  scratch.clear();
  while (scratch.size() < length) {
    if (next == 0 || next >= pages) raiseDamaged(table, "a long record is cut short");
    const PageRef page = dat.read(next);
    const auto used = loadAt<std::uint32_t>(page.data(), kOverflowUsed);
    if (pageKind(page.data()) != PageKind::overflow || used == 0 || used > kOverflowRoom)
      raiseDamaged(table, "a long record is cut short");
    scratch.append(reinterpret_cast<const char*>(page.data()) + kOverflowData, used);
    next = loadAt<PageNo>(page.data(), kOverflowNext);
  }
  if (scratch.size() != length) raiseDamaged(table, "a long record has the wrong length");
  return scratch;
}

std::string Table::payloadOf(std::string_view record) {
  std::string payload;
  if (record.size() <= kLongestInline) {
    payload.reserve(record.size() + 1);
    payload += kInline;
    return payload += record;
  }
  PageNo first = 0;
  // From the last part back, so that each page can name the next.
  const std::size_t parts = (record.size() + kOverflowRoom - 1) / kOverflowRoom;
  for (std::size_t part = parts; part-- > 0;) {
    const PageRef page = files_.file(kDat).allocate(PageKind::overflow);
    const std::size_t used = std::min(kOverflowRoom, record.size() - part * kOverflowRoom);
    storeAt<PageNo>(page.writable(), kOverflowNext, first);
    storeAt(page.writable(), kOverflowUsed, static_cast<std::uint32_t>(used));
    std::memcpy(page.writable() + kOverflowData, record.data() + part * kOverflowRoom, used);
    first = page.number();
  }
  payload.resize(9);
  payload[0] = kOverflow;
  storeAt(reinterpret_cast<std::byte*>(payload.data()), 1, first);
  storeAt(reinterpret_cast<std::byte*>(payload.data()), 5, static_cast<std::uint32_t>(record.size()));
  return payload;
}

void Table::releasePayload(std::string_view payload) {
  if (payload.empty() || payload[0] != kOverflow) return;
  std::string scratch;
  record(payload, scratch);  // proves the chain sound before any page of it is given back
  PageNo next = loadAt<PageNo>(reinterpret_cast<const std::byte*>(payload.data()), 1);
  while (next != 0) {
    const PageNo page = next;
    next = loadAt<PageNo>(files_.file(kDat).read(page).data(), kOverflowNext);
    files_.file(kDat).release(page);
  }
}

bool Table::readRow(RowId row, std::string& out) {
  TreeWalk walk(*rows_);
  const std::string key = rowKey(row);
  if (!walk.seek(key) || walk.key() != key) return false;
  std::string scratch;
  out.assign(record(walk.payload(), scratch));
  return true;
}

void Table::encodeKeys(const std::string& bytes, RowId id, std::vector<std::string>& keys) {
  const RecordView view(*layout_, bytes);
  for (std::size_t i = 0; i < codecs_.size(); ++i) codecs_[i].encode(view, id, keys[i]);
}

void Table::checkUnique(RowId id, std::string_view key, int position) {
  if (!codec(position).unique()) return;
  const std::string_view fields = KeyCodec::fieldsOf(key);
  TreeWalk walk(index(position));
  for (bool found = walk.seek(fields); found && walk.key().starts_with(fields); found = walk.next())
    if (KeyCodec::rowOf(walk.key()) != id) raiseKeyViolation(position);
}

void Table::raiseKeyViolation(int position) const {
  const IndexDef& definition = definition_.indexes[static_cast<std::size_t>(position)];
  std::string fields;
  for (const IndexPart& part : definition.parts)
    fields += (fields.empty() ? "'" : ", '") + definition_.fields[static_cast<std::size_t>(part.field)].name + "'";
  throw StoreError(Code::keyViolation,
                   "Key violation: table '" + name() + "' has a record with the same " + fields + " already.");
}

void Table::storeBlobs(RowBuffer& row, const RecordView* before, const BlobContents& contents) {
  for (const auto& [field, content] : contents) {
    const BlobRef old = before && !before->isNull(field) ? before->blobRef(field) : BlobRef{};
    if (!content) {
      row.setNull(field);
    } else {
      const bool same =
          old.length > 0 && old.length == content->size() && old.hash == hashBytes(content->data(), content->size());
      if (same) continue;
      row.setBlobRef(field, blobs_->put(std::as_bytes(std::span(*content))));
    }
    if (old.length > 0) blobs_->drop(old);
  }
}

RowId Table::insertRow(RowBuffer& row, const BlobContents& contents, std::string& bytes) {
  TableMeta& meta = files_.meta();
  const RowId id = std::max(meta.nextRow, rowFloor_);
  std::int64_t autoInc = meta.autoInc;
  if (autoIncField_ >= 0) {
    const Value given = row.get(autoIncField_);
    autoInc = given.isNull() ? meta.autoInc + 1 : std::max(meta.autoInc, given.asInt64());
    if (given.isNull()) {
      if (autoInc > INT32_MAX)
        throw StoreError(Code::limitReached, "Table '" + name() + "' has no automatic numbers left.");
      row.set(autoIncField_, autoInc);
    }
  }
  row.encode(bytes);
  encodeKeys(bytes, id, keys_);
  for (std::size_t i = 0; i < keys_.size(); ++i) checkUnique(id, keys_[i], static_cast<int>(i));

  touched = true;
  if (!contents.empty()) {
    storeBlobs(row, nullptr, contents);
    row.encode(bytes);
  }
  if (!rows_->insert(rowKey(id), payloadOf(bytes))) raiseDamaged(name(), "its next row number is taken");
  for (std::size_t i = 0; i < keys_.size(); ++i)
    if (!indexes_[i]->insert(keys_[i], {})) raiseDamaged(name(), "an index knows a record that is not there");
  meta.nextRow = id + 1;
  meta.autoInc = autoInc;
  return id;
}

bool Table::restoreRow(RowId id, RowBuffer& row, const BlobContents& contents) {
  const std::string key = rowKey(id);
  TreeWalk walk(*rows_);
  if (id < files_.meta().nextRow && walk.seek(key) && walk.key() == key) return false;
  touched = true;
  storeBlobs(row, nullptr, contents);
  if (!rows_->insert(key, payloadOf(row.encode()))) raiseDamaged(name(), "its next row number is taken");
  files_.meta().nextRow = std::max(files_.meta().nextRow, id + 1);
  return true;
}

void Table::updateRow(RowId id, const std::string& before, RowBuffer& row, const BlobContents& contents,
                      std::string& bytes, Unique unique) {
  const RecordView old(*layout_, before);
  row.encode(bytes);
  const RecordView changed(*layout_, bytes);
  std::vector<std::size_t> moved;  // indexes whose key changes
  for (std::size_t i = 0; i < codecs_.size(); ++i) {
    const auto& parts = definition_.indexes[i].parts;
    if (std::none_of(parts.begin(), parts.end(), [&](const IndexPart& part) { return row.modified(part.field); }))
      continue;
    codecs_[i].encode(old, id, oldKeys_[i]);
    codecs_[i].encode(changed, id, keys_[i]);
    if (keys_[i] == oldKeys_[i]) continue;
    if (unique == Unique::toTest) checkUnique(id, keys_[i], static_cast<int>(i));
    moved.push_back(i);
  }

  touched = true;
  storeBlobs(row, &old, contents);
  if (!contents.empty()) row.encode(bytes);
  if (bytes != before) {
    const std::string key = rowKey(id);
    if (before.size() > kLongestInline) {
      TreeWalk walk(*rows_);
      if (!walk.seek(key) || walk.key() != key) raiseDamaged(name(), "a record is gone from its place");
      releasePayload(std::string(walk.payload()));
    }
    if (!rows_->replace(key, payloadOf(bytes))) raiseDamaged(name(), "a record is gone from its place");
  }
  for (const std::size_t i : moved) {
    if (!indexes_[i]->erase(oldKeys_[i]) || !indexes_[i]->insert(keys_[i], {}))
      raiseDamaged(name(), "an index does not fit its records");
  }
  TableMeta& meta = files_.meta();
  if (autoIncField_ >= 0 && !row.isNull(autoIncField_))
    meta.autoInc = std::max(meta.autoInc, row.get(autoIncField_).asInt64());
}

void Table::rewriteRow(TreeRewrite& rewrite, RowId id, std::string_view before, std::string_view after,
                       const std::vector<int>& indexes) {
  touched = true;
  const std::string key = rowKey(id);
  const std::optional<std::string_view> stored = rewrite.find(key);
  if (!stored) raiseDamaged(name(), "a record is gone from its place");
  if (stored->starts_with(kOverflow)) releasePayload(std::string(*stored));
  rewrite.replace(key, payloadOf(after));
  for (const int index : indexes) {
    const auto i = static_cast<std::size_t>(index);
    codecs_[i].encode(RecordView(*layout_, before), id, oldKeys_[i]);
    codecs_[i].encode(RecordView(*layout_, after), id, keys_[i]);
    if (keys_[i] == oldKeys_[i]) continue;
    if (!indexes_[i]->erase(oldKeys_[i]) || !indexes_[i]->insert(keys_[i], {}))
      raiseDamaged(name(), "an index does not fit its records");
  }
  TableMeta& meta = files_.meta();
  if (autoIncField_ < 0) return;
  const RecordView changed(*layout_, after);
  if (!changed.isNull(autoIncField_)) meta.autoInc = std::max(meta.autoInc, changed.integer(autoIncField_));
}

void Table::deleteRow(RowId id, const std::string& before) {
  const RecordView old(*layout_, before);
  encodeKeys(before, id, oldKeys_);
  touched = true;
  const std::string key = rowKey(id);
  if (before.size() > kLongestInline) {
    TreeWalk walk(*rows_);
    if (!walk.seek(key) || walk.key() != key) raiseDamaged(name(), "a record is gone from its place");
    releasePayload(std::string(walk.payload()));
  }
  if (!rows_->erase(key)) raiseDamaged(name(), "a record is gone from its place");
  for (std::size_t i = 0; i < oldKeys_.size(); ++i)
    if (!indexes_[i]->erase(oldKeys_[i])) raiseDamaged(name(), "an index does not fit its records");
  for (int field = 0; field < layout_->fieldCount(); ++field)
    if (isBlobType(layout_->field(field).type) && !old.isNull(field)) blobs_->drop(old.blobRef(field));
}

void Table::removeAll() {
  touched = true;
  TableMeta& meta = files_.meta();
  rowFloor_ = std::max(rowFloor_, meta.nextRow);
  meta.rows = 0;
  meta.indexes.fill(0);
  meta.autoInc = 0;
  meta.blobs = {};
  // Identity, meta and the schema's pages, which were made one behind the other, stay; pages behind the mark are made
  // anew.
  const std::uint32_t schemaPages =
      static_cast<std::uint32_t>((meta.schemaBytes + kPageSize - kPageBody - 5) / (kPageSize - kPageBody - 4));
  meta.space[kDat] = {2 + schemaPages, 0, 0};
  meta.space[kIdx] = meta.space[kBlb] = PageSpace{};
  files_.storeMeta(meta.stamp);  // the only page that changes; without one there would be nothing to publish
}

}  // namespace quillon::store
