// The work that a seed stands for, and the states that it may leave.
#include <algorithm>
#include <utility>

#include "support/CompanyWork.h"
#include "support/SeededRandom.h"

namespace quillon::sim {
namespace {

constexpr const char* kDeedNames[] = {"post",           "transaction", "rolled back",  "locked group", "bulk group",
                                      "take number",    "empty table", "create table", "drop table",   "repair table",
                                      "optimize table", "checkpoint",  "reopen"};

class Maker {
 public:
  Maker(std::uint64_t seed, const WorkShape& shape)
      : random_(seed), shape_(shape), long_(random_.oneIn(4)), maintained_(random_.oneIn(5)) {}

  Workload first() {
    Workload work = settings();
    work.fresh = true;
    Task make;
    make.deed = Deed::createTable;
    make.table = "Extra";
    make.states.push_back(state_);
    table("Extra");
    make.states.push_back(state_);
    Task post;
    post.states.push_back(state_);
    addChanges(post, 1, "Extra", {});
    post.states.push_back(state_);
    work.tasks = {make, post};
    return work;
  }

  Workload make() {
    Workload work = settings();
    fill("Cust", long_ ? 8 + random_.below(16) : 1 + random_.below(4));
    fill("Det", long_ ? 8 + random_.below(30) : 1 + random_.below(5));
    fill("Ctl", 1);
    if (shape_.drops || random_.oneIn(3)) fill("Extra", random_.below(3));
    work.start = state_;
    const std::size_t count = 1 + random_.below(static_cast<std::size_t>(shape_.mostTasks));
    for (std::size_t i = 0; i < count; ++i) {
      work.tasks.push_back(task());
      state_ = work.tasks.back().after();
    }
    return work;
  }

