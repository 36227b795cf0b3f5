// Runs the scripts of tests/sql, each in a folder of its own.
//
// A script is lines. A statement begins on a line of its own and ends with a line that ends with ';', or before a blank
// line or a line of what is expected; the place of an error counts from its first character. Behind it stand, as far as
// they apply:
//   # NAME|NAME        the names of the result's columns; without this line they are not looked at
//   = CELL|CELL        a row of the result; all rows, in this order
//   + COUNT            how many rows were changed
//   ! CODE L:C TEXT    the statement fails with this code, there (0:0: without a place), and its message holds TEXT
// A cell is null, true, 12, ~1.5 (floating), $1.5 (money), 'text', 2012-03-31, 14:05:00, or x'bytes' of a blob.
// Between statements may stand
//   @ company          makes the tables of a company in the folder
//   @ let NAME VALUE   the parameter of the statements that follow; VALUE is an expression
//   @ let              forgets the parameters
//   -- words
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "store/Database.h"
#include "store/Errors.h"
#include "store/Query.h"
#include "store/Session.h"
#include "store/schema/CreateCompany.h"
#include "support/SimClock.h"
#include "support/SimDisk.h"

namespace quillon::store {
namespace {

std::string shown(const Value& value) {
  std::array<char, 40> buffer;
  switch (value.kind()) {
    case Value::Kind::real:
      return "~" + std::string(buffer.data(), std::to_chars(buffer.data(), buffer.end(), value.asDouble()).ptr);
    case Value::Kind::money:
      return "$" + value.asMoney().toText();
    case Value::Kind::boolean:
      return value.asBool() ? "true" : "false";
    case Value::Kind::text:
      return "'" + value.asText() + "'";
    case Value::Kind::blob:
      return "x'" + value.asBlob().bytes + "'";
    default:
      return value.toText();
  }
}

// Lines as a script has them.
using Lines = std::vector<std::string>;

class Script {
 public:
  explicit Script(const std::filesystem::path& path) : path_(path), in_(path) {
    files_->makeFolder("/sql");
    database_ = std::make_unique<Database>(session_, "/sql");
  }

  void run() {
    std::string line;
    while (std::getline(in_, line)) {
      ++line_;
      const bool expects = !line.empty() && std::string_view("#=+!").find(line[0]) != std::string_view::npos;
      if (expects) {
        expected_.push_back(line);
        continue;
      }
      if (!expected_.empty() || line.empty() || line[0] == '@') finish();
      if (line.empty() || (text_.empty() && line.starts_with("--"))) continue;
      if (line[0] == '@') {
        direct(line.substr(2));
        continue;
      }
      if (text_.ends_with(';')) finish();
      if (text_.empty()) start_ = line_;
      text_ += (text_.empty() ? "" : "\n") + line;
    }
    finish();
    ASSERT_TRUE(in_.eof());
    EXPECT_GT(statements_, 0);
  }

 private:
  void direct(const std::string& words) {
    if (words == "company") return createCompanyTables(*database_);
    if (words == "let") return parameters_.clear();
    const auto space = words.find(' ', 4);
    ASSERT_TRUE(words.starts_with("let ") && space != std::string::npos) << path_ << ":" << line_;
    Query query(*database_, "SELECT " + words.substr(space + 1));
    query.open();
    parameters_[words.substr(4, space - 4)] = query.field(0).value();
  }

  void finish() {
    if (text_.empty()) {
      EXPECT_TRUE(expected_.empty()) << path_ << ":" << line_ << ": expected of nothing";
      expected_.clear();
      return;
    }
    ++statements_;
    const Lines got = outcome();
    if (!agrees(got)) {
      std::string all;
      for (const std::string& line : got) all += line + "\n";
      ADD_FAILURE() << path_.string() << ":" << start_ << ": " << text_ << "\ngave\n" << all;
    }
    text_.clear();
    expected_.clear();
  }

  bool expects(char kind) const {
    return std::ranges::any_of(expected_, [kind](const std::string& line) { return line[0] == kind; });
  }

  Lines outcome() {
    Lines lines;
    try {
      Query query(*database_, text_);
      for (const auto& [name, value] : parameters_) query.setParameter(name, value);
      if (!query.givesRows()) {
        const std::uint64_t changed = query.execute();
        if (expects('+')) lines.push_back("+ " + std::to_string(changed));
        return lines;
      }
      query.open();
      std::string names;
      for (int i = 0; i < query.fieldCount(); ++i) names += (i ? "|" : "") + query.field(i).definition().name;
      if (expects('#')) lines.push_back("# " + names);
      for (query.first(); !query.eof(); query.next()) {
        std::string row;
        for (int i = 0; i < query.fieldCount(); ++i) row += (i ? "|" : "") + shown(query.field(i).value());
        lines.push_back("= " + row);
      }
    } catch (const StatementError& error) {
      return {"! " + std::to_string(error.number()) + " " + std::to_string(error.line()) + ":" +
              std::to_string(error.column()) + " " + error.what()};
    } catch (const StoreError& error) {
      return {"! " + std::to_string(error.number()) + " 0:0 " + error.what()};
    } catch (const Error& error) {
      return {std::string("! 0 0:0 ") + error.what()};
    }
    return lines;
  }

  // An error's text may be told in part.
  bool agrees(const Lines& got) const {
    if (expected_.size() != 1 || expected_[0][0] != '!') return got == expected_;
    if (got.size() != 1 || got[0][0] != '!') return false;
    const std::string& wanted = expected_[0];
    const auto behind = [](const std::string& line) { return std::min(line.find(' ', line.find(':')), line.size()); };
    return got[0].substr(0, behind(got[0])) == wanted.substr(0, behind(wanted)) &&
           got[0].find(wanted.substr(std::min(behind(wanted) + 1, wanted.size()))) != std::string::npos;
  }

  std::filesystem::path path_;
  std::ifstream in_;
  int line_ = 0, start_ = 0, statements_ = 0;
  std::string text_;
  Lines expected_;
  std::map<std::string, Value> parameters_;
  sim::SimDisk disk_;
  sim::SimClock clock_;
  std::unique_ptr<FileSystem> files_ = disk_.process();
  Session session_{{*files_, clock_, "ANNA", "PC", 1}};
  std::unique_ptr<Database> database_;
};

std::vector<std::string> scriptNames() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(QUILLON_SCRIPTS))
    if (entry.path().extension() == ".sql") names.push_back(entry.path().stem().string());
  std::ranges::sort(names);
  return names;
}

class ScriptTest : public testing::TestWithParam<std::string> {};

TEST_P(ScriptTest, GivesWhatItSays) { Script(std::filesystem::path(QUILLON_SCRIPTS) / (GetParam() + ".sql")).run(); }

INSTANTIATE_TEST_SUITE_P(Sql, ScriptTest, testing::ValuesIn(scriptNames()),
                         [](const auto& script) { return script.param; });

}  // namespace
}  // namespace quillon::store
