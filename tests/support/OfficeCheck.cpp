#include "support/OfficeCheck.h"

#include <unistd.h>

#include <algorithm>
#include <deque>
#include <set>

#include "store/Errors.h"
#include "store/Verify.h"

namespace quillon::sim::office {

using store::Cursor;

void Books::note(int worker, const Worker::Done& done) {
  persons[worker].done.push_back(done);
  if (done.work == Work::count) ++sharedTold;
}

namespace {

constexpr std::array<const char*, 8> kTables = {"Batch", "Control", "Credit", "Debit",
                                                "Docs",  "Log",     "Shared", "Totals"};
using Place = std::pair<int, int>;  // worker, seq

class Checker {
 public:
  Checker(store::Database& database, const Books& books, bool othersWork)
      : database_(database), books_(books), othersWork_(othersWork) {}

  Found run();

 private:
  struct Rows {
    std::set<Place> log, batches, transfers, docs;
    std::map<Place, std::set<int>> parts;
    std::map<Place, std::int64_t> numbers;
  };
  void fault(const std::string& what) { found_.faults.push_back(what); }
  static std::string text(const Place& place) {
    return "work " + std::to_string(place.second) + " of worker " + std::to_string(place.first);
  }
  void walk(const char* table, const std::function<void(Cursor&, const Place&)>& take);
  void readLog();
  void readTransfers();
  void readBatches();
  void readDocs();
  void checkPerson(int worker, const Books::Person& person);
  void checkLog(int worker, const Books::Person& person, const std::deque<int>& standing);
  void checkExtra(int worker, const Books::Person& person);
  void checkShared();
  void takeEveryLock();

