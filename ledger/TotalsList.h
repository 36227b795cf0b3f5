#pragma once

#include <memory>
#include <string>
#include <vector>

#include "form/QueryListScreen.h"

namespace quillon::shell {
class Session;
}

namespace quillon::ledger {

// What stands for each account, and each combination of it with subaccounts, in a table of the shape of GLActual: the
// opening balance of a year and the change in each of its periods. An account without any has a row, too, in which all
// but the account is null.
//
// The list itself holds only which rows there are, and in which order: names and amounts are looked up for the rows
// that are shown or saved, so that years of totals open at once.
class TotalsList : public form::QueryListScreen {
 public:
  struct Rows {
    std::string table, alias;  // as conditions name it: "GLActual", "a"
    std::string file;          // the name that an export is offered
  };
  TotalsList(shell::Session& session, form::ListPlan plan, Rows rows);

 protected:
  form::Control& totalsGrid(form::Layout& l);
  form::Control& sortMenu(form::Layout& l);
  // Prints the rows that the list has, in its order; `data` is how the report is to show them.
  void printRows(const char* report, const char* data);
  void find(const std::string& typed) override;
  void mnuHistoryClick();
  void mnuExportClick();

 private:
  std::string statement(const std::string& condition) const override;
  void lookUpRow();
  std::vector<std::unique_ptr<form::Control>> columns(form::Layout& l);
  form::Control& sortBy(form::Layout& l, std::string name, std::string caption, bool byNumber);
  std::string order() const;
  std::string names() const;
  Money totalChange() const;

  Rows rows_;
  bool byNumber_ = true;
};

}  // namespace quillon::ledger
