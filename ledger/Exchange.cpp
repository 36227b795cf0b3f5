#include "ledger/Exchange.h"

#include "base/Rounding.h"

namespace quillon::ledger {

Money Exchange::toHome(Money amount) {
  if (!translates()) return amount;
  const long double exact = static_cast<long double>(amount.raw()) / Money::kScale * rate_;
  const Money home = Money::fromDouble(round2(exact));
  difference_ += home - amount;
  return home;
}

}  // namespace quillon::ledger
