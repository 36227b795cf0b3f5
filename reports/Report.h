#pragma once

#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "reports/Bands.h"
#include "store/Query.h"

namespace quillon::form {
class App;
struct Open;
}  // namespace quillon::form
namespace quillon::shell {
class Session;
}

namespace quillon::reports {

// What is printed and from where: a title, a query, and bands told as data, with what little has to be worked out for a
// row. One class of each, in a file of its own; made for one run and freed after it.
//
// The rows are those that the query finds when the run begins, as they are then or, where it is live, as they are when
// they are laid out; of those that are gone by then nothing prints. Sums are exact, in ten-thousandths.
class Report {
 public:
  explicit Report(shell::Session& session);
  virtual ~Report();
  Report(const Report&) = delete;
  Report& operator=(const Report&) = delete;

  // Tells itself for one run; `open` says which rows (filter), in which order, and in which words (title, values).
  virtual void tell(Bands& bands, const form::Open& open) = 0;
  // Error where it was opened with a value that it does not ask for, a misspelt one say. What lists say of themselves
  // may go unasked.
  void refuseUnasked(const form::Open& open) const;
  // Goes to the first row, and to the next; false when there is none. A report with rows of its own overrides both.
  virtual bool first();
  virtual bool next();
  // For columns told by a field: its value in the row.
  virtual store::Value value(std::string_view field);
  // A position that value(int) takes, for the time of the run; -1 when there is none.
  virtual int positionOf(std::string_view field);
  virtual store::Value value(int position);

  std::string reportTitle;
  std::string lblSelection, lblAsOf;  // the words of the selection, below the title

 protected:
  shell::Session& session() const { return session_; }
  form::App& app() const;
  store::Database& database() const;
  // The statement of the rows, run by first().
  void select(std::string statement) { qryMain_.setStatement(std::move(statement)); }
  store::Query& qryMain() { return qryMain_; }

  // " WHERE ..." of the condition that it is opened with, and " ORDER BY ..." as the list is that it prints, or
  // `order`.
  static std::string whereOf(const form::Open& open);
  std::string orderOf(const form::Open& open, const std::string& order);
  // One of its values as text; empty when it has none of that name.
  std::string wordOf(const form::Open& open, const std::string& name);
  // The same as a whole number, 0 when it has none. Error for any other text.
  int numberOf(const form::Open& open, const std::string& name);
  // Its values "year", that of today where there is none, and "period", 0 for all of the year. Errors.
  int yearOf(const form::Open& open);
  int periodOf(const form::Open& open);

 private:
  shell::Session& session_;
  store::Query qryMain_;
  std::set<std::string> asked_ = {"order", "selection"};  // names of values
};

using ReportPtr = std::unique_ptr<Report>;

// "Mar 5, 2026" where dates begin with the month, else "05 Mar 2026".
std::string longDate(const form::App& app, Date date);

}  // namespace quillon::reports
