#pragma once
// What a cursor is made of inside; for its own sources only.

#include "store/Cursor.h"

namespace quillon::store {

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
