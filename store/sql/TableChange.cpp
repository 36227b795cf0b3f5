#include "store/sql/TableChange.h"

#include <algorithm>
#include <cstring>

#include "store/Errors.h"
#include "store/FieldScalar.h"
#include "store/InUse.h"
#include "store/sql/SelectCore.h"
#include "store/vfs/File.h"

namespace quillon::store::sql {
namespace {

constexpr std::size_t kUniqueMemory = std::size_t{8} << 20;  // of each index

}  // namespace

TableChange::TableChange(Table& table)
    : table_(table),
      change_(table.database(), table),
      buffer_(table.layout()),
      sharesOverlay_(table.database().inTransaction() || table.files().changed()),
      planned_([&table] { return table.database().session().scratch(); }) {}

TableChange::~TableChange() {
  if (finished_) return;
  table_.touched = rows_ > 0 || halfDone_;
  if (sharesOverlay_ && !halfDone_) takeBack();
}

// One row. A failure before the first page was touched leaves what was done before it whole.
template <typename Action>
void TableChange::change(Action&& action) {
  table_.touched = false;
  try {
    action();
  } catch (...) {
    halfDone_ = table_.touched;
    throw;
  }
  ++rows_;
}

void TableChange::testLocks(const std::vector<RowId>& rows) {
  const TableLocks& locks = table_.locks();
  const auto refuseLocked = [&](const char* who) { throw InUseError(Code::recordLocked, table_.name(), true, who); };
  for (const RowId row : rows)
    if (locks.recordHeldHere(row, nullptr)) refuseLocked("");
  // One question for the whole table; only when somebody edits in it each row is asked for.
  if (table_.database().inMemory() || locks.holdsTable() || locks.heldExclusively() ||
      !table_.files().lockFile().lockedByOther(kRecordBase, kRecordCount, LockMode::exclusive))
    return;
  for (const RowId row : rows)
    if (table_.locks().recordHeldElsewhere(row)) refuseLocked("another user");
}

void TableChange::setField(int field, const Datum& value) {
  refused_ = field;
  if (!isBlobType(table_.layout().field(field).type)) {
    buffer_.set(field, valueOf(value));
    return;
  }
  contents_[field] = contentOf(value);
}

void TableChange::checkRequired() {
  if (!table_.database().requiredIsChecked()) return;
  for (int i = 0; i < table_.layout().fieldCount(); ++i) {
    const FieldDef& field = table_.layout().field(i);
    if (!field.required || field.type == FieldType::autoInc) continue;
    const auto content = contents_.find(i);
    if (content != contents_.end() ? content->second.has_value() : !buffer_.isNull(i)) continue;
    refused_ = i;
    throw StoreError(Code::required, "Field '" + field.name + "' of table '" + table_.name() + "' must have a value.");
  }
}

void TableChange::insert(const std::vector<int>& fields, const std::vector<Datum>& values) {
  buffer_.clear();
  contents_.clear();
  for (std::size_t i = 0; i < fields.size(); ++i)
    if (!values[i].isNull()) setField(fields[i], values[i]);
  checkRequired();
  RowId row = 0;
  change([&] { row = table_.insertRow(buffer_, contents_, record_); });
  touched_.push_back(row);
}

void TableChange::startUpdate(const std::vector<int>& fields) {
  fields_ = fields;
  undoable_ = false;
  const auto isSet = [&](int field) { return std::find(fields.begin(), fields.end(), field) != fields.end(); };
  const auto& indexes = table_.definition().indexes;
  for (std::size_t i = 0; i < indexes.size(); ++i) {
    const auto& parts = indexes[i].parts;
    if (std::none_of(parts.begin(), parts.end(), [&](const IndexPart& part) { return isSet(part.field); })) continue;
    const int position = static_cast<int>(i);
    indexes_.push_back(position);
    if (indexes[i].unique)
      unique_[position] =
          std::make_unique<Sorter>([this] { return table_.database().session().scratch(); }, kUniqueMemory);
  }
  setsContents_ = std::any_of(fields.begin(), fields.end(),
                              [&](int field) { return isBlobType(table_.layout().field(field).type); });
  needsBefore_ = setsContents_ || !indexes_.empty();
  if (!table_.database().requiredIsChecked()) return;
  for (int i = 0; i < table_.layout().fieldCount(); ++i)
    if (table_.layout().field(i).required) required_.push_back(i);
}

// Fields of fixed width that are null neither before nor after stay in their place.
bool TableChange::patch(std::string_view before, const std::vector<Datum>& values) {
  const RecordLayout& layout = table_.layout();
  const RecordView view(layout, before);
  for (const int field : required_)
    if (view.isNull(field)) return false;
  for (std::size_t i = 0; i < fields_.size(); ++i)
    if (layout.width(fields_[i]) == RecordLayout::kVariable || view.isNull(fields_[i]) || values[i].isNull())
      return false;
  record_ = before;
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    const FieldDef& field = layout.field(fields_[i]);
    const auto place = view.raw(fields_[i]);
    refused_ = fields_[i];
    bytes_.clear();
    appendScalar(field.type, scalarOf(field, table_.name(), valueOf(values[i]), Purpose::field), bytes_);
    std::memcpy(record_.data() + (reinterpret_cast<const char*>(place.data()) - before.data()), bytes_.data(),
                bytes_.size());
  }
  return true;
}

