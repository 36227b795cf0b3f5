#include "bench/Shapes.h"

#include <array>
#include <random>

#include "bench/Theirs.h"

namespace quillon::bench {
namespace {

using store::FieldDef;
using store::FieldType;
using store::IndexDef;
using store::IndexOptions;
using store::IndexSpec;
using store::TableDef;

constexpr std::array<IndexSpec, kAllGlHistIndexes> kGlHistIndexes{{
    {"", "GLHistID", IndexOptions::unique},
    {"Account", "GLAccountID;SubAccount1ID;SubAccount2ID;SubAccount3ID;GLYear;GLPeriod;TransDate;JVNumber"},
    {"Latest", "GLYear;GLPeriod;TransDate;JVNumber;GLHistID", IndexOptions::none,
     "GLYear;GLPeriod;TransDate;JVNumber;GLHistID"},
    {"AccountLatest", "GLAccountID;GLYear;GLPeriod;TransDate;JVNumber;GLHistID", IndexOptions::none,
     "GLAccountID;GLYear;GLPeriod;TransDate;JVNumber;GLHistID"},
    {"GLPeriod", "GLPeriod"},
    {"GLYear", "GLYear"},
    {"GLAccountID", "GLAccountID"},
    {"SubAccount1ID", "SubAccount1ID"},
    {"SubAccount2ID", "SubAccount2ID"},
    {"SubAccount3ID", "SubAccount3ID"},
    {"JVID", "JVID"},
    {"Source", "Source"},
    {"TransType", "TransType"},
    {"TransDate", "TransDate"},
    {"Reconciled", "Reconciled"},
    {"Reconciling", "Reconciling"},
}};

const char* theirType(FieldType type) { return type == FieldType::string ? "TEXT" : "INTEGER"; }

std::int64_t mixed(std::int64_t number) {
  auto bits = static_cast<std::uint64_t>(number) * 0x9E3779B97F4A7C15u;
  return static_cast<std::int64_t>((bits ^ bits >> 31) >> 2);
}

}  // namespace

TableDef glHist(int indexes, std::string name) {
  TableDef table{.name = std::move(name),
                 .fields = {{"GLHistID", FieldType::autoInc},
                            {"GLAccountID", FieldType::integer},
                            {"SubAccount1ID", FieldType::integer},
                            {"SubAccount2ID", FieldType::integer},
                            {"SubAccount3ID", FieldType::integer},
                            {"GLYear", FieldType::smallint},
                            {"GLPeriod", FieldType::smallint},
                            {"Source", FieldType::string, 2},
                            {"TransType", FieldType::string, 3},
                            {"JVNumber", FieldType::integer},
                            {"TransDate", FieldType::date},
                            {"Amount", FieldType::currency},
                            {"TransDescription", FieldType::string, 60},
                            {"VendorID", FieldType::integer},
                            {"APInvoiceID", FieldType::integer},
                            {"ChequeID", FieldType::integer},
                            {"CustomerID", FieldType::integer},
                            {"ARInvoiceID", FieldType::integer},
                            {"PaymentID", FieldType::integer},
                            {"AdjustmentID", FieldType::integer},
                            {"JVID", FieldType::integer},
                            {"Reconciled", FieldType::boolean},
                            {"Reconciling", FieldType::boolean}},
                 .indexes = {}};
  for (int i = 0; i < indexes; ++i)
    table.indexes.push_back(IndexDef::of(table, kGlHistIndexes[static_cast<std::size_t>(i)]));
  table.validate();
  return table;
}

std::vector<Row> glHistRows(std::int64_t count) {
  struct Kind {
    const char *source, *type, *text;
    int document;  // the field that names it
  };
  constexpr std::array<Kind, 4> kKinds{{{"AP", "INV", "Supplies for the workshop, order ", 14},
                                        {"AR", "INV", "Delivery note ", 17},
                                        {"CQ", "PMT", "Payment by cheque ", 15},
                                        {"GL", "JV", "Month end allocation ", 20}}};
  std::mt19937_64 random(7);
  const Date start(2026, 1, 1);
  std::vector<Row> rows;
  rows.reserve(static_cast<std::size_t>(count));
  for (std::int64_t at = 0; at < count; ++at) {
    const std::int64_t voucher = at / 3, line = at % 3;
    const Date day = start.addDays(at * 365 / count);
    const Kind& kind = kKinds[static_cast<std::size_t>(mixed(voucher) % 4)];
    const std::int64_t amount = mixed(voucher) % 100'000'000;
    Row row(23);
    row[1] = std::int64_t{1000} + static_cast<std::int64_t>(random() % 60) * 10;
    if (random() % 10 == 0) row[2] = static_cast<std::int64_t>(1 + random() % 8);
    row[5] = day.year();
    row[6] = static_cast<int>(day.month());
    row[7] = kind.source;
    row[8] = kind.type;
    row[9] = voucher + 1;
    row[10] = day;
    row[11] = Money::fromRaw(line == 0 ? -amount : line == 1 ? amount / 3 : amount - amount / 3);
    row[12] = kind.text + std::to_string(voucher + 1);
    if (kind.document == 14 || kind.document == 15) row[13] = static_cast<std::int64_t>(1 + random() % 400);
    if (kind.document == 17) row[16] = static_cast<std::int64_t>(1 + random() % 900);
    row[static_cast<std::size_t>(kind.document)] = voucher + 1;
    row[20] = voucher + 1;
    row[21] = false;
    row[22] = false;
    rows.push_back(std::move(row));
  }
  return rows;
}

TableDef item() {
  return TableDef::of("Item",
                      {{"ItemID", FieldType::autoInc},
                       {"ItemNumber", FieldType::integer},
                       {"Shelf", FieldType::integer},
                       {"Quantity", FieldType::integer},
                       {"Price", FieldType::currency},
                       {"Description", FieldType::string, 30},
                       {"Active", FieldType::boolean}},
                      {{"", "ItemNumber", IndexOptions::unique}, {"Shelf", "Shelf"}});
}

Row itemRow(std::int64_t at, std::int64_t count) {
  const std::int64_t spread = mixed(at);
  return {store::Value(),
          itemNumber(at),
          spread % (4 * count),
          spread % 5000,
          Money::fromRaw(spread % 9'000'000),
          "Bracket, zinc plated " + std::to_string(spread % 100'000),
          spread % 20 != 0};
}

void createTheirs(Theirs& side, const TableDef& table) {
  std::string statement = "CREATE TABLE " + table.name + " (";
  for (std::size_t i = 0; i < table.fields.size(); ++i) {
    const FieldDef& field = table.fields[i];
    statement += (i > 0 ? ", " : "") + field.name + " " + theirType(field.type);
    if (field.type == FieldType::autoInc) statement += " PRIMARY KEY";
  }
  side.run(statement + ")");
  for (std::size_t i = 0; i < table.indexes.size(); ++i) {
    const IndexDef& index = table.indexes[i];
    if (index.parts.size() == 1 &&
        table.fields[static_cast<std::size_t>(index.parts[0].field)].type == FieldType::autoInc)
      continue;
    statement = std::string(index.unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ") + table.name + "_" +
                std::to_string(i) + " ON " + table.name + " (";
    for (std::size_t p = 0; p < index.parts.size(); ++p)
      statement += (p > 0 ? ", " : "") + table.fields[static_cast<std::size_t>(index.parts[p].field)].name +
                   (index.caseInsensitive ? " COLLATE NOCASE" : "") + (index.parts[p].descending ? " DESC" : "");
    side.run(statement + ")");
  }
}

std::string insertStatement(const TableDef& table) {
  std::string statement = "INSERT INTO " + table.name + " VALUES (?";
  for (std::size_t i = 1; i < table.fields.size(); ++i) statement += ",?";
  return statement + ")";
}

void insert(store::Cursor& cursor, const Row& row) {
  cursor.insert();
  for (std::size_t i = 0; i < row.size(); ++i)
    if (!row[i].isNull()) cursor.field(static_cast<int>(i)).set(row[i]);
  cursor.post();
}

void insert(Prepared& statement, const Row& row) {
  for (std::size_t i = 0; i < row.size(); ++i) statement.bind(static_cast<int>(i) + 1, row[i]);
  statement.once();
}

}  // namespace quillon::bench
