#include "support/Serial.h"

#include <algorithm>
#include <set>
#include <utility>

namespace quillon::sim {
namespace {

constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();

bool apply(const SerialDeed& deed, SerialState& state) {
  if (deed.read && deed.read->rows != state.rows) return false;
  for (const SerialDeed::Access& access : deed.accesses) {
    auto& rows = state.rows[static_cast<std::size_t>(access.table)];
    const auto found = rows.find(access.row);
    if (access.seen ? found == rows.end() || found->second != *access.seen : found != rows.end()) return false;
    if (access.written)
      rows[access.row] = *access.written;
    else
      rows.erase(access.row);
  }
  return !deed.number || ++state.control == *deed.number;
}

class Search {
 public:
  explicit Search(const SerialHistory& history) : history_(history), next_(history.size()) {}

  bool run(const SerialState& state) {
    if (!tried_.emplace(next_, state.describe()).second) return false;
    std::int64_t firstEnd = kNever;
    bool done = true;
    for (std::size_t p = 0; p < history_.size(); ++p)
      if (next_[p] < history_[p].size()) {
        firstEnd = std::min(firstEnd, history_[p][next_[p]].to);
        done = done && history_[p][next_[p]].to == kNever;
      }
    if (done) return true;  // what is left was under way at a death
    for (std::size_t p = 0; p < history_.size(); ++p) {
      if (next_[p] >= history_[p].size() || history_[p][next_[p]].from > firstEnd) continue;
      const SerialDeed& deed = history_[p][next_[p]];
      if (deed.to == kNever && !deed.decided) continue;
      SerialState after = state;
      if (!apply(deed, after)) continue;
      ++next_[p];
      const bool found = run(after);
      --next_[p];
      if (found) return true;
    }
    return false;
  }

 private:
  const SerialHistory& history_;
  std::vector<std::size_t> next_;
  std::set<std::pair<std::vector<std::size_t>, std::string>> tried_;
};

}  // namespace

std::string SerialState::describe() const {
  std::string text;
  for (const auto& table : rows) {
    for (const auto& [row, value] : table) text += std::to_string(row) + "=" + std::to_string(value) + " ";
    text += "| ";
  }
  return text + std::to_string(control);
}

bool isSerial(const SerialState& start, const SerialHistory& history) { return Search(history).run(start); }

std::string describe(const SerialHistory& history) {
  std::string text;
  for (std::size_t p = 0; p < history.size(); ++p)
    for (const SerialDeed& deed : history[p]) {
      text += "  " + std::to_string(p) + " [" + std::to_string(deed.from) + ", " +
              (deed.to == kNever ? "never" : std::to_string(deed.to)) + "] " + deed.what;
      for (const auto& access : deed.accesses)
        text += " " + std::to_string(access.table) + "." + std::to_string(access.row) + ":" +
                (access.seen ? std::to_string(*access.seen) : "-") + ">" +
                (access.written ? std::to_string(*access.written) : "-");
      if (deed.number) text += " number " + std::to_string(*deed.number);
      if (deed.read) text += " " + deed.read->describe();
      text += "\n";
    }
  return text;
}

}  // namespace quillon::sim
