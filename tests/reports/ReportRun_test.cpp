// Reports made up at random, laid out, and read back from their pages.
//
// Method: a report of its own rows tells up to two groups and columns that wrap and add up. Its pages are read element
// by element, in reading order, and held against the rows: what must stand where does not depend on how the pages were
// filled.
#include "reports/ReportRun.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <set>

#include "form/App.h"
#include "form/Input.h"
#include "form/Screen.h"
#include "reports/Fonts.h"
#include "reports/Screens.h"
#include "shell/Session.h"
#include "store/schema/CreateCompany.h"
#include "support/ScriptedPerson.h"
#include "support/SeededRandom.h"
#include "support/SimDesktop.h"
#include "support/SimProcess.h"
#include "support/Trials.h"

namespace quillon::reports {
namespace {

using store::Value;

constexpr std::size_t kTall = 3000;  // letters that a page may be too small for

struct Row {
  int number = 0;
  std::vector<int> keys;  // of the groups, the outermost first
  std::string words = {};
  Value amount = {}, quantity = {};
  bool heads = false;  // what follows
};

struct Shape {
  int groups = 0;
  bool together[2] = {}, newPage[2] = {};
  bool landscape = false, printIfEmpty = true;
  int size = 90;
  std::vector<Row> rows = {};
};

std::string headingOf(const Row& row, int level) {
  return "Group " + std::to_string(level) + " of " + std::to_string(row.keys[static_cast<std::size_t>(level)]);
}

class RandomReport final : public Report {
 public:
  RandomReport(shell::Session& session, const Shape& shape) : Report(session), shape_(shape) { reportTitle = "Random"; }
  void tell(Bands& b, const form::Open&) override {
    b.landscape = shape_.landscape, b.printIfEmpty = shape_.printIfEmpty, b.size = shape_.size;
    for (int level = 0; level < shape_.groups; ++level) {
      Group& group = b.group([this, level] { return Value(row().keys[static_cast<std::size_t>(level)]); },
                             [this, level] { return headingOf(row(), level); });
      group.totalled([this, level] { return "Total " + headingOf(row(), level); });
      group.together = shape_.together[level], group.newPage = shape_.newPage[level];
      group.header.text({0, 0, 4000, 165}, [this, level] { return "below " + headingOf(row(), level); });
    }
    b.shown("No.", 900, [this] { return "#" + std::to_string(row().number); });
    b.shown("Words", 2000, [this] { return row().words; }).wrap();
    b.shownMoney("Amount", 1500, [this] { return row().amount; }).sum();
    b.quantity("Quantity", "Quantity", 1500).sum();
    b.columns.back().value = [this] { return row().quantity; };
    b.total = "Report Total:";
    b.look = [this] { return RowLook{.withNext = row().heads}; };
    // Sums of its own, by events of bands that show nothing.
    b.detail.after = [this] { counted_ += 1; };
    b.summary.before = [this] { EXPECT_EQ(counted_, shape_.rows.size()); };
  }
  bool first() override { return at_ = 0, !shape_.rows.empty(); }
  bool next() override { return ++at_ < shape_.rows.size(); }

