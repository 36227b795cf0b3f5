// PDFs of pages made by hand, read by the programs that people's readers are made of: qpdf checks the file's form, and
// pdftotext finds what a person would search for.
#include "reports/WritePdf.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>

#include "base/Errors.h"
#include "platform/Program.h"
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
using testing::Not;
using Kind = Element::Kind;

// Two pixels, one of them half transparent.
constexpr std::string_view kPng =
    "89504e470d0a1a0a0000000d4948445200000002000000010806000000f4227f8a0000000e49444154789c63f8cfc000420d000f7a037e77"
    "e97f970000000049454e44ae426082";
// 16 by 8 in grey.
constexpr std::string_view kJpeg =
    "ffd8ffdb004300010101010101010101010101010101010101010101010101010101010101010101010101010101010101010101010101"
    "01010101010101010101010101010101ffc0000b080008001001011100ffc40014000100000000000000000000000000000000ffc40014"
    "100100000000000000000000000000000000ffda0008010100003f000fffd9";

std::string bytesOf(std::string_view hex) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
    bytes += static_cast<char>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16));
  return bytes;
}

class WritePdf : public testing::Test {
 protected:
  std::string path(const std::string& name = "report.pdf") const { return folder_.path() + "/" + name; }
  // What a program says of the report, which must not complain.
  static std::string ask(const platform::CommandLine& command) {
    const auto result = platform::run(command, std::chrono::minutes(2));
    EXPECT_TRUE(result) << command[0] << " is missing";
    if (!result) return {};
    EXPECT_EQ(result->status, 0) << command[0] << ": " << result->output;
    return result->output;
  }
  // Of a file that a strict reader takes.
  std::string textOf(const PreparedPages& pages) const {
    writePdf(pages, path());
    EXPECT_THAT(ask({"qpdf", "--check", path()}), HasSubstr("No syntax or stream encoding errors"));
    return ask({"pdftotext", "-raw", path(), "-"});
  }
  // The objects as text, streams not compressed.
  std::string objects() const { return ask({"qpdf", "--qdf", "--object-streams=disable", path(), "-"}); }

  sim::TempFolder folder_;
};

Box line(int number, int x = 500, int width = 3000) {
  return {static_cast<std::int16_t>(x), static_cast<std::int16_t>(500 + 160 * number), static_cast<std::int16_t>(width),
          150};
}

TEST_F(WritePdf, HoldsTextInReadingOrderInEveryFaceAndAlphabet) {
  HandMadePages made;
  made.newPage();
  made.add(Part::title, line(0), "General Ledger (draft) \\ 100%", {Face::bold, Align::centre, 160});
  made.add(Part::detail, line(1), "Émile Straße", {Face::italic});
  made.add(Part::detail, line(1, 4000), "1,234.50", {Face::regular, Align::right});
  made.add(Part::detail, line(2), "Łódź Győr Ωμέγα Жуков", {Face::boldItalic, Align::left, 90, true});
  made.newPage();
  made.add(Part::detail, line(0), "second page");
  const std::string text = textOf(made.pages);
  EXPECT_EQ(text, "General Ledger (draft) \\ 100%\nÉmile Straße 1,234.50\nŁódź Győr Ωμέγα Жуков\n\fsecond page\n\f");
  // Where a reader finds it: 1/1000 inch are 0.072 points.
  const std::string places = ask({"pdftotext", "-bbox", path(), "-"});
  EXPECT_THAT(places, HasSubstr("xMax=\"504.00"));
  EXPECT_THAT(places, HasSubstr("xMin=\"36.000000\""));
  const std::string fonts = ask({"pdffonts", path()});
  for (const char* face : {"Sans ", "Sans-Bold ", "Sans-Italic", "Sans-BoldItalic"})
    EXPECT_THAT(fonts, HasSubstr(face));
  EXPECT_THAT(fonts, HasSubstr("yes yes yes"));  // embedded, a subset, with its text
}

TEST_F(WritePdf, TellsTitleAuthorLanguageMomentAndSize) {
  HandMadePages made;
  made.pages.reportTitle = "Año (2026): Ж";
  made.pages.author = "Łucja & Co";
  made.pages.width = 11693, made.pages.height = 8268;
  made.newPage();
  textOf(made.pages);
  const std::string told = ask({"env", "TZ=UTC", "pdfinfo", path()});
  for (const char* part : {"Año (2026): Ж", "Łucja & Co", "Mar  5 12:00:00 2026", "841.896 x 595.296", "1.7"})
    EXPECT_THAT(told, HasSubstr(part));
  EXPECT_THAT(objects(), HasSubstr("/Lang"));
}

