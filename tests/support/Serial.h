#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <vector>

// Whether what several processes did and saw at the same time is what they could have done and seen one after another.
namespace quillon::sim {

struct SerialState {
  std::array<std::map<int, int>, 2> rows;  // of two tables: value by number
  int control = 0;                         // the last number taken
  bool operator==(const SerialState&) const = default;
  std::string describe() const;
};

// One piece of work that was answered, or was under way when its process died.
struct SerialDeed {
  struct Access {
    int table, row;
    std::optional<int> seen;     // must stand there before; none: nothing must
    std::optional<int> written;  // stands there afterwards; none: nothing does
  };
  std::string what;
  std::vector<Access> accesses;     // all at one moment, each place once
  std::optional<SerialState> read;  // all rows at that moment
  std::optional<int> number;        // taken from the control table: the last one and one
  std::int64_t from = 0;
  std::int64_t to = std::numeric_limits<std::int64_t>::max();  // max: it may have happened or not ...
  bool decided = false;  // ... but only when it had come to the call that makes it happen
};

using SerialHistory = std::vector<std::vector<SerialDeed>>;  // by process, in the order of its program

// True when some order exists that keeps each process's own order, puts what had ended before what began later, and
// explains everything that was seen.
bool isSerial(const SerialState& start, const SerialHistory& history);
std::string describe(const SerialHistory& history);

}  // namespace quillon::sim
