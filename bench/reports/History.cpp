#include "bench/reports/History.h"

#include <array>

#include "bench/Ours.h"
#include "form/Screen.h"
#include "reports/Preview.h"
#include "store/Query.h"
#include "store/schema/CreateCompany.h"
#include "support/SeededRandom.h"

namespace quillon::bench {
namespace {

constexpr std::array<const char*, 8> kNames = {
    "Cheque to Müller & Söhne", "Invoice 12044 Łódź",   "Payment by Ωμέγα A.E.", "Опт-Торг, receipt",
    "Freight and duty",         "Rent of the workshop", "Bank charges",          "Wages, second week"};
constexpr int kAccounts = 200, kLinesOfVoucher = 4;

void fillAccounts(store::Database& company) {
  store::Cursor accounts(company, "GLAccnt");
  accounts.open();
  for (int id = 1; id <= kAccounts; ++id) {
    accounts.append();
    accounts["GLAccountID"] = id;
    accounts["GLAccount"] = std::to_string(1000 + 10 * id);
    accounts["AccountName"] = kNames[static_cast<std::size_t>(id) % kNames.size()] + (" " + std::to_string(id));
    accounts["AccountType"] = 1 + id % 5;
    accounts.post();
  }
}

void fillVouchers(store::Database& company, std::int64_t lines) {
  sim::SeededRandom random(1);
  store::Cursor vouchers(company, "JV"), history(company, "GLHist");
  vouchers.open();
  history.open();
  for (int at = 0; at < lines; ++at) {
    const int voucher = 1 + at / kLinesOfVoucher, period = 1 + voucher % 12;
    const Date date(2026, static_cast<unsigned>(period), 1 + static_cast<unsigned>(voucher % 28));
    const char* name = kNames[static_cast<std::size_t>(voucher) % kNames.size()];
    const auto both = [&](store::Cursor& cursor) {
      cursor["JVID"] = voucher;
      cursor["GLYear"] = 2026;
      cursor["GLPeriod"] = period;
      cursor["JVNumber"] = 1000 + voucher;
      cursor["Source"] = "GL";
      cursor["TransType"] = "JV";
      cursor["TransDate"] = date;
      cursor["TransDescription"] = name;
    };
    if (at % kLinesOfVoucher == 0) {
      vouchers.append();
      both(vouchers);
      vouchers["Posted"] = true;
      vouchers.post();
    }
    history.append();
    both(history);
    history["GLAccountID"] = 1 + static_cast<int>(random.below(kAccounts));
    history["Amount"] = Money::fromRaw((static_cast<std::int64_t>(random.below(200'000'000)) - 100'000'000) * 100);
    history.post();
  }
}

}  // namespace

void makeHistory(const std::string& folder, std::int64_t lines) {
  Ours ours(folder);
  store::createCompanyTables(ours.database);
  store::Query(ours.database, "INSERT INTO Company (CompanyNo, CompanyName, FiscalYear) VALUES (1, 'Many', 2026)")
      .execute();
  const store::Database::BulkScope bulk(ours.database);
  fillAccounts(ours.database);
  fillVouchers(ours.database, lines);
}

std::unique_ptr<form::PageRun> startHistory(shell::Session& session) {
  return reports::startReport(session, "TrptGLHistory", {});
}

}  // namespace quillon::bench
