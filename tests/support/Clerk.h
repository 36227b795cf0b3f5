#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "store/Cursor.h"
#include "support/SeededRandom.h"
#include "support/Serial.h"
#include "support/SimProcess.h"

namespace quillon::sim::clerk {

using store::Cursor;

enum class Deed { raise, make, remove, transfer, rolledBack, lockedGroup, bulkGroup, number, read };
inline constexpr int kDeeds = 9;
inline constexpr const char* kNames[kDeeds] = {"raise",        "make",       "remove", "transfer", "rolled back",
                                               "locked group", "bulk group", "number", "read"};
inline constexpr const char* kTables[] = {"First", "Second"};

inline store::Settings settings(std::uint64_t seed) {
  store::Settings settings;
  settings.lockRetryCount = 6;
  settings.lockWaitTime = 3;
  settings.cacheBytes = std::size_t{1} << 20;
  if (seed % 3 == 0) settings.journalBytes = 8192;  // emptied all the time
  return settings;
}

// The work of one process, written down as it goes.
class Clerk {
 public:
  Clerk(SimProcess& process, SimClock& clock, int number, std::uint64_t seed, std::vector<SerialDeed>& done)
      : process_(process), clock_(clock), random_(seed), done_(done), nextRow_(number * 100 + 100) {}

  void run(const std::vector<Deed>& program) {
    process_.open();
    for (Cursor* cursor :
         {&first_.emplace(process_.database(), "First"), &second_.emplace(process_.database(), "Second")})
      cursor->open();
    for (const Deed deed : program) attempt(deed);
    first_.reset();
    second_.reset();
    process_.close();
  }
  int refused() const { return refused_; }
  std::int64_t longest() const { return longest_; }

 private:
  Cursor& table(int number) { return number == 0 ? *first_ : *second_; }

  void attempt(Deed deed) {
    const std::size_t before = done_.size();
    begin(kNames[static_cast<int>(deed)]);
    const std::int64_t from = done_.back().from;
    try {
      work(deed);
      for (std::size_t i = before; i < done_.size(); ++i) done_[i].to = clock_.microseconds();
      if (deed == Deed::rolledBack) forgetWrites(done_.back());
    } catch (const store::StoreError& error) {
      const store::Code code = error.code();
      if (code != store::Code::recordLocked && code != store::Code::recordChanged && code != store::Code::tableInUse)
        throw;
      undo();
      ++refused_;
      done_.pop_back();
      if (done_.size() > before) done_.back().to = clock_.microseconds();
    }
    longest_ = std::max(longest_, clock_.microseconds() - from);
  }

  void begin(const char* what) {
    done_.emplace_back();
    done_.back().what = what;
    done_.back().from = clock_.microseconds();
  }

  void undo() {
    first_->cancel();
    second_->cancel();
    if (process_.database().inTransaction()) process_.database().rollback();
    first_->unlockTable();
    second_->unlockTable();
    process_.database().settle();
  }

  static void forgetWrites(SerialDeed& deed) {
    for (auto& access : deed.accesses) access.written = access.seen;
  }

  void work(Deed deed) {
    SerialDeed& note = done_.back();
    const int which = static_cast<int>(random_.below(2));
    switch (deed) {
      case Deed::raise:
        raise(which, 1 + static_cast<int>(random_.below(2)));
        note.decided = true;
        return leave(which);
      case Deed::make:
        return make(which, true);
      case Deed::remove:
        return remove(which);
      case Deed::transfer:
      case Deed::rolledBack:
        return transfer(deed == Deed::transfer);
      case Deed::lockedGroup:
        table(which).lockTable();
        for (int i = 0; i < 3; ++i) make(which, false);
        note.decided = true;
        return table(which).unlockTable();
      case Deed::bulkGroup:
        return bulk(which);
      case Deed::number:
        return takeNumber();
      case Deed::read:
        return read();
    }
  }

  void leave(int which) {
    if (table(which).isEditing()) table(which).post();
  }

  // Whoever has to wait in a bulk scope lets others see what it has: two pieces of work in a row.
  void bulk(int which) {
    const store::Database::BulkScope bulk(process_.database());
    make(which, true);
    begin("bulk, second");
    make(1 - which, true);
    process_.database().settle();
  }

  // Left in edit.
  void raise(int which, int row) {
    Cursor& cursor = table(which);
    auto& accesses = done_.back().accesses;
    if (!cursor.findKey({row})) {
      accesses.push_back({which, row, {}, {}});
      return;
    }
    cursor.edit();
    const int before = cursor["V"].asInt();
    accesses.push_back({which, row, before, before + 1});
    cursor["V"] = before + 1;
    if (random_.oneIn(3)) cursor["N"] = std::string(random_.below(600) + 1, 'r');
  }

  void make(int which, bool alone) {
    Cursor& cursor = table(which);
    const int row = ++nextRow_;
    done_.back().accesses.push_back({which, row, {}, row});
    cursor.insert();
    cursor["ID"] = row;
    cursor["V"] = row;
    if (random_.oneIn(3)) cursor["N"] = std::string(random_.below(600) + 1, 'm');
    done_.back().decided = alone;
    cursor.post();
  }

  void remove(int which) {
    SerialDeed& note = done_.back();
    Cursor& cursor = table(which);
    cursor.findNearest({random_.oneIn(2) ? 100 : 1});
    if (cursor.isEmpty()) return;
    const int row = cursor["ID"].asInt();
    note.accesses.push_back({which, row, cursor["V"].asInt(), {}});
    note.decided = true;
    cursor.remove();
  }

  void transfer(bool commits) {
    store::Database& database = process_.database();
    random_.oneIn(2) ? database.startTransaction({"First", "Second"}) : database.startTransaction({"Second", "First"});
    raise(0, 1);
    leave(0);
    raise(1, random_.oneIn(2) ? 1 : 2);
    leave(1);
    if (random_.oneIn(2)) make(1, false);
    done_.back().decided = commits;
    commits ? database.commit() : database.rollback();
  }

  void takeNumber() {
    SerialDeed& note = done_.back();
    Cursor control(process_.database(), "Control");
    control.setExclusive(true);
    control.open();
    control.edit();
    note.number = control["Last"].asInt() + 1;
    control["Last"] = *note.number;
    note.decided = true;
    control.post();
    control.close();
  }

  void read() {
    SerialState state;
    {
      const store::Database::Snapshot snapshot(process_.database(),
                                               random_.oneIn(2) ? std::vector{&first_->table(), &second_->table()}
                                                                : std::vector{&second_->table(), &first_->table()});
      for (int which = 0; which < 2; ++which) {
        Cursor& cursor = table(which);
        for (cursor.first(); !cursor.eof(); cursor.next())
          state.rows[static_cast<std::size_t>(which)][cursor["ID"].asInt()] = cursor["V"].asInt();
      }
    }
    done_.back().read = state;
  }

  SimProcess& process_;
  SimClock& clock_;
  SeededRandom random_;
  std::vector<SerialDeed>& done_;
  std::optional<Cursor> first_, second_;
  int nextRow_;
  int refused_ = 0;
  std::int64_t longest_ = 0;
};

}  // namespace quillon::sim::clerk
