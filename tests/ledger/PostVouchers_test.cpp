// Whatever is posted, unposted, reconciled, carried forward, closed, opened again and purged, in whatever order:
// history and totals are those of the vouchers that stand posted, what the bank's statements have shown stays marked,
// openings are those of the years before, and the audit agrees.
//
// Method of the random work: two processes take turns. Vouchers come from the writer that the subledgers call, runs,
// unpostings and year ends go through the screens, and the model works out both stores anew from the vouchers alone.
// Errors are planted into what such work leaves, one at a time: a value, a row too few or too many.
#include "ledger/PostVouchers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <optional>

#include "store/Errors.h"
#include "support/PostedBooks.h"
#include "support/SimProcess.h"
#include "support/Trials.h"

namespace quillon::ledger {
namespace {

using sim::auditText;
using sim::kHistory;
using sim::kTotals;
using sim::lineOf;
using sim::PostedModel;
using sim::Rows;
using sim::rowsOf;
using store::Value;

class PostVouchersTest : public testing::Test {
 protected:
  PostVouchersTest() {
    disk_.process()->makeFolder(sim::kSharedFolder);
    other_.open();
    sim::makeBooks(other_.database());
    for (int number = 0; number < 2; ++number) {
      files_.push_back(disk_.process());
      clerks_.push_back(
          std::make_unique<sim::Clerk>(*files_.back(), clock_, sim::kSharedFolder, desktop_, 99 + number));
    }
  }
  sim::Clerk& clerk() { return *clerks_.front(); }
  void run(const std::string& statement) { sim::runOn(other_.database(), statement); }

  sim::SimDisk disk_;
  sim::SimClock clock_;
  sim::SimProcess other_{disk_, clock_, {}};
  sim::SimDesktop desktop_;
  std::vector<std::unique_ptr<store::FileSystem>> files_;
  std::vector<std::unique_ptr<sim::Clerk>> clerks_;
};

// Random work of both clerks, year after year.
class RandomPosting : public PostVouchersTest, public testing::WithParamInterface<int> {
 protected:
  enum Purges { vouchers = 1, history = 2 };

