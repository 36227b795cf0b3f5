#include "store/RecordCodec.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>

#include "store/Errors.h"
#include "support/RandomTable.h"

namespace quillon::store {
namespace {

using sim::SeededRandom;
using Bytes = std::vector<std::byte>;

// In memory of its own without room to spare, so that the sanitizer sees a step outside.
Bytes exactly(const std::string& text) {
  const auto bytes = std::as_bytes(std::span(text));
  return {bytes.begin(), bytes.end()};
}

BlobRef randomRef(SeededRandom& random) {
  return {static_cast<std::uint32_t>(random.next()), static_cast<std::uint32_t>(random.next()), random.next()};
}

struct Row {
  std::vector<Value> values;
  std::vector<std::optional<BlobRef>> refs;
};

Row randomFullRow(SeededRandom& random, const TableDef& table) {
  Row row{sim::randomRow(random, table), {}};
  for (const FieldDef& field : table.fields) {
    row.refs.push_back(isBlobType(field.type) && !random.oneIn(3) ? std::optional(randomRef(random)) : std::nullopt);
  }
  return row;
}

void put(const Row& row, int i, RowBuffer& buffer) {
  const auto at = static_cast<std::size_t>(i);
  row.refs[at] ? buffer.setBlobRef(i, *row.refs[at]) : buffer.set(i, row.values[at]);
}

// Each field once, in an order that begins anywhere and goes either way.
template <typename Reader>
void expectRow(SeededRandom& random, const Row& row, const Reader& reader) {
  const int count = reader.layout().fieldCount(), step = random.oneIn(2) ? 1 : count - 1;
  for (int left = count, i = static_cast<int>(random.below(row.values.size())); left > 0;
       --left, i = (i + step) % count) {
    const auto at = static_cast<std::size_t>(i);
    ASSERT_EQ(reader.isNull(i), row.values[at].isNull() && !row.refs[at]);
    if (isBlobType(reader.layout().field(i).type)) {
      ASSERT_EQ(reader.blobRef(i), row.refs[at].value_or(BlobRef{}));
    } else {
      ASSERT_EQ(reader.get(i), row.values[at]) << reader.get(i).toText() << " for " << row.values[at].toText();
      ASSERT_EQ(reader.get(i).kind(), row.values[at].kind());
    }
  }
}

// The row in `buffer` again, each field through its value.
std::string rewritten(const RowBuffer& buffer) {
  RowBuffer copy(buffer.layout());
  for (int i = 0; i < buffer.layout().fieldCount(); ++i) {
    if (buffer.isNull(i)) continue;
    isBlobType(buffer.layout().field(i).type) ? copy.setBlobRef(i, buffer.blobRef(i)) : copy.set(i, buffer.get(i));
  }
  return copy.encode();
}

TEST(RecordCodec, RowsComeBackAndEqualRowsAreEqualBytes) {
  for (std::uint64_t seed = 1; seed <= 300; ++seed) {
    SCOPED_TRACE(seed);
    SeededRandom random(seed);
    const TableDef table = sim::randomTable(random, random.oneIn(10) ? 120 : 30);
    const RecordLayout layout(table);
    RowBuffer first(layout), second(layout);
    for (int round = 0; round < 8; ++round) {
      const Row row = randomFullRow(random, table);
      first.clear();
      for (int i = 0; i < layout.fieldCount(); ++i) put(row, i, first);
      const std::string bytes = first.encode();
      ASSERT_LE(bytes.size(), layout.maxSize());
      ASSERT_TRUE(RecordView::wellFormed(layout, bytes));
      expectRow(random, row, first);
      expectRow(random, row, RecordView(layout, bytes));
      // Another way to the same row: over an older one, from back to front, each field once or twice.
      for (int i = layout.fieldCount() - 1; i >= 0; --i) {
        if (random.oneIn(3)) second.setNull(i);
        put(row, i, second);
      }
      ASSERT_EQ(second.encode(), bytes);
      second.load(bytes);
      ASSERT_FALSE(second.modified());
      expectRow(random, row, second);
      const Row other = randomFullRow(random, table);
      const int changed = static_cast<int>(random.below(table.fields.size()));
      put(other, changed, second);
      for (int i = 0; i < layout.fieldCount(); ++i) ASSERT_EQ(second.modified(i), i == changed);
      Row mixed = row;
      mixed.values[static_cast<std::size_t>(changed)] = other.values[static_cast<std::size_t>(changed)];
      mixed.refs[static_cast<std::size_t>(changed)] = other.refs[static_cast<std::size_t>(changed)];
      const std::string mixedBytes = second.encode();
      expectRow(random, mixed, RecordView(layout, mixedBytes));
      ASSERT_EQ(rewritten(second), mixedBytes);
    }
  }
}

// Method: good records with a few bytes changed, cut, doubled or put in. What is called well-formed must be exactly
// what its own values encode to; of the rest, reading may fail but stays inside the bytes (the sanitizer watches).
TEST(RecordCodec, DamagedBytesAreToldApart) {
  SeededRandom random(11);
  int refused = 0, accepted = 0;
  for (int trial = 0; trial < 20000;) {
    const TableDef table = sim::randomTable(random, 12);
    const RecordLayout layout(table);
    RowBuffer buffer(layout);
    for (int round = 0; round < 50; ++round, ++trial) {
      const Row row = randomFullRow(random, table);
      for (int i = 0; i < layout.fieldCount(); ++i) put(row, i, buffer);
      std::string bytes = buffer.encode();
      for (std::size_t changes = 1 + random.below(3); changes > 0; --changes) {
        if (bytes.empty()) break;
        const std::size_t at = random.below(bytes.size());
        switch (random.below(4)) {
          case 0:
            bytes.resize(at);
            break;
          case 1:
            bytes.insert(at, 1 + random.below(3), static_cast<char>(random.next()));
            break;
          default:
            bytes[at] = static_cast<char>(random.oneIn(2) ? bytes[at] ^ 1 << random.below(8) : random.next());
        }
      }
      const Bytes exact = exactly(bytes);
      if (RecordView::wellFormed(layout, exact)) {
        ++accepted;
        buffer.load(exact);
        ASSERT_EQ(buffer.encode(), bytes);
        ASSERT_EQ(rewritten(buffer), bytes);
        continue;
      }
      ++refused;
      const auto readAll = [&](const auto& reader) {
        for (int i = layout.fieldCount() - 1; i >= 0; --i) {
          try {
            isBlobType(layout.field(i).type) ? void(reader.blobRef(i)) : void(reader.get(i).toText());
          } catch (const StoreError& error) {
            ASSERT_EQ(error.code(), Code::damaged);
          }
        }
      };
      try {
        readAll(RecordView(layout, exact));
        buffer.load(exact);
        readAll(buffer);
      } catch (const StoreError& error) {
        ASSERT_EQ(error.code(), Code::damaged);
      }
    }
  }
  EXPECT_GT(refused, 5000);
  EXPECT_GT(accepted, 1000);
}

const TableDef& things() {
  static const TableDef kTable = TableDef::of("Things", {{"Name", FieldType::string, 3},
                                                         {"Small", FieldType::smallint},
                                                         {"Whole", FieldType::integer},
                                                         {"Real", FieldType::floating},
                                                         {"Amount", FieldType::currency},
                                                         {"Flag", FieldType::boolean},
                                                         {"Day", FieldType::date},
                                                         {"Clock", FieldType::time},
                                                         {"Moment", FieldType::dateTime},
                                                         {"Note", FieldType::memo}});
  return kTable;
}

TEST(RecordCodec, RefusedValuesNameTheFieldAndChangeNothing) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinite = std::numeric_limits<double>::infinity();
  const struct {
    const char* field;
    Value value;
    const char* reason;
  } kCases[] = {
      {"Name", "abcd", "too long"},
      {"Name", "a\xC3", "UTF-8"},
      {"Name", 5, "text is needed"},
      {"Name", Blob{"abc"}, "text is needed"},
      {"Small", 32768, "out of range"},
      {"Small", -32769, "out of range"},
      {"Whole", std::int64_t{1} << 31, "out of range"},
      {"Whole", 1.5, "whole number"},
      {"Whole", Money::fromRaw(1), "whole number"},
      {"Whole", "7", "whole number"},
      {"Whole", true, "whole number"},
      {"Real", nan, "not finite"},
      {"Real", -infinite, "not finite"},
      {"Real", (std::int64_t{1} << 53) + 1, "too many digits"},
      {"Real", "x", "number"},
      {"Amount", 1e15, "out of range"},
      {"Amount", nan, "out of range"},
      {"Amount", std::int64_t{1} << 60, "out of range"},
      {"Amount", Date(2024, 1, 1), "amount"},
      {"Flag", 1, "true or false"},
      {"Day", "2024-01-01", "date"},
      {"Day", DateTime{Date(2024, 1, 1), {1}}, "date"},
      {"Clock", TimeOfDay{TimeOfDay::kDay}, "out of range"},
      {"Clock", 0, "time"},
      {"Moment", DateTime{Date(2024, 1, 1), {-1}}, "out of range"},
      {"Moment", 3.5, "date and time"},
      {"Note", "text", "another way"},
  };
  const RecordLayout layout(things());
  for (const auto& [field, value, reason] : kCases) {
    RowBuffer buffer(layout);
    buffer.set(0, "äöü");
    const std::string before = buffer.encode();
    buffer.clearModified();
    try {
      buffer.set(things().fieldIndex(field), value);
      ADD_FAILURE() << field << " took " << value.toText();
    } catch (const StoreError& error) {
      EXPECT_EQ(error.code(), Code::badValue);
      EXPECT_NE(std::string(error.what()).find(field), std::string::npos) << error.what();
      EXPECT_NE(std::string(error.what()).find(reason), std::string::npos) << error.what();
    }
    EXPECT_FALSE(buffer.modified());
    EXPECT_EQ(buffer.encode(), before);
  }
}

TEST(RecordCodec, ValuesOfOtherKindsBecomeTheFieldsType) {
  const struct {
    const char* field;
    Value given, kept;
  } kCases[] = {
      {"Whole", 3.0, 3},
      {"Small", Money::fromRaw(-50000), -5},
      {"Real", 3, 3.0},
      {"Real", Money::fromRaw(12500), 1.25},
      {"Amount", 7, Money::fromRaw(70000)},
      {"Amount", 0.1, Money::fromRaw(1000)},
      {"Amount", 2.0 / 3, Money::fromRaw(6667)},
      {"Amount", 0.03125, Money::fromRaw(312)},
      {"Day", DateTime{Date(2024, 2, 29), {}}, Date(2024, 2, 29)},
      {"Moment", Date(1969, 12, 31), DateTime{Date(1969, 12, 31), {}}},
      {"Name", std::optional<std::string>{}, Value{}},
  };
  const RecordLayout layout(things());
  RowBuffer buffer(layout);
  for (const auto& [field, given, kept] : kCases) {
    const int i = things().fieldIndex(field);
    buffer.set(i, given);
    EXPECT_EQ(buffer.get(i), kept) << field << ": " << buffer.get(i).toText();
    EXPECT_EQ(buffer.get(i).kind(), kept.kind()) << field;
  }
  buffer.set(3, -0.0);
  EXPECT_FALSE(std::signbit(buffer.get(3).asDouble()));
}

}  // namespace
}  // namespace quillon::store
