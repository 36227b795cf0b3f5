// Workbooks of pages made by hand, read back by a program of its own.
#include "reports/WriteSpreadsheet.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <sstream>

#include "platform/Program.h"
#include "reports/TableFile.h"
#include "support/FullDisk.h"
#include "support/HandMadePages.h"
#include "support/Refusal.h"
#include "support/SeededRandom.h"
#include "support/TempFolder.h"
#include "support/TextFile.h"
#include "support/Trials.h"

namespace quillon::reports {
namespace {

using sim::HandMadePages;
using testing::HasSubstr;

class WriteSpreadsheet : public testing::Test {
 protected:
  std::string path() const { return folder_.path() + "/report.xlsx"; }
  std::map<std::string, std::string> read(const PreparedPages& pages) const {
    writeSpreadsheet(pages, path());
    return readFile();
  }
  // The lines of read_xlsx by their first words.
  std::map<std::string, std::string> readFile() const {
    const auto result = platform::run({"python3", QUILLON_READ_XLSX, path()}, std::chrono::minutes(5));
    EXPECT_TRUE(result && result->status == 0) << (result ? result->output : "no python3");
    std::map<std::string, std::string> lines;
    if (!result) return lines;
    std::istringstream all(result->output);
    for (std::string line; std::getline(all, line);)
      lines[line.substr(0, line.find('\t'))] = line.substr(line.find('\t') + 1);
    return lines;
  }