void TableChange::planUpdate(RowId row, std::string_view before, const std::vector<Datum>& values) {
  if (setsContents_ || !patch(before, values)) {
    buffer_.load(before);
    contents_.clear();
    for (std::size_t i = 0; i < fields_.size(); ++i) setField(fields_[i], values[i]);
    checkRequired();
    buffer_.encode(record_);
  }
  touched_.push_back(row);
  for (const auto& [index, keys] : unique_) {
    std::string& key = bytes_;
    table_.codec(index).encode(RecordView(table_.layout(), record_), row, key);
    keys->add(KeyCodec::fieldsOf(key), key);
  }
  if (!setsContents_ && record_ == before) return;
  const auto size = static_cast<std::uint32_t>(needsBefore_ ? before.size() : 0);
  bytes_.assign(reinterpret_cast<const char*>(&row), sizeof row);
  bytes_.append(reinterpret_cast<const char*>(&size), sizeof size);
  bytes_ += before.substr(0, size);
  if (setsContents_)
    appendRow(values, bytes_);
  else
    bytes_ += record_;
  planned_.add(bytes_);
}

// What the statement leaves must be unique: its rows among themselves, and beside the rows that it does not change.
void TableChange::testUnique() {
  for (const auto& [position, keys] : unique_) {
    std::string last;
    bool any = false;
    TreeWalk walk(table_.index(position));
    keys->forEach([&, index = position](std::string_view key) {
      const std::string_view fields = KeyCodec::fieldsOf(key);
      if (any && fields == last) table_.raiseKeyViolation(index);
      any = true;
      last = fields;
      for (bool found = walk.seek(fields); found && walk.key().starts_with(fields); found = walk.next())
        if (!std::binary_search(touched_.begin(), touched_.end(), KeyCodec::rowOf(walk.key())))
          table_.raiseKeyViolation(index);
      return true;
    });
  }
}

void TableChange::update() {
  testLocks(touched_);
  testUnique();
  TreeRewrite rewrite(table_.rows());
  std::string before;
  std::vector<Datum> values;
  planned_.forEach([&](std::string_view bytes) {
    RowId row;
    std::uint32_t size;
    std::memcpy(&row, bytes.data(), sizeof row);
    std::memcpy(&size, bytes.data() + sizeof row, sizeof size);
    bytes.remove_prefix(sizeof row + sizeof size);
    const std::string_view after = bytes.substr(size);
    if (!setsContents_) return change([&] { table_.rewriteRow(rewrite, row, bytes.substr(0, size), after, indexes_); });
    before = bytes.substr(0, size);
    readRow(after, values);
    buffer_.load(before);
    contents_.clear();
    for (std::size_t i = 0; i < fields_.size(); ++i) setField(fields_[i], values[i]);
    change([&] { table_.updateRow(row, before, buffer_, contents_, record_, Table::Unique::tested); });
  });
  rows_ = touched_.size();
}

void TableChange::remove(const std::vector<RowId>& rows) {
  testLocks(rows);
  undoable_ = false;
  for (const RowId row : rows) {
    if (!table_.readRow(row, record_)) throw StoreError(Code::damaged, "Table '" + table_.name() + "' lost a record.");
    change([&] { table_.deleteRow(row, record_); });
  }
  touched_ = rows;
}

std::uint64_t TableChange::done() {
  change_.done(static_cast<int>(rows_));
  finished_ = true;
  if (!table_.cursors().empty()) {
    const Table::Reading reading(table_);
    for (const RowId row : touched_) {
      const bool there = table_.readRow(row, record_);
      table_.rowChanged(row, there ? &record_ : nullptr);
    }
  } else if (rows_ > 0) {
    table_.rowChanged(0, nullptr);
  }
  return rows_;
}

// Inside a transaction the overlay holds earlier changes too and cannot be dropped.
void TableChange::takeBack() noexcept {
  if (!undoable_) return;
  try {
    for (auto row = touched_.rbegin(); row != touched_.rend(); ++row)
      if (table_.readRow(*row, record_)) table_.deleteRow(*row, record_);
    table_.touched = false;
  } catch (...) {
    table_.touched = true;
  }
}

}  // namespace quillon::store::sql
