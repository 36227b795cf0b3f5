// The ledger's long reports read their lines while pages are laid out: what another program posts or unposts meanwhile
// leaves them with no figures that do not agree.
#include <gtest/gtest.h>

#include "form/Screen.h"
#include "ledger/Screens.h"
#include "reports/Pages.h"
#include "reports/Preview.h"
#include "reports/Screens.h"
#include "store/Query.h"
#include "store/schema/CreateCompany.h"
#include "support/Refusal.h"
#include "support/Workplace.h"

namespace quillon::ledger {
namespace {

using store::Value;

constexpr int kAccounts = 4, kVouchers = 200;
const form::Open kYear{.values = {{"year", Value(2026)}}};

void run(store::Database& database, const std::string& statement) { store::Query(database, statement).execute(); }

class LongReports : public testing::Test, protected sim::Workplace {
 protected:
  LongReports() {
    disk_.process()->makeFolder(sim::kSharedFolder);
    other_.open();
    store::createCompanyTables(other());
    run(other(), "INSERT INTO Company (CompanyNo, CompanyName, FiscalYear) VALUES (1, 'Pine', 2026)");
    const store::Database::BulkScope bulk(other());
    for (int id = 1; id <= kAccounts; ++id) {
      const std::string text = std::to_string(id);
      run(other(), "INSERT INTO GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (" + text + ", '" +
                       text + "', 'Account " + text + "', 1)");
      run(other(), "INSERT INTO GLActual (GLAccountID, GLYear, ActualBudget) VALUES (" + text + ", 2026, 'A')");
    }
    for (int id = 1; id <= kVouchers; ++id) post(id);
    other().settle();
    shell::registerScreens(session_);
    reports::registerScreens(session_);
    ledger::registerScreens(session_);
    session_.attach(sim::kSharedFolder);
  }
  ~LongReports() override { session_.detach(); }

  store::Database& other() { return other_.database(); }

  // From each account to the next, from the last to the first.
  void post(int voucher) {
    const int from = 1 + voucher % kAccounts, to = 1 + (voucher + 1) % kAccounts;
    for (const auto& [account, amount] : {std::pair(from, -voucher), std::pair(to, voucher)}) {
      const std::string id = std::to_string(account), change = std::to_string(amount), number = std::to_string(voucher);
      run(other(),
          "INSERT INTO GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, "
          "JVID) VALUES (" +
              id + ", 2026, 1, 'GL', 'JV', " + number + ", '2026-01-02', " + change + ", " + number + ")");
      run(other(), "UPDATE GLActual SET Amount1 = COALESCE(Amount1, 0) + " + change + " WHERE GLAccountID = " + id);
    }
  }

  // All pages of a report, with a deed of the other program behind the first.
  template <typename Deed>
  void print(const char* report, const form::Open& open, const Deed& deed) {
    const std::unique_ptr<form::PageRun> run = reports::startReport(session_, report, open);
    ASSERT_TRUE(run->step()) << "all on one page";
    deed();
    while (run->step()) {
    }
    pages_ = std::static_pointer_cast<reports::PreparedPages>(run->pages());
  }

  // The figures of a part, in the order of print.
  std::vector<Money> figures(reports::Part part) const {
    std::vector<Money> all;
    for (const reports::Page& page : pages_->pages)
      for (const reports::Element& element : page.elements)
        if (const Value value = page.valueOf(element); element.part == part && value.kind() == Value::Kind::money)
          all.push_back(value.asMoney());
    return all;
  }

  std::shared_ptr<reports::PreparedPages> pages_;
};

TEST_F(LongReports, AreOfTheMomentOfTheRunWhileOthersPost) {
  const Money sum = Money::fromRaw(10'000 * kVouchers * (kVouchers + 1) / 2);
  print("TrptGeneralLedger", kYear, [&] {
    for (int voucher = kVouchers + 1; voucher <= kVouchers + 9; ++voucher) post(voucher);
  });
  EXPECT_EQ(figures(reports::Part::summary), (std::vector<Money>{sum, sum}));
  print("TrptGeneralLedger", kYear, [] {});
  EXPECT_GT(figures(reports::Part::summary).front(), sum);
}

TEST_F(LongReports, AreRefusedWhereTheirLinesAreGone) {
  const std::string refusal = sim::refusalOf([&] {
    print("TrptGeneralLedger", kYear, [&] {
      run(other(), "DELETE FROM GLHist WHERE JVID = 190");
      run(other(), "UPDATE GLActual SET Amount1 = 0");
    });
  });
  EXPECT_EQ(refusal, "The ledger was changed while it was read...\rPrint it again");
}

TEST_F(LongReports, LeaveOutLinesThatOthersUnpost) {
  print("TrptGLHistory", {}, [&] { run(other(), "DELETE FROM GLHist WHERE JVID <= 100"); });
  const std::vector<Money> lines = figures(reports::Part::detail);
  Money sum;
  for (const Money line : lines) sum += line;
  EXPECT_GE(lines.size(), 2U * (kVouchers - 100));
  EXPECT_LT(lines.size(), 2U * kVouchers);
  EXPECT_EQ(figures(reports::Part::summary), std::vector<Money>{sum});
}

}  // namespace
}  // namespace quillon::ledger
