#include "store/OneMoment.h"

#include <cstdint>
#include <memory>

#include "store/Cursor.h"
#include "store/Database.h"
#include "store/table/Table.h"

namespace quillon::store {
namespace {

constexpr int kFreeTries = 2;

// Which commit each table is of now.
std::vector<std::uint64_t> stampsOf(const std::vector<Table*>& tables) {
  std::vector<std::uint64_t> stamps;
  for (Table* table : tables) {
    table->read([] {});
    stamps.push_back(table->files().stamp());
  }
  return stamps;
}

}  // namespace

void atOneMoment(Database& database, const std::vector<std::string>& names, const std::function<void()>& read) {
  std::vector<std::unique_ptr<Cursor>> cursors;  // they keep the tables open
  std::vector<Table*> tables;
  for (const std::string& name : names) {
    cursors.push_back(std::make_unique<Cursor>(database, name));
    cursors.back()->open();
    tables.push_back(&cursors.back()->table());
  }
  for (int tries = 0; tries < kFreeTries; ++tries) {
    const std::vector<std::uint64_t> before = stampsOf(tables);
    read();
    if (stampsOf(tables) == before) return;
  }
  const Database::Snapshot moment(database, tables);
  read();
}

}  // namespace quillon::store
