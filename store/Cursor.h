#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/Field.h"
#include "store/RecordCodec.h"
#include "store/Schema.h"
#include "store/Value.h"
#include "store/locks/TableLocks.h"

namespace quillon::store {

class Database;
class PassingRows;
class RowFilter;
class StoreError;
class Table;
class TreeWalk;

enum class CursorState { closed, browse, edit, insert };
enum class ErrorAnswer { retry, abort, fail };  // abort: silently (quillon::Abort); fail: with the error

struct LocateOptions {
  bool caseInsensitive = false;
  bool partialKey = false;  // the last value is the beginning of a text
};

// The master of a detail cursor: its fields, joined by ';', and the detail's index that begins with the like fields
// (empty: the first index over fields of these names).
struct follows {
  Cursor& master;
  std::string masterFields;
  std::string index = {};
};

// A cursor's place; for the cursor it came from and others on the same table.
struct Bookmark {
  RowId row = 0;
  std::string key;
};

// Handlers of a cursor's events. A handler that raises stops what it came before.
struct CursorEvents {
  using Handler = std::function<void()>;
  Handler beforeEdit, afterEdit, beforeInsert, afterInsert, beforePost, afterPost, beforeDelete, afterDelete,
      afterCancel;
  Handler onNewRecord;             // defaults of a new row; does not count as a modification
  Handler onCalculate;             // sets the calculated fields (setCalculated) from the row
  Handler afterScroll;             // another row, or the same one read again
  std::function<bool()> onFilter;  // whether the row passes; tested while filtered, behind the filter's text
  // Of a field of the table, at every set, whoever sets it and whether or not the value differs. Validate comes before
  // and may raise; change comes after, with the value that was there.
  std::function<void(int position, const Value& next)> onValidate;
  std::function<void(int position, const Value& old)> onChange;
  std::function<ErrorAnswer(const StoreError&)> onEditError, onDeleteError, onPostError;
};

// A view on a table: a current row, an order, a range, a filter, a master, and the cycle of editing.
//
// Keeps its place as key and row id and finds it again after any change. The row that it stands on may be old; moves
// and searches read the committed present, in batches. First without rows is BOF and EOF; at EOF the last row stays
// current. A move or search posts a modified row and cancels an unmodified one. All calls raise StoreError; a call on a
// closed cursor raises notEditing.
class Cursor {
 public:
  // Closed. `table` may be "\Memory\Name". The database must outlive it.
  Cursor(Database& database, std::string table, std::string name = {});
  Cursor(Database& database, std::string table, const follows& link, std::string name = {});
  ~Cursor();  // undoes an edit and closes
  Cursor(const Cursor&) = delete;
  Cursor& operator=(const Cursor&) = delete;

  CursorEvents events;
  // While one lives, no handler of the cursor runs but onCalculate, onFilter and those of errors. May nest.
  class Silence {
   public:
    explicit Silence(Cursor& cursor) : cursor_(cursor) { ++cursor_.silenced_; }
    ~Silence() { --cursor_.silenced_; }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

   private:
    Cursor& cursor_;
  };
  const std::string& name() const { return name_; }  // "tblJV": for messages; the table's name when none was given

  // Opening.
  void setExclusive(bool exclusive);  // while closed
  void open();                        // tableInUse; stands on the first row
  void close();
  bool isOpen() const { return state_ != CursorState::closed; }
  CursorState state() const { return state_; }
  bool isEditing() const { return state_ == CursorState::edit || state_ == CursorState::insert; }
  Database& database() const { return *database_; }
  const TableDef& definition() const;
  Table& table() const;

  // Fields.
  Field operator[](std::string_view field);  // noSuchField
  Field field(int position) { return {*this, position}; }
  int fieldPosition(std::string_view field) const;  // -1 when there is none
  int fieldCount() const;
  Value value(std::string_view field);
  void addCalculated(FieldDef field);
  // The value of `result` in the row of `other` whose `otherFields` equal `keyFields` here (joined by ';').
  void addLookup(FieldDef field, std::string keyFields, Cursor& other, std::string otherFields, std::string result);
  void setCalculated(std::string_view field, const Value& value);

