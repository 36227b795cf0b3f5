#pragma once

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "form/Input.h"
#include "form/Transaction.h"
#include "ledger/Screens.h"
#include "ledger/WriteVoucher.h"
#include "shell/Session.h"
#include "store/Query.h"
#include "store/schema/CreateCompany.h"
#include "support/LedgerFigures.h"
#include "support/ScriptedPerson.h"
#include "support/SeededRandom.h"
#include "support/SimDesktop.h"

// Books of three accounts and three subaccounts to post to, a clerk who does it, and a model of what comes of it.
namespace quillon::sim {

inline void runOn(store::Database& database, const std::string& statement) {
  store::Query(database, statement).execute();
}

inline void makeBooks(store::Database& database) {
  store::createCompanyTables(database);
  runOn(database, "INSERT INTO Company (CompanyName, FiscalYear) VALUES ('Pine', 2025)");
  for (const std::string id : {"1", "2", "3"}) {
    runOn(database, "INSERT INTO GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (" + id + ", '" +
                        id + "', '" + id + "', 1)");
    runOn(database, "INSERT INTO GLAcSub2 (SubAccountID, SubAccount, SubAccountName) VALUES (" + id + ", '" + id +
                        "', '" + id + "')");
    runOn(database, "INSERT INTO GLBudget (GLAccountID, SubAccount2ID, GLYear, ActualBudget) VALUES (" + id + ", " +
                        id + ", 2025, 'B')");
  }
  runOn(database,
        "INSERT INTO Currency (CurrencyID, CurrencyName, APGLAccountID, APDiscGLAccountID, ARGLAccountID, "
        "ARDiscGLAccountID) VALUES (1, 'Home', 1, 2, 3, 1)");
  runOn(database, "INSERT INTO Bank (BankID, BankName, BankGLAccountID, CurrencyID) VALUES (1, 'Main', 1, 1)");
}

// A program with its screens on these books, and hands to work them.
struct Clerk {
  Clerk(store::FileSystem& files, store::Clock& clock, const std::string& folder, SimDesktop& desktop, int number)
      : session(store::Environment{files, clock, "BEN", "PC", number}, person, desktop) {
    shell::registerScreens(session);
    ledger::registerScreens(session);
    session.attach(folder);
  }
  ~Clerk() { session.detach(); }

  store::Database& database() { return session.database(); }
  int write(const ledger::Voucher& voucher) {
    store::Cursor control(database(), "JVCtl");
    control.setExclusive(true);
    control.open();
    int id = 0;
    form::transact(database(), {"JV", "JVDet", "JVCtl"}, [&] { id = ledger::VoucherWriter(control).write(voucher); });
    return id;
  }
  // The run, with OK.
  form::Ended postAll() {
    form::Ended ended;
    person.modals.push_back([&](form::Screen& screen) {
      form::Input input(session.app());
      ended = input.click(screen, *screen.find("btnOK"));
    });
    session.app().runModal("TfrmJVsPost");
    return ended;
  }
  form::Ended unpost(int id) {
    person.answers.push_front(form::Button::yes);
    form::Screen& screen = session.app().open("TfrmJV", {.locate = {{"JVID", store::Value(id)}}});
    form::Input input(session.app());
    const form::Ended ended = input.click(screen, *screen.find("btnUnpost"));
    session.app().dismiss(screen);
    return ended;
  }

  ScriptedPerson person;
  shell::Session session;
};

inline ledger::VoucherLine lineOf(int account, Money amount, int subaccount = 0) {
  ledger::VoucherLine line{.account = account, .subaccounts = {}, .amount = amount};
  if (subaccount > 0) line.subaccounts[1] = subaccount;
  return line;
}

// Of a period in `fromYear` or the year after it.
inline ledger::Voucher randomVoucher(SeededRandom& random, int fromYear) {
  const auto below = [&](std::size_t limit) { return static_cast<int>(random.below(limit)); };
  ledger::Voucher voucher{.period = {fromYear + below(2), random.oneIn(3) ? 12 : 1 + below(12)},
                          .source = "AR",
                          .transType = "Inv",
                          .date = Date(2025, 6, 1 + static_cast<unsigned>(random.below(30))),
                          .description = "some",
                          .documents = {{"CustomerID", 1 + below(9)}}};
  Money rest;
  for (int lines = below(5); lines > 0; --lines) {
    const Money amount = Money::fromRaw(below(2'000'001) - 1'000'000);
    voucher.lines.push_back(lineOf(1 + below(3), amount, below(3)));
    rest -= amount;
  }
  if (!voucher.lines.empty()) voucher.lines.push_back(lineOf(1, rest));
  return voucher;
}

// The vouchers as they were written, and what the ledger has to hold of them.
class PostedModel {
 public:
  struct Kept {
    ledger::Voucher voucher;
    bool reverses = false, posted = false;
    std::multimap<int, std::string> history = {};  // by year

