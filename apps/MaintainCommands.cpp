#include "apps/MaintainCommands.h"

#include <functional>
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

namespace quillon::apps {
namespace {

void printLines(const char* before, const std::vector<std::string>& lines) {
  for (const std::string& line : lines) std::cout << "  " << before << line << '\n';
}

std::string sizes(std::uint64_t before, std::uint64_t after) {
  return before == after ? counted(before, "byte") : counted(before, "byte") + " before, " + counted(after, "byte");
}

// Does the deed to each table, goes on behind a refusal, and fails when there was one or the deed says so.
ExitStatus forEachTable(
    Arguments arguments, std::string_view command, const char* done,
    const std::function<bool(store::Database&, const std::string& table, const store::Progress&)>& deed) {
  const GivenLogin login(arguments);
  const Arguments words = login.words();
  if (words.empty()) throw UsageError(std::string(command) + " takes a folder");
  const std::string folder(words.front());
  const LocalEnvironment environment;
  store::Session session(environment.get());
  store::Database database(session, folder);
  login.requireSecurityToMend(database);
  std::vector<std::string> tables(words.begin() + 1, words.end());
  if (tables.empty()) tables = database.tableNames();
  std::uint64_t failed = 0;
  for (const std::string& table : tables) {
    try {
      ProgressLine line;
      if (!deed(database, table, [&](int percent) { line.show(table + ' ' + std::to_string(percent) + '%'); }))
        ++failed;
    } catch (const store::StoreError& error) {
      std::cout << table << ": not " << done << ": " << error.what() << '\n';
      ++failed;
    }
  }
  if (failed == 0) return ExitStatus::done;
  std::cerr << "quillonctl: " << folder << ": " << counted(failed, "table") << " lost something or could not be "
            << done << '\n';
  return ExitStatus::failed;
}

bool repairOne(store::Database& database, const std::string& table, const store::Progress& progress) {
  const std::string name = store::Database::plainName(table);
  const store::RepairReport report =
      database.repairTable(name, {.definition = store::companyTable(name), .progress = progress});
  std::cout << report.table << ": ";
  if (!report.rebuilt) {
    std::cout << "sound, " << counted(report.rows, "row") << '\n';
    return true;
  }
  std::cout << "repaired, " << counted(report.rows, "row") << " saved, ";
  if (report.lossless())
    std::cout << "nothing lost";
  else
    std::cout << counted(report.lostRows, "row") << " and " << counted(report.lostContents, "content") << " lost, "
              << counted(report.setAside.size(), "row") << " set aside";
  std::cout << ", " << sizes(report.bytesBefore, report.bytesAfter) << " after\n";
  printLines("found: ", report.faults);
  printLines("", report.losses);
  printLines("set aside: ", report.setAside);
  if (report.kept)
    std::cout << "  the damaged files are kept as " << report.table << ".*" << store::kDamagedSuffix << '\n';
  return report.lossless();
}

bool optimizeOne(store::Database& database, const std::string& table, const store::Progress& progress) {
  const store::OptimizeReport report = database.optimizeTable(table, {.progress = progress});
  std::cout << report.table << ": " << (report.replaced ? "optimized, " : "left as it is, ")
            << counted(report.rows, "row") << ", " << sizes(report.bytesBefore, report.bytesAfter) << " after\n";
  return true;
}

}  // namespace

ExitStatus repairCommand(Arguments arguments) { return forEachTable(arguments, "repair", "repaired", repairOne); }

ExitStatus optimizeCommand(Arguments arguments) {
  return forEachTable(arguments, "optimize", "optimized", optimizeOne);
}

}  // namespace quillon::apps
