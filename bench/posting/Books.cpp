#include "bench/posting/Books.h"

#include <cstdio>

#include "bench/Ours.h"
#include "bench/Theirs.h"
#include "store/Query.h"
#include "store/schema/CompanySchema.h"
#include "store/schema/CreateCompany.h"

namespace quillon::bench {
namespace {

constexpr int kYear = kFirstYear + kYears - 1;
constexpr int kFirstAmount = 7;  // field of GLActual
constexpr int kDocuments = 13;   // the first of the seven fields of GLHist that name documents
constexpr int kLastDocument = 19;

std::uint64_t mixed(std::uint64_t number) {
  const std::uint64_t bits = number * 0x9E3779B97F4A7C15u;
  return bits ^ bits >> 29;
}

std::string padded(const char* format, int number) {
  char text[32];
  std::snprintf(text, sizeof text, format, number);
  return text;
}

// A table filled on both sides. On ours in a group, on theirs in a transaction.
class Filled {
 public:
  Filled(Ours& ours, Theirs& theirs, const char* table)
      : cursor_(ours.database, table), statement_(theirs, insertStatement(*store::companyTable(table))) {
    cursor_.open();
  }
  void add(const Row& row) {
    insert(cursor_, row);
    insert(statement_, row);
  }

 private:
  store::Cursor cursor_;
  Prepared statement_;
};

template <typename Fill>
void make(const std::string& folder, const std::string& file, const Fill& fill) {
  Ours ours(folder);
  store::createCompanyTables(ours.database);
  store::Query(ours.database, "INSERT INTO Company (CompanyNo, FiscalYear) VALUES (1, " + std::to_string(kYear) + ")")
      .execute();
  Theirs theirs(file);
  for (const char* table : {"GLAccnt", "GLAcSub1", "GLActual", "GLHist", "JV", "JVDet"})
    createTheirs(theirs, *store::companyTable(table));
  const store::Database::BulkScope bulk(ours.database);
  theirs.run("BEGIN");
  Filled accounts(ours, theirs, "GLAccnt"), subaccounts(ours, theirs, "GLAcSub1");
  for (int id = 1; id <= kAccounts; ++id)
    accounts.add({id, padded("%04d", id), "Account " + padded("%04d", id * 7919 % 10007), store::Value(), 1 + id % 5,
                  false, false});
  for (int id = 1; id <= kSubaccounts; ++id) subaccounts.add({id, std::to_string(id), padded("Branch %d", id), false});
  fill(ours, theirs);
  theirs.run("COMMIT");
}

}  // namespace

Voucher voucherOf(int id) {
  const auto random = [id](int which) {
    return static_cast<int>(mixed(static_cast<std::uint64_t>(id * 16 + which)) >> 33);
  };
  const int period = 1 + random(0) % 12;
  const Date day(kYear, static_cast<unsigned>(period), static_cast<unsigned>(1 + random(1) % 28));
  const Money amount = Money::fromRaw((1 + random(2) % 1'000'000) * std::int64_t{300});
  const std::string text = padded("Voucher %08d", id);
  Voucher voucher{.head = Row(18), .lines = {}, .history = {}};
  voucher.head = {id, kYear, period, 1000 + id, "GL", "JV", day,    text,  {},
                  {}, {},    {},     {},        {},   {},   amount, false, false};
  for (int line = 0; line < kLinesOfVoucher; ++line) {
    const int account = 1 + random(4 + line) % kAccounts;
    const store::Value subaccount =
        random(8 + line) % 10 == 0 ? store::Value(1 + random(12 + line) % kSubaccounts) : store::Value();
    const Money part = line == 0 ? amount : Money::fromRaw(amount.raw() / -3 * line);
    voucher.lines.push_back({id, line + 1, account, subaccount, {}, {}, part});
    Row row(23);
    row = {{}, account, subaccount, {}, {}, kYear, period, "GL", "JV", 1000 + id, day, part, text};
    for (int field = kDocuments; field <= kLastDocument; ++field) row.emplace_back(0);
    for (const store::Value& value : {store::Value(id), store::Value(false), store::Value(false)}) row.push_back(value);
    voucher.history.push_back(std::move(row));
  }
  return voucher;
}

void makeVouchers(const std::string& folder, const std::string& file, int vouchers) {
  make(folder, file, [vouchers](Ours& ours, Theirs& theirs) {
    Filled heads(ours, theirs, "JV"), lines(ours, theirs, "JVDet");
    for (int id = 1; id <= vouchers; ++id) {
      const Voucher voucher = voucherOf(id);
      heads.add(voucher.head);
      for (const Row& line : voucher.lines) lines.add(line);
    }
    const std::string next = std::to_string(vouchers + 1);
    store::Query(ours.database, "UPDATE JVCtl SET NextJVID = " + next + ", NextJVNumber = 1000 + " + next).execute();
  });
}

void makeTotals(const std::string& folder, const std::string& file) {
  make(folder, file, [](Ours& ours, Theirs& theirs) {
    Filled totals(ours, theirs, "GLActual");
    for (int account = 1; account <= kAccounts; ++account)
      for (int subaccount = 1; subaccount <= kSubaccounts; ++subaccount)
        for (int year = kFirstYear; year < kFirstYear + kYears; ++year) {
          Row row(kFirstAmount + 12);
          row[0] = account;
          row[1] = subaccount;
          row[4] = year;
          row[5] = "A";
          for (int at = kFirstAmount - 1; at < kFirstAmount + 12; ++at)
            row[static_cast<std::size_t>(at)] =
                Money::fromRaw((account * 31 + year * 7 + at) % 1000 * std::int64_t{10'000});
          totals.add(row);
        }
  });
}

}  // namespace quillon::bench
