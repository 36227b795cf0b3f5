#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "store/sql/Binder.h"

namespace quillon::store::sql {

// The groups of a SELECT in the order in which they were first met.
class Groups {
 public:
  explicit Groups(const Grouping& grouping) : grouping_(grouping) {}

  // The group of a key; a new one takes its first values from the row (null without one).
  std::size_t at(std::string_view key, Frame& frame, bool hasRow);
  // Takes the row into the aggregates of a group.
  void add(std::size_t group, Frame& frame);
  // Calls for each group, with its first values and aggregates as the frame's slots and its first row as the row that
  // SELECTs inside see. False from the callback ends it.
  void forEach(Frame& frame, const std::function<bool()>& group);

 private:
  struct Sum {
    std::int64_t rows = 0;
    std::int64_t whole = 0;
    double real = 0;
    Datum best;
    std::unordered_set<std::string> seen;  // of DISTINCT
  };
  struct Group {
    std::vector<Datum> first;
    std::vector<std::optional<std::string>> row;  // of each source; empty when no SELECT inside looks at it
    bool met = false;                             // its first row
    std::vector<Sum> sums;
  };
  void addTo(Sum& sum, const Aggregate& aggregate, const Datum& value);
  Datum kept(Datum value);
  void keepFirst(Group& group, Frame& frame);
  static Datum result(const Sum& sum, const Aggregate& aggregate);

  const Grouping& grouping_;
  std::unordered_map<std::string, std::size_t> places_;
  std::string lastKey_;
  std::size_t last_ = 0;
  std::vector<Group> groups_;
  Texts texts_;
};

}  // namespace quillon::store::sql
