#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "store/RowFilter.h"

namespace quillon::store {

class Table;
class TreeWalk;

// The rows between two keys of an order (an index, -1: by row id) that may pass a filter, read in that order.
//
// Where passing rows are far apart and another index leaves few candidates, those are read instead and brought into the
// order: what is given, and when an error of the filter is raised, is the same.
class PassingRows {
 public:
  // low <= key, and key < high unless that is empty.
  PassingRows(Table& table, int order, RowFilter& filter, std::string low, std::string high);

  struct Sink {
    std::function<void()> clear;  // all that was added is read again
    std::function<void(std::string_view key, RowId row, std::string_view record)> add;
  };
  struct From {  // where a walk begins
    std::string key;
    bool inclusive = false;
    bool bounded = false;  // at the end of the range instead
  };
  // Adds about so many of the next rows, none only at the end; fewer when they are far apart.
  void read(bool forward, From from, std::size_t most, const Sink& sink);

  // How many there are.
  std::uint64_t count();

 private:
  struct Chunk {
    std::size_t added = 0;
    bool ended = false;
    std::string last;  // the last key looked at
  };
  Chunk walk(bool forward, const From& from, std::size_t most, const Sink& sink);
  bool readCandidates(bool forward, const From& from, std::size_t wanted, const Sink& sink);
  enum class Test { passes, fails, raises };
  Test test(RowId row, std::string_view record, std::size_t added);
  bool inside(std::string_view key) const { return key >= low_ && (high_.empty() || key < high_); }
  void keyOf(RowId row, std::string_view record, std::string& key) const;
  std::uint64_t between(int order, std::string_view low, std::string_view high);
  // The index in another order that leaves fewest rows; -1: none.
  int narrowest(std::uint64_t& rows);
  std::vector<RowId> idsOf(int index, std::string_view low, std::string_view high);
  std::uint64_t countAll();
  std::uint64_t countOf(std::vector<RowId>& ids, bool inOrder);
  bool counts(RowId row, std::string_view record, bool inOrder);

  Table& table_;
  int order_;
  RowFilter& filter_;
  std::string low_, high_;
  bool nothing_ = false;
  std::string scratch_, key_;
};

// Stands a walk on the first key from `from` on, between two keys: low <= key, and key < high unless that is empty.
bool seekFrom(TreeWalk& walk, bool forward, const PassingRows::From& from, std::string_view low, std::string_view high);

}  // namespace quillon::store
