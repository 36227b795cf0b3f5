#include "ledger/CarryForward.h"

#include "form/RowKey.h"
#include "ledger/Totals.h"
#include "store/Query.h"

namespace quillon::ledger {

using store::Value;

namespace {

// The openings of one year.
class Openings {
 public:
  Openings(store::Cursor& tblGLActual, int year) : totals_(tblGLActual), year_(year) {}

  // Of the combination `key`, whose last field is the year. `always` also where there is no row and nothing to carry.
  void set(std::vector<Value> key, Money opening, const Value& actualBudget, bool always) {
    key.back() = Value(year_);
    if (totals_.findKey(key)) {
      totals_.edit();
    } else {
      if (opening == Money() && !always) return;
      totals_.append();
      totals_["GLAccountID"] = key.front();
      for (int level = 1; level <= kSubaccountLevels; ++level)
        totals_[subaccountField(level)] = key.at(static_cast<std::size_t>(level));
      totals_["GLYear"] = year_;
      totals_["ActualBudget"] = actualBudget;
    }
    totals_["OpeningBal"] = opening;
    totals_.post();
  }

 private:
  store::Cursor& totals_;
  int year_;
};

}  // namespace

Money CarryForward::next(AccountType type, bool retainedEarnings, Money closing) {
  if (!isCarriedForward(type)) {
    result_ += closing;
    return {};
  }
  if (type == AccountType::equity && retainedEarnings) {
    retained_ += closing;
    return {};
  }
  return closing;
}

void carryForward(store::Cursor& tblGLActual, int year, const Value& retainedEarningsId,
                  const std::function<void(long done, long total)>& progress) {
  store::Query qryGLActual(tblGLActual.database(),
                           "SELECT A.*, G.AccountType, G.RetainedEarnings FROM GLActual A "
                           "INNER JOIN GLAccnt G ON A.GLAccountID = G.GLAccountID WHERE GLYear=:GLYear");
  qryGLActual.setParameter("GLYear", Value(year));
  qryGLActual.open();
  if (qryGLActual.isEmpty()) return;
  const auto total = static_cast<long>(qryGLActual.recordCount());
  long done = 0;
  CarryForward forward;
  Openings openings(tblGLActual, year + 1);
  Value actualBudget;
  for (qryGLActual.first(); !qryGLActual.eof(); qryGLActual.next()) {
    actualBudget = qryGLActual.value("ActualBudget");
    const Money next = forward.next(static_cast<AccountType>(qryGLActual["AccountType"].asInt()),
                                    qryGLActual["RetainedEarnings"].asBool(), closingBalance(qryGLActual));
    openings.set(form::valuesOf(qryGLActual, kTotalsKey), next, actualBudget, false);
    progress(++done, total);
  }
  openings.set({retainedEarningsId, {}, {}, {}, {}}, forward.retained(), actualBudget, true);
}

}  // namespace quillon::ledger
