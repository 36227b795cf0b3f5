#pragma once
// What a cursor is made of inside; for its own sources only.

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "store/Cursor.h"
#include "store/KeyCodec.h"

namespace quillon::store {

// Names joined by ';'.
std::vector<std::string_view> splitNames(std::string_view names);

struct Cursor::Extra {
  FieldDef definition;
  Value calculated;
  // Of a looked-up field:
  Cursor* other = nullptr;
  std::string otherFields, result;
  std::string keyFields;
};

struct Cursor::Link {
  Cursor& master;
  std::string masterFields;
  std::string index;
  bool stale = true;
};

struct Cursor::RowList {
  std::vector<RowId> rows;
  std::unordered_map<RowId, std::uint64_t> places;
  std::uint64_t gone = 0;  // rows that were deleted here
  void append(RowId row) {
    places.emplace(row, rows.size());
    rows.push_back(row);
  }
};

// While one lives, the cursor may stand on any row, as when browsing; its end puts everything back.
class Cursor::Aside {
 public:
  explicit Aside(Cursor& cursor)
      : cursor_(cursor), at_(cursor.at_), state_(cursor.state_), suspended_(cursor.suspended_) {
    cursor.state_ = CursorState::browse;
    cursor.suspended_ = true;
    cursor.view_.reset();
    cursor.calculated_ = false;
  }
  ~Aside() {
    cursor_.at_ = std::move(at_);
    cursor_.state_ = state_;
    cursor_.suspended_ = suspended_;
    cursor_.view_.reset();
    cursor_.calculated_ = false;
  }
  Aside(const Aside&) = delete;
  Aside& operator=(const Aside&) = delete;

 private:
  Cursor& cursor_;
  Standing at_;
  CursorState state_;
  bool suspended_;
};

// While one lives, the cursor sees of its rows only those whose keys begin with a prefix.
class Cursor::Within {
 public:
  Within(Cursor& cursor, const std::string& prefix) : cursor_(cursor), low_(cursor.low_), high_(cursor.high_) {
    const std::string end = KeyCodec::successor(prefix);
    cursor.low_ = std::max(low_, prefix);
    cursor.high_ = high_.empty() ? end : end.empty() ? high_ : std::min(high_, end);
  }
  ~Within() {
    cursor_.low_ = std::move(low_);
    cursor_.high_ = std::move(high_);
  }
  Within(const Within&) = delete;
  Within& operator=(const Within&) = delete;

 private:
  Cursor& cursor_;
  std::string low_, high_;
};

// A search for rows by the values of some fields.
struct Cursor::Search {
  struct Term {
    int position;
    Value value;
    std::string folded;  // of a text, where case does not matter
  };
  std::vector<Term> terms;
  LocateOptions options;
};

}  // namespace quillon::store