  // Order and limits. Changing one posts or cancels, and stands on the first row but for setIndex, which keeps the row.
  void setIndex(std::string_view name);  // empty: primary
  void setRowOrder();                    // by row id, which is the order of entry
  std::string indexName() const;
  void setRange(std::vector<Value> start, std::vector<Value> end);
  void cancelRange();
  bool hasRange() const { return ranged_; }
  // A condition over the cursor's fields, tested while filtered, together with onFilter; empty: none. StatementError
  // with the earlier one left in force; of a closed cursor at open.
  void setFilter(std::string text);
  const std::string& filter() const { return filterText_; }
  void setFiltered(bool filtered);
  bool filtered() const { return filtered_; }
  void setMaster(const follows& link);
  void clearMaster();

  // Moves.
  void first();
  void last();
  bool next();
  bool prior();
  std::int64_t moveBy(std::int64_t rows);  // how far it came
  bool bof();
  bool eof();
  bool isEmpty();
  std::uint64_t recordCount();      // O(log n) without a filter; with one the rows that pass
  std::uint64_t recordNumber();     // 1 is the first; 0 without a row
  bool goTo(std::uint64_t number);  // the k-th row, 1 is the first
  // How far down the row stands among those in order, also those that the filter hides: 0 the first, 1 the last. For
  // scroll bars; O(log n).
  double depth();
  bool goToDepth(double depth);  // the first passing row from there on, else the last
  Bookmark bookmark();
  bool goTo(const Bookmark& bookmark);  // false, unmoved: the row is gone or out of view
  RowId rowId();                        // 0 without a row
  bool goToRow(RowId row);

  // Searches. False: not found and not moved.
  bool findKey(const std::vector<Value>& values);      // leading fields of the index, exactly
  bool findNearest(const std::vector<Value>& values);  // the first row not before; the last row when there is none
  bool locate(std::string_view fields, const std::vector<Value>& values, LocateOptions options = {});
  // The value of `result` in the first row that matches; null when there is none. lookupAll gives several, joined by
  // ';', and nothing when there is no row.
  Value lookup(std::string_view keyFields, const std::vector<Value>& values, std::string_view result);
  std::vector<Value> lookupAll(std::string_view keyFields, const std::vector<Value>& values, std::string_view results);

  // The record cycle.
  void edit();  // recordLocked, recordChanged, through onEditError
  void insert();
  void append();
  void post();  // required, keyViolation, recordChanged, recordLocked, through onPostError
  void cancel();
  void remove();  // deletes the row; as edit, through onDeleteError
  bool modified() const;
  void refresh();    // undoes an edit, reads again, keeps the row as far as possible
  void rereadRow();  // the current row only
  void flush();      // everything gathered reaches the disk
  void lockTable();  // recordLocked
  void unlockTable();

  // For Table: own changes that concern this cursor.
  void ownChange(RowId row, const std::string* record);
  void ownRollback(bool cancelEdit);
  void abandon();  // the database ends: closed, without a word to it

 protected:
  // For Query, while closed: what to open next. A list makes a live result of exactly these rows; a result that is not
  // live cannot be changed.
  void setTarget(Database& database, std::string table, bool readOnly);
  void setRows(const std::vector<RowId>& rows);
  void setName(std::string name) { name_ = std::move(name); }

 private:
  friend class Field;
  friend class Glance;
  struct Extra;  // a calculated or looked-up field
  struct Link;
  struct Search;
  struct Ranks {  // of the rows within the bounds, filtered or not, among the tree's; `high` is behind the last
    std::uint64_t low, high;
  };
  struct Standing {  // a row that the cursor stands on
    bool there = false;
    RowId row = 0;
    std::string key, record;
    std::optional<std::string> expected;  // what an own change made of it; without one, `record`
    bool ownDeleted = false;
    std::uint64_t version = 0;  // of the table, when the row was read
  };
  struct RowList;  // of a live result: its rows, in order
  class Aside;     // looks at other rows and comes back
  class Within;    // sees the rows of one prefix of keys
  struct Window {  // rows read ahead
    struct Entry {
      std::uint32_t key, keySize, record, recordSize;
      RowId row;
    };
    std::string bytes;
    std::vector<Entry> entries;
    std::size_t at = 0;
    std::size_t batch = 4;
    std::uint64_t version = 0;
    std::int64_t time = 0;
    bool forward = true;
    void clear();
    void add(std::string_view itsKey, RowId itsRow, std::string_view itsRecord);
  };

