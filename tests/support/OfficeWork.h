#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Session.h"
#include "store/vfs/DiskFileSystem.h"
#include "support/SeededRandom.h"

// What the people of a simulated office do at the same time on one real folder. Each has a number of its own and counts
// what he has done; both stand in every row, so that a check knows of each row who made it and when.
namespace quillon::sim::office {

enum class Work : std::int32_t {
  post,      // a row of Log, sometimes with a content
  remove,    // his oldest row of Log goes
  transfer,  // one transaction: a row of Debit, the same row of Credit, Totals
  batch,     // some rows of Batch, gathered under a table lock
  number,    // takes the next number from Control, opened exclusively, for a row of Docs
  count,     // raises the one number of Shared under its record lock
};
inline constexpr int kWorks = 6;

void makeCompany(store::Database& database);
std::string noteOf(int worker, int seq);  // the content of a row of Log; may be empty

// One process: its session and its cursors.
class Worker {
 public:
  Worker(const std::string& folder, int number, std::uint64_t seed);

  struct Done {
    Work work;
    int seq;
    std::int64_t number;  // number: the number taken; batch: how many rows; remove: the seq of the row that went
  };
  // Does one piece of work, as often as it is refused because of others; on return it is committed.
  Done workOnce();
  // A batch of thousands of rows in a bulk scope.
  Done load();
  // Reads Debit, Credit and Totals in one snapshot and raises Error when they do not agree.
  void readOnce();
  std::uint64_t refusals() const { return refusals_; }

 private:
  void retrying(const std::function<void()>& work);
  void undo();
  void insertRow(store::Cursor& cursor);
  void post();
  bool remove(std::int64_t& seq);
  void transfer();
  void batch(int rows);
  std::int64_t takeNumber();
  void count();
  void readAll();

  int number_;
  SeededRandom random_;
  store::DiskFileSystem files_;
  store::Session session_;
  store::Database database_;
  store::Cursor log_{database_, "Log"}, debit_{database_, "Debit"}, credit_{database_, "Credit"},
      totals_{database_, "Totals"}, batch_{database_, "Batch"}, docs_{database_, "Docs"}, shared_{database_, "Shared"};
  int seq_ = 0;
  std::uint64_t refusals_ = 0;
};

}  // namespace quillon::sim::office
