#include "apps/MaintainCommands.h"

#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include "apps/Counted.h"
#include "apps/GivenLogin.h"
#include "apps/LocalEnvironment.h"
#include "apps/ProgressLine.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/Repair.h"
#include "store/Session.h"
#include "store/schema/CompanySchema.h"
#include "store/schema/CompareSchema.h"
#include "store/schema/CreateCompany.h"
#include "store/table/TableFiles.h"
#include "store/vfs/FileNames.h"

namespace quillon::apps {
namespace {

void printLines(const char* before, const std::vector<std::string>& lines) {
  for (const std::string& line : lines) std::cout << "  " << before << line << '\n';
}

std::string sizes(std::uint64_t before, std::uint64_t after) {
  return before == after ? counted(before, "byte") : counted(before, "byte") + " before, " + counted(after, "byte");
}

// One of the two commands. `deed` prints its line; false: something was lost.
struct Deed {
  const char* done;
  bool (*run)(store::Database&, const std::string& table, const store::Progress&);
};

// Does the deed to each table, goes on behind a refusal, and fails when there was one or something was lost.
ExitStatus forEachTable(store::Database& database, const Deed& deed, const std::vector<std::string>& tables,
                        bool lostBefore) {
  std::uint64_t lost = lostBefore ? 1 : 0, refused = 0;
  for (const std::string& table : tables) {
    try {
      ProgressLine line;
      if (!deed.run(database, table, [&](int percent) { line.show(table + ' ' + std::to_string(percent) + '%'); }))
        ++lost;
    } catch (const store::StoreError& error) {
      std::cout << table << ": not " << deed.done << ": " << error.what() << '\n';
      ++refused;
    }
  }
  if (lost + refused == 0) return ExitStatus::done;
  std::cerr << "quillonctl: " << database.folder() << ": ";
  if (refused > 0) std::cerr << counted(refused, "table") << " could not be " << deed.done;
  if (lost > 0 && refused > 0) std::cerr << ", ";
  if (lost > 0) std::cerr << "something was lost, as told above";
  std::cerr << '\n';
  return ExitStatus::failed;
}

// A table that is missing begins anew only where the folder is a company's or something of the table is left.
const store::TableDef* definitionOf(store::Database& database, const std::string& name) {
  const auto isThere = [&](const char* extension) {
    return database.files().exists(store::findFile(database.files(), database.folder(), name + extension));
  };
  const bool makes = std::ranges::any_of(store::kExtensions, isThere) || store::isCompany(database);
  return makes ? store::companyTable(name) : nullptr;
}

// With those that a company has and this one is without.
std::vector<std::string> tablesToRepair(store::Database& database) {
  std::vector<std::string> tables = database.tableNames();
  if (store::isCompany(database))
    for (const store::TableDef& table : store::companyTables())
      if (!database.exists(table.name)) tables.push_back(table.name);
  return tables;
}

bool repairOne(store::Database& database, const std::string& table, const store::Progress& progress) {
  const std::string name = store::Database::plainName(table);
  const store::RepairReport report =
      database.repairTable(name, {.definition = definitionOf(database, name), .progress = progress});
  std::cout << report.table << ": ";
  if (!report.rebuilt) {
    std::cout << "sound, " << counted(report.rows, "row") << '\n';
    return true;
  }
  std::cout << "repaired, " << counted(report.rows, "row") << " saved, ";
  if (report.lossless())
    std::cout << "nothing lost";
  else if (report.lostRows + report.lostContents + report.setAside.size() == 0)
    std::cout << "how many lost is not known";
  else
    std::cout << counted(report.lostRows, "row") << " and " << counted(report.lostContents, "content") << " lost, "
              << counted(report.setAside.size(), "row") << " set aside";
  std::cout << ", " << sizes(report.bytesBefore, report.bytesAfter) << " after\n";
  printLines("found: ", report.faults);
  printLines("", report.losses);
  printLines("set aside: ", report.setAside);
  if (!report.keptAs.empty())
    std::cout << "  the damaged files are kept as " << report.table << ".*" << report.keptAs << '\n';
  if (report.rows == 0 && store::beginsWithARow(name))
    std::cout << "  it had a row of settings or next numbers, which has to be entered again\n";
  return report.lossless();
}

bool optimizeOne(store::Database& database, const std::string& table, const store::Progress& progress) {
  const store::OptimizeReport report = database.optimizeTable(table, {.progress = progress});
  std::cout << report.table << ": " << (report.replaced ? "optimized, " : "left as it is, ")
            << counted(report.rows, "row") << ", " << sizes(report.bytesBefore, report.bytesAfter) << " after\n";
  return true;
}

}  // namespace

ExitStatus repairCommand(Arguments arguments) {
  const GivenLogin login(arguments);
  const Arguments words = login.words();
  if (words.empty()) throw UsageError("repair takes a folder");
  const std::string folder(words.front());
  const LocalEnvironment environment;
  const std::vector<std::string> journal = store::repairJournal(environment.get(), folder);
  if (!journal.empty()) std::cout << "the journal: made anew\n";
  printLines("", journal);
  store::Session session(environment.get());
  store::Database database(session, folder);
  login.requireSecurityToMend(database);
  std::vector<std::string> tables(words.begin() + 1, words.end());
  if (tables.empty()) tables = tablesToRepair(database);
  return forEachTable(database, {"repaired", repairOne}, tables, !journal.empty());
}

ExitStatus optimizeCommand(Arguments arguments) {
  const GivenLogin login(arguments);
  const Arguments words = login.words();
  if (words.empty()) throw UsageError("optimize takes a folder");
  const LocalEnvironment environment;
  store::Session session(environment.get());
  store::Database database(session, std::string(words.front()));
  login.requireSecurityToMend(database);
  std::vector<std::string> tables(words.begin() + 1, words.end());
  if (tables.empty()) tables = database.tableNames();
  return forEachTable(database, {"optimized", optimizeOne}, tables, false);
}

}  // namespace quillon::apps
