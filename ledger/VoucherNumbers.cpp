#include "ledger/VoucherNumbers.h"

#include <algorithm>

#include "form/App.h"
#include "form/ControlRow.h"
#include "form/NextId.h"
#include "store/Cursor.h"

namespace quillon::ledger {
namespace {

constexpr int kAttempts = 150;  // 10 ms apart: as long as any lock is waited for

}  // namespace

VoucherNumbers raiseVoucherNumbers(store::Cursor& tblJVCtl, int lowestId, const std::function<bool(int)>& isUsed) {
  VoucherNumbers taken{std::max(tblJVCtl["NextJVID"].asInt(), lowestId), tblJVCtl["NextJVNumber"].asInt()};
  if (taken.number < kLowestVoucherNumber || taken.number > kHighestVoucherNumber) taken.number = kLowestVoucherNumber;
  while (isUsed(taken.number)) ++taken.number;
  tblJVCtl["NextJVID"] = taken.id + 1;
  tblJVCtl["NextJVNumber"] = taken.number + 1;
  return taken;
}

VoucherNumbers takeVoucherNumbers(form::App& app) {
  VoucherNumbers taken;
  form::takeNumbers(app, {.table = "JVCtl", .attempts = kAttempts}, [&](store::Cursor& tblJVCtl) {
    taken = raiseVoucherNumbers(tblJVCtl, unusedVoucherId(app.database()), [](int) { return false; });
  });
  return taken;
}

int unusedVoucherId(store::Database& database) {
  return std::max(form::nextId(database, "JV", "JVID"), form::nextId(database, "JVDet", "JVID"));
}

}  // namespace quillon::ledger
