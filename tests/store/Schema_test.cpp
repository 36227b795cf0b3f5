#include "store/Schema.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "store/Errors.h"
#include "store/Value.h"
#include "support/RandomTable.h"

namespace quillon::store {
namespace {

using sim::SeededRandom;

TableDef decoded(const std::string& text) {
  // Without room to spare, so that the sanitizer sees a step outside.
  const auto bytes = std::as_bytes(std::span(text));
  const std::vector<std::byte> exact(bytes.begin(), bytes.end());
  return TableDef::decode(exact);
}

TEST(Schema, DefinitionsComeBackFromTheirBytes) {
  SeededRandom random(1);
  for (int trial = 0; trial < 500; ++trial) {
    const TableDef table = sim::randomTable(random, 60);
    ASSERT_EQ(decoded(table.encode()), table);
  }
}

// Method: good bytes with a few changed, cut or put in. They are refused, or they are what the decoded table encodes
// to.
TEST(Schema, DamagedBytesAreRefusedOrMeanWhatTheySay) {
  SeededRandom random(2);
  int refused = 0;
  for (int trial = 0; trial < 20000; ++trial) {
    std::string bytes = sim::randomTable(random, 8).encode();
    for (std::size_t changes = 1 + random.below(3); changes > 0; --changes) {
      const std::size_t at = random.below(bytes.size() + 1);
      switch (random.below(4)) {
        case 0:
          bytes.resize(at);
          break;
        case 1:
          bytes.insert(at, 1 + random.below(3), static_cast<char>(random.next()));
          break;
        default:
          if (at < bytes.size())
            bytes[at] = static_cast<char>(random.oneIn(2) ? bytes[at] ^ 1 << random.below(8) : random.next());
      }
    }
    try {
      ASSERT_EQ(decoded(bytes).encode(), bytes);
    } catch (const StoreError& error) {
      ASSERT_EQ(error.code(), Code::headerDamaged);
      ++refused;
    }
  }
  EXPECT_GT(refused, 5000);
}

TEST(Schema, NamesAreFoundInAnyCase) {
  const TableDef table = TableDef::of(
      "JV", {{"GLYear", FieldType::smallint}, {"Größe", FieldType::string, 9}, {"JVID", FieldType::autoInc}},
      {{"", "jvid", IndexOptions::unique},
       {"ByYear", "GLYEAR; größe ;JVID", IndexOptions::caseInsensitive, "glyear;JVID"}});
  EXPECT_EQ(table.fieldIndex("GRÖSSE"), -1);
  EXPECT_EQ(table.fieldIndex("GRÖßE"), 1);
  EXPECT_EQ(table.indexPosition("BYYEAR"), 1);
  EXPECT_EQ(table.indexPosition(""), 0);
  EXPECT_EQ(table.indexPosition("x"), -1);
  EXPECT_EQ(table.indexes[0], (IndexDef{"", {{2, false}}, true, false}));
  EXPECT_EQ(table.indexes[1], (IndexDef{"ByYear", {{0, true}, {1, false}, {2, true}}, false, true}));
}

TEST(Schema, BadDefinitionsAreRefusedWithTheirReason) {
  const TableDef good = TableDef::of(
      "Good", {{"Code", FieldType::string, 10}, {"ID", FieldType::autoInc}, {"Note", FieldType::memo}}, {{"", "ID"}});
  const struct {
    const char* reason;
    std::function<void(TableDef&)> spoil;
  } kCases[] = {
      {"no fields", [](TableDef& t) { t.fields.clear(); }},
      {"more than 500",
       [](TableDef& t) {
         while (t.fields.size() < 501) t.fields.push_back({"F" + std::to_string(t.fields.size()), FieldType::date});
       }},
      {"more than 64",
       [](TableDef& t) {
         while (t.indexes.size() < 65) t.indexes.push_back({"I" + std::to_string(t.indexes.size()), {{1}}});
       }},
      {"field CODE stands",
       [](TableDef& t) {
         t.fields.push_back({"CODE", FieldType::date});
       }},
      {"the size 0", [](TableDef& t) { t.fields[0].size = 0; }},
      {"the size 256", [](TableDef& t) { t.fields[0].size = 256; }},
      {"the size 4", [](TableDef& t) { t.fields[1].size = 4; }},
      {"AutoInc",
       [](TableDef& t) {
         t.fields.push_back({"Second", FieldType::autoInc});
       }},
      {"unknown type", [](TableDef& t) { t.fields[1].type = static_cast<FieldType>(15); }},
      {"unknown field", [](TableDef& t) { t.indexes[0].parts[0].field = 3; }},
      {"unknown field", [](TableDef& t) { t.indexes[0].parts[0].field = -1; }},
      {"over the field Note", [](TableDef& t) { t.indexes[0].parts[0].field = 2; }},
      {"field ID twice",
       [](TableDef& t) {
         t.indexes[0].parts.push_back({1, true});
       }},
      {"has no fields", [](TableDef& t) { t.indexes[0].parts.clear(); }},
      {"two primary", [](TableDef& t) { t.indexes.push_back(t.indexes[0]); }},
      {"index bycode stands",
       [](TableDef& t) {
         t.indexes.push_back({"ByCode", {{0}}}), t.indexes.push_back({"bycode", {{0}}});
       }},
      {"longer than 1000", [](TableDef& t) { t.fields[0].size = 250, t.indexes[0].parts = {{0}}; }},
      {"no name for a table", [](TableDef& t) { t.name = "../Good"; }},
      {"no name for a table", [](TableDef& t) { t.name = ""; }},
      {"no name for a table", [](TableDef& t) { t.name = "Good.DAT"; }},
      {"no name for a field", [](TableDef& t) { t.fields[0].name = " Code"; }},
      {"no name for a field", [](TableDef& t) { t.fields[0].name = "Co\xFF"; }},
      {"no name for a field", [](TableDef& t) { t.fields[0].name = std::string(241, 'x'); }},
      {"no name for an index", [](TableDef& t) { t.indexes[0].name = "a/b"; }},
  };
  for (const auto& [reason, spoil] : kCases) {
    TableDef table = good;
    spoil(table);
    try {
      table.validate();
      ADD_FAILURE() << "accepted: " << reason;
    } catch (const StoreError& error) {
      EXPECT_EQ(error.code(), Code::badDefinition);
      EXPECT_NE(std::string(error.what()).find(reason), std::string::npos) << error.what();
    }
  }
  EXPECT_THROW(IndexDef::of(good, {"X", "Code;Nope"}), StoreError);
  EXPECT_THROW(IndexDef::of(good, {"X", "Code", {}, "ID"}), StoreError);
}

TEST(Value, GivesOtherKindsOnlyWhereNothingIsLost) {
  EXPECT_EQ(Value{}.asText() + std::to_string(Value{}.asInt()), "0");
  EXPECT_EQ(Value{}.dateOrNone(), std::nullopt);
  EXPECT_THROW(Value{}.asDate(), StoreError);
  EXPECT_EQ(Value(4.0).asInt(), 4);
  EXPECT_THROW(Value(4.5).asInt(), StoreError);
  EXPECT_THROW(Value(9223372036854775808.0).asInt64(), StoreError);
  EXPECT_EQ(Value(-9223372036854775808.0).asInt64(), std::numeric_limits<std::int64_t>::min());
  EXPECT_THROW(Value(std::int64_t{1} << 40).asInt(), StoreError);
  EXPECT_EQ(Value(0.07).asMoney(), Money::fromRaw(700));
  EXPECT_THROW(Value(1.0 / 3).asMoney(), StoreError);
  EXPECT_THROW(Value(1e300).asMoney(), StoreError);
  EXPECT_THROW(Value(std::int64_t{1} << 60).asMoney(), StoreError);
  EXPECT_THROW(Value("1").asInt(), StoreError);
  EXPECT_THROW(Value(1).asText(), StoreError);
  EXPECT_THROW(Value(std::uint64_t{1} << 63), StoreError);
  EXPECT_EQ(Value("x").kind(), Value::Kind::text);
}

TEST(Value, NumbersAreEqualAcrossKinds) {
  EXPECT_EQ(Value{}, Value{});
  EXPECT_NE(Value{}, Value(0));
  EXPECT_NE(Value(""), Value{});
  EXPECT_NE(Value(true), Value(1));
  EXPECT_EQ(Value(2), Value(Money::fromRaw(20000)));
  EXPECT_EQ(Value(Money::fromRaw(1000)), Value(0.1));
  EXPECT_NE(Value(Money::fromRaw(1)), Value(0));
  EXPECT_NE(Value((std::int64_t{1} << 53) + 1), Value(9007199254740992.0));
  EXPECT_NE(Value(std::int64_t{1} << 62), Value(Money{}));
}

}  // namespace
}  // namespace quillon::store
