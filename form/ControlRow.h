#pragma once

#include <functional>
#include <string>

namespace quillon::store {
class Cursor;
}

namespace quillon::form {

class App;

// A control table: its one row holds the next numbers of a family of documents.
struct ControlRow {
  std::string table;
  int attempts = 1;        // of the exclusive open, 10 ms apart
  std::string words = {};  // of the Retry and Cancel that follow the last one; empty: the store's error stands
};

// Opens the control table exclusively, which keeps every other process off it, lets `take` read and raise the numbers
// of the row that is in edit, posts, flushes and closes; the numbers are spent then. Whatever fails, the table is
// closed. Cancel in the dialog is a silent stop.
void takeNumbers(App& app, const ControlRow& control, const std::function<void(store::Cursor& row)>& take);

// Error where a control table, open, has no row.
void requireControlRow(store::Cursor& row);

}  // namespace quillon::form
