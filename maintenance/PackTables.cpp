#include "maintenance/PackTables.h"

#include <array>
#include <set>

#include "store/Cursor.h"
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

// A record as people know it: the first values that it has.
std::string told(store::Cursor& row) {
  constexpr int kValues = 5;
  std::string text;
  for (int i = 0, values = 0; i < row.fieldCount() && values < kValues; ++i) {
    const store::Field field = row.field(i);
    if (field.isNull() || store::isBlobType(field.definition().type)) continue;
    text += (values++ == 0 ? "" : ", ") + field.definition().name + " = " + field.value().toText();
  }
  return text;
}

// The record that was entered next before or after an id; empty where there is none near.
std::string neighbour(store::Cursor& rows, std::uint64_t id, bool before) {
  constexpr int kTries = 1000;  // deleted records leave gaps
  for (int i = 1; i <= kTries && (!before || id > 1); ++i)
    if (rows.goToRow(before ? --id : ++id)) return told(rows);
  return {};
}

// A line for each stretch of lost records.
void tellRecords(store::Database& company, const store::RepairReport& report, std::vector<std::string>& details) {
  store::Cursor rows(company, report.table);
  rows.open();
  const std::vector<std::uint64_t>& ids = report.lostIds;
  for (std::size_t first = 0, last = 0; first < ids.size(); first = ++last) {
    while (last + 1 < ids.size() && ids[last + 1] == ids[last] + 1) ++last;
    std::string line = counted(last - first + 1, "record") + " lost";
    const std::string before = neighbour(rows, ids[first], true), after = neighbour(rows, ids[last], false);
    if (!before.empty()) line += ", entered after (" + before + ")";
    if (!after.empty()) line += std::string(before.empty() ? ", entered" : " and") + " before (" + after + ")";
    details.push_back(line);
  }
}

TableLoss lossOf(store::Database& company, const store::RepairReport& report) {
  TableLoss loss{.head = report.table + ":", .details = {}};
  const auto add = [&loss](std::uint64_t count, const std::string& noun, const char* fate) {
    if (count > 0) loss.head += (loss.head.ends_with(':') ? " " : ", ") + counted(count, noun) + fate;
  };
  add(report.lostRows, "record", " lost");
  add(report.lostContents, "note or picture", " lost");
  add(report.setAside.size(), "record", " left out, because another one has the same key");
  if (loss.head.ends_with(':')) loss.head += " something may be lost";
  tellRecords(company, report, loss.details);
  std::set<std::string> byNumber;  // told above
  for (const std::uint64_t id : report.lostIds) byNumber.insert("record " + std::to_string(id) + " is lost");
  for (const std::string& line : report.losses)
    if (!byNumber.contains(line)) loss.details.push_back(line);
  if (report.lostContents > loss.details.size()) loss.details.emplace_back("and others");
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
    if (!report.lossless()) losses.push_back(lossOf(company, report));
    company.optimizeTable(table, {.keepOld = true, .progress = progress("Packing ")});
    step(table, ++done);
  }
}

}  // namespace quillon::maintenance
