#include "ledger/VoucherNumbers.h"

#include "form/ControlRow.h"
#include "store/Cursor.h"

namespace quillon::ledger {
namespace {

constexpr int kAttempts = 150;  // 10 ms apart: as long as any lock is waited for

}  // namespace

VoucherNumbers takeVoucherNumbers(form::App& app) {
  VoucherNumbers taken;
  form::takeNumbers(app, {.table = "JVCtl", .attempts = kAttempts}, [&](store::Cursor& tblJVCtl) {
    taken.id = tblJVCtl["NextJVID"].asInt();
    tblJVCtl["NextJVID"] = taken.id + 1;
    taken.number = tblJVCtl["NextJVNumber"].asInt();
    if (taken.number < kLowestVoucherNumber || taken.number > kHighestVoucherNumber)
      taken.number = kLowestVoucherNumber;
    tblJVCtl["NextJVNumber"] = taken.number + 1;
  });
  return taken;
}

}  // namespace quillon::ledger
