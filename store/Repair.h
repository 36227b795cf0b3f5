#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace quillon::store {

struct TableDef;

using Progress = std::function<void(int percent)>;

struct RepairOptions {
  // Taken where the table's own definition cannot be read any more.
  const TableDef* definition = nullptr;
  bool evenIfSound = false;  // makes the files anew in any case
  Progress progress = {};    // called Settings::progressSteps times when files are made anew
};

// What a repair found, saved and lost.
struct RepairReport {
  std::string table;  // as its files are called
  bool rebuilt = false;
  std::vector<std::string> faults;  // what was wrong, in words; a hundred at most
  std::uint64_t rows = 0;           // that the table has now
  std::uint64_t lostRows = 0;       // known to have been there
  std::uint64_t lostContents = 0;   // of memo, blob and graphic fields, which are null now
  std::vector<std::string> losses;  // pages, records and contents, in words; a hundred at most
  // Records that have a key of another one that was kept, with their values.
  std::vector<std::string> setAside;
  bool kept = false;  // the damaged files stand beside the table, with "~damaged" behind their names
  std::uint64_t bytesBefore = 0, bytesAfter = 0;

  bool lossless() const { return lostRows == 0 && lostContents == 0 && losses.empty() && setAside.empty(); }
};

struct OptimizeOptions {
  bool keepOld = true;     // the old files stay beside the table, with "~old" behind their names
  Progress progress = {};  // called Settings::progressSteps times
};

struct OptimizeReport {
  std::string table;
  std::uint64_t rows = 0;
  bool replaced = false;  // false: the files were as small as they can be
  std::uint64_t bytesBefore = 0, bytesAfter = 0;
};

inline constexpr const char* kOldSuffix = "~old";
inline constexpr const char* kDamagedSuffix = "~damaged";

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
