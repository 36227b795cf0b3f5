#include "store/schema/CreateCompany.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/Text.h"
#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/schema/CompanySchema.h"

namespace quillon::store {
namespace {

constexpr std::string_view kMark = "Company";  // its file tells that a folder is a company

// What a "next" value begins with. A number that is brought into its family's range by whoever takes it waits at 0 for
// that; one that is taken as it stands has to begin with 1, since 0 is what an empty reference to a row looks like.
constexpr int kBroughtIn = 0;
constexpr int kAsItStands = 1;

struct NextValue {
  std::string_view table, field;
  int value;
};

constexpr NextValue kNextValues[] = {
    {"JVCtl", "NextJVID", kAsItStands},
    {"JVCtl", "NextJVNumber", kBroughtIn},  // to 1001
    {"FStmtCtl", "NextStmtID", kAsItStands},
    {"CustCtl", "NextCustomerNo", kBroughtIn},  // to 1001
    {"CustCtl", "NextCustomerID", kBroughtIn},  // to 1
    {"ARInvCtl", "NextInvoiceID", kAsItStands},
    {"ARInvCtl", "NextInvoiceNo", kBroughtIn},  // to 1
    {"ARInvCtl", "NextOrderID", kAsItStands},
    {"ARInvCtl", "NextOrderNo", kBroughtIn},  // to 1
    {"ARInvCtl", "NextShipmentID", kAsItStands},
    {"ARPmtCtl", "NextPaymentID", kAsItStands},
    {"VendCtl", "NextVendorNo", kBroughtIn},  // as the customers' numbers
    {"VendCtl", "NextVendorID", kBroughtIn},
    {"APInvCtl", "NextInvoiceID", kAsItStands},
    {"APChqCtl", "NextChequeID", kAsItStands},
    {"ItemCtl", "NextItemNo", kBroughtIn},  // to 1001
    {"ItemCtl", "NextItemID", kBroughtIn},  // to 10000
    {"ItemCtl", "NextInvAdjustmentID", kAsItStands},
    {"ItemCtl", "NextInvReceiptID", kAsItStands},
    {"ItemCtl", "NextInvReceiptNo", kBroughtIn},     // to 1
    {"ItemCtl", "NextPurchaseOrderID", kBroughtIn},  // to 1
    {"ItemCtl", "NextPurchaseOrderNo", kBroughtIn},  // to 1
    {"ItemCtl", "NextVItemID", kAsItStands},
    {"ItemCtl", "NextMfgOrderID", kBroughtIn},  // to 1
    {"ItemCtl", "NextMfgOrderNo", kBroughtIn},  // to 1
    {"ItemCtl", "NextMfgReceiptID", kAsItStands},
    {"ItemCtl", "NextMfgReceiptNo", kBroughtIn},  // to 1
    {"ItemCtl", "NextLotID", kBroughtIn},         // to 1
};
constexpr std::string_view kPictures = "Logo";  // its row is there, without a picture

// The tables but Company that the folder does not have yet.
std::vector<TableDef> missingTables(Database& database) {
  std::vector<TableDef> missing;
  for (const TableDef& table : companyTables()) {
    if (!database.exists(table.name)) {
      if (table.name != kMark) missing.push_back(table);
      continue;
    }
    Cursor cursor(database, table.name);
    cursor.open();
    if (table.name == kMark || cursor.definition() != table)
      throw StoreError(Code::tableExists, "Table '" + table.name + "' exists already.");
  }
  return missing;
}

// The first rows, which become visible together. The tables are held exclusively until then, so that of two processes
// one is refused and no table gets a second row.
class FirstRows {
 public:
  explicit FirstRows(Database& database) : database_(database) {}

  void write() {
    {
      const Database::BulkScope bulk(database_);
      for (const NextValue& next : kNextValues) {
        Cursor* cursor = rowOf(next.table);
        if (cursor) (*cursor)[next.field] = next.value;
      }
      rowOf(kPictures);
      finishRow();
      database_.settle();
    }
    cursors_.clear();
  }

 private:
  // The new row of a table; nullptr when it has its row already. The values of a table follow one another.
  Cursor* rowOf(std::string_view table) {
    if (cursors_.empty() || cursors_.back()->definition().name != table) {
      finishRow();
      cursors_.push_back(std::make_unique<Cursor>(database_, std::string(table)));
      cursors_.back()->setExclusive(true);
      cursors_.back()->open();
      if (cursors_.back()->isEmpty()) cursors_.back()->insert();
    }
    return cursors_.back()->isEditing() ? cursors_.back().get() : nullptr;
  }
  void finishRow() {
    if (!cursors_.empty() && cursors_.back()->isEditing()) cursors_.back()->post();
  }

  Database& database_;
  std::vector<std::unique_ptr<Cursor>> cursors_;
};

}  // namespace

bool beginsWithARow(std::string_view table) {
  return equalFolded(table, kPictures) ||
         std::ranges::any_of(kNextValues, [&](const NextValue& next) { return equalFolded(table, next.table); });
}

void createCompanyTables(Database& database) {
  database.createTables(missingTables(database));
  FirstRows(database).write();
  database.createTable(*companyTable(kMark));
}

}  // namespace quillon::store
