#include "store/Verify.h"

#include <algorithm>

#include "store/Database.h"
#include "store/Errors.h"
#include "store/Session.h"
#include "store/journal/CommitProtocol.h"
#include "store/table/Table.h"
#include "store/verify/TableVerify.h"

namespace quillon::store {
namespace {

constexpr int kMostFindings = 100;  // of one table

class Findings {
 public:
  Findings(VerifyReport& report, const std::string& table) : report_(report), table_(table) {}
  void tell(const std::string& text) {
    if (++told_ <= kMostFindings) report_.findings.push_back({table_, text});
  }
  void finish() {
    if (told_ > kMostFindings)
      report_.findings.push_back({table_, std::to_string(told_ - kMostFindings) + " more faults are not listed"});
  }

 private:
  VerifyReport& report_;
  const std::string& table_;
  int told_ = 0;
};

void verifyTable(Database& database, const std::string& name, VerifyReport& report, const VerifyProgress& progress) {
  Findings findings(report, name);
  const int owner = 0;
  Table* table = nullptr;
  try {
    table = &database.openTable(name, &owner, false);
    TableVerify check(
        *table, [&](const std::string& text) { findings.tell(text); },
        [&](int percent) {
          if (progress) progress(name, percent);
        });
    report.tables.push_back(check.run());
  } catch (const Error& error) {
    findings.tell(error.what());
  }
  findings.finish();
  if (table) database.closeTable(*table, &owner);
}

}  // namespace

VerifyReport verifyOpen(Database& database, const VerifyProgress& progress) {
  if (database.inTransaction())
    throw StoreError(Code::badTransaction, "A transaction is open; end it before the tables are checked.");
  database.settle();
  VerifyReport report;
  for (const std::string& name : database.tableNames()) verifyTable(database, name, report, progress);
  if (database.protocol())
    for (const std::string& note : database.protocol()->notes()) report.findings.push_back({"", note});
  return report;
}

VerifyReport verifyFolder(const Environment& environment, const std::string& folder, const VerifyProgress& progress) {
  try {
    Session session(environment);
    Database database(session, folder);
    return verifyOpen(database, progress);
  } catch (const StoreError& error) {
    if (error.code() == Code::noSuchFolder) throw;
    VerifyReport report;
    report.findings.push_back({"", error.what()});
    return report;
  }
}

}  // namespace quillon::store
