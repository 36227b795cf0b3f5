#include "support/OfficeWork.h"

#include <unistd.h>

#include <array>

#include "store/Errors.h"

namespace quillon::sim::office {

using store::Code;
using store::Cursor;
using store::FieldType;
using store::IndexOptions;
using store::StoreError;
using store::TableDef;

namespace {

constexpr int kLastRows = 15;  // that a reader compares one by one

store::Settings impatientSettings() {
  store::Settings settings;
  settings.lockWaitTime = 2;
  settings.lockRetryCount = 200;
  settings.cacheBytes = std::size_t{4} << 20;
  settings.journalBytes = std::size_t{1} << 20;  // so that it is emptied often
  return settings;
}

void insertOnly(store::Database& database, const char* table, std::initializer_list<const char*> fields) {
  Cursor cursor(database, table);
  cursor.open();
  cursor.insert();
  for (const char* field : fields) cursor[field] = 0;
  cursor.post();
}

}  // namespace

void makeCompany(store::Database& database) {
  const std::vector<store::FieldDef> common = {{"Worker", FieldType::integer}, {"Seq", FieldType::integer},
                                               {"Part", FieldType::integer},   {"Amount", FieldType::currency},
                                               {"Number", FieldType::integer}, {"Text", FieldType::string, 200},
                                               {"Notes", FieldType::memo}};
  const auto unique = IndexOptions::unique;
  for (const char* name : {"Log", "Debit", "Credit"})
    database.createTable(TableDef::of(name, common, {{"", "Worker;Seq", unique}, {"ByText", "Text"}}));
  database.createTable(TableDef::of("Batch", common, {{"", "Worker;Seq;Part", unique}}));
  // Not unique: a number given twice is for the check to find.
  database.createTable(TableDef::of("Docs", common, {{"", "Number"}, {"ByWorker", "Worker;Seq", unique}}));
  database.createTable(TableDef::of("Totals", {{"Rows", FieldType::integer}, {"Amount", FieldType::currency}}));
  database.createTable(TableDef::of("Shared", {{"Value", FieldType::integer}}));
  database.createTable(TableDef::of("Control", {{"Next", FieldType::integer}}));
  insertOnly(database, "Totals", {"Rows", "Amount"});
  insertOnly(database, "Shared", {"Value"});
  insertOnly(database, "Control", {"Next"});
}

std::string noteOf(int worker, int seq) {
  if (seq % 3 != 0) return {};
  return std::string(static_cast<std::size_t>(worker * 31 + seq * 17) % 3000 + 1, static_cast<char>('a' + seq % 26));
}

Worker::Worker(const std::string& folder, int number, std::uint64_t seed)
    : number_(number),
      random_(seed),
      session_({files_, store::systemClock(), "W" + std::to_string(number), "PC", ::getpid()}, impatientSettings()),
      database_(session_, folder) {
  for (Cursor* cursor : {&log_, &debit_, &credit_, &totals_, &batch_, &docs_, &shared_}) cursor->open();
}

void Worker::undo() {
  for (Cursor* cursor : {&log_, &debit_, &credit_, &totals_, &batch_, &docs_, &shared_}) cursor->cancel();
  if (database_.inTransaction()) database_.rollback();
}

void Worker::retrying(const std::function<void()>& work) {
  while (true) {
    try {
      return work();
    } catch (const StoreError& error) {
      undo();
      const Code code = error.code();
      if (code != Code::recordLocked && code != Code::recordChanged && code != Code::tableInUse) throw;
      ++refusals_;
    }
  }
}

Worker::Done Worker::workOnce() {
  const auto work = static_cast<Work>(random_.below(kWorks));
  Done done{work, seq_ + 1, 0};
  switch (work) {
    case Work::post:
      retrying([&] { post(); });
      break;
    case Work::remove:
      retrying([&] {
        if (!remove(done.number)) {
          done.work = Work::post;
          post();
        }
      });
      break;
    case Work::transfer:
      if (random_.oneIn(5)) {
        retrying([&] {
          database_.startTransaction({"Debit", "Log"});
          insertRow(debit_);
          insertRow(log_);
          database_.rollback();
        });
      }
      retrying([&] { transfer(); });
      break;
    case Work::batch:
      done.number = static_cast<std::int64_t>(1 + random_.below(30));
      batch(static_cast<int>(done.number));
      break;
    case Work::number:
      done.number = takeNumber();
      break;
    case Work::count:
      retrying([&] { count(); });
      break;
  }
  ++seq_;
  return done;
}

// A group that meets another's lock half way goes on after what it has: the parts stay without a gap.
Worker::Done Worker::load() {
  const auto rows = static_cast<int>(1000 + random_.below(3000));
  int part = 0;
  while (part < rows)
    retrying([&] {
      const store::Database::BulkScope bulk(database_);
      for (; part < rows; ++part) {
        insertRow(batch_);
        batch_["Part"] = part;
        batch_.post();
      }
      database_.settle();
    });
  return {Work::batch, ++seq_, rows};
}

void Worker::insertRow(Cursor& cursor) {
  cursor.insert();
  cursor["Worker"] = number_;
  cursor["Seq"] = seq_ + 1;
  cursor["Amount"] = Money::fromRaw(number_ * 1000 + seq_);
  cursor["Text"] = std::string(random_.below(120), static_cast<char>('a' + random_.below(26)));
  if (&cursor == &log_) cursor["Notes"] = noteOf(number_, seq_ + 1);
  if (&cursor != &batch_ && &cursor != &docs_) cursor.post();
}

void Worker::post() { insertRow(log_); }

bool Worker::remove(std::int64_t& seq) {
  log_.setRange({number_}, {number_});
  const bool any = !log_.isEmpty();
  if (any) {
    seq = log_["Seq"].asInt();
    log_.remove();
  }
  log_.cancelRange();
  return any;
}

void Worker::transfer() {
  database_.startTransaction({"Debit", "Credit", "Totals"});
  insertRow(debit_);
  totals_.refresh();
  totals_.edit();
  totals_["Rows"] = totals_["Rows"].asInt() + 1;
  totals_["Amount"] = totals_["Amount"].asMoney() + Money::fromRaw(number_ * 1000 + seq_);
  totals_.post();
  insertRow(credit_);
  database_.commit();
}

void Worker::batch(int rows) {
  retrying([&] { batch_.lockTable(); });
  for (int part = 0; part < rows; ++part) {
    insertRow(batch_);
    batch_["Part"] = part;
    batch_.post();
  }
  if (random_.oneIn(2)) batch_.flush();
  batch_.unlockTable();
}

std::int64_t Worker::takeNumber() {
  std::int64_t number = 0;
  retrying([&] {
    Cursor control(database_, "Control");
    control.setExclusive(true);
    control.open();
    number = control["Next"].asInt64();
    control.edit();
    control["Next"] = number + 1;
    control.post();
    control.close();
  });
  retrying([&] {
    insertRow(docs_);
    docs_["Number"] = number;
    docs_.post();
  });
  return number;
}

void Worker::count() {
  shared_.refresh();
  shared_.edit();
  shared_["Value"] = shared_["Value"].asInt64() + 1;
  shared_.post();
}

void Worker::readOnce() {
  store::Database::Snapshot snapshot(database_, {&debit_.table(), &credit_.table(), &totals_.table()});
  for (Cursor* cursor : {&debit_, &credit_, &totals_}) cursor->refresh();
  const auto rows = static_cast<std::uint64_t>(totals_["Rows"].asInt64());
  if (debit_.recordCount() != rows || credit_.recordCount() != rows)
    throw Error("Debit has " + std::to_string(debit_.recordCount()) + " rows, Credit " +
                std::to_string(credit_.recordCount()) + ", Totals says " + std::to_string(rows));
  if (random_.oneIn(20)) return readAll();
  debit_.setRowOrder();
  credit_.setRowOrder();
  debit_.last();
  credit_.last();
  for (int i = 0; i < kLastRows && !debit_.bof(); ++i, debit_.prior(), credit_.prior())
    for (const char* field : {"Worker", "Seq", "Amount"})
      if (debit_.value(field) != credit_.value(field))
        throw Error(std::string("Debit and Credit differ in ") + field + " of row " + std::to_string(debit_.rowId()));
}

void Worker::readAll() {
  std::array<Money, 2> sums;
  for (std::size_t i = 0; i < sums.size(); ++i) {
    Cursor& cursor = i == 0 ? debit_ : credit_;
    cursor.setIndex(random_.oneIn(2) ? "" : "ByText");
    for (cursor.first(); !cursor.eof(); cursor.next()) sums[i] = sums[i] + cursor["Amount"].asMoney();
  }
  const Money wanted = totals_["Amount"].asMoney();
  if (sums[0] != wanted || sums[1] != wanted) throw Error("The sums of Debit, Credit and Totals differ");
}

}  // namespace quillon::sim::office
