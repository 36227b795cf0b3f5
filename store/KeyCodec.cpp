#include "store/KeyCodec.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

#include "base/Text.h"
#include "store/Errors.h"
#include "store/FieldScalar.h"

namespace quillon::store {
namespace {

constexpr char kNull = 0;
constexpr char kPresent = 1;
constexpr char kTextEnd = 0;
constexpr char kEscape = 1;  // followed by 1 for a byte 0, by 2 for a byte 1
constexpr RowId kRowLimit = RowId{1} << 40;

void appendBigEndian(std::uint64_t value, unsigned width, std::string& out) {
  static_assert(std::endian::native == std::endian::little);
  const std::uint64_t swapped = __builtin_bswap64(value << (64 - 8 * width));
  out.append(reinterpret_cast<const char*>(&swapped), width);
}

void appendScalarKey(FieldType type, std::int64_t scalar, std::string& out) {
  constexpr std::uint64_t kSign = std::uint64_t{1} << 63;
  auto bits = static_cast<std::uint64_t>(scalar);
  const unsigned width = widthOf(type);
  if (type == FieldType::floating) {
    if (std::isnan(std::bit_cast<double>(scalar)))
      throw StoreError(Code::badValue, "A key cannot hold what is no number");
    if (bits == kSign) bits = 0;
    bits = (bits & kSign) != 0 ? ~bits : bits | kSign;
  } else if (type != FieldType::boolean) {
    bits ^= kSign >> (64 - 8 * width);
  }
  appendBigEndian(bits, width, out);
}

void appendEscaped(std::string_view text, std::string& out) {
  std::size_t copied = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (static_cast<unsigned char>(text[i]) > 1) continue;
    out.append(text, copied, i - copied);
    out += kEscape;
    out += static_cast<char>(text[i] + 1);
    copied = i + 1;
  }
  out.append(text, copied);
}

void invertFrom(std::size_t start, std::string& bytes) {
  for (std::size_t i = start; i < bytes.size(); ++i) bytes[i] = static_cast<char>(~bytes[i]);
}

[[noreturn]] void raiseDamagedKey() {
  throw StoreError(Code::damaged, "A key of an index is damaged; repair the table");
}

}  // namespace

KeyCodec::KeyCodec(const TableDef& table, const IndexDef& index)
    : table_(table.name), caseInsensitive_(index.caseInsensitive), unique_(index.unique) {
  for (const IndexPart& part : index.parts) {
    parts_.push_back({table.fields[static_cast<std::size_t>(part.field)], part.field, part.descending});
  }
}

void KeyCodec::appendText(std::string_view text, std::string& out) const {
  if (!caseInsensitive_) return appendEscaped(text, out);
  unsigned odd = 0;
  for (const char c : text) odd |= static_cast<unsigned>(static_cast<unsigned char>(c) - 2U >= 0x7EU);
  if (odd != 0) return appendEscaped(foldCase(text), out);
  const std::size_t start = out.size();
  out += text;
  for (std::size_t i = start; i < out.size(); ++i) {
    if (out[i] >= 'A' && out[i] <= 'Z') out[i] = static_cast<char>(out[i] + ('a' - 'A'));
  }
}

void KeyCodec::encode(const RecordView& record, RowId row, std::string& out) const {
  out.clear();
  for (const Part& part : parts_) {
    const std::size_t start = out.size();
    if (record.isNull(part.field)) {
      out += kNull;
    } else {
      out += kPresent;
      const FieldType type = part.definition.type;
      if (type == FieldType::string) {
        appendText(record.text(part.field), out);
        out += kTextEnd;
      } else {
        appendScalarKey(type, loadScalar(type, record.raw(part.field).data()), out);
      }
    }
    if (part.descending) invertFrom(start, out);
  }
  appendRow(out, row);
}

void KeyCodec::encodePrefix(std::span<const Value> values, std::string& out, LastText last) const {
  out.clear();
  if (values.size() > parts_.size()) {
    throw StoreError(Code::badValue, "An index of table " + table_ + " has " + std::to_string(parts_.size()) +
                                         " fields, but " + std::to_string(values.size()) + " values were given");
  }
  for (std::size_t i = 0; i < values.size(); ++i) {
    const Part& part = parts_[i];
    const FieldDef& field = part.definition;
    const std::size_t start = out.size();
    const bool beginning = last == LastText::beginning && i + 1 == values.size();
    if (values[i].isNull()) {
      out += kNull;
    } else if (field.type == FieldType::string) {
      out += kPresent;
      appendText(textOf(field, table_, values[i], Purpose::search), out);
      if (!beginning) out += kTextEnd;
    } else {
      if (beginning) refuseValue(field, table_, values[i], "only text has a beginning to search for");
      out += kPresent;
      appendScalarKey(field.type, scalarOf(field, table_, values[i], Purpose::search), out);
    }
    if (part.descending) invertFrom(start, out);
  }
}

void KeyCodec::appendRow(std::string& key, RowId row) {
  if (row >= kRowLimit) throw StoreError(Code::limitReached, "The row ids of a table are used up");
  appendBigEndian(row, kRowBytes, key);
}

std::size_t KeyCodec::fieldBytes(std::string_view key) {
  if (key.size() < kRowBytes) raiseDamagedKey();
  return key.size() - kRowBytes;
}

std::size_t KeyCodec::leadingBytes(std::string_view key, std::size_t fields) const {
  const std::size_t end = fieldBytes(key);
  std::size_t at = 0;
  for (std::size_t i = 0; i < fields; ++i) {
    const Part& part = parts_[i];
    const char inverted = part.descending ? '\xFF' : '\0';
    const bool present = at < end && (key[at] ^ inverted) == kPresent;
    ++at;
    if (!present) continue;
    if (part.definition.type == FieldType::string)
      at = std::min(key.find(static_cast<char>(kTextEnd ^ inverted), at), end) + 1;
    else
      at += widthOf(part.definition.type);
  }
  if (at > end) raiseDamagedKey();
  return at;
}

RowId KeyCodec::rowOf(std::string_view key) {
  static_assert(kRowBytes == sizeof(std::uint32_t) + 1);
  const char* const bytes = key.data() + fieldBytes(key);
  std::uint32_t upper;
  std::memcpy(&upper, bytes, sizeof upper);
  return RowId{__builtin_bswap32(upper)} << 8 | static_cast<unsigned char>(bytes[sizeof upper]);
}

std::string KeyCodec::successor(std::string prefix) {
  while (!prefix.empty() && prefix.back() == '\xFF') prefix.pop_back();
  if (!prefix.empty()) prefix.back() = static_cast<char>(prefix.back() + 1);
  return prefix;
}

}  // namespace quillon::store
