#include "ledger/Statements.h"

#include <algorithm>
#include <map>

#include "base/Errors.h"
#include "ledger/ComposeStatement.h"
#include "ledger/RestatedLedger.h"
#include "ledger/StatementFigures.h"
#include "store/Database.h"

namespace quillon::ledger {
namespace {

using store::Value;

// What a column shows; a variance is the difference of the two columns before it.
enum class Figure {
  change,
  priorChange,
  changeLastYear,
  budgetChange,
  yearToDate,
  yearToDateLastYear,
  budgetToDate,
  balance,
  balanceLastYear,
  budgetBalance,
  variance,
};

struct Column {
  Figure figure;
  const char* caption;  // null: the periods
};

const std::map<std::string_view, std::vector<Column>> kColumns = {
    {"Net Change: Simple", {{Figure::change, nullptr}, {Figure::yearToDate, "Year to Date"}}},
    {"Net Change: Compare period",
     {{Figure::change, nullptr},
      {Figure::priorChange, "Prior Period"},
      {Figure::variance, "Variance"},
      {Figure::yearToDate, "Year to Date"}}},
    {"Net Change: Compare year",
     {{Figure::change, "This Year"},
      {Figure::changeLastYear, "Last Year"},
      {Figure::variance, "Variance"},
      {Figure::yearToDate, "This YTD"},
      {Figure::yearToDateLastYear, "Last YTD"},
      {Figure::variance, "Variance"}}},
    {"Net Change: Compare budget",
     {{Figure::change, "Actual"},
      {Figure::budgetChange, "Budget"},
      {Figure::variance, "Variance"},
      {Figure::yearToDate, "Actual YTD"},
      {Figure::budgetToDate, "Budget YTD"},
      {Figure::variance, "Variance"}}},
    {"Balance: Simple", {{Figure::balance, ""}}},
    {"Balance: Compare year",
     {{Figure::balance, "This Year"}, {Figure::balanceLastYear, "Last Year"}, {Figure::variance, "Variance"}}},
    {"Balance: Compare budget",
     {{Figure::balance, "Actual"}, {Figure::budgetBalance, "Budget"}, {Figure::variance, "Variance"}}},
};

// Statements made long ago have the older name of one.
std::string formatNamed(const std::string& name) {
  std::string format = name == "Net Change: Compare month" ? "Net Change: Compare period" : name;
  if (!kColumns.contains(format)) throw Error("'" + name + "' is no column format of a statement");
  return format;
}

Money sum(const Figures::Year& year, int from, int to) {
  Money sum;
  for (int period = from; period <= to; ++period) sum += year[static_cast<std::size_t>(period)];
  return sum;
}

class Columns {
 public:
  Columns(const std::string& format, int period, int upperPeriod)
      : columns_(kColumns.at(format)), from_(period), to_(std::max(period, upperPeriod)) {}

  std::vector<std::string> captions() const {
    std::vector<std::string> captions;
    for (const Column& column : columns_) captions.emplace_back(column.caption != nullptr ? column.caption : periods());
    return captions;
  }

  std::vector<Statement::Source> sources() const {
    std::vector<Statement::Source> all;
    for (const Column& column : columns_)
      all.push_back(column.figure == Figure::variance ? both(all.end()[-2], all.back()) : source(column.figure));
    return all;
  }

  void fill(const Figures& figures, bool negated, std::array<Value, Statement::kMostColumns>& values) const {
    std::array<Money, Statement::kMostColumns> amounts;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      const Figure figure = columns_[i].figure;
      if (figure == Figure::variance)
        amounts[i] = amounts[i - 2] - amounts[i - 1];
      else
        amounts[i] = negated ? -amount(figure, figures) : amount(figure, figures);
      values[i] = amounts[i];
    }
  }

 private:
  static Statement::Source both(const Statement::Source& one, const Statement::Source& other) {
    return {.thisYear = one.thisYear || other.thisYear,
            .lastYear = one.lastYear || other.lastYear,
            .budget = one.budget || other.budget};
  }

  Statement::Source source(Figure figure) const {
    switch (figure) {
      case Figure::changeLastYear:
      case Figure::yearToDateLastYear:
      case Figure::balanceLastYear:
        return {.lastYear = true};
      case Figure::priorChange:
        return {.thisYear = from_ > 1, .lastYear = from_ == 1};
      case Figure::budgetChange:
      case Figure::budgetToDate:
      case Figure::budgetBalance:
        return {.budget = true};
      default:
        return {.thisYear = true};
    }
  }

  std::string periods() const {
    return "Period " + std::to_string(from_) + (to_ > from_ ? "-" + std::to_string(to_) : "");
  }