  void step(int purges) {
    sim::Clerk& who = *clerks_[random_.below(clerks_.size())];
    const std::vector<int> posted = model_.posted();
    const std::size_t deed = random_.below(12);
    if (deed == 11) {
      reconcile(who);
    } else if (deed == 10) {
      budget(who);
    } else if (deed < 4) {
      PostedModel::Kept kept{.voucher = sim::randomVoucher(random_, year_), .reverses = random_.oneIn(3)};
      const int id = who.write(kept.voucher);
      if (kept.reverses) run("UPDATE JV SET AutoReverse = true WHERE JVID = " + std::to_string(id));
      model_.vouchers.emplace(id, std::move(kept));
    } else if (deed < 6) {
      post(who);
    } else if (deed < 9 && !posted.empty()) {
      unpost(who, posted[random_.below(posted.size())]);
    } else {
      if (random_.oneIn(2)) yearEnd(who, !random_.oneIn(3));
      if (random_.oneIn(2)) purge(who, purges);
    }
  }
  void post(sim::Clerk& who) {
    ASSERT_TRUE(who.postAll().ok) << who.person.takeHeard();
    model_.post();
  }
  // The voucher's year is opened again where it was closed, and then closed again with those behind it.
  void unpost(sim::Clerk& who, int id) {
    const int year = model_.vouchers.at(id).voucher.period.year, open = year_;
    if (year < open) openYear(year_ = year);
    ASSERT_TRUE(who.unpost(id).ok) << who.person.takeHeard();
    if (!model_.unpost(id)) traceless_ = true;
    while (year_ < open) ASSERT_NO_FATAL_FAILURE(yearEnd(who, true));
  }
  void yearEnd(sim::Clerk& who, bool close) {
    post(who);
    ASSERT_TRUE(who.yearEnd(close).ok) << who.person.takeHeard();
    model_.carryForward(year_);
    if (close) ++year_;
  }
  void budget(sim::Clerk& who) {
    const int account = 1 + static_cast<int>(random_.below(3)), subaccount = 1 + static_cast<int>(random_.below(3));
    const std::string key = std::to_string(account) + " " + std::to_string(subaccount) + " " + std::to_string(year_);
    const Money amount = Money::fromRaw(static_cast<std::int64_t>(random_.below(1'000'000)));
    const auto there = budgets_.find(key);
    ASSERT_TRUE(
        who.budget(std::to_string(account), std::to_string(subaccount), year_, there != budgets_.end(), amount).ok)
        << who.person.takeHeard();
    budgets_[key] = amount.toText();
  }
  void reconcile(sim::Clerk& who) {
    marks_.follow(sim::BankMarks::of(other_.database()));
    const std::size_t deed = random_.below(3);
    ASSERT_TRUE(who.reconcile(std::array{"btnSelectAll", "btnReconcile", "mnuUnreconcile"}.at(deed), deed == 2).ok)
        << who.person.takeHeard();
    deed == 0 ? marks_.tickAll() : deed == 1 ? marks_.reconcileTicked() : marks_.unreconcile();
  }
  void openYear(int year) { run("UPDATE Company SET FiscalYear = " + std::to_string(year)); }
  void purge(sim::Clerk& who, int purges) {
    const int before = year_ - 1;
    const std::string old = "GLYear < " + std::to_string(before);
    post(who);
    // Nobody can tell that history is not there when the vouchers are gone as well and one of them was posted anew.
    if ((purges & vouchers) != 0 && !traceless_ && ((purges & history) == 0 || random_.oneIn(2))) {
      form::transact(other_.database(), {"JV", "JVDet"}, [&] {
        run("DELETE FROM JV WHERE (" + old + ") AND (Posted = true)");
        run("DELETE FROM JVDet WHERE JVID NOT IN (SELECT JVID FROM JV)");
      });
      model_.purgeVouchers(before);
    } else if ((purges & history) != 0) {
      run("DELETE FROM GLHist WHERE " + old);
      model_.purgeHistory(before);
    }
  }

  sim::SeededRandom random_{0};
  PostedModel model_;
  std::map<std::string, std::string> budgets_ = {{"1 1 2025", "null"}, {"2 2 2025", "null"}, {"3 3 2025", "null"}};
  sim::BankMarks marks_;
  int year_ = 2025;  // the first open one
  bool traceless_ = false;
};
INSTANTIATE_TEST_SUITE_P(Seeds, RandomPosting, testing::Range(1, 9));

TEST_P(RandomPosting, LeavesWhatTheVouchersSay) {
  const sim::Trials trials = sim::Trials::fromEnvironment();
  const std::uint64_t seed = trials.seed.value_or(static_cast<std::uint64_t>(GetParam()));
  SCOPED_TRACE(sim::Trials::repeating(seed, "test_ledger", "*LeavesWhat*/0"));
  random_ = sim::SeededRandom(seed);
  for (std::uint64_t at = 0; at < trials.aim(80, 800); ++at) {
    step(vouchers | history);
    ASSERT_FALSE(HasFatalFailure()) << "step " << at;
    ASSERT_EQ(rowsOf(other_.database(), kTotals), model_.totals()) << "step " << at;
    ASSERT_EQ(rowsOf(other_.database(),
                     "SELECT GLAccountID, SubAccount1ID, SubAccount2ID, SubAccount3ID, GLYear, GLPeriod, Amount, JVID "
                     "FROM GLHist"),
              model_.history())
        << "step " << at;
    sim::Rows budgets;
    for (const auto& [key, amount] : budgets_) budgets.insert(key + " B " + amount + " ");
    ASSERT_EQ(
        rowsOf(other_.database(), "SELECT GLAccountID, SubAccount2ID, GLYear, ActualBudget, Amount5 FROM GLBudget"),
        budgets)
        << "step " << at;
    const sim::BankMarks marks = sim::BankMarks::of(other_.database());
    marks_.follow(marks);
    ASSERT_EQ(marks.rows, marks_.rows) << "step " << at;
    ASSERT_EQ(auditText(other_.database()), "") << "step " << at;
  }
}

// Errors planted into the books, one at a time, and taken out again.
class PlantedErrors : public RandomPosting {
 protected:
  using Fields = std::vector<std::string>;
  struct Place {
    const char* table;
    std::size_t weight;
    bool rows;      // one more and one less is an error, too
    Fields fields;  // that audit can know
  };

