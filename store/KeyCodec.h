#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "store/RecordCodec.h"
#include "store/Schema.h"
#include "store/Value.h"
#include "store/locks/TableLocks.h"

// An index key: its fields, then the row id. Plain byte comparison of keys is the order of the index.
//
//   field    00 for null, so that null comes first; else 01 and the value, big-endian:
//     boolean                               1
//     smallint                              2  sign bit inverted
//     integer, autoInc, date, time          4  sign bit inverted
//     currency, dateTime                    8  sign bit inverted
//     floating                              8  all bits inverted when negative, else the sign bit
//     string    UTF-8, folded when the index is case-insensitive, with 00 as 01 01 and 01 as 01 02; closed by 00
//   A descending field has all its bytes inverted, the marker too.
//   row id   5 bytes, big-endian
namespace quillon::store {

// Makes the keys of one index. Keeps nothing of the definitions it is made from but copies.
class KeyCodec {
 public:
  static constexpr std::size_t kRowBytes = 5;
  enum class LastText { whole, beginning };

  KeyCodec(const TableDef& table, const IndexDef& index);

  // The key of a record of the codec's table, in `out`, whose memory is reused. Allocates only for text beyond ASCII
  // (or with bytes 00 and 01) in a case-insensitive index. limitReached for a row id of 2^40 or more.
  void encode(const RecordView& record, RowId row, std::string& out) const;

  // The bytes with which the keys of all rows with these values in the leading fields begin, and no others. Values are
  // converted to the types of the fields; badValue where that loses something, or for more values than fields. Text may
  // be longer than the field: it has its place in the order but matches nothing.
  // With LastText::beginning the last value is the beginning of a text (badValue for another type of field); null is
  // taken as itself.
  void encodePrefix(std::span<const Value> values, std::string& out, LastText last = LastText::whole) const;

  std::size_t fieldCount() const { return parts_.size(); }
  bool unique() const { return unique_; }

  // damaged when the key is too short to have one.
  static RowId rowOf(std::string_view key);
  // Length of the key without the row id.
  static std::size_t fieldBytes(std::string_view key);
  // Length of the first `fields` fields of a key of this index. damaged where they are not there.
  std::size_t leadingBytes(std::string_view key, std::size_t fields) const;
  // The fields of the key without the row id.
  static std::string_view fieldsOf(std::string_view key) { return key.substr(0, fieldBytes(key)); }
  static void appendRow(std::string& key, RowId row);
  // The smallest bytes above all that begin with `prefix`; empty when there are none.
  static std::string successor(std::string prefix);

 private:
  struct Part {
    FieldDef definition;
    int field;
    bool descending;
  };
  void appendText(std::string_view text, std::string& out) const;

  std::string table_;
  std::vector<Part> parts_;
  bool caseInsensitive_;
  bool unique_;
};

}  // namespace quillon::store
