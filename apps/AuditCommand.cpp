#include "apps/AuditCommand.h"

#include <iostream>
#include <string>

#include "apps/Counted.h"
#include "apps/GivenLogin.h"
#include "apps/LocalEnvironment.h"
#include "ledger/Audit.h"
#include "store/Database.h"
#include "store/Session.h"

namespace quillon::apps {
namespace {

void print(const std::vector<ledger::Disagreement>& found) {
  for (const ledger::Disagreement& one : found)
    std::cout << "  " << one.table << ", " << one.key << ", " << one.what << ": stored " << one.stored << ", derived "
              << one.derived << '\n';
}

}  // namespace

ExitStatus auditCommand(Arguments arguments) {
  const GivenLogin login(arguments);
  if (login.words().size() != 1) throw UsageError("audit takes one folder");
  const std::string folder(login.words().front());
  const LocalEnvironment environment;
  store::Session session(environment.get());
  store::Database database(session, folder);
  login.requireSecurity(database);
  const ledger::AuditReport report = ledger::auditLedger(database);
  for (const auto& [year, vouchers] : report.withoutHistory)
    std::cout << "History of " << year << " is not there for "
              << counted(static_cast<std::size_t>(vouchers), "posted voucher") << ", as after a purge\n";
  if (!report.interrupted.empty()) std::cout << "Entry that was interrupted:\n";
  print(report.interrupted);
  if (!report.wrong.empty()) std::cout << "Disagreements:\n";
  print(report.wrong);
  const std::string count = counted(report.wrong.size(), "disagreement");
  std::cout << count << '\n';
  if (report.wrong.empty()) return ExitStatus::done;
  std::cerr << "quillonctl: " << folder << ": " << count << '\n';
  return ExitStatus::failed;
}

}  // namespace quillon::apps
