// A new company is set up wholly or not at all, and its charts hold what the rest of it points to.
#include "shell/NewCompany.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <set>

#include "shell/CountryDefaults.h"
#include "shell/SampleCompany.h"
#include "shell/SampleVouchers.h"
#include "store/Cursor.h"
#include "store/schema/CompanySchema.h"
#include "store/schema/CreateCompany.h"
#include "support/SimProcess.h"

namespace quillon::shell {
namespace {

using Fill = std::function<void(store::Database&)>;
using RowCounts = std::map<std::string, std::uint64_t>;

const Date kToday(2026, 3, 5);

void fillOne(store::Database& database) {
  NewCompany company = suggestedCompany("Canada", {2026, 1, 2026}, kToday);
  company.name = "Ours";
  fillCompany(database, company);
}

void fillSample(store::Database& database) { fillSampleCompany(database, countryDefaults("Canada"), kToday); }

RowCounts countsOf(store::Database& database) {
  RowCounts counts;
  for (const store::TableDef& table : store::companyTables()) {
    store::Cursor cursor(database, table.name);
    cursor.open();
    counts[table.name] = cursor.recordCount();
  }
  return counts;
}

// Runs an action on a copy of an empty company; `before` may plan what goes wrong.
class Trial {
 public:
  explicit Trial(const sim::SimDisk& empty, const std::function<void(sim::SimDisk&)>& before = {})
      : disk_(empty.settled()) {
    process_.open();
    if (before) before(disk_);
  }
  store::Database& database() { return process_.database(); }
  sim::SimDisk& disk() { return disk_; }

 private:
  sim::SimDisk disk_;
  sim::SimClock clock_;
  sim::SimProcess process_{disk_, clock_, {}};
};

RowCounts countsAfter(const sim::SimDisk& disk) {
  Trial trial(disk);
  return countsOf(trial.database());
}

class NewCompanyTest : public testing::Test {
 protected:
  NewCompanyTest() {
    sim::SimClock clock;
    disk_.process()->makeFolder(sim::kSharedFolder);
    sim::SimProcess process(disk_, clock, {});
    process.open();
    store::createCompanyTables(process.database());
  }

  // With a power cut, or a failing disk, at some thirty moments spread over the work.
  void expectAllOrNothing(const Fill& fill) {
    const RowCounts nothing = countsAfter(disk_);
    Trial whole(disk_);
    const std::uint64_t start = whole.disk().events();
    fill(whole.database());
    const std::uint64_t end = whole.disk().events();
    const RowCounts all = countsOf(whole.database());
    ASSERT_NE(all, nothing);
    std::set<bool> seen;
    const auto expectEither = [&](const RowCounts& found, const char* what, std::uint64_t at) {
      EXPECT_TRUE(found == nothing || found == all) << what << " at event " << at;
      seen.insert(found == all);
    };
    for (std::uint64_t at = start + 1; at <= end; at += std::max<std::uint64_t>(1, (end - start) / 30)) {
      Trial cut(disk_, [&](sim::SimDisk& disk) { disk.stopAt(at); });
      try {
        fill(cut.database());
      } catch (const sim::ProcessKilled&) {
      }
      const sim::CutChooser cuts(cut.disk(), 3, at);
      for (std::size_t i = 0; i < cuts.count(); ++i)
        expectEither(countsAfter(cut.disk().imageAfterCut(cuts.choice(i))), "cut", at);
      Trial failed(disk_,
                   [&](sim::SimDisk& disk) { disk.plan(sim::Fault{.kind = sim::Fault::Kind::noSpace, .at = at}); });
      const store::Code code = sim::codeOf([&] { fill(failed.database()); });
      failed.disk().plan({});
      const RowCounts left = countsOf(failed.database());
      expectEither(left, "full disk", at);
      if (code == store::Code{}) {
        EXPECT_EQ(left, all) << at;
      }
    }
    EXPECT_EQ(seen.size(), 2u) << "the moments miss one of the two";
  }