  store::Database& database_;
  const Books& books_;
  const bool othersWork_;
  Rows rows_;
  Found found_;
};

void Checker::walk(const char* table, const std::function<void(Cursor&, const Place&)>& take) {
  Cursor cursor(database_, table);
  cursor.open();
  for (cursor.first(); !cursor.eof(); cursor.next()) take(cursor, {cursor["Worker"].asInt(), cursor["Seq"].asInt()});
}

void Checker::readLog() {
  walk("Log", [&](Cursor& cursor, const Place& place) {
    rows_.log.insert(place);
    // With others at work the row may be gone before its content is read.
    if (!othersWork_ && cursor["Notes"].asText() != noteOf(place.first, place.second))
      fault("the content of " + text(place) + " is another");
  });
}

void Checker::readTransfers() {
  Cursor debit(database_, "Debit"), credit(database_, "Credit"), totals(database_, "Totals");
  for (Cursor* cursor : {&debit, &credit, &totals}) cursor->open();
  const store::Database::Snapshot snapshot(database_, {&debit.table(), &credit.table(), &totals.table()});
  for (Cursor* cursor : {&debit, &credit, &totals}) cursor->refresh();
  std::map<Place, Money> sides[2];
  for (int side = 0; side < 2; ++side) {
    Cursor& cursor = side == 0 ? debit : credit;
    for (cursor.first(); !cursor.eof(); cursor.next())
      sides[side][{cursor["Worker"].asInt(), cursor["Seq"].asInt()}] = cursor["Amount"].asMoney();
  }
  if (sides[0] != sides[1]) fault("a transfer is half there: Debit and Credit differ");
  Money sum;
  for (const auto& [place, amount] : sides[0]) {
    sum = sum + amount;
    rows_.transfers.insert(place);
  }
  if (totals["Rows"].asInt64() != static_cast<std::int64_t>(sides[0].size()) || totals["Amount"].asMoney() != sum)
    fault("Totals does not agree with Debit");
}

void Checker::readBatches() {
  walk("Batch", [&](Cursor& cursor, const Place& place) { rows_.parts[place].insert(cursor["Part"].asInt()); });
  for (const auto& [place, parts] : rows_.parts) {
    rows_.batches.insert(place);
    if (*parts.rbegin() != static_cast<int>(parts.size()) - 1) fault("the batch of " + text(place) + " has a gap");
  }
}

void Checker::readDocs() {
  std::map<std::int64_t, Place> given;
  walk("Docs", [&](Cursor& cursor, const Place& place) {
    const std::int64_t number = cursor["Number"].asInt64();
    const auto [other, fresh] = given.emplace(number, place);
    if (!fresh)
      fault("number " + std::to_string(number) + " was given to " + text(place) + " and " + text(other->second));
    rows_.docs.insert(place);
    rows_.numbers[place] = number;
  });
  Cursor control(database_, "Control");
  control.open();
  if (!given.empty() && control["Next"].asInt64() <= given.rbegin()->first) fault("Control would give a number again");
}

void Checker::checkPerson(int worker, const Books::Person& person) {
  std::deque<int> standing;  // his rows of Log
  for (const Worker::Done& done : person.done) {
    const Place place{worker, done.seq};
    const auto lost = [&] { fault(text(place) + " was told to be saved and is lost"); };
    switch (done.work) {
      case Work::post:
        standing.push_back(done.seq);
        break;
      case Work::remove:
        if (standing.empty() || standing.front() != done.number)
          fault(text(place) + " removed another row than its oldest");
        if (!standing.empty()) standing.pop_front();
        if (rows_.log.contains({worker, static_cast<int>(done.number)}))
          fault(text(place) + ": the removed row is there");
        break;
      case Work::transfer:
        if (!rows_.transfers.contains(place)) lost();
        break;
      case Work::batch:
        if (!rows_.batches.contains(place) || rows_.parts[place].size() != static_cast<std::size_t>(done.number))
          lost();
        break;
      case Work::number:
        if (!rows_.docs.contains(place) || rows_.numbers[place] != done.number) lost();
        break;
      case Work::count:
        break;
    }
  }
  checkLog(worker, person, standing);
  if (!othersWork_) checkExtra(worker, person);
}

void Checker::checkLog(int worker, const Books::Person& person, const std::deque<int>& standing) {
  bool missing = false;
  for (std::size_t i = 0; i < standing.size(); ++i) {
    const Place place{worker, standing[i]};
    if (rows_.log.contains(place)) continue;
    // The oldest may have gone by work in doubt, or by later work while he goes on.
    const bool allowed = othersWork_ ? i == 0 || missing : i == 0 && !person.settled;
    missing = true;
    if (!allowed) fault("the row of " + text(place) + " was told to be saved and is lost");
    if (allowed && !othersWork_)
      found_.resolved.push_back({worker, {Work::remove, static_cast<int>(person.done.size()) + 1, standing[i]}});
  }
}

void Checker::checkExtra(int worker, const Books::Person& person) {
  const int doubtful = static_cast<int>(person.done.size()) + 1;
  const auto look = [&](const std::set<Place>& rows, Work work) {
    for (auto at = rows.lower_bound({worker, 0}); at != rows.end() && at->first == worker; ++at) {
      const bool known = at->second < doubtful && person.done[static_cast<std::size_t>(at->second) - 1].work == work;
      if (known) continue;
      if (at->second != doubtful || person.settled) {
        fault("there is a row of " + text(*at) + ", who has not made it");
        continue;
      }
      std::int64_t number = 0;
      if (work == Work::batch) number = static_cast<std::int64_t>(rows_.parts[*at].size());
      if (work == Work::number) number = rows_.numbers[*at];
      found_.resolved.push_back({worker, {work, doubtful, number}});
    }
  };
  look(rows_.log, Work::post);
  look(rows_.transfers, Work::transfer);
  look(rows_.batches, Work::batch);
  look(rows_.docs, Work::number);
}

void Checker::checkShared() {
  Cursor shared(database_, "Shared");
  shared.open();
  found_.shared = shared["Value"].asInt64();
  const std::int64_t least = books_.sharedBase + books_.sharedTold;
  if (found_.shared < least)
    fault("Shared is at " + std::to_string(found_.shared) + ", at least " + std::to_string(least) +
          " raises were told to be saved");
  if (!othersWork_ && found_.shared > least + books_.sharedDoubts)
    fault("Shared was raised more often than anybody tried");
}

void Checker::takeEveryLock() {
  database_.session().settings().lockRetryCount = 1;
  for (const char* name : kTables) {
    try {
      Cursor cursor(database_, name);
      cursor.setExclusive(true);
      cursor.open();
      cursor.lockTable();
      if (!cursor.isEmpty()) cursor.edit();
      cursor.cancel();
    } catch (const store::StoreError& error) {
      fault(std::string("a lock outlived its owner: ") + error.what());
    }
  }
  try {
    database_.startTransaction(std::vector<std::string>(kTables.begin(), kTables.end()));
    database_.rollback();
  } catch (const store::StoreError& error) {
    fault(std::string("a lock outlived its owner: ") + error.what());
  }
}

Found Checker::run() {
  readLog();
  readTransfers();
  readBatches();
  readDocs();
  for (const auto& [worker, person] : books_.persons) checkPerson(worker, person);
  checkShared();
  if (!othersWork_) {
    std::set<Place> all;
    for (const auto* rows : {&rows_.log, &rows_.transfers, &rows_.batches, &rows_.docs})
      all.insert(rows->begin(), rows->end());
    for (const Place& place : all)
      if (!books_.persons.contains(place.first)) fault("there is a row of " + text(place) + ", who never worked");
    takeEveryLock();
  }
  return found_;
}

}  // namespace

Found check(const std::string& folder, const Books& books, bool othersWork) {
  store::DiskFileSystem files;
  const store::Environment environment{files, store::systemClock(), "CHECK", "PC", ::getpid()};
  Found found;
  {
    store::Session session(environment);
    store::Database database(session, folder);
    found = Checker(database, books, othersWork).run();
  }
  if (!othersWork)
    for (const store::Finding& finding : store::verifyFolder(environment, folder).findings)
      found.faults.push_back("verify: " + finding.table + ": " + finding.text);
  return found;
}

}  // namespace quillon::sim::office
