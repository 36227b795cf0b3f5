#pragma once

#include <optional>
#include <string>

#include "store/Value.h"

namespace quillon::store {

class Cursor;
struct FieldDef;

// A field of a cursor's current row: of the table, calculated, or looked up. A light handle; valid while the cursor is
// open. Reading in edit and insert gives what was typed. Setting raises notEditing outside edit and insert, badValue.
class Field {
 public:
  Field(Cursor& cursor, int position) : cursor_(&cursor), position_(position) {}

  const FieldDef& definition() const;
  int position() const { return position_; }
  Cursor& cursor() const { return *cursor_; }
  Value value() const;
  Value oldValue() const;  // in edit: before the edit
  bool isNull() const;
  bool asBool() const { return value().asBool(); }
  int asInt() const { return value().asInt(); }
  std::int64_t asInt64() const { return value().asInt64(); }
  double asDouble() const { return value().asDouble(); }
  Money asMoney() const { return value().asMoney(); }
  std::string asText() const { return value().asText(); }
  Date asDate() const { return value().asDate(); }
  std::optional<Date> dateOrNone() const { return value().dateOrNone(); }

  void set(const Value& value) const;
  void clear() const { set(Value()); }
  const Field& operator=(const Value& value) const {
    set(value);
    return *this;
  }

 private:
  Cursor* cursor_;
  int position_;
};

}  // namespace quillon::store
