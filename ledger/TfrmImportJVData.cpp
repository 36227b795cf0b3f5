// Imports lines from a text file into the voucher that is being entered.
//
// Keeps: a line gets into the voucher through the voucher's own rules; one whose account is unknown is left out only
// when the person says so.
#include "ledger/Accounts.h"
#include "ledger/ImportScreen.h"
#include "ledger/ImportTable.h"
#include "ledger/MakeScreens.h"
#include "ledger/VoucherLines.h"
#include "shell/Session.h"
#include "store/Database.h"
#include "store/Query.h"

namespace quillon::ledger {
namespace {

using Kind = ImportColumn::Kind;

const std::vector<ImportColumn> kColumns = {{"Account", Kind::text, 10},
                                            {"SubAccount1", Kind::text, 5},
                                            {"SubAccount2", Kind::text, 5},
                                            {"SubAccount3", Kind::text, 5},
                                            {"Amount", Kind::amount, 10, 2}};

class TfrmImportJVData final : public ImportScreen {
 public:
  explicit TfrmImportJVData(shell::Session& session)
      : ImportScreen(session.app(), "Import JV Data",
                     {"Format: *.txt, fields separated by tabs, first line with the field names",
                      "Fields: Account, SubAccount1, SubAccount2, SubAccount3, Amount (debit positive, decimal "
                      "separator \".\")"}) {}

 private:
  void shown(const form::Open& open) override;
  void import(const std::string& path) override;
  void importRows(const std::vector<std::uint64_t>& lines);
  void take(store::Cursor& row, std::uint64_t line);
  std::string unknownCode(store::Cursor& row);

  VoucherLineTaker* taker_ = nullptr;
};

void TfrmImportJVData::shown(const form::Open& open) {
  ImportScreen::shown(open);
  taker_ = std::any_cast<VoucherLineTaker*>(open.draft);
}

void TfrmImportJVData::import(const std::string& path) {
  show("Importing to memory");
  ImportTable table(database(), "JVDataImport", kColumns,
                    "Import JV Data is already running.\rMultiple instances are not allowed");
  importRows(table.load(path, [this](std::uint64_t done, std::uint64_t total) { progress(done, total); }));
}

// `lines` of the file that the rows come from.
void TfrmImportJVData::importRows(const std::vector<std::uint64_t>& lines) {
  show("Importing");
  store::Query qryImport(
      database(),
      "SELECT I.Account, I.SubAccount1, I.SubAccount2, I.SubAccount3, I.Amount, A.GLAccountID, S1.SubAccountID AS "
      "SubAccount1ID, S2.SubAccountID AS SubAccount2ID, S3.SubAccountID AS SubAccount3ID "
      "FROM \"\\Memory\\JVDataImport\" I LEFT OUTER JOIN GLAccnt A ON A.GLAccount = I.Account "
      "LEFT OUTER JOIN GLAcSub1 S1 ON S1.SubAccount = I.SubAccount1 "
      "LEFT OUTER JOIN GLAcSub2 S2 ON S2.SubAccount = I.SubAccount2 "
      "LEFT OUTER JOIN GLAcSub3 S3 ON S3.SubAccount = I.SubAccount3");
  qryImport.open();
  const store::Database::BulkScope bulk(database());
  std::size_t done = 0;
  for (qryImport.first(); !qryImport.eof(); qryImport.next()) {
    const std::uint64_t line = lines.at(done);
    if (++done % 256 == 0) progress(done, lines.size());
    // Yes leaves the row out; No ends the import, and the rows already added stay.
    if (const std::string unknown = unknownCode(qryImport); !unknown.empty()) {
      database().settle();
      if (!app().person().confirm(unknown, form::Tone::warning, form::Button::no)) break;
      continue;
    }
    take(qryImport, line);
  }
  database().settle();
}

// A row that the voucher refuses ends the import: the person hears which it is.
void TfrmImportJVData::take(store::Cursor& row, std::uint64_t line) {
  VoucherLine added{.account = row.value("GLAccountID"), .subaccounts = {}, .amount = row.value("Amount")};
  for (int level = 1; level <= kSubaccountLevels; ++level)
    added.subaccounts[level - 1] = row.value(subaccountField(level));
  try {
    taker_->addLine(added);
  } catch (const form::Refusal& refusal) {
    refuseLine(line, refusal.what());
  }
}

// What is said about the first code of a row that is not known; empty when all are.
std::string TfrmImportJVData::unknownCode(store::Cursor& row) {
  const auto text = [&](const std::string& kind, const std::string& field) {
    return kind + " '" + row[field].asText() + "' does not exist.\rData for this " +
           (kind == "Account" ? "account" : kind) + " cannot be imported.\r\rDo you want to continue?";
  };
  if (row["GLAccountID"].isNull()) return text("Account", "Account");
  for (int level = 1; level <= kSubaccountLevels; ++level) {
    const std::string name = "SubAccount" + std::to_string(level);
    if (!row[name].isNull() && row[name + "ID"].isNull()) return text(name, name);
  }
  return {};
}

}  // namespace

ScreenPtr makeImportJVData(shell::Session& session) { return std::make_unique<TfrmImportJVData>(session); }

}  // namespace quillon::ledger
