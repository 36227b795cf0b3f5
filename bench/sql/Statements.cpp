// The statements: what reports, postings and purges ask.
#include <random>

#include "bench/sql/Compare.h"
#include "bench/sql/Ledger.h"

namespace quillon::bench {
namespace {

std::string counted(std::int64_t count, const char* what) { return std::to_string(count) + " " + what; }

}  // namespace

void groupSum(Bench& bench) {
  const std::string text = "SELECT GLAccountID, SUM(Amount) AS Total FROM GLHist GROUP BY GLAccountID";
  const Statement statement{"group-sum", text, text,
                            {{}},        1,    counted(bench.rows(), "rows of 60 accounts, no index for it")};
  compareSelect(bench, statement, Order::any);
  compareMemory(bench, statement);
}

void joinThree(Bench& bench) {
  const std::string text =
      "SELECT H.GLHistID, H.TransDate, H.Amount, A.AccountNumber, C.CustomerNumber, C.Name FROM GLHist H "
      "INNER JOIN GLAccount A ON A.GLAccountID = H.GLAccountID INNER JOIN Customer C ON C.CustomerID = H.CustomerID "
      "WHERE H.TransDate BETWEEN ";
  const Row month{Date(2026, 3, 1), Date(2026, 3, 31)};
  compareSelect(
      bench,
      {"join-3", text + ":p1 AND :p2", text + "?1 AND ?2", {month}, 1, "a month's sales, a quarter of its lines"},
      Order::any);
}

void topOne(Bench& bench) {
  std::vector<Row> keys;
  std::mt19937_64 random(3);
  for (int i = 0; i < 1000; ++i) keys.push_back({static_cast<std::int64_t>(1 + random() % kCustomers)});
  const std::string text = "SELECT GLHistID, TransDate, Amount FROM GLHist WHERE CustomerID = ";
  compareSelect(bench,
                {"top-1", text + ":p1 ORDER BY TransDate DESC TOP 1", text + "?1 ORDER BY TransDate DESC LIMIT 1", keys,
                 1, "a customer's latest line, 1000 random ones"},
                Order::asAsked);
}

void inSelect(Bench& bench) {
  const std::string text =
      "SELECT GLHistID, JVID, Amount FROM GLHist WHERE JVID IN (SELECT JVID FROM JV WHERE TransDate ";
  compareSelect(bench,
                {"in-select",
                 text + "BETWEEN :p1 AND :p2)",
                 text + "BETWEEN ?1 AND ?2)",
                 {{Date(2026, 5, 4), Date(2026, 5, 10)}},
                 1,
                 "the lines of a week's vouchers"},
                Order::any);
}

void notInDelete(Bench& bench) {
  const std::string text = "DELETE FROM JVDet WHERE JVID NOT IN (SELECT JVID FROM JV)";
  compareChange(bench, {"not-in-delete", text, text, {{}}, 1, counted(lines(bench), "lines, a tenth of them orphans")},
                "JVDet", "SELECT COUNT(*) AS N FROM JVDet");
}

void updateRange(Bench& bench) {
  const std::int64_t count = bench.scaled(100'000);
  const std::int64_t from = bench.rows() / 2;
  const std::string where = " WHERE GLHistID BETWEEN ";
  // Theirs holds ten-thousandths.
  compareChange(bench,
                {"update-100k",
                 "UPDATE GLHist SET Amount = Amount + 1" + where + ":p1 AND :p2",
                 "UPDATE GLHist SET Amount = Amount + 10000" + where + "?1 AND ?2",
                 {{from + 1, from + count}},
                 1,
                 counted(count, "rows by a range, rolled back")},
                "GLHist", "SELECT SUM(Amount) AS Total FROM GLHist");
}

void orderNocase(Bench& bench) {
  const std::string text = "SELECT TransDescription, Source, Amount, GLAccountID FROM GLHist ORDER BY ";
  const Statement statement{"order-nocase",
                            text + "TransDescription, Source NOCASE",
                            text + "TransDescription COLLATE NOCASE, Source COLLATE NOCASE",
                            {{}},
                            1,
                            counted(bench.rows(), "rows by two texts")};
  compareSelect(bench, statement, Order::asAsked);
  compareMemory(bench, statement);
}

void aged(Bench& bench) {
  const std::string head = "SELECT C.CustomerNumber, C.Name",
                    tail =
                        " FROM ARInvoice I INNER JOIN Customer C ON C.CustomerID = I.CustomerID WHERE I.Balance <> 0 "
                        "GROUP BY C.CustomerNumber, C.Name ORDER BY C.CustomerNumber";
  struct Band {
    const char *condition, *name;
  };
  std::string ours = head, theirs = head;
  for (const auto& [condition, name] : {Band{" <= 0", "NotDue"}, Band{" BETWEEN 1 AND 30", "Days30"},
                                        Band{" BETWEEN 31 AND 60", "Days60"}, Band{" > 60", "Older"}}) {
    const std::string when = std::string(" - I.DueDate") + condition;
    ours += ", SUM(IF (:p1" + when + " THEN I.Balance ELSE 0)) AS " + name;
    theirs += ", SUM(CASE WHEN ?1" + when + " THEN I.Balance ELSE 0 END) AS " + name;
  }
  compareSelect(bench,
                {"aged",
                 ours + tail,
                 theirs + tail,
                 {{Date(2026, 9, 30)}},
                 1,
                 counted(invoices(bench), "invoices by days overdue, per customer")},
                Order::asAsked);
}

}  // namespace quillon::bench