TEST_F(WritePdf, LeadsByBookmarksAndAddresses) {
  HandMadePages made;
  for (int page = 0; page < 150; ++page) made.newPage();
  made.add(Part::detail, line(0), "Mail a.b+c@books.example. or no@address, x@");
  // A level that skips one, a page that is not there, a negative level.
  made.pages.bookmarks = {
      {0, 1, 500, "Assets"}, {2, 2, 700, "Bank (Ω)"}, {1, 140, 0, "Cash"}, {0, 151, 0, "none"}, {-1, 150, 0, "End"}};
  textOf(made.pages);
  const std::string all = objects();
  EXPECT_THAT(all, HasSubstr("(mailto:a.b+c@books.example)"));
  EXPECT_THAT(all, Not(HasSubstr("no@address")));
  EXPECT_THAT(all, HasSubstr("/Count 2"));
  EXPECT_THAT(all, HasSubstr("/Count -2"));
  EXPECT_THAT(all, Not(HasSubstr("(none)")));
  EXPECT_THAT(ask({"pdfinfo", "-dests", path()}), HasSubstr("Page"));
}

TEST_F(WritePdf, DrawsShapesAndPicturesAndLeavesOutWhatIsNone) {
  HandMadePages made;
  const std::string png = bytesOf(kPng), jpeg = bytesOf(kJpeg);
  made.pages.pictures = {png, jpeg, "no picture", "", png.substr(0, 50), jpeg.substr(0, 80), "\xFF\xD8\xFF"};
  made.newPage();
  made.addShape(Kind::rectangle, {500, 500, 1000, 500});
  made.addShape(Kind::line, {500, 1200, 1000, 0}).style.quiet = true;
  for (std::uint32_t i = 0; i < 9; ++i) made.addShape(Kind::picture, line(static_cast<int>(i) + 10), i);
  made.add(Part::detail, line(0), "below");
  EXPECT_EQ(textOf(made.pages), "below\n\f");
  const std::string images = ask({"pdfimages", "-list", path()});
  for (const char* part : {"image       2     1  rgb", "smask       2     1  gray", "image      16     8  gray"})
    EXPECT_THAT(images, HasSubstr(part));
  EXPECT_EQ(std::ranges::count(images, '\n'), 5) << images;
}

TEST_F(WritePdf, KeepsTheTextOfWhatTheFontLacks) {
  HandMadePages made;
  made.newPage();
  made.add(Part::detail, line(0), "漢字 и 🙂 漢");
  made.add(Part::detail, line(1), "cafe\u0301 q\u0307\u0323");
  made.add(Part::detail, line(2), "\xFF\xC3(");
  made.add(Part::detail, line(3), "\u2126 \u03A9");  // one glyph, two characters
  EXPECT_EQ(textOf(made.pages), "漢字 и 🙂 漢\ncafe\u0301 q\u0307\u0323\n\uFFFD\uFFFD(\n\u2126 \u03A9\n\f");
}

TEST_F(WritePdf, ShowsABoxInEveryFaceForWhatTheFontLacks) {
  HandMadePages made;
  for (int face = 0; face < 4; ++face) {
    made.newPage();
    made.add(Part::detail, line(face), face % 2 ? "\u0E01" : "漢", {static_cast<Face>(face)});
  }
  textOf(made.pages);
  ask({"pdftoppm", "-gray", path(), path("page")});
  for (const char* page : {"page-1.pgm", "page-2.pgm", "page-3.pgm", "page-4.pgm"}) {
    const std::string image = sim::readFile(path(page));
    const std::size_t ink = image.find_first_not_of('\xFF', image.size() / 100);  // behind the head
    EXPECT_NE(ink, std::string::npos) << page;
  }
}

// What pdftoppm draws of the first page: for each row of its pixels that has ink, where the ink begins and ends.
std::map<int, std::pair<int, int>> inkOf(const std::string& pgm) {
  int width = 0, height = 0;
  EXPECT_EQ(std::sscanf(pgm.c_str(), "P5 %d %d 255", &width, &height), 2);
  const std::size_t begin = pgm.size() - static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  std::map<int, std::pair<int, int>> rows;
  for (std::size_t i = begin; i < pgm.size(); ++i) {
    const int pixel = static_cast<int>(i - begin), x = pixel % width;
    if (static_cast<unsigned char>(pgm[i]) > 0x80) continue;
    auto& [first, last] = rows.try_emplace(pixel / width, x, x).first->second;
    first = std::min(first, x), last = std::max(last, x);
  }
  return rows;
}