    bool cancelsItself() const {  // comes to nothing in each account
      std::map<std::string, Money> sums;
      for (const ledger::VoucherLine& line : voucher.lines) sums[keyOf(line)] += line.amount.asMoney();
      return std::ranges::all_of(sums, [](const auto& sum) { return sum.second == Money(); });
    }
  };
  std::map<int, Kept> vouchers;

  bool lacksHistory() const {
    return std::ranges::any_of(vouchers, [](const auto& some) {
      const Kept& kept = some.second;
      return kept.posted && kept.history.size() < kept.voucher.lines.size() * (kept.reverses ? 2 : 1);
    });
  }

  std::vector<int> posted() const {
    std::vector<int> ids;
    for (const auto& [id, kept] : vouchers)
      if (kept.posted) ids.push_back(id);
    return ids;
  }
  int firstPosted() const {
    int year = 9999;
    for (const int id : posted()) year = std::min(year, vouchers.at(id).voucher.period.year);
    return year;
  }
  void post() {
    for (auto& [id, kept] : vouchers) {
      if (std::exchange(kept.posted, true)) continue;
      eachEntry(kept, [&, number = id, &into = kept](const std::string& key, Period period, Money amount) {
        into.history.emplace(period.year, historyOf(key, period, amount) + std::to_string(number) + " ");
        touched_[key].insert(period.key());
      });
    }
  }
  // False: of what was purged only a part, which leaves no trace of it.
  bool unpost(int id) {
    Kept& kept = vouchers.at(id);
    kept.posted = false;
    const std::size_t whole = kept.voucher.lines.size() * (kept.reverses ? 2 : 1), left = kept.history.size();
    if (kept.history.empty())
      eachEntry(kept, [&](const std::string& key, Period period, Money amount) {
        loose_.emplace(period.year, historyOf(key, period, -amount) + "null ");
      });
    kept.history.clear();
    return left == 0 || left == whole;
  }
  void purgeHistory(int beforeYear) {
    const auto old = [&](const auto& row) { return row.first < beforeYear; };
    std::erase_if(loose_, old);
    for (auto& [id, kept] : vouchers) std::erase_if(kept.history, old);
  }
  void purgeVouchers(int beforeYear) {
    for (auto at = vouchers.begin(); at != vouchers.end();) {
      Kept& kept = at->second;
      if (!kept.posted || kept.voucher.period.year >= beforeYear) {
        ++at;
        continue;
      }
      eachEntry(kept,
                [&](const std::string& key, Period period, Money amount) { purged_[key][period.key()] += amount; });
      loose_.merge(kept.history);
      at = vouchers.erase(at);
    }
  }
  Rows history() const {
    Rows rows;
    for (const auto& [year, row] : loose_) rows.insert(row);
    for (const auto& [id, kept] : vouchers)
      for (const auto& [year, row] : kept.history) rows.insert(row);
    return rows;
  }
  // Of each month that was ever posted to.
  Rows totals() const {
    Sums sums = purged_;
    for (const auto& [key, periods] : touched_)
      for (const int period : periods) sums[key][period];
    for (const auto& [id, kept] : vouchers)
      if (kept.posted)
        eachEntry(kept,
                  [&](const std::string& key, Period period, Money amount) { sums[key][period.key()] += amount; });
    std::map<std::string, std::map<int, std::string>> years;
    for (const auto& [key, months] : sums)
      for (const auto& [period, sum] : months)
        years[key + std::to_string(period / 100) + " A null "][period % 100] = sum.toText();
    Rows rows;
    for (const auto& [key, months] : years) {
      std::string row = key;
      for (int month = 1; month <= 12; ++month) row += (months.contains(month) ? months.at(month) : "null") + " ";
      rows.insert(row);
    }
    return rows;
  }

 private:
  using Sums = std::map<std::string, std::map<int, Money>>;  // of combinations and periods

  static std::string keyOf(const ledger::VoucherLine& line) {
    return line.account.toText() + " null " + line.subaccounts[1].toText() + " null ";
  }
  static std::string historyOf(const std::string& key, Period period, Money amount) {
    return key + std::to_string(period.year) + " " + std::to_string(period.number) + " " + amount.toText() + " ";
  }
  template <typename Action>
  static void eachEntry(const Kept& kept, const Action& action) {
    const Period period = kept.voucher.period;
    const Period next = period.number == 12 ? Period{period.year + 1, 1} : Period{period.year, period.number + 1};
    for (const ledger::VoucherLine& line : kept.voucher.lines) {
      const std::string key = keyOf(line);
      const Money amount = line.amount.asMoney();
      action(key, period, amount);
      if (kept.reverses) action(key, next, Money() - amount);
    }
  }

  std::map<std::string, std::set<int>> touched_;
  std::multimap<int, std::string> loose_;  // history that belongs to no voucher, by year
  Sums purged_;
};

}  // namespace quillon::sim
