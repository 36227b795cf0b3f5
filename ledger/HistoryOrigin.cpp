#include "ledger/HistoryOrigin.h"

#include <algorithm>
#include <array>

#include "base/Period.h"
#include "form/App.h"
#include "form/UsedBy.h"
#include "store/Cursor.h"

namespace quillon::ledger {
namespace {

using form::refuse;
using store::Cursor;
using store::Value;

// The documents that vouchers come from: their list, and by which field of the history they are found.
struct Origin {
  const char* source;
  const char* transType;  // empty: any
  const char* screen;
  const char* table;
  const char* key;
  const char* name;
};
constexpr std::array<Origin, 5> kOrigins = {{
    {"AP", "Inv", "TfrmAPInvoices", "APInv", "APInvoiceID", "AP Invoice"},
    {"AP", "Chq", "TfrmAPCheques", "APCheq", "ChequeID", "AP Payment"},
    {"AR", "Inv", "TfrmARInvoices", "ARInv", "ARInvoiceID", "AR Invoice"},
    {"AR", "Pmt", "TfrmARPayments", "ARPmt", "PaymentID", "AR Payment"},
    {"IN", "", "TfrmInvAdjustments", "IAdjust", "AdjustmentID", "Inventory Adjustment"},
}};

std::string text(Cursor& history, const char* field) {
  return history[field].isNull() ? "" : history.value(field).toText();
}

const Origin* originOf(Cursor& history) {
  const std::string source = text(history, "Source"), type = text(history, "TransType");
  const auto found = std::ranges::find_if(kOrigins, [&](const Origin& some) {
    return source == some.source && (*some.transType == '\0' || type == some.transType);
  });
  return found == kOrigins.end() ? nullptr : &*found;
}

Value requireVoucher(form::App& app, Cursor& history, const std::string& gone) {
  Value id = voucherOf(app, history);
  if (id.isNull()) refuse("JV " + text(history, "JVNumber") + " not found...\r" + gone);
  return id;
}

}  // namespace

// A reversing row is of the period after its voucher's; one without an id cancels a voucher whose own rows were purged.
Value voucherOf(form::App& app, Cursor& history) {
  if (history.isEmpty()) return {};
  Cursor& vouchers = app.lookUp("JV");
  const bool reverses = text(history, "TransType") == "JVR";
  if (const Value id = history.value("JVID"); !id.isNull() && !reverses) return vouchers.lookup("JVID", {id}, "JVID");
  Period period{history["GLYear"].asInt(), history["GLPeriod"].asInt()};
  if (reverses) period = period.previous();
  return vouchers.lookup("GLYear;GLPeriod;JVNumber",
                         {Value(period.year), Value(period.number), history.value("JVNumber")}, "JVID");
}

bool hasSource(form::App& app, Cursor& history) {
  if (!history.isOpen() || history.isEmpty()) return false;
  if (text(history, "Source") == "GL") return app.has("TfrmJV");
  const Origin* from = originOf(history);
  return from != nullptr && app.has(from->screen);
}

void openSource(form::App& app, Cursor& history, const std::string& gone) {
  if (history.isEmpty()) form::abort();
  if (text(history, "Source") == "GL") return openVoucherRecord(app, history, gone);
  const Origin* from = originOf(history);
  if (from == nullptr) form::abort();
  const Value id = history.value(from->key);
  if (id.isNull() || !form::isUsed(app.database(), {from->table, from->key, {}}, id))
    refuse(std::string(from->name) + " not found...\rIt may have been purged.");
  app.open(from->screen, {.locate = {{from->key, id}}});
}

void openVoucherRecord(form::App& app, Cursor& history, const std::string& gone) {
  app.open("TfrmJV", {.locate = {{"JVID", requireVoucher(app, history, gone)}}});
}

void openVoucher(form::App& app, Cursor& history, const std::string& gone) {
  if (history.isEmpty()) form::abort();
  app.open("TfrmJVs", {.locate = {{"JVID", requireVoucher(app, history, gone)}}});
}

}  // namespace quillon::ledger
