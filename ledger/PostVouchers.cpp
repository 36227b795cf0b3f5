#include "ledger/PostVouchers.h"

#include "form/Place.h"
#include "ledger/Accounts.h"

namespace quillon::ledger {
namespace {

using store::Value;

constexpr const char* kCombination[] = {"GLAccountID", "SubAccount1ID", "SubAccount2ID", "SubAccount3ID"};
constexpr const char* kHead[] = {"Source", "JVNumber", "TransDate", "TransDescription"};
// Of the document that a voucher was written for; history has 0 where there is none.
constexpr const char* kDocuments[] = {"VendorID",    "APInvoiceID", "ChequeID",    "CustomerID",
                                      "ARInvoiceID", "PaymentID",   "AdjustmentID"};

}  // namespace

PostVouchers::PostVouchers(store::Database& database)
    : tblJV_(database, "JV"),
      tblJVDet_(database, "JVDet"),
      tblGLHist_(database, "GLHist"),
      tblGLActual_(database, "GLActual") {
  for (store::Cursor* cursor : {&tblJV_, &tblJVDet_, &tblGLHist_, &tblGLActual_}) cursor->open();
  for (const char* field : kHead) ofVoucher_.emplace_back(tblJV_[field], tblGLHist_[field]);
  for (const char* field : kDocuments) ofVoucher_.emplace_back(tblJV_[field], tblGLHist_[field]);
  for (const char* field : kCombination) ofLine_.emplace_back(tblJVDet_[field], tblGLHist_[field]);
}

void PostVouchers::post(const Value& id) {
  find(id);
  setPosted(true);
  eachEntry(Direction::in, [this](const Entry& entry) {
    addHistory(entry, true);
    addTotal(entry);
  });
}

void PostVouchers::unpost(const Value& id) {
  find(id);
  setPosted(false);
  const bool purged = !removeHistory(id);
  eachEntry(Direction::out, [&](const Entry& entry) {
    if (purged) addHistory(entry, false);
    addTotal(entry);
  });
}

void PostVouchers::find(const Value& id) {
  if (!tblJV_.findKey({id})) form::refuse("This record has been deleted by another user");
  head_.clear();
  for (const auto& [from, to] : ofVoucher_)
    head_.push_back(head_.size() < std::size(kHead) ? from.value() : Value(from.asInt()));
}

// The row's lock decides between two who unpost it at once.
void PostVouchers::setPosted(bool posted) {
  tblJV_.edit();
  if (!posted && !tblJV_["Posted"].asBool()) {
    tblJV_.cancel();
    form::refuse("JV has already been unposted by another user.");
  }
  tblJV_["Posted"] = posted;
  tblJV_.post();
}

void PostVouchers::eachEntry(Direction direction, const std::function<void(const Entry&)>& action) {
  const Period period{tblJV_["GLYear"].asInt(), tblJV_["GLPeriod"].asInt()};
  const Value transType = tblJV_.value("TransType");
  const bool reverses = tblJV_["AutoReverse"].asBool();
  const Value id = tblJV_.value("JVID");
  tblJVDet_.setRange({id}, {id});
  for (tblJVDet_.first(); !tblJVDet_.eof(); tblJVDet_.next()) {
    const Money amount = tblJVDet_["GLAmount"].asMoney();
    const bool in = direction == Direction::in;
    action({period, transType, in ? amount : -amount});
    if (reverses) action({period.next(), "JVR", in ? -amount : amount});
  }
}

void PostVouchers::addHistory(const Entry& entry, bool linked) {
  tblGLHist_.append();
  for (const auto& [from, to] : ofLine_) to.set(from.value());
  for (std::size_t i = 0; i < head_.size(); ++i) ofVoucher_[i].second.set(head_[i]);
  tblGLHist_["GLYear"] = entry.period.year;
  tblGLHist_["GLPeriod"] = entry.period.number;
  tblGLHist_["TransType"] = entry.transType;
  tblGLHist_["Amount"] = entry.amount;
  if (linked) {
    tblGLHist_["JVID"] = tblJV_.value("JVID");
    tblGLHist_["Reconciled"] = false;
    tblGLHist_["Reconciling"] = false;
  }
  tblGLHist_.post();
}

// A subaccount that is not used is null, here as in the line, and null equals only null.
void PostVouchers::addTotal(const Entry& entry) {
  std::vector<Value> key;
  for (const auto& [from, to] : ofLine_) key.push_back(from.value());
  key.emplace_back(entry.period.year);
  if (tblGLActual_.findKey(key)) {
    tblGLActual_.edit();
  } else {
    tblGLActual_.append();
    for (const char* field : kCombination) tblGLActual_[field] = tblJVDet_.value(field);
    tblGLActual_["GLYear"] = entry.period.year;
    tblGLActual_["ActualBudget"] = "A";
  }
  // A period that no entry lets through has no column.
  if (entry.period.number >= 1 && entry.period.number <= Period::kCount) {
    const auto amount = tblGLActual_["Amount" + std::to_string(entry.period.number)];
    amount.set(amount.asMoney() + entry.amount);
  }
  tblGLActual_.post();
}

// Whether there was any. The rows of the reversal carry the voucher's id, too.
bool PostVouchers::removeHistory(const Value& id) {
  tblGLHist_.setIndex("JVID");
  tblGLHist_.setRange({id}, {id});
  const bool any = !tblGLHist_.isEmpty();
  while (!tblGLHist_.isEmpty()) tblGLHist_.remove();
  tblGLHist_.cancelRange();
  return any;
}

}  // namespace quillon::ledger
