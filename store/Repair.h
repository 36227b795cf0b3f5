#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace quillon::store {

struct Environment;
struct TableDef;

using Progress = std::function<void(int percent)>;

struct RepairOptions {
  // What the table should be: taken where its own definition cannot be read any more, or its .DAT file is missing or
  // another table's. Where the table's own differs from it, that counts as a loss.
  const TableDef* definition = nullptr;
  bool evenIfSound = false;  // makes the files anew in any case
  Progress progress = {};    // called Settings::progressSteps times when files are made anew
};

// What a repair found, saved and lost.
struct RepairReport {
  std::string table;  // as its files are called
  bool rebuilt = false;
  std::vector<std::string> faults;     // what was wrong, in words; a hundred at most
  std::uint64_t rows = 0;              // that the table has now
  std::uint64_t lostRows = 0;          // known to have been there
  std::uint64_t lostContents = 0;      // of memo, blob and graphic fields, which are null now
  std::vector<std::uint64_t> lostIds;  // of those rows, as far as they are known; ascending
  std::vector<std::string> losses;     // pages, records and contents, in words; a hundred at most
  // Records that have a key of another one that was kept, with their values.
  std::vector<std::string> setAside;
  std::string keptAs;  // behind the names of the damaged files, which stand beside the table; empty: not kept
  std::uint64_t bytesBefore = 0, bytesAfter = 0;

  bool lossless() const { return lostRows == 0 && lostContents == 0 && losses.empty() && setAside.empty(); }
};

// Makes a folder's journal anew, empty, where it is damaged so that the folder cannot be opened, and keeps the damaged
// one as "Quillon.JNL~damaged". What was wrong and what that means, in words; empty: nothing was wrong, or somebody has
// the folder open. The tables may then be without the last changes, or have them in part: repair them too.
std::vector<std::string> repairJournal(const Environment& environment, const std::string& folder);

struct OptimizeOptions {
  bool keepOld = true;     // the old files stay beside the table, with "~old" behind their names
  Progress progress = {};  // called Settings::progressSteps times
};

struct OptimizeReport {
  std::string table;
  std::uint64_t rows = 0;
  bool replaced = false;  // false: they would be no smaller and no better in order; an earlier copy stays
  std::uint64_t bytesBefore = 0, bytesAfter = 0;
};

inline constexpr const char* kOldSuffix = "~old";
inline constexpr const char* kDamagedSuffix = "~damaged";  // "~damaged2" and so on where a copy is there already

// Calls back at equal steps of a long operation, the last one at its end.
class ProgressSteps {
 public:
  ProgressSteps(int steps, const Progress& progress) : steps_(steps), progress_(progress) {}
  // `share` of the whole is done, from 0 to 1.
  void reach(double share) {
    for (; progress_ && told_ < steps_ && share * steps_ >= told_ + 1; ++told_) progress_(100 * (told_ + 1) / steps_);
  }

 private:
  int steps_;
  const Progress& progress_;
  int told_ = 0;
};

}  // namespace quillon::store