  sim::TempFolder folder_;
};

constexpr Style kRight = {Face::regular, Align::right};
constexpr Style kBold = {Face::bold};
constexpr Style kBoldRight = {Face::bold, Align::right};

Box at(int row, int x, int width) {
  return {static_cast<std::int16_t>(x), static_cast<std::int16_t>(500 + 160 * row), static_cast<std::int16_t>(width),
          150};
}

// A page of a list with a heading, three columns and a remark below each line.
void addPage(HandMadePages& made, int page, int lines, Money& sum) {
  made.newPage();
  made.add(Part::pageHeader, at(-1, 500, 3000), "not in the sheet");
  if (page == 1) made.add(Part::title, at(0, 500, 7500), "Titre", {Face::bold, Align::centre, 140});
  made.add(Part::columnHeader, at(2, 500, 900), "Date", kBold);
  if (page > 1) made.add(Part::groupHeader, at(2, 500, 3000), "Of a page before (continued)").again = true;
  made.add(Part::columnHeader, at(2, 1500, 2500), "Name", kBold);
  made.add(Part::columnHeader, at(2, 4500, 1000), "Amount", kBoldRight);
  for (int i = 0; i < lines; ++i) {
    const Money amount = Money::fromRaw(12'345'678 * (i % 2 ? -1 : 1) + i);
    sum += amount;
    // The last element first, and a pixel lower: places decide, not the order.
    Box box = at(3 + 2 * i, 4600, 900);
    box.y = static_cast<std::int16_t>(box.y + 10);
    made.add(Part::detail, box, "shown otherwise", amount, kRight);
    made.add(Part::detail, at(3 + 2 * i, 500, 800), "5.3.26", Date(2026, 3, 5));
    made.add(Part::detail, at(3 + 2 * i, 1500, 2000), "Ωμέγα…", store::Value("Ωμέγα & Söhne <b>"));
    made.add(Part::detail, at(4 + 2 * i, 800, 6000), "a remark below");
  }
  made.add(Part::pageFooter, at(60, 500, 3000), "Page");
}

TEST_F(WriteSpreadsheet, IsASheetByPlaces) {
  HandMadePages made;
  Money sum;
  made.pages.reportTitle = "GL: [History]/'26'";
  addPage(made, 1, 3, sum);
  addPage(made, 2, 3, sum);
  made.add(Part::summary, at(50, 500, 3500), "Total:", kBoldRight);
  made.add(Part::summary, at(50, 4500, 1000), "(x)", sum, kBoldRight);
  const auto cells = read(made.pages);
  const std::map<std::string, std::string> expected = {{"sheet", "GL   History  '26"},
                                                       {"_xlnm.Print_Titles", "'GL   History  ''26'!$2:$2"},
                                                       {"frozen", "2"},
                                                       {"A1", "text\tTitre\tGeneral\tb"},
                                                       {"A2", "text\tDate\tGeneral\tb"},
                                                       {"C2", "text\tAmount\tGeneral\tb"},
                                                       {"A3", "number\t46086.0\tdd mmm yy\t"},
                                                       {"B3", "text\tΩμέγα & Söhne <b>\tGeneral\t"},
                                                       {"C3", "number\t1234.5678\t#,##0.00##_);(#,##0.00##)\t"},
                                                       {"A4", "text\ta remark below\tGeneral\t"},
                                                       {"B15", "text\tTotal:\tGeneral\tb"},
                                                       {"C15", "number\t2469.1362\t#,##0.00##_);(#,##0.00##)\tb"}};
  for (const auto& [name, line] : expected) EXPECT_EQ(cells.contains(name) ? cells.at(name) : "none", line) << name;
  EXPECT_EQ(cells.size(), 4u + 1u + 3u + 6u * 4u + 2u);
  Money added;
  for (const auto& [name, line] : cells)
    if (name[0] == 'C' && name != "C15" && line.starts_with("number"))
      added += *Money::parse(line.substr(7, line.find('\t', 7) - 7));
  EXPECT_EQ(added, sum);
}

TEST_F(WriteSpreadsheet, OrATextHoldsRowsForOtherPrograms) {
  const std::vector<std::vector<store::Value>> rows = {
      {"1000", "Cash \"Ω\" & Co", 2026, Money::fromRaw(-15'002'525), Date(2026, 3, 5)},
      {"=A1", "two\r\nlines\tand tabs", {}, {}, {}}};
  const auto write = [&](const std::string& path) {
    TableFile file(path, "GL: Totals", {"GLAccount", "AccountName", "GLYear", "OpeningBal", "Date"});
    for (const auto& row : rows) file.add(row);
    file.finish();
  };
  write(path());
  const std::map<std::string, std::string> cells = {{"sheet", "GL  Totals"},
                                                    {"_xlnm.Print_Titles", "'GL  Totals'!$1:$1"},
                                                    {"frozen", "1"},
                                                    {"widths", "14\t14\t14\t14\t14"},
                                                    {"A1", "text\tGLAccount\tGeneral\tb"},
                                                    {"B1", "text\tAccountName\tGeneral\tb"},
                                                    {"C1", "text\tGLYear\tGeneral\tb"},
                                                    {"D1", "text\tOpeningBal\tGeneral\tb"},
                                                    {"E1", "text\tDate\tGeneral\tb"},
                                                    {"A2", "text\t1000\tGeneral\t"},
                                                    {"B2", "text\tCash \"Ω\" & Co\tGeneral\t"},
                                                    {"C2", "number\t2026.0\t0_)\t"},
                                                    {"D2", "number\t-1500.2525\t#,##0.00##_);(#,##0.00##)\t"},
                                                    {"E2", "number\t46086.0\tdd mmm yy\t"},
                                                    {"A3", "text\t=A1\tGeneral\t"},
                                                    {"B3", "text\ttwo\\r\\nlines\\tand tabs\tGeneral\t"}};
  EXPECT_EQ(readFile(), cells);
  const std::string text = path() + ".txt";
  write(text);
  EXPECT_EQ(sim::readFile(text),
            "GLAccount\tAccountName\tGLYear\tOpeningBal\tDate\r\n"
            "1000\t\"Cash \"\"Ω\"\" & Co\"\t2026\t-1500.2525\t2026-03-05\r\n"
            "=A1\t\"two\r\nlines\tand tabs\"\t\t\t\r\n");
  // A file that is not finished leaves the one that is there.
  for (const std::string& file : {path(), text}) {
    const std::string before = sim::readFile(file);
    { TableFile(file, "", {"other"}); }
    EXPECT_EQ(sim::readFile(file), before);
  }
}

TEST_F(WriteSpreadsheet, HoldsEachKindOfValue) {
  struct Case {
    store::Value value;
    std::string text, cell;
  };
  const std::vector<Case> cases = {
      {1234, "1234", "number\t1234.0\t0_)\t"},
      {-1234, "(1,234)", "number\t-1234.0\t#,##0_);(#,##0)\t"},
      {std::int64_t{9'007'199'254'740'993}, "9007199254740993", "text\t9007199254740993\tGeneral\t"},
      {0.125, "0.125", "number\t0.125\t#,##0.######_);(#,##0.######)\t"},
      {12.5, "12.5%", "number\t12.5\t0.00##\"%\"\t"},
      {1e308 * 10, "inf", "text\tinf\tGeneral\t"},
      {Date(1850, 1, 1), "1.1.1850", "text\t1.1.1850\tGeneral\t"},
      {DateTime{Date(2026, 3, 5), *TimeOfDay::make(12, 0)}, "noon", "number\t46086.5\tdd mmm yy hh:mm\t"},
      {*TimeOfDay::make(6, 0), "6:00", "number\t0.25\thh:mm\t"},
      {true, "Yes", "text\tYes\tGeneral\t"},
      {"0012", "0012", "text\t0012\tGeneral\t"},
      {{}, "=1+1", "text\t=1+1\tGeneral\t"},
      {{}, "_x0041_ a_b\r\x01\xFF ", "text\t_x0041_ a_b\\r\uFFFD\uFFFD \tGeneral\t"}};
  HandMadePages made;
  made.newPage();
  for (std::size_t i = 0; i < cases.size(); ++i)
    made.add(Part::detail, at(static_cast<int>(i), 500, 900), cases[i].text, cases[i].value);
  auto cells = read(made.pages);
  for (std::size_t i = 0; i < cases.size(); ++i) EXPECT_EQ(cells["A" + std::to_string(i + 1)], cases[i].cell);
}

// Texts of all kinds in all places: the workbook can be read, has no cell twice, and is the same again.
TEST_F(WriteSpreadsheet, TakesAnyPage) {
  const sim::Trials trials = sim::Trials::fromEnvironment();
  const std::uint64_t first = trials.seed.value_or(1), last = trials.seed ? first : first + trials.aim(10, 300);
  for (std::uint64_t seed = first; seed <= last; ++seed) {
    SCOPED_TRACE(sim::Trials::repeating(seed, "test_reports", "WriteSpreadsheet.TakesAnyPage"));
    sim::SeededRandom random(seed);
    HandMadePages made;
    for (std::size_t pages = random.below(4); pages > 0; --pages) {
      made.newPage();
      for (std::size_t i = random.below(60); i > 0; --i) {
        std::string text;
        for (std::size_t length = random.oneIn(40) ? 40'000 : random.below(20); length > 0; --length)
          text += static_cast<char>(random.next());
        const Box box = {static_cast<std::int16_t>(random.below(9000)), static_cast<std::int16_t>(random.below(11000)),
                         static_cast<std::int16_t>(random.below(4000)), static_cast<std::int16_t>(random.below(300))};
        made.add(static_cast<Part>(random.below(8)), box, text, {Face::regular, static_cast<Align>(random.below(3))});
      }
    }
    made.pages.reportTitle = std::string(random.below(40), '\'') + "\xF0\x9F\x99\x82]";
    read(made.pages);
    const std::string once = sim::readFile(path());
    writeSpreadsheet(made.pages, path());
    ASSERT_EQ(sim::readFile(path()), once);
  }
}

TEST_F(WriteSpreadsheet, LeavesTheOldFileWhereTheNewOneCannotBe) {
  HandMadePages made;
  sim::SeededRandom random(1);
  made.newPage();
  for (int i = 0; i < 40; ++i) made.add(Part::detail, at(i, 500, 900), std::to_string(random.next()));
  made.pages.pages.resize(1000, made.pages.pages[0]);
  sim::writeFile(path(), "old");
  {
    const sim::FullDisk full(10'000);
    EXPECT_THAT(sim::refusalOf([&] { writeSpreadsheet(made.pages, path()); }), HasSubstr(path()));
  }
  // One row more than a sheet takes.
  made.pages.pages.resize(1'048'576 / 40 + 1, made.pages.pages[0]);
  EXPECT_THAT(sim::refusalOf([&] { writeSpreadsheet(made.pages, path()); }), HasSubstr("1,048,576"));
  EXPECT_EQ(sim::readFile(path()), "old");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.path()), {}), 1);
}

}  // namespace
}  // namespace quillon::reports
