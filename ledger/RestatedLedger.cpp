#include "ledger/RestatedLedger.h"

#include <array>
#include <set>
#include <vector>

#include "base/Errors.h"
#include "base/Rounding.h"
#include "ledger/Totals.h"
#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/Query.h"

namespace quillon::ledger {
namespace {

using store::Cursor;
using store::Value;

constexpr const char* kRunning =
    "This report (with Auto-Forex) is already running.\rMultiple instances are not allowed";
constexpr const char* kPlain = "GLActual";
constexpr store::IndexSpec kByYear{"GLAccountIDYear", "GLAccountID;GLYear"};
constexpr store::IndexSpec kByKey{"", kTotalsKey, store::IndexOptions::unique};

using Changes = std::array<Money, kPeriods>;

void copyTotals(store::Database& database, store::Database& memory, int year) {
  Cursor stored(database, kPlain);
  stored.open();
  store::TableDef copy = stored.definition();
  copy.indexes = {store::IndexDef::of(copy, kByKey), store::IndexDef::of(copy, kByYear)};
  memory.createTable(copy);
  store::Query rows(database,
                    R"(INSERT INTO "\Memory\GLActual" SELECT * FROM GLActual WHERE GLYear BETWEEN :from AND :to)");
  rows.setParameter("from", year - 1);
  rows.setParameter("to", year);
  rows.execute();
}

class Restate {
 public:
  Restate(store::Database& database, int year)
      : year_(year),
        tblGLActual_(database, RestatedLedger::kTable),
        currency_(database, "Currency"),
        bank_(database, "Bank") {
    for (Cursor* cursor : {&tblGLActual_, &currency_, &bank_}) cursor->open();
  }

  void all() {
    for (bank_.first(); !bank_.eof(); bank_.next())
      if (currency_.findKey({bank_.value("CurrencyID")})) account(bank_.value("BankGLAccountID"));
    for (currency_.first(); !currency_.eof(); currency_.next())
      for (const char* field : {"APGLAccountID", "ARGLAccountID"}) account(currency_.value(field));
  }

 private:
  // Of the currency that the cursor stands on.
  void account(const Value& id) {
    if (currency_["ExchangeRate"].asDouble() == 0 || id.isNull() || !restated_.insert(id.asInt()).second) return;
    restate(id, year_ - 1, "ExchangeRateLY");
    restate(id, year_, "ExchangeRateTY");
  }

  void restate(const Value& id, int year, const std::string& rates) {
    if (!find(id, year)) return;
    const Changes changes = revaluation(rates);
    if (changes == Changes{}) return;
    const Value gainOrLoss = currency_.value("GainLossExchangeGLAccntID");
    if (gainOrLoss.isNull())
      throw Error("Currency '" + currency_["CurrencyName"].asText() + "' has no account for gain and loss on exchange");
    tblGLActual_.edit();
    addChanges(changes);
    if (find(gainOrLoss, year)) {
      tblGLActual_.edit();
    } else {
      tblGLActual_.append();
      tblGLActual_["GLAccountID"] = gainOrLoss;
      tblGLActual_["GLYear"] = year;
      tblGLActual_["ActualBudget"] = "A";
    }
    addChanges(against(changes));
  }

  bool find(const Value& id, int year) { return tblGLActual_.findKey({id, {}, {}, {}, year}); }

  // What the worth of the balance at each period's end differs by from its units, as changes of the periods.
  Changes revaluation(const std::string& rates) {
    Changes changes;
    Money balance = tblGLActual_["OpeningBal"].asMoney(), before;
    for (int period = 1; period <= kPeriods; ++period) {
      balance += tblGLActual_[amountField(period)].asMoney();
      const long double rate = currency_[rates + std::to_string(period)].asDouble();
      const Money difference = Money::fromDouble(round2((rate - 1) * balance.raw() / Money::kScale));
      changes[static_cast<std::size_t>(period - 1)] = difference - before;
      before = difference;
    }
    return changes;
  }

  static Changes against(Changes changes) {
    for (Money& change : changes) change = -change;
    return changes;
  }

  void addChanges(const Changes& changes) {
    for (int period = 1; period <= kPeriods; ++period) {
      const store::Field amount = tblGLActual_[amountField(period)];
      amount.set(amount.asMoney() + changes[static_cast<std::size_t>(period - 1)]);
    }
    tblGLActual_.post();
  }

  int year_;
  Cursor tblGLActual_, currency_, bank_;
  std::set<int> restated_;
};

}  // namespace

RestatedLedger::RestatedLedger(store::Database& database, int year) : memory_(database.session().memory()) {
  if (memory_.exists(kPlain)) throw Error(kRunning);
  try {
    copyTotals(database, memory_, year);
    Restate(database, year).all();
  } catch (...) {
    if (memory_.exists(kPlain)) memory_.dropTable(kPlain);
    throw;
  }
}

RestatedLedger::~RestatedLedger() {
  try {
    memory_.dropTable(kPlain);
  } catch (const store::StoreError&) {
    // It is refused as running until the program ends.
  }
}

}  // namespace quillon::ledger
