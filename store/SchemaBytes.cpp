// TableDef as bytes, little-endian:
//
//   u16 version (1), name, u16 number of fields, u16 number of indexes
//   a field:  name, u8 type, u8 size, u8 1 when required
//   an index: name, u8 1 unique + 2 case-insensitive, u16 number of parts; a part: u16 field, u8 1 when descending
//   a name:   u8 length in bytes, the bytes
#include <utility>

#include "store/Errors.h"
#include "store/Schema.h"

namespace quillon::store {
namespace {

constexpr unsigned kVersion = 1;
constexpr unsigned kUnique = 1;
constexpr unsigned kCaseInsensitive = 2;

class Writer {
 public:
  void small(unsigned value) { bytes_ += static_cast<char>(value); }
  void wide(std::size_t value) {
    small(static_cast<unsigned>(value & 0xFF));
    small(static_cast<unsigned>(value >> 8));
  }
  void name(const std::string& text) {
    small(static_cast<unsigned>(text.size()));
    bytes_ += text;
  }
  std::string take() { return std::move(bytes_); }

 private:
  std::string bytes_;
};

[[noreturn]] void raiseDamaged() { throw StoreError(Code::headerDamaged, "The table's definition is damaged"); }

class Reader {
 public:
  explicit Reader(std::span<const std::byte> bytes) : rest_(bytes) {}
  unsigned small() { return static_cast<unsigned>(take(1)[0]); }
  unsigned atMost(unsigned most) {
    const unsigned value = small();
    if (value > most) raiseDamaged();
    return value;
  }
  unsigned wide() {
    const auto bytes = take(2);
    return static_cast<unsigned>(bytes[0]) | static_cast<unsigned>(bytes[1]) << 8;
  }
  std::string name() {
    const auto bytes = take(small());
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
  }
  bool done() const { return rest_.empty(); }

 private:
  std::span<const std::byte> take(std::size_t count) {
    if (count > rest_.size()) raiseDamaged();
    const auto taken = rest_.first(count);
    rest_ = rest_.subspan(count);
    return taken;
  }

  std::span<const std::byte> rest_;
};

FieldDef readField(Reader& in) {
  FieldDef field;
  field.name = in.name();
  field.type = static_cast<FieldType>(in.small());
  field.size = static_cast<int>(in.small());
  field.required = in.atMost(1) == 1;
  return field;
}

IndexDef readIndex(Reader& in) {
  IndexDef index;
  index.name = in.name();
  const unsigned flags = in.atMost(kUnique | kCaseInsensitive);
  index.unique = (flags & kUnique) != 0;
  index.caseInsensitive = (flags & kCaseInsensitive) != 0;
  for (unsigned left = in.wide(); left > 0; --left) {
    const auto field = static_cast<int>(in.wide());
    index.parts.push_back({field, in.atMost(1) == 1});
  }
  return index;
}

}  // namespace

std::string TableDef::encode() const {
  validate();
  Writer out;
  out.wide(kVersion);
  out.name(name);
  out.wide(fields.size());
  out.wide(indexes.size());
  for (const FieldDef& field : fields) {
    out.name(field.name);
    out.small(static_cast<unsigned>(field.type));
    out.small(static_cast<unsigned>(field.size));
    out.small(field.required ? 1 : 0);
  }
  for (const IndexDef& index : indexes) {
    out.name(index.name);
    out.small((index.unique ? kUnique : 0) | (index.caseInsensitive ? kCaseInsensitive : 0));
    out.wide(index.parts.size());
    for (const IndexPart& part : index.parts) {
      out.wide(static_cast<std::size_t>(part.field));
      out.small(part.descending ? 1 : 0);
    }
  }
  return out.take();
}

TableDef TableDef::decode(std::span<const std::byte> bytes) {
  Reader in(bytes);
  if (in.wide() != kVersion) raiseDamaged();
  TableDef table;
  table.name = in.name();
  const unsigned fieldCount = in.wide();
  const unsigned indexCount = in.wide();
  if (fieldCount > kMaxFields || indexCount > kMaxIndexes) raiseDamaged();
  table.fields.reserve(fieldCount);
  for (unsigned i = 0; i < fieldCount; ++i) table.fields.push_back(readField(in));
  for (unsigned i = 0; i < indexCount; ++i) table.indexes.push_back(readIndex(in));
  if (!in.done()) raiseDamaged();
  try {
    table.validate();
  } catch (const StoreError&) {
    raiseDamaged();
  }
  return table;
}

}  // namespace quillon::store
