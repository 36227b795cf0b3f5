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

// "JV: 2 records lost", and under it which.
void tell(const store::RepairReport& report, std::vector<std::string>& losses) {
  std::string head;
  const auto add = [&head](std::uint64_t count, const std::string& noun, const char* fate) {
    if (count > 0) head += (head.empty() ? " " : ", ") + counted(count, noun) + fate;
  };
  add(report.lostRows, "record", " lost");
  add(report.lostContents, "note or picture", " lost");
  add(report.setAside.size(), "record", " left out, because another one has the same key");
  losses.push_back(report.table + ":" + (head.empty() ? " something may be lost" : head));
  for (const auto* lines : {&report.losses, &report.setAside})
    for (const std::string& line : *lines) losses.push_back("  " + line);
  if (report.lostRows + report.lostContents > report.losses.size()) losses.push_back("  and others");
}

}  // namespace

std::span<const char* const> packOrder() { return kOrder; }

void packTables(store::Database& company, const std::function<void(const std::string& text, int done)>& step,
                std::vector<std::string>& losses) {
  int done = 0;
  for (const std::string table : kOrder) {
    const auto progress = [&](const char* deed) {
      return
          [&step, &table, done, deed](int percent) { step(deed + table + " " + std::to_string(percent) + "%", done); };
    };
    step(table, done);
    const store::RepairReport report =
        company.repairTable(table, {.definition = store::companyTable(table), .progress = progress("Repairing ")});
    if (!report.lossless()) tell(report, losses);
    company.optimizeTable(table, {.keepOld = true, .progress = progress("Packing ")});
    step(table, ++done);
  }
}

}  // namespace quillon::maintenance
