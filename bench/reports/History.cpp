#include "bench/reports/History.h"

#include <array>

#include "base/AmountFormat.h"
#include "support/HandMadePages.h"
#include "support/SeededRandom.h"

namespace quillon::bench {
namespace {

using reports::Align;
using reports::Box;
using reports::Face;
using reports::Part;
using reports::Style;

struct Column {
  const char* heading;
  std::int16_t x, width;
  Align align;
};
constexpr std::array<Column, 7> kColumns = {{{"Date", 500, 750, Align::left},
                                             {"JV no.", 1300, 600, Align::right},
                                             {"Source", 2000, 500, Align::left},
                                             {"Description", 2550, 2300, Align::left},
                                             {"Debits", 4900, 1000, Align::right},
                                             {"Credits", 5950, 1000, Align::right},
                                             {"Balance", 7000, 1000, Align::right}}};
constexpr std::array<const char*, 8> kNames = {
    "Cheque to Müller & Söhne", "Invoice 12044 Łódź",   "Payment by Ωμέγα A.E.", "Опт-Торг, receipt",
    "Freight and duty",         "Rent of the workshop", "Bank charges",          "Wages, second week"};
constexpr std::int16_t kRow = 170, kTop = 1000, kBottom = 10200;
constexpr int kLinesOfAccount = 30;

class History {
 public:
  reports::PreparedPages take() {
    made_.pages.reportTitle = "GL History";
    return std::move(made_.pages);
  }

  void account(int number) {
    row();
    made_.add(Part::groupHeader, {500, y_, 4000, kRow}, "Account " + std::to_string(1000 + number), {Face::bold});
    made_.pages.bookmarks.push_back({0, made_.pages.pageCount(), y_, "Account " + std::to_string(1000 + number)});
    balance_ = {};
  }

  void line(int number) {
    row();
    const Date date = Date(2026, 1, 1).addDays(number % 365);
    const Money amount = Money::fromRaw(static_cast<std::int64_t>(random_.below(100'000'000)) * 100);
    const bool credit = random_.oneIn(2);
    balance_ += credit ? -amount : amount;
    cell(0, date.toIso(), date);
    cell(1, std::to_string(number), number);
    cell(2, number % 3 == 0 ? "AP" : "JV", {});
    cell(3, kNames[random_.below(kNames.size())], {});
    cell(credit ? 5 : 4, format_.format(amount), amount);
    cell(6, format_.format(balance_), balance_);
  }

  void total() {
    row();
    made_.addShape(reports::Element::Kind::line, {7000, y_, 1000, 0});
    cell(6, format_.format(balance_), balance_, Part::groupFooter);
  }

 private:
  void cell(std::size_t column, std::string_view text, store::Value value, Part part = Part::detail) {
    const Column& c = kColumns[column];
    made_.add(part, {c.x, y_, c.width, kRow}, text, std::move(value),
              {part == Part::detail ? Face::regular : Face::bold, c.align});
  }

  void row() {
    y_ = static_cast<std::int16_t>(y_ + kRow);
    if (made_.pages.pageCount() > 0 && y_ < kBottom) return;
    made_.newPage();
    const std::string page = "Page " + std::to_string(made_.pages.pageCount());
    made_.add(Part::pageFooter, {500, 10400, 7500, kRow}, page, {Face::regular, Align::right, 80, true});
    if (made_.pages.pageCount() == 1)
      made_.add(Part::title, {500, 500, 7500, 300}, "GL History", {Face::bold, Align::left, 140});
    for (const Column& c : kColumns)
      made_.add(Part::columnHeader, {c.x, kTop - 200, c.width, kRow}, c.heading, {Face::bold, c.align});
    made_.addShape(reports::Element::Kind::line, {500, kTop, 7500, 0});
    made_.pages.pages.back().elements.back().part = Part::columnHeader;
    y_ = kTop + 50;
  }

  sim::HandMadePages made_;
  sim::SeededRandom random_{1};
  AmountFormat format_{"#,##0.00##;(#,##0.00##)"};
  Money balance_;
  std::int16_t y_ = 0;
};

}  // namespace

reports::PreparedPages ledgerHistory(std::int64_t lines) {
  History history;
  for (int i = 0; i < lines; ++i) {
    if (i % kLinesOfAccount == 0) history.account(i / kLinesOfAccount);
    history.line(i);
    if (i % kLinesOfAccount == kLinesOfAccount - 1) history.total();
  }
  return history.take();
}

}  // namespace quillon::bench
