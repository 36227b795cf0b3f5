#pragma once

#include <string>

#include "store/Value.h"

namespace quillon::form {
class App;
}
namespace quillon::store {
class Cursor;
}

// The way back from the row of GLHist that a cursor stands on: to its voucher, and to the document that the voucher was
// written for. `gone` is the last line of what is told where the voucher is not there any more.
namespace quillon::ledger {

// Null where it is not there any more.
store::Value voucherOf(form::App& app, store::Cursor& history);

// Whether the row has a document whose list, or the voucher's screen, this version has.
bool hasSource(form::App& app, store::Cursor& history);

// A silent stop where there is no row.
void openSource(form::App& app, store::Cursor& history, const std::string& gone);
void openVoucher(form::App& app, store::Cursor& history, const std::string& gone);        // in the list of vouchers
void openVoucherRecord(form::App& app, store::Cursor& history, const std::string& gone);  // by itself

}  // namespace quillon::ledger
