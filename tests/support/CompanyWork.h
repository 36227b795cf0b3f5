#pragma once

#include <memory>
#include <string>
#include <vector>

#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Session.h"
#include "support/CompanyModel.h"
#include "support/SimClock.h"
#include "support/SimDisk.h"

// Short pieces of work on the model company, each with the states that it may leave.
namespace quillon::sim {

enum class Deed {
  post,         // one insert, update or delete
  transaction,  // over two tables, then commit
  rolledBack,   // the same, then rollback
  lockedGroup,  // gathered under a table lock
  bulkGroup,    // gathered over two tables in a bulk scope
  takeNumber,   // exclusive open, edit, post, flush, close
  emptyTable,
  createTable,
  dropTable,
  repairTable,
  optimizeTable,
  checkpoint,
  reopen,
};

struct RowChange {
  enum class Kind { insert, update, remove } kind = Kind::insert;
  std::string table;
  std::size_t position = 0;  // from 0, in the order of entry
  ModelRow row;
};

struct Task {
  Deed deed = Deed::post;
  int process = 0;
  std::string table;  // of a whole-table deed or a lock
  std::vector<RowChange> changes;
  bool pauses = false;  // a gathered group is published in parts
  // Before, after each change, and at the end. A failure or a cut leaves the first or the last, of a group in parts
  // any.
  std::vector<CompanyState> states;

  bool gathers() const { return deed == Deed::lockedGroup || deed == Deed::bulkGroup; }
  const CompanyState& before() const { return states.front(); }
  const CompanyState& after() const { return states.back(); }
  const char* name() const;
  std::string describe() const;
};

struct WorkShape {
  int mostTasks = 3;
  int processes = 1;
  bool others = false;  // another process has Cust and Det open: no whole-table deeds on them
  bool drops = false;   // begins by dropping a table
};

// What a seed stands for: a company, the settings of its processes, and tasks.
struct Workload {
  CompanyState start;
  store::Settings settings;
  std::vector<Task> tasks;
  bool leftOpen = false;  // the company was not closed before: the journal is in use when the work begins
  bool network = false;
  bool restored = false;  // the files came from a backup, without the journal
  bool fresh = false;     // an empty folder: not even the journal is there

  // An empty folder that becomes a company of one table with a row.
  static Workload first(std::uint64_t seed);
  static Workload make(std::uint64_t seed, const WorkShape& shape);
  std::string describe() const;
};

// One simulated process that works on the company. Cust and Det stay open while no deed needs them closed.
class Worker {
 public:
  Worker(SimDisk disk, SimClock& clock, store::Settings settings);
  ~Worker();
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  int process() const { return process_; }
  void open();
  void close();
  void watch();  // opens Cust and Det
  void unwatch();
  bool isOpen() const { return database_ != nullptr; }
  store::Database& database() { return *database_; }

  // Raises what the store raises, an open transaction rolled back and all cursors of the task closed.
  void run(const Task& task);
  bool stayedInEdit() const { return stayedInEdit_; }  // a row whose post raised last is still being edited
  int posted() const { return posted_; }               // changes of the last task that were answered

 private:
  void post(store::Cursor& cursor);
  void change(store::Cursor& cursor, const RowChange& change);
  void changeAll(const Task& task);
  void transact(const Task& task);
  void takeNumber(const Task& task);

  SimDisk disk_;
  SimClock& clock_;
  store::Settings settings_;
  std::unique_ptr<store::FileSystem> files_;
  int process_;
  int posted_ = 0;
  bool stayedInEdit_ = true;
  std::unique_ptr<store::Session> session_;
  std::unique_ptr<store::Database> database_;
  std::vector<std::unique_ptr<store::Cursor>> watched_;
};

// The company was made before: ids are made from the time.
inline constexpr std::int64_t kLaterMicroseconds = 3'600'000'000;

// A disk with the company of the workload on it, everything durable.
SimDisk companyDisk(const Workload& work, SimOptions options = {});

}  // namespace quillon::sim