  // Balances are those at the end of the first period, whatever the range.
  Money amount(Figure figure, const Figures& f) const {
    switch (figure) {
      case Figure::change:
        return sum(f.actual, from_, to_);
      case Figure::priorChange:
        return from_ == 1 ? f.lastYear[kPeriods] : sum(f.actual, from_ - 1, from_ - 1);
      case Figure::changeLastYear:
        return sum(f.lastYear, from_, to_);
      case Figure::budgetChange:
        return sum(f.budget, from_, to_);
      case Figure::yearToDate:
        return sum(f.actual, 1, to_);
      case Figure::yearToDateLastYear:
        return sum(f.lastYear, 1, to_);
      case Figure::budgetToDate:
        return sum(f.budget, 1, to_);
      case Figure::balance:
        return sum(f.actual, 0, from_);
      case Figure::balanceLastYear:
        return sum(f.lastYear, 0, from_);
      case Figure::budgetBalance:
        return sum(f.budget, 0, from_);
      case Figure::variance:
        break;
    }
    return {};
  }

  const std::vector<Column>& columns_;
  int from_, to_;
};

bool isNegated(LineType type, const std::string& format) {
  switch (type) {
    case LineType::detailRevenue:
    case LineType::totalRevenue:
      return showsChanges(format);
    case LineType::detailLiEq:
    case LineType::totalLiEq:
      return showsBalances(format);
    default:
      return false;
  }
}

void requirePeriods(const StatementRequest& request) {
  if (!Period{request.year, 1}.valid()) throw Error("Year must be between 1 and 9999");
  if (!Period{request.year, request.period}.valid()) throw Error("Period must be between 1 and 12");
  if (request.upperPeriod != 0 && (request.upperPeriod < request.period || request.upperPeriod > kPeriods))
    throw Error("The last period must be between " + std::to_string(request.period) + " and 12");
}

std::string captionOf(const StatementRequest& request) {
  const std::string year = "/" + std::to_string(request.year);
  std::string caption = "Period: " + std::to_string(request.period) + year;
  if (request.upperPeriod != 0) caption += " - " + std::to_string(request.upperPeriod) + year;
  return caption;
}

// A line's own ranges, and for totals those of its members: a member that is a total itself has none, and adds nothing.
class Gathered {
 public:
  Gathered(const std::vector<StatementLine>& lines, StatementFigures& figures) : lines_(lines) {
    for (std::size_t i = 0; i < lines.size(); ++i) {
      places_[lines[i].seq] = i;
      Figures& own = own_.emplace_back();
      for (const StatementRange& range : lines[i].ranges) own += figures.of(range);
    }
  }

  Figures figures(std::size_t line) const {
    Figures sum = own_[line];
    eachMember(line, [&](std::size_t member) { sum += own_[member]; });
    return sum;
  }
  std::vector<StatementRange> ranges(std::size_t line) const {
    std::vector<StatementRange> all = lines_[line].ranges;
    eachMember(line, [&](std::size_t member) {
      const std::vector<StatementRange>& more = lines_[member].ranges;
      all.insert(all.end(), more.begin(), more.end());
    });
    return all;
  }

 private:
  template <typename Action>
  void eachMember(std::size_t line, const Action& action) const {
    if (!isTotal(lines_[line].type)) return;
    for (const int seq : lines_[line].members)
      if (const auto place = places_.find(seq); place != places_.end() && place->second != line) action(place->second);
  }

  const std::vector<StatementLine>& lines_;
  std::map<int, std::size_t> places_;
  std::vector<Figures> own_;
};

}  // namespace

Statement::Statement(store::Database& database, const StatementRequest& request) {
  requirePeriods(request);
  const StatementDefinition definition =
      request.stmtId != 0 ? readStatement(database, request.stmtId) : composeStatement(database, request.builtIn);
  title_ = definition.title;
  format_ = formatNamed(request.format.empty() ? definition.format : request.format);
  periodCaption_ = captionOf(request);
  if (request.autoForex) restated_ = std::make_unique<RestatedLedger>(database, request.year);

  const Columns columns(format_, request.period, request.upperPeriod);
  columns_ = columns.captions();
  sources_ = columns.sources();
  StatementFigures figures(database, {.actual = request.autoForex ? RestatedLedger::kTable : "GLActual",
                                      .year = request.year,
                                      .budget = showsBudget(format_),
                                      .subaccounts = request.subaccounts});
  const store::Database::Snapshot moment(database, figures.tables());
  const Gathered gathered(definition.lines, figures);
  for (std::size_t i = 0; i < definition.lines.size(); ++i) {
    const StatementLine& line = definition.lines[i];
    Line& shown = lines_.emplace_back(
        Line{.seq = line.seq, .heading = line.heading, .type = line.type, .values = {}, .ranges = {}});
    if (line.type == LineType::heading) continue;
    columns.fill(gathered.figures(i), isNegated(line.type, format_), shown.values);
    shown.ranges = gathered.ranges(i);
  }
}

Statement::~Statement() = default;

}  // namespace quillon::ledger
