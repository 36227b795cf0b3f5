#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "store/Schema.h"
#include "store/Value.h"

// A record as bytes:
//
//   null bitmap      one bit a field from the lowest bit of the first byte on, 1 for null; spare bits 0
//   non-null fields  in order, little-endian:
//     boolean                           1  0 or 1
//     smallint                          2
//     integer, autoInc, date, time      4  days since 1970-01-01; milliseconds since midnight
//     floating, currency, dateTime      8  finite and never -0; ten-thousandths; milliseconds since 1970-01-01
//     string                            length in bytes as varint of one or two bytes, then UTF-8
//     memo, blob, graphic              16  BlobRef: u32 first block, u32 length, u64 hash
//
// Equal rows have equal bytes.
namespace quillon::store {

// Where the content of a memo, blob or graphic field lives.
struct BlobRef {
  std::uint32_t firstBlock = 0;
  std::uint32_t length = 0;
  std::uint64_t hash = 0;

  friend bool operator==(const BlobRef&, const BlobRef&) = default;
};

// How the records of a table are laid out. Views and buffers look at it: it must outlive them and stay in its place.
class RecordLayout {
 public:
  static constexpr std::uint8_t kVariable = 0;

  explicit RecordLayout(const TableDef& table);

  int fieldCount() const { return static_cast<int>(fields_.size()); }
  const FieldDef& field(int i) const { return fields_[static_cast<std::size_t>(i)]; }
  const std::string& table() const { return table_; }
  std::size_t bitmapSize() const { return bitmapSize_; }
  std::uint8_t width(int i) const { return widths_[static_cast<std::size_t>(i)]; }  // bytes; kVariable for text
  // Bytes of the longest record.
  std::size_t maxSize() const { return maxSize_; }

 private:
  std::string table_;
  std::vector<FieldDef> fields_;
  std::vector<std::uint8_t> widths_;
  std::size_t bitmapSize_ = 0;
  std::size_t maxSize_ = 0;
};

// Reads fields out of record bytes as they are asked for; in ascending order it costs least. Looks at layout and bytes.
//
// Never reads outside the bytes: what does not fit raises damaged. The typed readers want a field of their type (an
// Error says so otherwise) and give the neutral value for null.
class RecordView {
 public:
  RecordView(const RecordLayout& layout, std::span<const std::byte> bytes);
  RecordView(const RecordLayout& layout, std::string_view bytes)
      : RecordView(layout, std::as_bytes(std::span(bytes))) {}

  const RecordLayout& layout() const { return layout_; }
  std::span<const std::byte> bytes() const { return bytes_; }
  bool isNull(int i) const {
    const auto at = static_cast<unsigned>(i);
    return (static_cast<unsigned>(bytes_[at / 8]) >> (at % 8) & 1U) != 0;
  }
  Value get(int i) const;  // not of memo, blob and graphic fields unless they are null
  std::string_view text(int i) const;
  // Whole numbers, autoInc, boolean (0 or 1), and what stands behind currency, date, time and dateTime.
  std::int64_t integer(int i) const;
  double real(int i) const;  // floating only
  Money money(int i) const { return Money::fromRaw(integer(i)); }
  bool truth(int i) const { return integer(i) != 0; }
  BlobRef blobRef(int i) const;
  // The field's own bytes, without the length of a text; empty when null.
  std::span<const std::byte> raw(int i) const;

  // Whether the bytes are exactly what RowBuffer::encode writes for some row: every rule above, texts valid and within
  // their sizes, dates that exist, nothing behind the last field.
  static bool wellFormed(const RecordLayout& layout, std::span<const std::byte> bytes);
  static bool wellFormed(const RecordLayout& layout, std::string_view bytes) {
    return wellFormed(layout, std::as_bytes(std::span(bytes)));
  }

 private:
  struct Extent {
    std::size_t start = 0, size = 0;
  };
  Extent extent(int i) const;  // of a field that is not null
  [[noreturn]] void raiseDamaged() const;

  const RecordLayout& layout_;
  std::span<const std::byte> bytes_;
  mutable int atField_ = 0;  // the walk over the fields goes on here
  mutable std::size_t atOffset_ = 0;
};

// A row that can be edited: fields of a loaded record are decoded when they are asked for. Made once and used for many
// rows; its memory is kept from row to row. The layout must outlive it.
class RowBuffer {
 public:
  explicit RowBuffer(const RecordLayout& layout);

  const RecordLayout& layout() const { return *layout_; }
  // All null, none modified.
  void clear();
  // Copies the record; none modified. damaged, and the buffer cleared, when the fields do not fill the bytes exactly.
  void load(std::span<const std::byte> bytes);
  void load(std::string_view bytes) { load(std::as_bytes(std::span(bytes))); }

  bool isNull(int i) const { return slot(i).source == Source::null; }
  Value get(int i) const;              // as RecordView::get
  std::string_view text(int i) const;  // of a string field; until the next change of the buffer
  BlobRef blobRef(int i) const;

  // Converts to the field's type; a null value is setNull. badValue, the field unchanged and named in the text: wrong
  // kind, out of range, a fraction in a whole number, not finite, text too long or no valid UTF-8. A double is rounded
  // to the nearest amount in a currency field, ties to even. Memo, blob and graphic fields are set by their BlobRef.
  void set(int i, const Value& value);
  void setNull(int i);
  void setBlobRef(int i, const BlobRef& ref);

  // Set since the last clear, load or clearModified, to whatever value.
  bool modified(int i) const { return slot(i).modified; }
  bool modified() const { return anyModified_; }
  void clearModified();

  void encode(std::string& out) const;
  std::string encode() const;

 private:
  enum class Source : std::uint8_t { null, loaded, own };
  struct Slot {
    Source source = Source::null;
    bool modified = false;
    std::uint32_t start = 0, size = 0;  // loaded: of the field's bytes in loaded_, the length of a text left out
    std::int64_t scalar = 0;            // own: see FieldScalar.h; of a BlobRef first block and length
    std::uint64_t hash = 0;             // own: of a BlobRef
    std::string text;                   // own
  };
  const Slot& slot(int i) const { return slots_[static_cast<std::size_t>(i)]; }
  Slot& change(int i);

  const RecordLayout* layout_;
  std::vector<Slot> slots_;
  std::string loaded_;
  bool anyModified_ = false;
};

}  // namespace quillon::store
