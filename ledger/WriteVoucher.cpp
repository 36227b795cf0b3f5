#include "ledger/WriteVoucher.h"

#include "form/ControlRow.h"
#include "ledger/Accounts.h"
#include "ledger/VoucherNumbers.h"
#include "store/Database.h"

namespace quillon::ledger {

VoucherWriter::VoucherWriter(store::Cursor& tblJVCtl)
    : tblJVCtl_(tblJVCtl),
      tblJV_(tblJVCtl.database(), "JV"),
      tblJVNumber_(tblJVCtl.database(), "JV"),
      tblJVDet_(tblJVCtl.database(), "JVDet") {
  for (store::Cursor* cursor : {&tblJV_, &tblJVNumber_, &tblJVDet_}) cursor->open();
  tblJVNumber_.setIndex("PeriodJVNumber");
}

int VoucherWriter::write(const Voucher& voucher) {
  form::requireControlRow(tblJVCtl_);
  if (lowestId_ == 0) lowestId_ = unusedVoucherId(tblJVCtl_.database());
  tblJVCtl_.edit();
  const VoucherNumbers numbers = raiseVoucherNumbers(tblJVCtl_, lowestId_, [&](int number) {
    return tblJVNumber_.findKey({voucher.period.year, voucher.period.number, number});
  });
  tblJVCtl_.post();

  Money debits;
  int seq = 0;
  for (const VoucherLine& line : voucher.lines) {
    debits += std::max(line.amount.asMoney(), Money());
    tblJVDet_.append();
    tblJVDet_["JVID"] = numbers.id;
    tblJVDet_["Seq"] = ++seq;
    tblJVDet_["GLAccountID"] = line.account;
    for (int level = 1; level <= kSubaccountLevels; ++level)
      tblJVDet_[subaccountField(level)] = line.subaccounts[level - 1];
    tblJVDet_["GLAmount"] = line.amount;
    tblJVDet_.post();
  }

  tblJV_.append();
  tblJV_["JVID"] = numbers.id;
  tblJV_["JVNumber"] = numbers.number;
  tblJV_["GLYear"] = voucher.period.year;
  tblJV_["GLPeriod"] = voucher.period.number;
  tblJV_["Source"] = voucher.source;
  tblJV_["TransType"] = voucher.transType;
  tblJV_["TransDate"] = voucher.date;
  tblJV_["TransDescription"] = voucher.description;
  for (const auto& [field, document] : voucher.documents) tblJV_[field] = document;
  tblJV_["JVAmount"] = debits;
  tblJV_["Posted"] = false;
  tblJV_["AutoReverse"] = false;
  tblJV_.post();
  return numbers.id;
}

}  // namespace quillon::ledger
