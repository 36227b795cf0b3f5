// A table takes another definition: its rows are copied aside, and written back in the new form as one change.
#include "base/Text.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/sql/Datum.h"
#include "store/table/Table.h"

namespace quillon::store {
namespace {

Value converted(const Value& value, FieldType type) {
  sql::Texts texts;
  const sql::Type wanted = sql::typeOf(type);
  if (value.isNull()) return value;
  if (wanted == sql::Type::text) return value.kind() == Value::Kind::text ? value : Value(value.toText());
  return sql::valueOf(sql::convert(sql::datumOf(value, texts), wanted, texts));
}

// Copies each row of `source` into `target`, whose fields come from `from`; a field without a source is null.
void copyRows(Table& source, Table& target, const std::vector<int>& from) {
  RowBuffer row(target.layout());
  BlobContents contents;
  std::string scratch, record;
  TreeWalk walk(source.rows());
  for (bool found = walk.first(); found; found = walk.next()) {
    const RecordView view(source.layout(), source.record(walk.payload(), scratch));
    row.clear();
    contents.clear();
    for (std::size_t i = 0; i < from.size(); ++i) {
      const int old = from[i];
      const int field = static_cast<int>(i);
      if (old < 0 || view.isNull(old)) continue;
      const bool content = isBlobType(source.layout().field(old).type);
      if (content) {
        std::string bytes = source.readBlob(view.blobRef(old));
        if (isBlobType(target.layout().field(field).type))
          contents[field] = std::move(bytes);
        else
          row.set(field, converted(Value(std::move(bytes)), target.layout().field(field).type));
      } else if (isBlobType(target.layout().field(field).type)) {
        contents[field] =
            view.get(old).kind() == Value::Kind::text ? std::string(view.text(old)) : view.get(old).toText();
      } else {
        row.set(field, converted(view.get(old), target.layout().field(field).type));
      }
    }
    target.insertRow(row, contents, record);
  }
}

}  // namespace

void Database::redefineTable(const TableDef& definition, const std::vector<int>& from) {
  refuseInTransaction();
  definition.validate();
  if (isOpenHere(definition.name))
    throw StoreError(Code::tableInUse,
                     "Table '" + definition.name + "' is in use by this program; its definition cannot be changed.");
  Database& memory = session_.memory();
  TableDef aside = definition;
  aside.name = "Redefined " + definition.name.substr(0, 40);
  aside.indexes.clear();
  if (memory.exists(aside.name)) memory.dropTable(aside.name);
  memory.createTable(aside);
  const int marker = 0;
  Table& kept = memory.openTable(aside.name, &marker, false);
  Table* table = nullptr;
  const auto close = [&] {
    if (table) closeTable(*table, &marker);
    endStandBy(definition.name);
    memory.closeTable(kept, &marker);
    memory.dropTable(aside.name);
  };
  try {
    table = &openTable(definition.name, &marker, true);
    {
      Change filling(memory, kept);
      const Table::Reading reading(*table);
      copyRows(*table, kept, from);
      filling.done();
    }
    Change change(*this, *table);
    table->redefine(definition);
    std::vector<int> same;
    for (std::size_t i = 0; i < definition.fields.size(); ++i) same.push_back(static_cast<int>(i));
    const Table::Reading reading(kept);
    copyRows(kept, *table, same);
    change.done();
    settle();
  } catch (...) {
    close();
    throw;
  }
  close();
}

// Inside a Change under the exclusive open: no rows, and the new definition. The old one is read again if the change is
// dropped, because the table is closed then.
void Table::redefine(const TableDef& definition) {
  TableDef named = definition;
  named.name = definition_.name;
  const std::int64_t autoInc = files_.meta().autoInc;
  removeAll();
  TableMeta& meta = files_.meta();
  meta.autoInc = autoInc;
  meta.space[kDat].pages = 2;
  files_.writeSchema(named.encode());
  rows_.reset();
  indexes_.clear();
  codecs_.clear();
  blobs_.reset();
  autoIncField_ = -1;
  load();
}

}  // namespace quillon::store
