#include "ledger/StatementDefinition.h"

#include <algorithm>
#include <map>

#include "base/Errors.h"
#include "store/Cursor.h"

namespace quillon::ledger {
namespace {

using store::Cursor;
using store::Value;

StatementRange rangeOf(Cursor& row) {
  StatementRange range{.from = row["AccountFrom"].asText(), .to = row["AccountTo"].asText()};
  if (range.to.empty()) range.to = range.from;
  for (int level = 1; level <= kSubaccountLevels; ++level)
    range.subaccounts[static_cast<std::size_t>(level - 1)] = row[subaccountField(level)].asInt();
  return range;
}

}  // namespace

LineType lineTypeNamed(std::string_view name) {
  const auto found = std::ranges::find(kLineTypes, name);
  return found == kLineTypes.end() ? LineType::heading : static_cast<LineType>(found - kLineTypes.begin());
}

bool isDetail(LineType type) { return nameOf(type).starts_with("Detail"); }
bool isTotal(LineType type) { return nameOf(type).starts_with("Total"); }

StatementDefinition readStatement(store::Database& database, int stmtId) {
  Cursor head(database, "FStmt"), lines(database, "FStmtLin"), ranges(database, "FStmtLAc"),
      members(database, "FStmtLTo");
  lines.setIndex("StmtIDLineNo");
  members.setIndex("StmtIDTotalLineSeq");
  for (Cursor* cursor : {&head, &lines, &ranges, &members}) cursor->open();
  if (!head.findKey({Value(stmtId)})) throw Error("There is no statement " + std::to_string(stmtId) + " (any more)");
  for (Cursor* cursor : {&lines, &ranges, &members}) cursor->setRange({Value(stmtId)}, {Value(stmtId)});

  StatementDefinition statement{.title = head["StmtTitle"].asText(), .format = head["ColumnFormat"].asText()};
  std::map<int, std::size_t> places;  // of the lines, by their numbers
  for (lines.first(); !lines.eof(); lines.next()) {
    const int seq = lines["Seq"].asInt();
    places[seq] = statement.lines.size();
    statement.lines.push_back(
        {.seq = seq, .heading = lines["LineHeading"].asText(), .type = lineTypeNamed(lines["LineType"].asText())});
  }
  const auto lineOf = [&](Cursor& row, const char* field) -> StatementLine* {
    const auto place = places.find(row[field].asInt());
    return place == places.end() ? nullptr : &statement.lines[place->second];
  };
  for (ranges.first(); !ranges.eof(); ranges.next())
    if (StatementLine* line = lineOf(ranges, "Seq")) line->ranges.push_back(rangeOf(ranges));
  for (members.first(); !members.eof(); members.next())
    if (StatementLine* total = lineOf(members, "TotalLineSeq")) total->members.push_back(members["Seq"].asInt());
  return statement;
}

}  // namespace quillon::ledger