  sim::SimDisk disk_;
};

TEST_F(NewCompanyTest, IsSetUpWhollyOrNotAtAll) { expectAllOrNothing(fillOne); }
TEST_F(NewCompanyTest, TheSampleIsFilledWhollyOrNotAtAll) { expectAllOrNothing(fillSample); }

TEST(ChartOfAccounts, HasOneAccountForEachUseAndNoNumberOrNameTwice) {
  for (const Chart chart : {Chart::service, Chart::trade, Chart::manufacturing})
    for (const CountryDefaults& country : knownCountries()) {
      SCOPED_TRACE(country.name);
      std::set<std::string> numbers, names;
      std::map<AccountUse, int> uses;
      for (const ChartAccount& account : chartOfAccounts(chart, country)) {
        EXPECT_TRUE(numbers.insert(account.number).second) << account.number;
        EXPECT_TRUE(names.insert(account.name).second) << account.name;
        EXPECT_EQ(account.name.find('{'), std::string::npos) << account.name;
        EXPECT_EQ(account.number, *numbers.rbegin()) << "in the order of numbers";
        if (account.use != AccountUse::none) ++uses[account.use];
      }
      EXPECT_EQ(uses.size(), static_cast<std::size_t>(AccountUse::retainedEarnings));
      for (const auto& [use, count] : uses) EXPECT_EQ(count, 1) << static_cast<int>(use);
    }
}

// In every country: what is booked balances, and nobody hands out what is not there.
TEST(SampleVouchers, BalanceAndStayBelievable) {
  for (const CountryDefaults& country : knownCountries()) {
    std::map<std::string, Money> balances;
    Date last(2024, 1, 1);
    for (const SampleVoucher& voucher : sampleVouchers(2025, static_cast<int>(country.taxRate), country.usDollar)) {
      SCOPED_TRACE(std::string(country.name) + " " + voucher.date.toIso() + " " + voucher.description);
      Money sum;
      for (const SampleLine& line : voucher.lines) {
        sum += line.amount;
        if (!voucher.autoReverse) balances[line.account] += line.amount;
      }
      EXPECT_EQ(sum.raw(), 0);
      EXPECT_GE(voucher.lines.size(), 2u);
      EXPECT_GE(voucher.date, last) << "in the order of days";
      last = voucher.date;
      for (const char* asset : {"1010", kForeignBank, "1100", kForeignReceivable, "1200", "1220", "1300"})
        EXPECT_GE(balances[asset].raw(), 0) << asset;
      for (const char* debt : {"2000", kForeignPayable, "2200", "2400", "2500"})
        EXPECT_LE(balances[debt].raw(), 0) << debt;
    }
  }
}

TEST(Books, TellThePeriodOfADay) {
  struct Case {
    Books books;
    Date day;
    Period period;
  };
  const Case cases[] = {{{2026, 1, 2026}, {2026, 3, 5}, {2026, 3}},   {{2026, 1, 2026}, {2025, 12, 31}, {2025, 12}},
                        {{2026, 7, 2025}, {2025, 7, 1}, {2026, 1}},   {{2026, 7, 2025}, {2026, 6, 30}, {2026, 12}},
                        {{2026, 7, 2025}, {2026, 7, 1}, {2027, 1}},   {{2026, 7, 2025}, {2025, 6, 30}, {2025, 12}},
                        {{2025, 12, 2025}, {2026, 1, 15}, {2025, 2}}, {{2026, 4, 2026}, {2024, 3, 31}, {2023, 12}},
                        {{2026, 4, 2026}, {2024, 4, 1}, {2024, 1}}};
  for (const Case& some : cases) EXPECT_EQ(some.books.periodOf(some.day).key(), some.period.key()) << some.day.toIso();
  EXPECT_EQ((Books{2025, 12, 2025}).calendar(), "Period 1 is December 2025, period 12 is November 2026.");
}

}  // namespace
}  // namespace quillon::shell