 private:
  const Row& row() const { return shape_.rows.at(at_); }
  Shape shape_;
  std::size_t at_ = 0, counted_ = 0;
};

Shape randomShape(sim::SeededRandom& random) {
  const auto below = [&](int limit) { return static_cast<int>(random.below(static_cast<std::size_t>(limit))); };
  Shape shape;
  shape.groups = below(3);
  for (int level = 0; level < 2; ++level)
    shape.together[level] = random.oneIn(3), shape.newPage[level] = random.oneIn(6);
  shape.landscape = random.oneIn(3);
  shape.size = 70 + below(60);
  const int longest = random.oneIn(2) ? 10 : 45;  // words
  std::vector<int> keys = {1, 1};
  for (int i = 0, last = below(random.oneIn(4) ? 3 : 400); i < last; ++i) {
    if (random.oneIn(12)) keys = {keys[0] + 1, below(9)};
    if (random.oneIn(6)) ++keys[1];
    Row row{.number = i, .keys = keys};
    int words = random.oneIn(4) ? below(longest) : below(4);
    row.heads = words == 0;
    if (random.oneIn(300)) words = static_cast<int>(kTall) / 2 + below(9000);
    for (; words > 0; --words) row.words += (row.words.empty() ? "w" : " w") + std::to_string(below(100'000));
    if (!random.oneIn(5)) row.amount = Money::fromRaw(below(2'000'000'000) - 1'000'000'000);
    if (!random.oneIn(5)) row.quantity = (below(2'000'001) - 1'000'000) / 64.0;  // halves of a ten-thousandth, too
    shape.rows.push_back(std::move(row));
  }
  return shape;
}

// The pages of a report, read back.
class Reading {
 public:
  Reading(const PreparedPages& pages, const Shape& shape) : pages_(pages), shape_(shape) {
    for (number_ = 1; number_ <= pages.pageCount(); ++number_) readPage(pages.page(number_));
    EXPECT_EQ(row_, shape.rows.size()) << "rows are missing";
    if (row_ > 0 && words_ != shape.rows[row_ - 1].words) ADD_FAILURE() << "words of the last row: " << words_;
    checkTotals();
  }

 private:
  void readPage(const Page& page) {
    std::set<std::string> captions;
    std::vector<std::string> headings;
    Part last = Part::columnHeader;
    bool rowsHere = false;
    for (const Element& element : page.elements) {
      const std::string text = element.kind == Element::Kind::text ? std::string(page.textOf(element)) : "";
      EXPECT_GE(element.box.y, 500);
      EXPECT_LE(element.box.bottom(), pages_.height - 500) << text;
      EXPECT_LE(element.box.right(), pages_.width - 500) << text;
      if (element.part == Part::columnHeader) captions.insert(text);
      if (element.part == Part::pageFooter && text.starts_with("Page")) numbers_.push_back(text);
      if (element.part < Part::groupHeader || element.part > Part::summary) continue;
      const bool sum = element.part == Part::groupFooter || element.part == Part::summary;
      if (sum && row_ > 0) {
        EXPECT_TRUE(rowsHere) << "page " << number_ << " begins with a sum";
      }
      last = element.part;
      if (text.empty()) continue;
      if (element.part == Part::groupHeader) headings.push_back(text);
      if (sum) readSum(page, element, text);
      if (element.part != Part::detail) continue;
      if (text.starts_with('#'))
        beginRow(text, headings, !rowsHere);
      else if (!rowsHere)
        continueRow(headings);
      rowsHere = true;
      if (text.starts_with('w')) words_ += (words_.empty() ? "" : " ") + text;
    }
    EXPECT_TRUE(captions.contains("Amount")) << "page " << number_;
    EXPECT_NE(last, Part::groupHeader) << "the last on page " << number_;
    EXPECT_FALSE(last == Part::detail && row_ < shape_.rows.size() && shape_.rows[row_ - 1].heads &&
                 shape_.rows[row_ - 1].words.empty())
        << "page " << number_ << " ends with a row that heads others";
    EXPECT_EQ(numbers_.size(), static_cast<std::size_t>(number_));
    EXPECT_EQ(numbers_.back(), "Page " + std::to_string(number_) + " of " + std::to_string(pages_.pageCount()));
  }

  // On a page that begins in the middle of a row.
  void continueRow(std::vector<std::string>& headings) {
    ASSERT_GT(row_, 0u);
    const Row& row = shape_.rows[row_ - 1];
    EXPECT_GE(row.words.size(), kTall) << "page " << number_ << " begins in the middle of a row";
    std::vector<std::string> expected;
    for (int level = 0; level < shape_.groups; ++level) {
      expected.push_back(headingOf(row, level) + " (continued)");
      expected.push_back("below " + headingOf(row, level));
    }
    EXPECT_EQ(headings, expected) << "page " << number_;
    headings.clear();
  }

  void beginRow(const std::string& text, std::vector<std::string>& headings, bool firstOfPage) {
    ASSERT_LT(row_, shape_.rows.size());
    const Row& row = shape_.rows[row_];
    const Row* before = row_ > 0 ? &shape_.rows[row_ - 1] : nullptr;
    EXPECT_EQ(text, "#" + std::to_string(row.number));
    if (before != nullptr) {
      EXPECT_EQ(words_, before->words);
    }
    words_.clear();
    std::vector<std::string> expected;
    bool same = before != nullptr, fresh = false;
    for (int level = 0; level < shape_.groups; ++level) {
      same = same && row.keys[static_cast<std::size_t>(level)] == before->keys[static_cast<std::size_t>(level)];
      fresh = fresh || (!same && shape_.newPage[level]);
      if (same && !firstOfPage) continue;
      expected.push_back(headingOf(row, level) + (same ? " (continued)" : ""));
      expected.push_back("below " + headingOf(row, level));
    }
    EXPECT_EQ(headings, expected) << "page " << number_ << ", row " << text;
    EXPECT_TRUE(!fresh || firstOfPage) << "row " << text << " begins no page";
    headings.clear();
    ++row_;
  }

  void readSum(const Page& page, const Element& element, const std::string& text) {
    if (page.valueOf(element).isNull())
      sums_.push_back(text + ":");
    else
      sums_.back() += " " + page.valueOf(element).asMoney().toText();
  }

  // Worked out from the rows alone: each group when it ends, the innermost first.
  void checkTotals() const {
    const auto tenThousandths = [](const Value& quantity) {
      return quantity.isNull() ? Money() : Money::fromRaw(std::llrint(quantity.asDouble() * 10'000));
    };
    const auto line = [&](const std::string& words, std::size_t from, std::size_t to) {
      Money amounts, quantities;
      for (std::size_t i = from; i < to; ++i) {
        amounts += shape_.rows[i].amount.asMoney();
        quantities += tenThousandths(shape_.rows[i].quantity);
      }
      return words + ": " + amounts.toText() + " " + quantities.toText();
    };
    std::vector<std::string> expected;
    const auto& rows = shape_.rows;
    const auto sameTo = [&](std::size_t a, std::size_t b, int level) {
      return std::equal(rows[a].keys.begin(), rows[a].keys.begin() + level + 1, rows[b].keys.begin());
    };
    for (std::size_t end = 1; end <= rows.size(); ++end)
      for (int level = shape_.groups; level-- > 0;) {
        if (end < rows.size() && sameTo(end, end - 1, level)) continue;
        std::size_t from = end - 1;
        while (from > 0 && sameTo(from - 1, end - 1, level)) --from;
        expected.push_back(line("Total " + headingOf(rows[from], level), from, end));
      }
    expected.push_back(line("Report Total:", 0, rows.size()));
    EXPECT_EQ(sums_, expected);
  }

  const PreparedPages& pages_;
  const Shape& shape_;
  int number_ = 1;
  std::size_t row_ = 0;
  std::string words_;
  std::vector<std::string> sums_, numbers_;
};

class ReportRuns : public testing::Test {
 protected:
  ReportRuns() {
    disk_.process()->makeFolder(sim::kSharedFolder);
    sim::SimProcess process(disk_, clock_, {});
    process.open();
    store::createCompanyTables(process.database());
  }
  ~ReportRuns() override { session_->detach(); }
  // A program begun with that paper in the printer.
  shell::Session& on(platform::Paper paper) {
    if (session_) session_->detach();
    desktop_.given().paper = paper;
    session_ =
        std::make_unique<shell::Session>(store::Environment{*files_, clock_, "BEN", "PC", 99}, person_, desktop_);
    reports::registerScreens(*session_);
    session_->attach(sim::kSharedFolder);
    return *session_;
  }
  std::shared_ptr<PreparedPages> pagesOf(const Shape& shape) {
    ReportRun run(*session_, std::make_unique<RandomReport>(*session_, shape), {});
    for (int before = 0; run.step(); before = run.pages()->pageCount()) EXPECT_GT(run.pages()->pageCount(), before);
    EXPECT_FALSE(run.step());
    return std::static_pointer_cast<PreparedPages>(run.pages());
  }

  sim::SimDisk disk_;
  sim::SimClock clock_;
  std::unique_ptr<store::FileSystem> files_ = disk_.process();
  sim::ScriptedPerson person_;
  sim::SimDesktop desktop_;
  std::unique_ptr<shell::Session> session_;
};

TEST_F(ReportRuns, LoseNoRowAndKeepTogetherWhatBelongsTogether) {
  const sim::Trials trials = sim::Trials::fromEnvironment();
  const std::uint64_t first = trials.seed.value_or(1), last = trials.seed ? first : trials.aim(300, 5000);
  on(platform::Paper::other);
  for (std::uint64_t seed = first; seed <= last && !HasFailure(); ++seed) {
    SCOPED_TRACE(sim::Trials::repeating(seed, "test_reports", "ReportRuns.Lose*"));
    sim::SeededRandom random(seed);
    const Shape shape = randomShape(random);
    const auto pages = pagesOf(shape);
    EXPECT_EQ(pages->landscape(), shape.landscape);
    Reading(*pages, shape);
    std::size_t groups = 0;
    for (const Bookmark& mark : pages->bookmarks) {
      EXPECT_NE(pages->pageText(mark.page).find(mark.text), std::string::npos);
      groups += mark.level == 0;
    }
    std::set<int> keys;
    for (const Row& row : shape.rows) keys.insert(row.keys[0]);
    EXPECT_EQ(groups, shape.groups > 0 ? keys.size() : 0);
  }
}

// A group that fits on a page is not parted, one that does not fit leaves no page half empty.
TEST_F(ReportRuns, KeepGroupsOnAPage) {
  on(platform::Paper::other);
  Shape shape{.groups = 1, .together = {true}};
  for (const int rows : {30, 30, 200, 5, 20, 40})
    for (int i = 0; i < rows; ++i)
      shape.rows.push_back({.number = static_cast<int>(shape.rows.size()),
                            .keys = {rows * 100 + static_cast<int>(shape.rows.size() / 30) * (rows == 30), 0}});
  const auto pages = pagesOf(shape);
  Reading(*pages, shape);
  std::map<int, std::vector<int>> rowsOnPages;  // of each group
  std::size_t row = 0;
  for (int number = 1; number <= pages->pageCount(); ++number) {
    const Page& page = pages->page(number);
    std::map<int, int> here;
    for (const Element& element : page.elements)
      if (element.part == Part::detail && page.textOf(element).starts_with('#')) ++here[shape.rows[row++].keys[0]];
    for (const auto& [key, count] : here) rowsOnPages[key].push_back(count);
  }
  for (const auto& [key, counts] : rowsOnPages) {
    if (key != 20'000) {
      EXPECT_EQ(counts.size(), 1u) << key;
      continue;
    }
    for (std::size_t i = 0; i + 1 < counts.size(); ++i) EXPECT_GT(counts[i], 45) << "page " << i;
  }
}

TEST_F(ReportRuns, TakeThePrintersPaper) {
  const struct {
    platform::Paper paper;
    bool landscape;
    int width, height;
  } cases[] = {{platform::Paper::other, false, 8500, 11000},
               {platform::Paper::other, true, 11000, 8500},
               {platform::Paper::a4, false, 8268, 11693},
               {platform::Paper::a4, true, 11693, 8268}};
  for (const auto& some : cases) {
    on(some.paper);
    const auto pages = pagesOf({.landscape = some.landscape});
    EXPECT_EQ(pages->width, some.width);
    EXPECT_EQ(pages->height, some.height);
    EXPECT_EQ(pages->pageCount(), 1);
    EXPECT_NE(pages->pageText(1).find("Random"), std::string::npos);
    EXPECT_NE(pages->pageText(1).find("Amount"), std::string::npos);
    const auto none = pagesOf({.landscape = some.landscape, .printIfEmpty = false});
    EXPECT_TRUE(none->complete);
    EXPECT_EQ(none->pageCount(), 0);
  }
}

TEST_F(ReportRuns, CutTextsAndShrinkFigures) {
  on(platform::Paper::other);
  const std::string text = "A name of an account that is far too long for Ωμέγα & Söhne";
  const std::string figure = "(922,337,203,685,477.58)";
  for (const int width : {300, 700, 1200, 2000, 4000}) {
    Strip strip;
    const Box box{0, 0, static_cast<std::int16_t>(width), 165};
    const Element cut = strip.text(box, {}, text);
    const Element shrunk = strip.text(box, {}, figure, Money::fromRaw(-9'223'372'036'854'775'800));
    const auto widthOf = [&](const Element& element) {
      return Font::of(element.style.face).width(strip.content.textOf(element), element.style.size);
    };
    EXPECT_LE(widthOf(cut), width);
    EXPECT_EQ(cut.style.size, Style().size);
    const std::string shown(strip.content.textOf(cut));
    if (shown != text) {
      EXPECT_TRUE(shown.ends_with("…") && text.starts_with(shown.substr(0, shown.size() - 3))) << shown;
      EXPECT_EQ(strip.content.valueOf(cut), Value(text));  // whole for a spreadsheet
    }
    EXPECT_EQ(strip.content.textOf(shrunk), figure);
    EXPECT_TRUE(widthOf(shrunk) <= width || shrunk.style.size == 50) << shrunk.style.size;
  }
}

TEST_F(ReportRuns, ArePrintedAndWrittenWholeOrNotAtAll) {
  on(platform::Paper::other);
  Shape shape;
  for (int i = 0; i < 200; ++i) shape.rows.push_back({.number = i, .keys = {0, 0}});
  ReportRun run(*session_, std::make_unique<RandomReport>(*session_, shape), {});
  run.step();
  form::Screen& screen = session_->app().open("TfrmPreview", {.draft = run.pages()});
  form::Input input(session_->app());
  for (const char* button : {"btnPrint", "btnPDF", "btnExcel"}) {
    EXPECT_FALSE(input.click(screen, *screen.find(button)).ok);
    EXPECT_EQ(person_.takeHeard(), "error: Not all pages of the report are there yet");
  }
  while (run.step()) {
  }
  EXPECT_TRUE(input.click(screen, *screen.find("btnPrint")).ok);
  EXPECT_EQ(desktop_.printed.size(), 1u);
  // What no file name may have is a blank in the name that is offered.
  std::static_pointer_cast<PreparedPages>(run.pages())->reportTitle = "Jan: \"A/B\" <1|2>?*\\";
  person_.texts.emplace_back(std::nullopt);
  EXPECT_FALSE(input.click(screen, *screen.find("btnPDF")).ok);
  EXPECT_EQ(person_.fileAsked.name, "Jan   A B   1 2    ");
}

}  // namespace
}  // namespace quillon::reports