  // Tries one; empty: it would be none. Otherwise what it is, and what the audit says of it.
  std::optional<std::pair<std::string, std::string>> plant() {
    const Place& place = choose();
    store::Cursor row(other_.database(), place.table);
    row.open();
    if (row.isEmpty() || !row.goTo(1 + random_.below(row.recordCount()))) return std::nullopt;
    std::pair<std::string, std::string> found;
    other_.database().startTransaction(
        {"GLHist", "GLActual", "JV", "JVDet", "JVCtl", "GLAccnt", "GLAcSub2", "GLBudget", "Bank", "Currency"});
    try {
      found.first = spoil(row, place);
      if (!found.first.empty()) found.second = auditText(other_.database());
    } catch (const store::StoreError&) {
      found.first.clear();  // the table itself refuses it
    }
    other_.database().rollback();
    if (found.first.empty()) return std::nullopt;
    return found;
  }

 private:
  const Place& choose() {
    static const Fields combination = {"GLAccountID", "SubAccount1ID", "SubAccount2ID", "SubAccount3ID"};
    static const auto with = [](Fields all, const Fields& more) {
      all.insert(all.end(), more.begin(), more.end());
      return all;
    };
    static const Fields head = {"GLYear",    "GLPeriod", "JVNumber",         "Source",     "TransType",
                                "TransDate", "JVID",     "TransDescription", "CustomerID", "ARInvoiceID"};
    static const Fields amounts = {"Amount1", "Amount2", "Amount3", "Amount4",  "Amount5",  "Amount6",
                                   "Amount7", "Amount8", "Amount9", "Amount10", "Amount11", "Amount12"};
    static const std::vector<Place> places = {
        {"GLHist", 30, true, with(with(head, combination), {"Amount"})},
        {"GLActual", 25, true, with(with(combination, amounts), {"GLYear", "ActualBudget", "OpeningBal"})},
        {"JV", 20, true, with(head, {"JVAmount", "Posted", "AutoReverse"})},
        {"JVDet", 15, true, with(combination, {"JVID", "GLAmount"})},
        {"JVCtl", 2, true, {"NextJVID"}},
        {"GLAccnt", 2, false, {"GLAccountID", "AccountType", "RetainedEarnings"}},
        {"GLAcSub2", 2, false, {"SubAccountID"}},
        {"GLBudget", 2, false, {"GLAccountID", "SubAccount2ID", "ActualBudget"}},
        {"Bank", 1, false, {"BankGLAccountID", "CurrencyID"}},
        {"Currency", 1, false, {"CurrencyID", "APGLAccountID", "ARDiscGLAccountID"}}};
    std::size_t at = random_.below(100);
    for (const Place& place : places) {
      if (at < place.weight) return place;
      at -= place.weight;
    }
    return places.front();
  }

  // Books are rows of money: a row that has none says nothing, whatever else stands in it.
  static bool hasMoney(store::Cursor& row) {
    bool money = false, any = false;
    for (const store::FieldDef& field : row.definition().fields)
      if (field.type == store::FieldType::currency)
        any = true, money = money || row.value(field.name).asMoney() != Money();
    return money || !any;
  }
  std::string spoil(store::Cursor& row, const Place& place) {
    if (!hasMoney(row) && std::string(place.table) != "GLBudget") return "";
    if (place.table == std::string("GLActual") && model_.lacksHistory() &&
        row["GLYear"].asInt() <= model_.firstPosted())
      return "";
    std::string what = place.table;
    for (const store::FieldDef& field : row.definition().fields)
      if (const Value value = row.value(field.name); !value.isNull()) what += " " + field.name + "=" + value.toText();
    const std::size_t deed = place.rows ? random_.below(10) : 9;
    if (deed == 0) {
      row.remove();
      return what + " removed";
    }
    if (deed == 1) return twice(row) ? what + " doubled" : "";
    const std::string& field = place.fields[random_.below(place.fields.size())];
    if (!isKnown(row, place.table, field)) return "";
    const Value before = row.value(field), after = other(row, field, !place.rows);
    const bool document = field == "CustomerID" || field == "ARInvoiceID";  // 0 is none
    if (document ? before.asInt() == after.asInt() : before == after) return "";
    row.edit();
    row[field] = after;
    row.post();
    return what + ": " + field + " " + after.toText();
  }

