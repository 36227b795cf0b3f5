#include "store/KeyCodec.h"

#include <gtest/gtest.h>

#include <limits>

#include "base/Text.h"
#include "store/Errors.h"
#include "support/RandomTable.h"

namespace quillon::store {
namespace {

using sim::SeededRandom;

template <typename T>
int order(const T& a, const T& b) {
  return a < b ? -1 : b < a ? 1 : 0;
}

// The order that an index is meant to give, from the values themselves.
int compareValues(const Value& a, const Value& b, bool folded) {
  if (a.isNull() || b.isNull()) return order(!a.isNull(), !b.isNull());
  switch (a.kind()) {
    case Value::Kind::boolean:
      return order(a.asBool(), b.asBool());
    case Value::Kind::whole:
      return order(a.asInt64(), b.asInt64());
    case Value::Kind::real:
      return order(a.asDouble(), b.asDouble());
    case Value::Kind::money:
      return order(a.asMoney(), b.asMoney());
    case Value::Kind::date:
      return order(a.asDate(), b.asDate());
    case Value::Kind::time:
      return order(a.asTime(), b.asTime());
    case Value::Kind::dateTime:
      return order(a.asDateTime(), b.asDateTime());
    default:
      return folded ? compareFolded(a.asText(), b.asText()) : a.asText().compare(b.asText());
  }
}

struct Entry {
  std::vector<Value> fields;  // of the index, in its order
  RowId row = 0;
  std::string key;
};

int compareLeading(const IndexDef& index, const Entry& a, const Entry& b, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    const int sign = compareValues(a.fields[i], b.fields[i], index.caseInsensitive);
    if (sign != 0) return index.parts[i].descending ? -sign : sign;
  }
  return 0;
}

std::vector<Entry> randomEntries(SeededRandom& random, const TableDef& table, const IndexDef& index,
                                 std::size_t count) {
  const RecordLayout layout(table);
  const KeyCodec codec(table, index);
  RowBuffer buffer(layout);
  std::vector<Entry> entries;
  for (std::size_t i = 0; i < count; ++i) {
    const auto values = sim::randomRow(random, table);
    for (int field = 0; field < layout.fieldCount(); ++field)
      buffer.set(field, values[static_cast<std::size_t>(field)]);
    Entry entry{{}, random.next() % (random.oneIn(2) ? 300 : std::uint64_t{1} << 40), "left over from before"};
    for (const IndexPart& part : index.parts) {
      // One leading field often as in the entry before, so that the later fields decide.
      const bool repeat = !entries.empty() && random.oneIn(2);
      if (repeat) buffer.set(part.field, entries.back().fields[entry.fields.size()]);
      entry.fields.push_back(buffer.get(part.field));
    }
    const std::string record = buffer.encode();
    codec.encode(RecordView(layout, record), entry.row, entry.key);
    entries.push_back(std::move(entry));
  }
  return entries;
}

bool isInside(const std::string& prefix, const std::string& key) {
  const std::string end = KeyCodec::successor(prefix);
  return key >= prefix && (end.empty() || key < end);
}

template <typename Check>
void forRandomIndexes(Check check) {
  int indexes = 0;
  for (std::uint64_t seed = 1; seed <= 150; ++seed) {
    SCOPED_TRACE(seed);
    SeededRandom random(seed);
    const TableDef table = sim::randomTable(random, 10);
    for (const IndexDef& index : table.indexes) {
      ++indexes;
      check(random, table, index, randomEntries(random, table, index, 25));
      if (testing::Test::HasFatalFailure()) return;
    }
  }
  EXPECT_GT(indexes, 150);
}

TEST(KeyCodec, BytesOrderAsTheFieldsAndThenTheRowIds) {
  forRandomIndexes([](SeededRandom&, const TableDef& table, const IndexDef& index, const std::vector<Entry>& entries) {
    for (const Entry& a : entries) {
      ASSERT_LE(a.key.size(), table.maxKeySize(index));
      ASSERT_EQ(KeyCodec::rowOf(a.key), a.row);
      for (const Entry& b : entries) {
        const int fields = compareLeading(index, a, b, a.fields.size());
        ASSERT_EQ(order(a.key, b.key), fields != 0 ? order(fields, 0) : order(a.row, b.row));
        ASSERT_EQ(KeyCodec::fieldsOf(a.key) == KeyCodec::fieldsOf(b.key), fields == 0);
      }
    }
  });
}

TEST(KeyCodec, PrefixesHoldExactlyTheRowsThatMatch) {
  forRandomIndexes([](SeededRandom&, const TableDef& table, const IndexDef& index, const std::vector<Entry>& entries) {
    const KeyCodec codec(table, index);
    std::string prefix;
    for (const Entry& wanted : entries) {
      for (std::size_t count = 0; count <= wanted.fields.size(); ++count) {
        codec.encodePrefix(std::span(wanted.fields).first(count), prefix);
        for (const Entry& other : entries) {
          const int side = compareLeading(index, other, wanted, count);
          ASSERT_EQ(isInside(prefix, other.key), side == 0);
          ASSERT_TRUE(side >= 0 || other.key < prefix);
        }
      }
    }
  });
}

TEST(KeyCodec, BeginningsHoldExactlyTheTextsThatBeginSo) {
  int matches = 0;
  forRandomIndexes([&](SeededRandom& random, const TableDef& table, const IndexDef& index,
                       const std::vector<Entry>& entries) {
    const KeyCodec codec(table, index);
    std::string prefix;
    for (const Entry& wanted : entries) {
      for (std::size_t last = 0; last < wanted.fields.size(); ++last) {
        if (wanted.fields[last].kind() != Value::Kind::text) continue;
        std::vector<Value> values(wanted.fields.begin(), wanted.fields.begin() + static_cast<std::ptrdiff_t>(last) + 1);
        const std::string beginning(firstCharacters(values.back().asText(), random.below(4)));
        values.back() = beginning;
        codec.encodePrefix(values, prefix, KeyCodec::LastText::beginning);
        for (const Entry& other : entries) {
          const std::string& text = other.fields[last].kind() == Value::Kind::text ? other.fields[last].asText() : "";
          const bool begins = !other.fields[last].isNull() &&
                              (index.caseInsensitive ? startsWithFolded(text, beginning) : text.starts_with(beginning));
          const bool match = begins && compareLeading(index, other, wanted, last) == 0;
          matches += match;
          ASSERT_EQ(isInside(prefix, other.key), match);
        }
      }
    }
  });
  EXPECT_GT(matches, 5000);
}

TEST(KeyCodec, SuccessorIsTheLeastAboveAllThatBeginSo) {
  SeededRandom random(3);
  const auto bytes = [&random] {
    std::string made;
    for (std::size_t left = random.below(5); left > 0; --left) made += "\x00\x01\x7F\x80\xFE\xFF"[random.below(6)];
    return made;
  };
  for (int trial = 0; trial < 50000; ++trial) {
    const std::string prefix = bytes();
    const std::string other = bytes();
    const std::string next = KeyCodec::successor(prefix);
    if (other.starts_with(prefix)) {
      ASSERT_TRUE(next.empty() || other < next);
    } else if (other > prefix) {
      ASSERT_TRUE(!next.empty() && other >= next);
    }
  }
  EXPECT_EQ(KeyCodec::successor("\xFF\xFF"), "");
}

const TableDef& parts() {
  static const TableDef kTable = TableDef::of("Parts",
                                              {{"Code", FieldType::string, 240},
                                               {"Count", FieldType::integer},
                                               {"Price", FieldType::currency},
                                               {"Weight", FieldType::floating}},
                                              {{"", "Count;Price"},
                                               {"ByCode", "Code", IndexOptions::caseInsensitive},
                                               {"ByWeight", "Weight;Count", {}, "Weight"}});
  return kTable;
}

TEST(KeyCodec, TheLongestKeyIsAsLongAsTheDefinitionSays) {
  const RecordLayout layout(parts());
  RowBuffer buffer(layout);
  std::string text;
  for (int i = 0; i < 240; ++i) text += "\U0001F600";
  buffer.set(0, text);
  const std::string record = buffer.encode();
  std::string key;
  KeyCodec(parts(), parts().indexes[1]).encode(RecordView(layout, record), 1, key);
  EXPECT_EQ(key.size(), parts().maxKeySize(parts().indexes[1]));
}

TEST(KeyCodec, SearchedValuesAreConvertedOnlyWhereNothingIsLost) {
  const KeyCodec primary(parts(), parts().indexes[0]);
  const KeyCodec byWeight(parts(), parts().indexes[2]);
  std::string key, same;
  primary.encodePrefix(std::vector<Value>{3, Money::fromRaw(20000)}, key);
  primary.encodePrefix(std::vector<Value>{3.0, 2}, same);
  EXPECT_EQ(key, same);
  const auto refuses = [&key](const KeyCodec& codec, std::vector<Value> values, KeyCodec::LastText last = {}) {
    try {
      codec.encodePrefix(values, key, last);
      return false;
    } catch (const StoreError& error) {
      return error.code() == Code::badValue;
    }
  };
  EXPECT_TRUE(refuses(primary, {3.5}));
  EXPECT_TRUE(refuses(primary, {"3"}));
  EXPECT_TRUE(refuses(primary, {3, 0.00003125}));
  EXPECT_TRUE(refuses(primary, {3, 4, 5}));
  EXPECT_TRUE(refuses(primary, {3, 4}, KeyCodec::LastText::beginning));
  EXPECT_TRUE(refuses(byWeight, {std::numeric_limits<double>::quiet_NaN()}));
}

TEST(KeyCodec, RowIdsEndAtFortyBits) {
  std::string key;
  KeyCodec::appendRow(key, (RowId{1} << 40) - 1);
  EXPECT_EQ(KeyCodec::rowOf(key), (RowId{1} << 40) - 1);
  EXPECT_THROW(KeyCodec::appendRow(key, RowId{1} << 40), StoreError);
  EXPECT_THROW(KeyCodec::rowOf("abcd"), StoreError);
}

}  // namespace
}  // namespace quillon::store
