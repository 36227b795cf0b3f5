#pragma once

#include <functional>

namespace quillon::form {
class App;
}
namespace quillon::store {
class Cursor;
class Database;
}  // namespace quillon::store

namespace quillon::ledger {

// Numbers of a voucher: the id by which everything finds it, and the number that people know it by, unique in a period.
struct VoucherNumbers {
  int id = 0;
  int number = 0;
};

// Takes the next ones; they are spent, whatever becomes of the voucher. Whether another voucher of the period has the
// number is not looked at: its saving will tell.
VoucherNumbers takeVoucherNumbers(form::App& app);

// The same of the row of JVCtl that is in edit, without posting it; numbers that are used are passed over, and ids
// below the lowest.
VoucherNumbers raiseVoucherNumbers(store::Cursor& tblJVCtl, int lowestId,
                                   const std::function<bool(int number)>& isUsed);

// An id above those of all vouchers and lines: where JVCtl is older than they are, brought back from a backup say, a
// new voucher must not take the lines of another for its own.
int unusedVoucherId(store::Database& database);

// Behind the highest the numbers begin anew at the lowest.
inline constexpr int kLowestVoucherNumber = 1001, kHighestVoucherNumber = 10000000;

}  // namespace quillon::ledger
