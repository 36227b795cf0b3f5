#pragma once

#include <algorithm>
#include <array>
#include <map>
#include <optional>
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

// Books of three accounts and three subaccounts to post to, and one for retained earnings, a clerk who does it, and a
// model of what comes of it.
namespace quillon::sim {

inline void runOn(store::Database& database, const std::string& statement) {
  store::Query(database, statement).execute();
}

inline void makeBooks(store::Database& database) {
  store::createCompanyTables(database);
  runOn(database, "INSERT INTO Company (CompanyName, FiscalYear) VALUES ('Pine', 2025)");
  runOn(database,
        "INSERT INTO GLAccnt (GLAccountID, GLAccount, AccountName, AccountType, RetainedEarnings) VALUES (4, '4', '4', "
        "5, true)");
  for (const auto& [id, type] : {std::pair<std::string, std::string>("1", "1"), {"2", "3"}, {"3", "4"}}) {
    runOn(database, "INSERT INTO GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (" + id + ", '" +
                        id + "', '" + id + "', " + type + ")");
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

  // Carries the fiscal year forward, and closes it or leaves it open.
  form::Ended yearEnd(bool close) {
    form::Input input(session.app());
    form::Screen& company = session.app().open("TfrmCompany");
    person.modals.push_back([&](form::Screen& run) { input.click(run, *run.find("btnOK")); });
    person.answers.push_front(close ? form::Button::yes : form::Button::no);
    const form::Ended ended = input.click(company, *company.find("btnYearEnd"));
    if (close && ended.ok) return input.click(company, *company.find("btnOK"));
    session.app().dismiss(company);
    return ended;
  }
  // Enters a budget, or changes the one that is there.
  form::Ended budget(const std::string& account, const std::string& subaccount, int year, bool there, Money amount) {
    form::Input input(session.app());
    form::Open open{.newRow = !there};
    if (there)
      open.locate = {{"GLAccountID", store::Value(std::stoi(account))},
                     {"SubAccount2ID", store::Value(std::stoi(subaccount))},
                     {"GLYear", store::Value(year)}};
    form::Screen& screen = session.app().open("TfrmGLBudgetAccount", open);
    const auto set = [&](const char* name, const std::string& text) { input.set(screen, *screen.find(name), text); };
    if (!there) {
      set("editGLAccount", account);
      set("editSubAccount2", subaccount);
      set("editGLYear", std::to_string(year % 100));
    }
    set("editAmount5", amount.toText());
    return input.click(screen, *screen.find("btnOK"));
  }

  // A command of the bank's reconciliation; one that asks hears Yes.
  form::Ended reconcile(const char* command, bool asks) {
    form::Screen& screen = session.app().open("TfrmBankRec", {.values = {{"BankID", store::Value(1)}}});
    if (asks) person.answers.push_front(form::Button::yes);
    form::Input input(session.app());
    const form::Ended ended = input.click(screen, *screen.find(command));
    session.app().dismiss(screen);
    return ended;
  }

  ScriptedPerson person;
  shell::Session session;
};

// What the bank's statements have shown of account 1: whether a row of its history is reconciled, and whether ticked.
struct BankMarks {
  std::map<int, std::pair<bool, bool>> rows;  // by GLHistID

  static BankMarks of(store::Database& database) {
    store::Query history(database, "SELECT GLHistID, Reconciled, Reconciling FROM GLHist WHERE GLAccountID = 1");
    history.open();
    BankMarks marks;
    for (; !history.eof(); history.next())
      marks.rows[history["GLHistID"].asInt()] = {history["Reconciled"].asBool(), history["Reconciling"].asBool()};
    return marks;
  }
  // Rows come without a mark, and go with theirs.
  void follow(const BankMarks& now) {
    std::erase_if(rows, [&](const auto& row) { return !now.rows.contains(row.first); });
    for (const auto& [id, marks] : now.rows) rows.try_emplace(id);
  }
  void tickAll() {
    for (auto& [id, row] : rows) row.second = true;
  }
  void reconcileTicked() {
    for (auto& [id, row] : rows) row.first = row.second;
  }
  void unreconcile() {
    for (auto& [id, row] : rows)
      if (row.first) row = {};
  }
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
  Rows totals() const {
    Rows rows;
    for (const auto& [place, total] : all()) {
      const auto text = [](const std::optional<Money>& amount) { return (amount ? amount->toText() : "null") + " "; };
      std::string row = place.first + std::to_string(place.second) + " A " + text(total.opening);
      for (const auto& amount : total.months) row += text(amount);
      rows.insert(row);
    }
    return rows;
  }
  // Account 1 has a balance; those of the others are retained.
  void carryForward(int year) {
    const Totals now = all();
    Money retained;
    bool any = false;
    for (const auto& [place, total] : now) {
      if (place.second != year) continue;
      any = true;
      Money next = total.opening.value_or(Money());
      for (const auto& amount : total.months) next += amount.value_or(Money());
      if (!place.first.starts_with("1 ")) retained += std::exchange(next, Money());
      const Place behind{place.first, year + 1};
      if (next != Money() || now.contains(behind)) openings_[behind] = next;
    }
    if (any) openings_[{"4 null null null ", year + 1}] = retained;
  }

 private:
  using Sums = std::map<std::string, std::map<int, Money>>;  // of combinations and periods
  using Place = std::pair<std::string, int>;                 // a combination and a year
  struct Total {
    std::optional<Money> opening = {};
    std::array<std::optional<Money>, 12> months = {};
  };
  using Totals = std::map<Place, Total>;

  // Of each month that was ever posted to.
  Totals all() const {
    Sums sums = purged_;
    for (const auto& [key, periods] : touched_)
      for (const int period : periods) sums[key][period];
    for (const auto& [id, kept] : vouchers)
      if (kept.posted)
        eachEntry(kept,
                  [&](const std::string& key, Period period, Money amount) { sums[key][period.key()] += amount; });
    Totals totals;
    for (const auto& [key, months] : sums)
      for (const auto& [period, sum] : months)
        totals[{key, period / 100}].months.at(static_cast<std::size_t>(period % 100 - 1)) = sum;
    for (const auto& [place, opening] : openings_) totals[place].opening = opening;
    return totals;
  }

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
  std::map<Place, Money> openings_;
};

}  // namespace quillon::sim
