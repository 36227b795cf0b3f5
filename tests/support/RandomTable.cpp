#include "support/RandomTable.h"

#include <algorithm>
#include <cfloat>
#include <climits>
#include <iterator>
#include <string_view>
#include <utility>

namespace quillon::sim {
namespace {

using store::FieldDef;
using store::FieldType;
using store::IndexDef;
using store::TableDef;
using store::Value;

template <typename T, std::size_t n>
T oneOf(SeededRandom& random, const T (&choices)[n]) {
  return choices[random.below(n)];
}

std::int64_t randomWhole(SeededRandom& random, std::int64_t least, std::int64_t most) {
  const std::int64_t kEdges[] = {least, least + 1, -256, -255, -2, -1, 0, 1, 2, 127, 128, 255, 256, most - 1, most};
  if (random.percent(60)) return std::clamp(oneOf(random, kEdges), least, most);
  const std::uint64_t range = static_cast<std::uint64_t>(most) - static_cast<std::uint64_t>(least);
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(least) +
                                   (range == UINT64_MAX ? random.next() : random.next() % (range + 1)));
}

double randomReal(SeededRandom& random) {
  constexpr double kEdges[] = {0.0, -0.0, 1, -1, 0.5, -0.5, 1e-300, -1e-300, DBL_MAX, -DBL_MAX, DBL_TRUE_MIN, 255, 256};
  if (random.oneIn(2)) return oneOf(random, kEdges);
  return (static_cast<double>(random.below(2'000'001)) - 1e6) / 1024;
}

Date randomDate(SeededRandom& random) {
  static const Date kEdges[] = {Date(1, 1, 1), Date(9999, 12, 31), Date(1969, 12, 31), Date(1970, 1, 1),
                                Date(2024, 2, 29)};
  return random.oneIn(2) ? oneOf(random, kEdges)
                         : Date(2000, 1, 1).addDays(static_cast<std::int64_t>(random.below(20000)));
}

TimeOfDay randomTime(SeededRandom& random) {
  const std::int32_t kEdges[] = {0, 1, TimeOfDay::kDay - 1, static_cast<std::int32_t>(random.below(TimeOfDay::kDay))};
  return {oneOf(random, kEdges)};
}

IndexDef randomIndex(SeededRandom& random, const TableDef& table, std::string name) {
  IndexDef index{std::move(name), {}, random.oneIn(3), random.oneIn(2)};
  const std::size_t wanted = 1 + random.below(4);
  for (std::size_t tries = 0; tries < 20 && index.parts.size() < wanted; ++tries) {
    const std::size_t field = random.below(table.fields.size());
    const auto same = [field](const store::IndexPart& part) { return part.field == static_cast<int>(field); };
    if (isBlobType(table.fields[field].type) || std::any_of(index.parts.begin(), index.parts.end(), same)) continue;
    index.parts.push_back({static_cast<int>(field), random.oneIn(3)});
    if (table.maxKeySize(index) > store::kMaxKeySize) index.parts.pop_back();
  }
  return index;
}

}  // namespace

TableDef randomTable(SeededRandom& random, std::size_t mostFields) {
  TableDef table{"Table " + std::to_string(random.below(100)), {}, {}};
  const std::size_t count = 1 + random.below(mostFields);
  bool counted = false;
  for (std::size_t i = 0; i < count; ++i) {
    FieldDef field{"Field_" + std::to_string(i), static_cast<FieldType>(1 + random.below(13)), 0, random.oneIn(4)};
    if (field.type == FieldType::autoInc && std::exchange(counted, true)) field.type = FieldType::integer;
    if (random.oneIn(3)) field.type = FieldType::string;
    if (field.type == FieldType::string) field.size = static_cast<int>(1 + random.below(random.oneIn(6) ? 255 : 12));
    table.fields.push_back(std::move(field));
  }
  const std::size_t indexes = random.below(5);
  for (std::size_t i = 0; i < indexes; ++i) {
    IndexDef index = randomIndex(random, table, i == 0 ? "" : "Index-" + std::to_string(i));
    if (!index.parts.empty()) table.indexes.push_back(std::move(index));
  }
  table.validate();
  return table;
}

std::string randomText(SeededRandom& random, std::size_t mostCharacters) {
  using namespace std::string_view_literals;
  constexpr std::string_view kCharacters[] = {"\0"sv,     "\1"sv, "\2"sv,     "a"sv,          "A"sv,
                                              "b"sv,      "Z"sv,  "\x7F"sv,   "é"sv,          "É"sv,
                                              "\u212A"sv, "k"sv,  "\u023A"sv, "\U0001F600"sv, "\uFFFD"sv};
  const std::size_t most = random.oneIn(8) ? mostCharacters : std::min<std::size_t>(mostCharacters, 4);
  const std::size_t variety = 1 + random.below(std::size(kCharacters));
  std::string text;
  for (std::size_t left = random.oneIn(4) ? most : random.below(most + 1); left > 0; --left)
    text += kCharacters[random.below(variety)];
  return text;
}

Value randomValue(SeededRandom& random, const FieldDef& field) {
  if (random.oneIn(6)) return {};
  switch (field.type) {
    case FieldType::string:
      return randomText(random, static_cast<std::size_t>(field.size));
    case FieldType::smallint:
      return randomWhole(random, SHRT_MIN, SHRT_MAX);
    case FieldType::integer:
    case FieldType::autoInc:
      return randomWhole(random, INT_MIN, INT_MAX);
    case FieldType::floating:
      return randomReal(random);
    case FieldType::currency:
      return Money::fromRaw(randomWhole(random, INT64_MIN, INT64_MAX));
    case FieldType::boolean:
      return random.oneIn(2);
    case FieldType::date:
      return randomDate(random);
    case FieldType::time:
      return randomTime(random);
    case FieldType::dateTime:
      return DateTime{randomDate(random), randomTime(random)};
    default:
      return {};
  }
}

std::vector<Value> randomRow(SeededRandom& random, const TableDef& table) {
  std::vector<Value> row;
  for (const FieldDef& field : table.fields) row.push_back(randomValue(random, field));
  return row;
}

}  // namespace quillon::sim
