// A table takes the place of another, or of none, with all of its rows at once.
#include <optional>

#include "store/Database.h"
#include "store/Errors.h"
#include "store/journal/CommitProtocol.h"
#include "store/table/Rebuild.h"

namespace quillon::store {

void Rebuild::replaceTable(Database& database, TableDef definition, const std::function<void(Table&)>& fill) {
  database.refuseInTransaction();
  database.settle();
  const std::string found = database.findName(definition.name);
  if (!found.empty()) definition.name = found;
  definition.validate();
  database.refuseOpenHere(definition.name, "replaced");
  // Two processes must not write the same new files: a table is held, and where there is none the commit lock is.
  const int marker = 0;
  Table* old = nullptr;
  std::optional<CommitProtocol::Quiet> alone;
  if (!found.empty()) {
    old = &database.openTable(found, &marker, true);
  } else {
    alone.emplace(*database.protocol(), CommitProtocol::Quiet::Journal::emptied);
    if (database.exists(definition.name))
      throw StoreError(Code::tableExists, "Table '" + definition.name + "' was made by another user just now.");
  }
  const auto close = [&] {
    if (old == nullptr) return;
    database.closeTable(*old, &marker);
    database.endStandBy(found);  // or the old files would stay on the disk, nameless
  };
  try {
    const std::uint64_t before = old ? old->files().fileId() : 0;
    Rebuild rebuild(database, definition.name, definition, database.newFileId(definition.name, before));
    rebuild.change_.reset();
    fill(*rebuild.table_);
    rebuild.change_.emplace(*rebuild.aside_, *rebuild.table_);
    rebuild.finish(0, rebuild.table_->files().meta().autoInc);
    rebuild.install("", alone.has_value());
  } catch (...) {
    close();
    throw;
  }
  close();
}

}  // namespace quillon::store
