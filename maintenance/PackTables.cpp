#include "maintenance/PackTables.h"

#include <array>

#include "store/Database.h"
#include "store/schema/CompanySchema.h"

namespace quillon::maintenance {
namespace {

constexpr std::array<const char*, 77> kOrder = {
    "JVDet",    "JV",       "JVCtl",    "APInvChq", "APInvDet", "APInv",    "APInvCtl",    "APCheq",   "APChqCtl",
    "ARInvPmt", "ARInvDet", "ARInv",    "ARInvCtl", "ARPmt",    "ARPmtCtl", "VBalance",    "VContact", "Vendor",
    "VendCtl",  "VendType", "CBalance", "CContact", "Customer", "Shipto",   "CustCtl",     "Salesman", "CusType",
    "Bank",     "Company",  "Currency", "Item",     "ItemCtl",  "ItemType", "ItemSubtype", "Tax",      "GLActual",
    "GLBudget", "GLHist",   "GLAccnt",  "GLAcSub1", "GLAcSub2", "GLAcSub3", "FStmtLAc",    "FStmtLTo", "FStmtLin",
    "FStmt",    "FStmtCtl", "Users",    "Warehse",  "IBalance", "ICount",   "IHist",       "IReceipt", "IRecDet",
    "IAdjust",  "IAdjDet",  "Shipment", "ShipDet",  "SOrder",   "SOrdDet",  "Carrier",     "Price",    "PriceLst",
    "POrder",   "POrdDet",  "VendItem", "Logo",     "ItemMtl",  "ItemRes",  "Resource",    "MOrder",   "MOrdMtl",
    "MOrdRes",  "MReceipt", "MRecMtl",  "MRecRes",  "Lot"};

std::string counted(std::uint64_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

TableLoss lossOf(const store::RepairReport& report) {
  TableLoss loss{.head = report.table + ":", .details = report.losses};
  const auto add = [&loss](std::uint64_t count, const std::string& noun, const char* fate) {
    if (count > 0) loss.head += (loss.head.ends_with(':') ? " " : ", ") + counted(count, noun) + fate;
  };
  add(report.lostRows, "record", " lost");
  add(report.lostContents, "note or picture", " lost");
  add(report.setAside.size(), "record", " left out, because another one has the same key");
  if (loss.head.ends_with(':')) loss.head += " something may be lost";
  if (report.lostRows + report.lostContents > report.losses.size()) loss.details.emplace_back("and others");
  loss.details.insert(loss.details.end(), report.setAside.begin(), report.setAside.end());
  return loss;
}

}  // namespace

std::span<const char* const> packOrder() { return kOrder; }

void packTables(store::Database& company, const std::function<void(const std::string& text, int done)>& step,
                std::vector<TableLoss>& losses) {
  int done = 0;
  for (const std::string table : kOrder) {
    const auto progress = [&](const char* deed) {
      return
          [&step, &table, done, deed](int percent) { step(deed + table + " " + std::to_string(percent) + "%", done); };
    };
    step(table, done);
    const store::RepairReport report =
        company.repairTable(table, {.definition = store::companyTable(table), .progress = progress("Repairing ")});
    if (!report.lossless()) losses.push_back(lossOf(report));
    company.optimizeTable(table, {.keepOld = true, .progress = progress("Packing ")});
    step(table, ++done);
  }
}

}  // namespace quillon::maintenance