  // With a key of its own: nobody could mistake it for the same.
  bool twice(store::Cursor& row) {
    std::vector<Value> values;
    for (int field = 0; field < row.fieldCount(); ++field) values.push_back(row.field(field).value());
    row.append();
    for (int field = 0; field < row.fieldCount(); ++field)
      row.field(field).set(values[static_cast<std::size_t>(field)]);
    const std::string table = row.definition().name;
    if (table == "GLHist") row["GLHistID"].clear();
    if (table == "GLActual") row["SubAccount2ID"] = 1 + static_cast<int>(random_.below(3));
    if (table == "JV") row["JVID"] = -1, row["JVNumber"] = -1;
    if (table == "JVDet") row["Seq"] = row["Seq"].asInt() + 100;
    row.post();
    return true;
  }

  // The value of another row, or one that none has.
  Value other(store::Cursor& row, const std::string& field, bool ofNone) {
    const Value before = row.value(field);
    if (field == "AccountType" || field == "NextJVID") return Value(field == "NextJVID" ? before.asInt() - 1 : 9);
    if (before.kind() == Value::Kind::boolean || field == "RetainedEarnings") return Value(!before.asBool());
    if (row.definition().fields[static_cast<std::size_t>(row.fieldPosition(field))].type == store::FieldType::currency)
      return Value(before.asMoney() + Money::fromRaw(1 + static_cast<int>(random_.below(50'000))));
    if (!ofNone && random_.oneIn(8)) return {};
    if (ofNone || before.isNull() || random_.oneIn(3)) {
      if (field == "TransDate") return Value(Date(2025, 1, 2));
      if (before.kind() == Value::Kind::text) return Value(std::string("X"));
      return Value((ofNone ? 1000 : 1) + static_cast<int>(random_.below(2000)));
    }
    store::Cursor rows(other_.database(), row.definition().name);
    rows.open();
    rows.goTo(1 + random_.below(rows.recordCount()));
    return rows.value(field);
  }

  // What a voucher that waits is like is its clerk's to say, as far as it balances. Where history is gone only totals
  // tell what a voucher was like, which need other vouchers of its year or before, and amounts that do not cancel each
  // other in one account; and rows that cancel what is gone tell nothing of accounts.
  bool isKnown(store::Cursor& row, const std::string& table, const std::string& field) {
    const bool account = field == "GLAccountID" || field.starts_with("SubAccount");
    if (table == "GLHist") return !account || !row.value("JVID").isNull();
    if (table != "JV" && table != "JVDet") return true;
    const auto found = model_.vouchers.find(row["JVID"].asInt());
    if (found == model_.vouchers.end() || field == "JVID" || field == "JVAmount" || field == "GLAmount") return true;
    const PostedModel::Kept& kept = found->second;
    if (!kept.posted) return field == "Posted";
    if (!kept.history.empty()) return true;
    if (kept.voucher.period.year <= model_.firstPosted()) return false;
    return account || (!kept.cancelsItself() &&
                       (field == "GLYear" || field == "GLPeriod" || field == "Posted" || field == "AutoReverse"));
  }
};
INSTANTIATE_TEST_SUITE_P(Seeds, PlantedErrors, testing::Range(1, 9));

TEST_P(PlantedErrors, AreAllFound) {
  const sim::Trials trials = sim::Trials::fromEnvironment();
  const std::uint64_t seed = trials.seed.value_or(static_cast<std::uint64_t>(GetParam()));
  SCOPED_TRACE(sim::Trials::repeating(seed, "test_ledger", "*AreAllFound*/0"));
  random_ = sim::SeededRandom(seed);
  for (int at = 0; at < 120; ++at) {
    step(seed % 2 == 0 ? vouchers : history);
    ASSERT_FALSE(HasFatalFailure());
  }
  ASSERT_NO_FATAL_FAILURE(yearEnd(clerk(), true));  // openings of an open year follow from nothing
  ASSERT_EQ(auditText(other_.database()), "");
  const std::uint64_t aim = trials.aim(1000 / 8, 10'000 / 8);
  for (std::uint64_t planted = 0; planted < aim;)
    if (const auto error = plant()) {
      ++planted;
      ASSERT_NE(error->second, "") << error->first;
    }
  EXPECT_EQ(auditText(other_.database()), "");
}

// Whoever gives up at the second table leaves the first one free.
TEST_F(PostVouchersTest, WaitsForWhoeverHoldsTheTotals) {
  const int id = clerk().write({.period = {2025, 3},
                                .source = "AR",
                                .transType = "Pmt",
                                .date = Date(2025, 3, 1),
                                .lines = {lineOf(1, Money::fromRaw(5)), lineOf(2, Money::fromRaw(-5))}});
  store::Cursor totals(other_.database(), "GLActual"), vouchers(other_.database(), "JV");
  totals.open();
  vouchers.open();
  const std::string words = std::string("error: ") + kTotalsAreLocked;
  const auto expectRefused = [&](const std::function<form::Ended()>& deed) {
    totals.lockTable();
    clerk().person.answers = {form::Button::retry, form::Button::cancel};
    clerk().person.heard.clear();
    const form::Ended ended = deed();
    EXPECT_EQ(ended.code, 10258);
    EXPECT_THAT(ended.error, testing::StartsWith("The table 'GLActual' is being updated by another job ("));
    EXPECT_EQ(std::ranges::count(clerk().person.heard, words), 2) << clerk().person.takeHeard();
    totals.unlockTable();
    vouchers.lockTable();
    vouchers.unlockTable();
  };
  expectRefused([this] { return clerk().postAll(); });
  EXPECT_EQ(rowsOf(other_.database(), kHistory).size(), 0u);
  EXPECT_TRUE(clerk().postAll().ok) << clerk().person.takeHeard();
  expectRefused([&] { return clerk().unpost(id); });
  EXPECT_EQ(rowsOf(other_.database(), kHistory).size(), 2u);
}

TEST_F(PostVouchersTest, NumbersAreFreeInTheirPeriodOnly) {
  const auto next = [this](int number, Period period) {
    run("UPDATE JVCtl SET NextJVNumber = " + std::to_string(number));
    const int id = clerk().write({.period = period,
                                  .source = "AP",
                                  .transType = "Inv",
                                  .date = Date(2025, 3, 1),
                                  .lines = {lineOf(1, Money::fromRaw(70000)), lineOf(2, Money::fromRaw(-70000))}});
    return *rowsOf(other_.database(),
                   "SELECT JVNumber, JVAmount, Posted, AutoReverse, NextJVNumber - JVNumber FROM JV, JVCtl "
                   "WHERE JVID = " +
                       std::to_string(id))
                .begin();
  };
  for (const auto& [number, period, given] : {std::tuple{0, Period{2025, 1}, 1001},
                                              {1001, {2025, 1}, 1002},
                                              {1001, {2025, 2}, 1001},
                                              {1000, {2025, 1}, 1003},
                                              {10000000, {2025, 1}, 10000000},
                                              {10000000, {2025, 1}, 10000001},
                                              {10000001, {2025, 1}, 1004}})
    EXPECT_EQ(next(number, period), std::to_string(given) + " 7 False False 1 ") << number;
}

}  // namespace
}  // namespace quillon::ledger