TEST_F(WritePdf, SetsMarksOnTheirLetters) {
  for (const char* text : {"q\u0307", "x\u0304", "\u041E\u0301", "\u0416\u0307", "W\u030A"}) {
    HandMadePages made;
    made.newPage();
    made.add(Part::detail, line(0), text, {.size = 600});
    textOf(made.pages);
    ask({"pdftoppm", "-gray", "-r", "72", path(), path("marks")});
    const auto ink = inkOf(sim::readFile(path("marks-1.pgm")));
    ASSERT_FALSE(ink.empty());
    int row = ink.begin()->first, left = 10'000, right = 0;
    const int markBegin = ink.begin()->second.first, markEnd = ink.begin()->second.second;
    while (ink.contains(row)) ++row;
    EXPECT_LT(row, ink.rbegin()->first) << text << ": the mark touches its letter";
    for (auto some = ink.lower_bound(row); some != ink.end(); ++some)
      left = std::min(left, some->second.first), right = std::max(right, some->second.second);
    EXPECT_NEAR(markBegin + markEnd, left + right, (right - left) / 3.0) << text;
  }
}

// Texts of all kinds of characters: whatever comes, the file is sound, and the same again.
TEST_F(WritePdf, TakesAnyText) {
  const sim::Trials trials = sim::Trials::fromEnvironment();
  const std::uint64_t first = trials.seed.value_or(1), last = trials.seed ? first : first + trials.aim(10, 300);
  const std::vector<std::string> pieces = {"a",       "é",
                                           "Ж",       "(",
                                           "\\",      ")",
                                           "\r",      "\n",
                                           "\t",      std::string(1, '\0'),
                                           "\x01",    "\x7F",
                                           "\xFF",    "\xC3",
                                           "שלום",    "مرحبا",
                                           "e\u0301", "\u0301",
                                           "漢",      "🙂",
                                           "\u200F",  "\u202E",
                                           "fi",      " ",
                                           "@x.yz",   "\u0915\u094D\u0937",
                                           "\uFEFF"};
  for (std::uint64_t seed = first; seed <= last; ++seed) {
    SCOPED_TRACE(sim::Trials::repeating(seed, "test_reports", "WritePdf.TakesAnyText"));
    sim::SeededRandom random(seed);
    HandMadePages made;
    made.newPage();
    for (int i = 0; i < 30; ++i) {
      std::string text;
      for (std::size_t length = random.oneIn(30) ? 10'000 : random.below(30); length > 0; --length)
        text += pieces[random.below(pieces.size())];
      made.add(Part::detail, line(i), text, {static_cast<Face>(random.below(4)), static_cast<Align>(random.below(3))});
      if (random.oneIn(10)) made.pages.bookmarks.push_back({static_cast<int>(random.below(4)), 1, 0, text});
    }
    textOf(made.pages);
    const std::string once = sim::readFile(path());
    writePdf(made.pages, path());
    ASSERT_EQ(sim::readFile(path()), once);
  }
}

TEST_F(WritePdf, LeavesTheOldFileWhereTheNewOneCannotBe) {
  HandMadePages made;
  sim::SeededRandom random(1);
  for (int i = 0; i < 2000; ++i) {
    made.newPage();
    made.add(Part::detail, line(1), std::to_string(random.next()) + std::to_string(random.next()));
  }
  sim::writeFile(path(), "old");
  {
    const sim::FullDisk full(100'000);
    EXPECT_THAT(sim::refusalOf([&] { writePdf(made.pages, path()); }), HasSubstr(path()));
  }
  EXPECT_EQ(sim::readFile(path()), "old");
  const std::string taken = path("taken"), missing = path("missing/report.pdf");
  std::filesystem::create_directory(taken);
  EXPECT_THAT(sim::refusalOf([&] { writePdf(made.pages, taken); }), HasSubstr(taken));
  EXPECT_THAT(sim::refusalOf([&] { writePdf(made.pages, missing); }), HasSubstr(missing));
  EXPECT_THAT(sim::refusalOf([&] { writePdf(made.pages, "/dev/full"); }), HasSubstr("/dev/full"));
  // Nothing is left behind, and where it can be it replaces what a link leads to.
  std::filesystem::create_symlink(path(), path("link.pdf"));
  writePdf(made.pages, path("link.pdf"));
  EXPECT_TRUE(std::filesystem::is_symlink(path("link.pdf")));
  EXPECT_TRUE(sim::readFile(path()).starts_with("%PDF-1.7"));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.path()), {}), 3);
}

}  // namespace
}  // namespace quillon::reports
