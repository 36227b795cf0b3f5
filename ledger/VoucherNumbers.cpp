#include "ledger/VoucherNumbers.h"

#include "form/ControlRow.h"
#include "store/Cursor.h"

namespace quillon::ledger {

VoucherNumbers takeVoucherNumbers(form::App& app) {
  VoucherNumbers taken;
  form::takeNumbers(app, {.table = "JVCtl"}, [&](store::Cursor& tblJVCtl) {
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