  void fire(const CursorEvents::Handler& handler);
  void requireOpen() const;
  void requireChangeable() const;
  void synchronise();  // follows the master, finds the row again after a rollback
  void leaveRow();     // posts or cancels, here and in the details
  void leaveDetails();
  void toBrowse();
  bool filters() const { return filtered_ && (filter_ || events.onFilter); }
  bool passes();
  std::unique_ptr<RowFilter> boundFilter(const std::string& text);
  PassingRows passingRows(std::string low, std::string high) const;
  std::optional<std::uint64_t> countPassing(std::string high);
  bool inBounds(std::string_view key) const;
  bool isAt(std::uint64_t number);
  Ranks ranks() const;
  void take(const Window::Entry& entry);
  void stand(RowId row, std::string key, std::string record);
  void arrived();
  [[noreturn]] void raiseDamaged(const char* what) const;
  void requireOrder(bool forward, std::string_view last, std::string_view key, bool mayEqual) const;
  void fillFromTree(bool forward, const std::string& start, bool inclusive, bool bounded);
  void readTree(bool forward, const std::string& start, bool inclusive, bool bounded);
  void fillRecord(Window::Entry& entry, std::string_view payload);
  void fillRecords(std::size_t first);
  bool isCurrent() const;
  bool fillFromList(bool forward, std::string_view from, bool inclusive, bool bounded);
  bool fill(bool forward, std::string_view from, bool inclusive, bool bounded);
  const Window::Entry* ahead(bool forward);
  bool step(bool forward);
  bool enter(bool forward, std::string_view from, bool inclusive);  // the first passing row from there on
  bool firstRow();
  bool lastRow();
  bool seek(std::uint64_t number);
  bool standOn(RowId row);
  void findAgain(const std::string& key);
  void findAgainFrom(const Standing& standing);  // in another order than it was found in
  void moveOn(const std::string& key);
  void keyOf(RowId row, std::string_view record, std::string& key) const;
  bool readStanding(RowId row, std::string& record) const;
  bool applyLink();
  int linkIndex(const std::vector<std::string_view>& names) const;
  void tellDetails();
  void copyLinkFields();
  bool prepareSearch(std::string_view fields, const std::vector<Value>& values, Search& wanted) const;
  bool findKeyFiltered(const std::string& prefix);
  bool matches(const Search& wanted);
  bool search(const Search& wanted, Standing& found);
  bool searchByIndex(const Search& wanted, Standing& found, bool& usable);
  bool searchByWalk(const Search& wanted, Standing& found);
  void lockStanding();
  void unlockStanding() noexcept;
  template <typename Action>
  void withErrorEvent(const std::function<ErrorAnswer(const StoreError&)>& handler, Action&& action);
  void checkRequired() const;
  struct Posted {
    RowId row = 0;
    std::string record, oldKey;
  };
  Posted postEdit();
  Posted postInsert();
  void standAfterPost(const Posted& posted);
  Value fieldValue(int position);
  Value blobValue(int position, bool asTyped);
  Value lookedUp(const Extra& extra);
  void setField(int position, const Value& value);
  void calculate();
  RecordView& view();
  std::vector<int> positions(std::string_view fields) const;

  Database* database_;
  std::string tableName_, name_;
  Table* table_ = nullptr;
  CursorState state_ = CursorState::closed;
  bool exclusive_ = false;
  int order_ = -1;  // position of the index; -1: by row id
  std::string wantedIndex_;
  bool rowOrder_ = false;
  bool readOnly_ = false;
  std::unique_ptr<RowList> list_;
  std::string low_, high_;                                    // bounds of the keys: low_ <= key < high_ (empty: none)
  bool ranged_ = false, filtered_ = false, nothing_ = false;  // nothing_: the master has no row
  bool bof_ = true, eof_ = true;
  bool findAgain_ = false;
  bool linked_ = false;  // the bounds are a master's
  int silenced_ = 0;
  bool suspended_ = false;  // looks at other rows for a moment: does not follow anybody
  Standing at_, kept_;      // kept_: while a new row is being entered
  Window window_;
  std::optional<RecordView> view_;
  std::unique_ptr<RowBuffer> buffer_;
  std::map<int, std::optional<std::string>> contents_;  // new contents of memo and blob fields
  bool contentsModified_ = false;                       // by more than the defaults of a new row
  std::vector<std::unique_ptr<Extra>> extras_;
  bool calculated_ = false, calculating_ = false;
  std::unique_ptr<Link> link_;
  std::vector<Cursor*> details_;
  std::string filterText_;
  std::unique_ptr<RowFilter> filter_;  // while open
  std::string scratch_;
};

}  // namespace quillon::store
