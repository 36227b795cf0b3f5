#include "store/sql/TableChange.h"

#include "store/Errors.h"
#include "store/vfs/File.h"

namespace quillon::store::sql {

TableChange::TableChange(Table& table)
    : table_(table),
      change_(table.database(), table),
      buffer_(table.layout()),
      sharesOverlay_(table.database().inTransaction() || table.files().changed()) {}

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
  const auto refuseLocked = [&](const char* who) {
    throw StoreError(Code::recordLocked, "A record of table '" + table_.name() +
                                             "' that the statement changes is being edited " + who + ".");
  };
  for (const RowId row : rows)
    if (locks.recordHeldHere(row, nullptr)) refuseLocked("in another window of this program");
  // One question for the whole table; only when somebody edits in it each row is asked for.
  if (table_.database().inMemory() || locks.holdsTable() || locks.heldExclusively() ||
      !table_.files().lockFile().lockedByOther(kRecordBase, kRecordCount, LockMode::exclusive))
    return;
  for (const RowId row : rows)
    if (table_.locks().recordHeldElsewhere(row)) refuseLocked("by another user");
}

void TableChange::setField(int field, const Datum& value) {
  refused_ = field;
  if (!isBlobType(table_.layout().field(field).type)) {
    buffer_.set(field, valueOf(value));
    return;
  }
  undoable_ = false;
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
  if (sharesOverlay_) steps_.push_back({row, true, {}, record_});
  touched_.push_back(row);
}

void TableChange::update(RowId row, const std::string& before, const std::vector<int>& fields,
                         const std::vector<Datum>& values) {
  buffer_.load(before);
  contents_.clear();
  for (std::size_t i = 0; i < fields.size(); ++i) setField(fields[i], values[i]);
  checkRequired();
  change([&] { table_.updateRow(row, before, buffer_, contents_, record_); });
  if (sharesOverlay_) steps_.push_back({row, false, before, record_});
  touched_.push_back(row);
}

void TableChange::remove(RowId row) {
  if (!table_.readRow(row, record_)) throw StoreError(Code::damaged, "Table '" + table_.name() + "' lost a record.");
  undoable_ = false;
  change([&] { table_.deleteRow(row, record_); });
  touched_.push_back(row);
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

// Inside a transaction the overlay holds earlier changes too and cannot be dropped. Contents and deleted rows cannot be
// put back here; the transaction then has to be rolled back as a whole.
void TableChange::takeBack() noexcept {
  if (!undoable_) return;
  try {
    for (auto step = steps_.rbegin(); step != steps_.rend(); ++step) {
      if (step->inserted) {
        table_.deleteRow(step->row, step->after);
      } else {
        buffer_.load(step->before);
        table_.updateRow(step->row, step->after, buffer_, {}, record_, Table::Keys::all);
      }
    }
    table_.touched = false;
  } catch (...) {
    table_.touched = true;
  }
}

}  // namespace quillon::store::sql