 private:
  Workload settings() {
    Workload work;
    work.leftOpen = random_.oneIn(2);
    work.restored = !work.leftOpen && random_.oneIn(4);
    work.network = random_.oneIn(8);
    work.settings.lockRetryCount = 3;
    constexpr std::uint64_t kJournals[] = {32u << 20, 1, 24'000};
    work.settings.journalBytes = kJournals[random_.below(std::size(kJournals))];
    work.settings.cacheBytes = random_.oneIn(3) ? 4 * 4096 : 1 << 20;  // four pages: overlays spill
    return work;
  }

  ModelTable& table(const std::string& name) { return state_.tables[name]; }

  ModelRow row(const std::string& name) {
    constexpr std::size_t kSizes[] = {0, 0, 30, 600, 2100, 9000};
    ModelRow made;
    made.number = static_cast<std::int64_t>(random_.below(6));
    made.amount = static_cast<std::int64_t>(random_.below(9));
    made.name = std::string(1, static_cast<char>('a' + random_.below(20))) + std::to_string(++names_);
    if (name == "Det" && random_.oneIn(2)) made.name = made.name.substr(0, 1);
    if (long_) made.name.resize(100 + random_.below(90), '-');
    if (hasNotes(name))
      made.notes.assign(kSizes[random_.below(std::size(kSizes))], static_cast<char>('A' + random_.below(26)));
    return made;
  }

  void fill(const std::string& name, std::size_t rows) {
    table(name);
    for (std::size_t i = 0; i < rows; ++i) apply({RowChange::Kind::insert, name, 0, row(name)});
  }

  void apply(const RowChange& change) {
    ModelTable& changed = table(change.table);
    const auto at = changed.rows.begin() + static_cast<std::ptrdiff_t>(change.position);
    if (change.kind == RowChange::Kind::remove) {
      changed.rows.erase(at);
    } else if (change.kind == RowChange::Kind::update) {
      const std::int64_t number = at->number;
      *at = change.row;
      if (hasAutoNumber(change.table)) at->number = number;
    } else {
      changed.rows.push_back(change.row);
      if (hasAutoNumber(change.table)) changed.rows.back().number = ++changed.autoInc;
    }
  }

  RowChange change(const std::string& name) {
    const std::size_t rows = table(name).rows.size();
    RowChange made{RowChange::Kind::insert, name, 0, row(name)};
    if (rows == 0 || random_.oneIn(3)) return made;
    made.kind = random_.oneIn(3) ? RowChange::Kind::remove : RowChange::Kind::update;
    made.position = random_.below(rows);
    // An update that leaves the key or the memo alone takes other ways through the table.
    ModelRow& old = table(name).rows[made.position];
    if (random_.oneIn(2)) made.row.name = old.name;
    if (random_.oneIn(3)) made.row.notes = old.notes;
    return made;
  }

  std::string someTable() {
    if (state_.tables.contains("Extra") && random_.oneIn(5)) return "Extra";
    return random_.oneIn(2) ? "Cust" : "Det";
  }

  std::string aloneTable() { return shape_.others || shape_.processes > 1 ? "Extra" : someTable(); }

  Deed deed() {
    constexpr Deed kUsual[] = {Deed::post,        Deed::post,        Deed::post,        Deed::transaction,
                               Deed::transaction, Deed::rolledBack,  Deed::bulkGroup,   Deed::takeNumber,
                               Deed::checkpoint,  Deed::reopen,      Deed::createTable, Deed::dropTable,
                               Deed::emptyTable,  Deed::lockedGroup, Deed::repairTable, Deed::optimizeTable};
    if (std::exchange(shape_.drops, false)) return Deed::dropTable;
    while (true) {
      Deed chosen = kUsual[random_.below(std::size(kUsual))];
      if (maintained_ && random_.oneIn(2)) chosen = random_.oneIn(2) ? Deed::repairTable : Deed::optimizeTable;
      const bool extra = state_.tables.contains("Extra");
      if (chosen == Deed::createTable && extra) continue;
      if (chosen == Deed::dropTable && !extra) continue;
      const bool alone = chosen == Deed::emptyTable || chosen == Deed::repairTable || chosen == Deed::optimizeTable;
      if (alone && (shape_.others || shape_.processes > 1) && !extra) continue;
      return chosen;
    }
  }

  Task task() {
    Task task;
    task.deed = deed();
    task.process = static_cast<int>(random_.below(static_cast<std::size_t>(shape_.processes)));
    task.states.push_back(state_);
    switch (task.deed) {
      case Deed::post:
        addChanges(task, 1, someTable(), {});
        break;
      case Deed::transaction:
      case Deed::rolledBack:
        addChanges(task, 2 + random_.below(4), "Cust", "Det");
        break;
      case Deed::lockedGroup:
        task.table = someTable();
        task.pauses = random_.oneIn(3);
        addChanges(task, 1 + random_.below(4), task.table, {});
        break;
      case Deed::bulkGroup:
        task.pauses = random_.oneIn(3);
        addChanges(task, 2 + random_.below(4), "Cust", "Det");
        break;
      case Deed::takeNumber: {
        ModelRow next = table("Ctl").rows.front();
        ++next.number;
        task.changes.push_back({RowChange::Kind::update, "Ctl", 0, next});
        apply(task.changes.back());
        break;
      }
      case Deed::emptyTable:
        task.table = aloneTable();
        table(task.table) = {};
        break;
      case Deed::repairTable:
      case Deed::optimizeTable:
        task.table = aloneTable();
        break;
      case Deed::createTable:
      case Deed::dropTable:
        task.table = "Extra";
        task.deed == Deed::createTable ? void(table("Extra")) : void(state_.tables.erase("Extra"));
        break;
      case Deed::checkpoint:
      case Deed::reopen:
        break;
    }
    if (task.deed == Deed::rolledBack) state_ = task.states.front();
    task.states.push_back(state_);
    return task;
  }

  void addChanges(Task& task, std::size_t count, const std::string& first, const std::string& second) {
    for (std::size_t i = 0; i < count; ++i) {
      task.changes.push_back(change(second.empty() || random_.oneIn(2) ? first : second));
      apply(task.changes.back());
      if (i + 1 < count) task.states.push_back(state_);
    }
  }

  SeededRandom random_;
  WorkShape shape_;
  bool long_;
  bool maintained_;  // repaired and optimized often
  int names_ = 0;
  CompanyState state_;
};

}  // namespace

Workload Workload::make(std::uint64_t seed, const WorkShape& shape) { return Maker(seed, shape).make(); }

Workload Workload::first(std::uint64_t seed) { return Maker(seed, {}).first(); }

const char* Task::name() const { return kDeedNames[static_cast<std::size_t>(deed)]; }

std::string Task::describe() const {
  std::string text = name();
  if (!table.empty()) text += " " + table;
  if (pauses) text += " in parts";
  for (const RowChange& change : changes) {
    constexpr const char* kKinds[] = {"insert", "update", "delete"};
    text += std::string(", ") + kKinds[static_cast<std::size_t>(change.kind)] + " " + change.table + " " +
            std::to_string(change.position + 1);
  }
  return text + " (process " + std::to_string(process) + ")";
}

std::string Workload::describe() const {
  std::string text = "journal " + std::to_string(settings.journalBytes) + ", cache " +
                     std::to_string(settings.cacheBytes) + (leftOpen ? ", left open" : "") +
                     (network ? ", network" : "") + (restored ? ", restored" : "") + (fresh ? ", an empty folder" : "");
  for (const Task& task : tasks) text += "\n  " + task.describe();
  return text;
}

}  // namespace quillon::sim
