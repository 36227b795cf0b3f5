#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "store/Cursor.h"
#include "store/Schema.h"

// What cursors on one table must show, in plain rows that are sorted anew for every question.
namespace quillon::sim {

inline constexpr int kModelFields = 4;  // ID autoInc, Code, Name, Level

struct CursorRow {
  store::RowId row = 0;
  std::array<store::Value, kModelFields> values;
};

struct ModelStore {
  store::TableDef definition;
  std::map<store::RowId, CursorRow> rows;
  std::map<store::RowId, const void*> locked;  // by the cursor that edits
  store::RowId nextRow = 1;
  std::int64_t autoInc = 0;

  static store::TableDef randomDefinition(std::uint64_t seed);
  // Below zero, zero or above: the order of an index (-1: by row id), row ids last where `whole`.
  int compare(int index, const CursorRow& a, const CursorRow& b, bool whole = true) const;
  // Whether the leading fields of the row in the index are below, equal to or above the values.
  int compare(int index, const CursorRow& row, const std::vector<store::Value>& values) const;
  bool violates(const CursorRow& row) const;  // a unique index
};

// Filters as a cursor takes them, and what they mean.
struct ModelFilter {
  const char* text;
  bool (*passes)(const CursorRow& row);
};
inline constexpr int kModelFilters = 7;
extern const ModelFilter kModelFilter[kModelFilters];  // [0]: none

// Each call does what the cursor's call of that name does and returns its error code, 0 for none; what else the call
// answers is in `answer`.
class ModelCursor {
 public:
  explicit ModelCursor(ModelStore& store) : store_(store) {}

  std::int64_t answer = 0;

  void open();
  int first();
  int last();
  int next();
  int prior();
  int moveBy(std::int64_t rows);
  int goTo(std::int64_t number);
  int goToRow(store::RowId row);
  int findKey(const std::vector<store::Value>& values);
  int findNearest(const std::vector<store::Value>& values);
  int locate(const std::vector<int>& fields, const std::vector<store::Value>& values, store::LocateOptions options);
  std::optional<CursorRow> lookup(const std::vector<int>& fields, const std::vector<store::Value>& values);
  int setIndex(int index);
  int setRange(std::vector<store::Value> low, std::vector<store::Value> high);
  int cancelRange();
  int setFiltered(bool filtered);
  int setFilter(int number);
  int edit();
  int insert();
  int post();
  int cancel();
  int remove();
  int refresh();
  int rereadRow();
  void set(int field, const store::Value& value);
  void rolledBack();
  void synchronise();

  std::vector<CursorRow> rowsInView() const;
  bool there() const { return there_; }
  bool bof() const { return bof_ && state_ != store::CursorState::insert; }
  bool eof() const { return eof_ && state_ != store::CursorState::insert; }
  store::CursorState state() const { return state_; }
  const CursorRow& shown() const;  // with there() or while editing
  bool standsInView() const;       // the row is there as it was read
  std::int64_t number() const;     // with standsInView()
  int index() const { return index_; }
  static bool isEven(const CursorRow& row);  // what the handler lets pass
  bool handled = false;                      // there is a handler

 private:
  bool inView(const CursorRow& row) const;
  int leaveRow();
  void stand(const CursorRow& row);
  void toBrowse();
  void findAgain(const CursorRow& from, bool any = true);
  bool standFirst();
  bool standLast();
  bool step(bool forward);
  const CursorRow* present();
  static bool matches(const CursorRow& row, const std::vector<int>& fields, const std::vector<store::Value>& values,
                      store::LocateOptions options);

  ModelStore& store_;
  store::CursorState state_ = store::CursorState::browse;
  int index_ = -1;
  std::optional<std::vector<store::Value>> low_, high_;
  int filter_ = 0;
  bool filtered_ = false, there_ = false, bof_ = true, eof_ = true, modified_ = false;
  bool findAgain_ = false, placed_ = false;
  bool keptThere_ = false;  // while inserting
  CursorRow at_, buffer_;
};

}  // namespace quillon::sim
