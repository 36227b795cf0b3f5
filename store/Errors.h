#pragma once

#include <string>

#include "base/Errors.h"

namespace quillon::store {

// The store's numeric failure codes. The first five are tested by callers; all others reach the person as they come.
enum class Code : int {
  recordLocked = 10258,  // a record, table or transaction lock of another stands in the way
  recordChanged = 8708,  // changed or deleted since it was read
  keyViolation = 9729,   // duplicate value in a unique index
  headerDamaged = 8961,  // a table's header is corrupt
  tableInUse = 11013,    // own cursors or another process hold the table open
  damaged = 8962,        // a page, tree or blob of a table is corrupt
  foreign = 8963,        // the file is none of ours, or belongs to another table
  newerFormat = 8964,    // written by a later version
  noSuchTable = 9001,
  noSuchField = 9002,
  noSuchIndex = 9003,
  tableExists = 9004,
  badDefinition = 9005,  // a table definition that cannot be made
  badValue = 9006,       // a value that its field cannot hold
  required = 9007,       // a required field without a value
  notEditing = 9008,     // the cursor is not in edit or insert, or there is no row
  noSuchFolder = 9010,
  accessDenied = 9011,
  noSpace = 9012,
  ioFailed = 9013,
  outcomeUnknown = 9014,  // a commit that may or may not have happened; known when the company is opened again
  badTransaction = 9015,  // nested, missing or broken transaction
  limitReached = 9016,
  changedMeanwhile = 9017,  // inside the store: a long read met a page newer than its start, and begins again
  badStatement = 9020,      // the text of a statement or filter cannot be read
  typeMismatch = 9021,      // values of kinds that do not go together
};

// A failure of the store. The text names the table and says what to do.
class StoreError : public Error {
 public:
  StoreError(Code code, const std::string& text) : Error(text), code_(code) {}
  Code code() const { return code_; }
  int number() const { return static_cast<int>(code_); }

 private:
  Code code_;
};

// A failed call of the file system, with the system's error number (0 where there is none).
class IoError final : public StoreError {
 public:
  IoError(Code code, const std::string& text, int systemError) : StoreError(code, text), systemError_(systemError) {}
  int systemError() const { return systemError_; }

 private:
  int systemError_;
};

// A fault in the text of a statement, with its place: line and column (in characters) from 1.
class StatementError final : public StoreError {
 public:
  // `text` goes on after the place: "expected FROM, found 'FORM'."
  StatementError(Code code, int line, int column, const std::string& text)
      : StoreError(code, "Line " + std::to_string(line) + ", column " + std::to_string(column) + ": " + text),
        line_(line),
        column_(column) {}
  int line() const { return line_; }
  int column() const { return column_; }

 private:
  int line_, column_;
};

}  // namespace quillon::store
