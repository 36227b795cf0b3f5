#include "bench/sql/Ledger.h"

#include <filesystem>
#include <functional>
#include <random>

#include "bench/Shapes.h"
#include "bench/Theirs.h"

namespace quillon::bench {
namespace {

using store::FieldType;
using store::IndexOptions;
using store::TableDef;

constexpr int kLinesOfVoucher = 3;
const Date kStart(2026, 1, 1);
constexpr int kDays = 365;

TableDef historyTable() {
  return TableDef::of("GLHist",
                      {{"GLHistID", FieldType::autoInc},
                       {"GLAccountID", FieldType::integer},
                       {"GLYear", FieldType::smallint},
                       {"GLPeriod", FieldType::smallint},
                       {"Source", FieldType::string, 2},
                       {"JVID", FieldType::integer},
                       {"TransDate", FieldType::date},
                       {"Amount", FieldType::currency},
                       {"TransDescription", FieldType::string, 60},
                       {"CustomerID", FieldType::integer},
                       {"Reconciled", FieldType::boolean}},
                      {{"", "GLHistID", IndexOptions::unique},
                       {"TransDate", "TransDate"},
                       {"JVID", "JVID"},
                       {"CustomerLatest", "CustomerID;TransDate", IndexOptions::none, "TransDate"}});
}

TableDef accountTable() {
  return TableDef::of("GLAccount",
                      {{"GLAccountID", FieldType::integer},
                       {"AccountNumber", FieldType::string, 20},
                       {"Description", FieldType::string, 50}},
                      {{"", "GLAccountID", IndexOptions::unique}});
}

TableDef customerTable() {
  return TableDef::of(
      "Customer",
      {{"CustomerID", FieldType::integer}, {"CustomerNumber", FieldType::string, 20}, {"Name", FieldType::string, 50}},
      {{"", "CustomerID", IndexOptions::unique}, {"CustomerNumber", "CustomerNumber"}});
}

TableDef voucherTable() {
  return TableDef::of(
      "JV", {{"JVID", FieldType::integer}, {"TransDate", FieldType::date}, {"Description", FieldType::string, 60}},
      {{"", "JVID", IndexOptions::unique}, {"TransDate", "TransDate"}});
}

TableDef lineTable() {
  return TableDef::of("JVDet",
                      {{"JVDetID", FieldType::autoInc},
                       {"JVID", FieldType::integer},
                       {"GLAccountID", FieldType::integer},
                       {"Amount", FieldType::currency}},
                      {{"", "JVDetID", IndexOptions::unique}, {"JVID", "JVID"}});
}

TableDef invoiceTable() {
  return TableDef::of("ARInvoice",
                      {{"ARInvoiceID", FieldType::autoInc},
                       {"CustomerID", FieldType::integer},
                       {"InvoiceDate", FieldType::date},
                       {"DueDate", FieldType::date},
                       {"Balance", FieldType::currency}},
                      {{"", "ARInvoiceID", IndexOptions::unique}, {"CustomerID", "CustomerID"}});
}

// The rows that a table starts with are made one at a time: a million together would take more memory than the store.
using Maker = std::function<Row(std::int64_t at)>;

void fill(const Ledger& place, const TableDef& table, std::int64_t count, const Maker& make) {
  Ours ours(place.folder);
  ours.database.createTable(table);
  store::Cursor cursor(ours.database, table.name);
  cursor.open();
  Theirs theirs(place.file);
  createTheirs(theirs, table);
  Prepared statement(theirs, insertStatement(table));
  ours.database.startTransaction({table.name});
  theirs.run("BEGIN");
  for (std::int64_t at = 0; at < count; ++at) {
    const Row row = make(at);
    insert(cursor, row);
    insert(statement, row);
  }
  ours.database.commit();
  theirs.run("COMMIT");
}

std::int64_t accountOf(std::int64_t number) { return 1000 + number * 10; }

// 'SUPPLIES for', 'Supplies for', 'supplies for': what people type.
std::string typed(std::uint64_t way) {
  constexpr const char* kTexts[] = {"Supplies for the workshop, order ",
                                    "SUPPLIES for the workshop, order ",
                                    "delivery note ",
                                    "Delivery Note ",
                                    "Payment by cheque ",
                                    "Month end allocation "};
  return kTexts[way % std::size(kTexts)];
}

Maker historyRows(std::int64_t count) {
  return [count, random = std::mt19937_64(7)](std::int64_t at) mutable {
    const std::int64_t voucher = at / kLinesOfVoucher + 1;
    const Date day = kStart.addDays(static_cast<std::int32_t>(at * kDays / count));
    const bool sale = random() % 4 == 0;
    Row row(11);
    row[1] = accountOf(static_cast<std::int64_t>(random() % kAccounts));
    row[2] = day.year();
    row[3] = static_cast<int>(day.month());
    row[4] = sale ? "AR" : "GL";
    row[5] = voucher;
    row[6] = day;
    row[7] = Money::fromRaw(static_cast<std::int64_t>(random() % 200'000'000) - 100'000'000);
    row[8] = typed(random()) + std::to_string(random() % 1'000'000);
    if (sale) row[9] = static_cast<std::int64_t>(1 + random() % kCustomers);
    row[10] = false;
    return row;
  };
}

Row voucherRow(std::int64_t at, std::int64_t count) {
  const std::int64_t number = at + at / 9 + 1;  // every tenth is missing
  return {number, kStart.addDays(static_cast<std::int32_t>(at * kDays / count)), "Voucher " + std::to_string(number)};
}

}  // namespace

std::int64_t lines(const Bench& bench) { return bench.scaled(300'000); }
std::int64_t invoices(const Bench& bench) { return bench.scaled(100'000); }

Ledger ledger(const Bench& bench) {
  const Ledger place{bench.folder() + "/ledger", bench.folder() + "/ledger.db"};
  if (!std::filesystem::create_directories(place.folder)) return place;
  fill(place, historyTable(), bench.rows(), historyRows(bench.rows()));
  fill(place, accountTable(), kAccounts, [](std::int64_t at) {
    return Row{accountOf(at), std::to_string(accountOf(at)), "Account " + std::to_string(at)};
  });
  fill(place, customerTable(), kCustomers, [](std::int64_t at) {
    return Row{at + 1, "C" + std::to_string(1'000 + at * 7919 % kCustomers), "Customer " + std::to_string(at)};
  });
  const std::int64_t vouchers = bench.rows() / kLinesOfVoucher * 9 / 10;
  fill(place, voucherTable(), vouchers, [vouchers](std::int64_t at) { return voucherRow(at, vouchers); });
  fill(place, lineTable(), lines(bench), [random = std::mt19937_64(9)](std::int64_t at) mutable {
    return Row{store::Value(), at / kLinesOfVoucher + 1, accountOf(static_cast<std::int64_t>(random() % kAccounts)),
               Money::fromRaw(static_cast<std::int64_t>(random() % 50'000'000))};
  });
  fill(place, invoiceTable(), invoices(bench), [random = std::mt19937_64(11)](std::int64_t) mutable {
    const Date day = kStart.addDays(static_cast<std::int32_t>(random() % kDays));
    return Row{store::Value(), static_cast<std::int64_t>(1 + random() % kCustomers), day, day.addDays(30),
               Money::fromRaw(static_cast<std::int64_t>(random() % 90'000'000))};
  });
  return place;
}

}  // namespace quillon::bench
