#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "store/Schema.h"
#include "store/Value.h"

// A value of fixed width as 64 bits, the form between a Value and the bytes of records and keys: whole numbers and
// booleans as they are, currency in ten-thousandths, dates as days and dateTimes as milliseconds since 1970-01-01,
// times as milliseconds since midnight, floats by their bits.
namespace quillon::store {

// For a field: what it would hold. For a search: what it must hold to be equal, so nothing is rounded.
enum class Purpose { field, search };

// Of a value that is not null for a field that is neither text nor blob. badValue, naming the field, when it does not
// fit. Zero has no sign.
std::int64_t scalarOf(const FieldDef& field, std::string_view table, const Value& value, Purpose purpose);

// The value again; the scalar must be sound.
Value valueOf(FieldType type, std::int64_t scalar);

// Bytes of a field in a record: 0 for text, 16 for a BlobRef.
constexpr std::uint8_t widthOf(FieldType type) {
  constexpr std::uint8_t kWidths[] = {0, 0, 2, 4, 4, 8, 8, 1, 4, 4, 8, 16, 16, 16, 8};  // by the types' numbers
  return kWidths[static_cast<unsigned>(type)];
}

// Reads and writes a scalar of widthOf(type) bytes in the form of records.
std::int64_t loadScalar(FieldType type, const std::byte* from);
void appendScalar(FieldType type, std::int64_t scalar, std::string& out);

// Whether a scalar read from a file is one that scalarOf makes for a field.
bool isSound(FieldType type, std::int64_t scalar);

// The text of a string field's value; badValue when it is none, for a field also when it is too long or not UTF-8.
const std::string& textOf(const FieldDef& field, std::string_view table, const Value& value, Purpose purpose);

// badValue: the value, the field and the reason in one sentence.
[[noreturn]] void refuseValue(const FieldDef& field, std::string_view table, const Value& value, const char* reason);

}  // namespace quillon::store
