#include "ledger/VoucherNumbers.h"

#include "form/ControlRow.h"
#include "store/Cursor.h"

namespace quillon::ledger {
namespace {

constexpr int kAttempts = 150;  // 10 ms apart: as long as any lock is waited for

}  // namespace

VoucherNumbers raiseVoucherNumbers(store::Cursor& tblJVCtl, const std::function<bool(int)>& isUsed) {
  VoucherNumbers taken{tblJVCtl["NextJVID"].asInt(), tblJVCtl["NextJVNumber"].asInt()};
  if (taken.number < kLowestVoucherNumber || taken.number > kHighestVoucherNumber) taken.number = kLowestVoucherNumber;
  while (isUsed(taken.number)) ++taken.number;
  tblJVCtl["NextJVID"] = taken.id + 1;
  tblJVCtl["NextJVNumber"] = taken.number + 1;
  return taken;
}

VoucherNumbers takeVoucherNumbers(form::App& app) {
  VoucherNumbers taken;
  form::takeNumbers(app, {.table = "JVCtl", .attempts = kAttempts},
                    [&](store::Cursor& tblJVCtl) { taken = raiseVoucherNumbers(tblJVCtl, [](int) { return false; }); });
  return taken;
}

}  // namespace quillon::ledger
