#include "apps/VerifyCommand.h"

#include <algorithm>
#include <iomanip>
#include <iostream>
#include <string>
#include <vector>

#include "apps/Counted.h"
#include "apps/LocalEnvironment.h"
#include "apps/ProgressLine.h"
#include "store/Database.h"
#include "store/Session.h"
#include "store/Verify.h"
#include "store/schema/CompanySchema.h"
#include "store/schema/CompareSchema.h"

namespace quillon::apps {
namespace {

void printFindings(const store::VerifyReport& report, const std::string& table) {
  for (const store::Finding& finding : report.findings)
    if (finding.table == table) std::cout << "  " << finding.text << '\n';
}

void printTables(const store::VerifyReport& report) {
  std::size_t width = 0;
  for (const store::TableReport& table : report.tables) width = std::max(width, table.table.size());
  for (const store::TableReport& table : report.tables) {
    const auto faults = std::ranges::count(report.findings, table.table, &store::Finding::table);
    std::cout << std::left << std::setw(static_cast<int>(width)) << table.table << "  " << counted(table.rows, "row")
              << ", " << counted(table.pages, "page") << ": " << (faults ? counted(faults, "fault") : "sound") << '\n';
    printFindings(report, table.table);
  }
}

// Findings about what is no table of the report: the journal, a file that cannot be opened.
void printOthers(const store::VerifyReport& report) {
  for (const store::Finding& finding : report.findings) {
    if (std::ranges::count(report.tables, finding.table, &store::TableReport::table)) continue;
    if (!finding.table.empty()) std::cout << finding.table << ": ";
    std::cout << finding.text << '\n';
  }
}

// In the folder of a company each of its tables has to be there, and to be what a company's is; others may lie beside
// them.
void findMissingTables(const store::Environment& environment, const std::string& folder, store::VerifyReport& report) {
  store::Session session(environment);
  store::Database database(session, folder);
  if (!store::isCompany(database)) return;
  for (const store::SchemaDifference& difference : store::compareWithSchema(database)) {
    // What kept a table from being opened is told already.
    const bool told = std::ranges::count(report.findings, difference.table, &store::Finding::table) > 0;
    if (!told && store::companyTable(difference.table)) report.findings.push_back({difference.table, difference.text});
  }
}

}  // namespace

ExitStatus verifyCommand(Arguments arguments) {
  if (arguments.size() != 1) throw UsageError("verify takes one folder");
  const std::string folder(arguments.front());
  const LocalEnvironment environment;
  store::VerifyReport report;
  {
    ProgressLine line;
    report = store::verifyFolder(environment.get(), folder, [&line](std::string_view table, int percent) {
      line.show(std::string(table) + ' ' + std::to_string(percent) + '%');
    });
  }
  // Without the journal no table can be opened, and nothing is known of any.
  if (report.clean() || !report.tables.empty()) findMissingTables(environment.get(), folder, report);
  printTables(report);
  printOthers(report);
  const std::string faults = counted(report.findings.size(), "fault");
  std::cout << counted(report.tables.size(), "table") << ", " << faults << '\n';
  if (report.clean()) return ExitStatus::done;
  std::cerr << "quillonctl: " << folder << ": " << faults << '\n';
  return ExitStatus::failed;
}

}  // namespace quillon::apps
