#pragma once

#include <string>
#include <vector>

#include "form/Screen.h"
#include "form/Table.h"

namespace quillon::form {

// What a list screen does as all others do.
struct ListPlan {
  std::string title;              // "Journal Vouchers"
  std::string record;             // class of the record screen; empty: none
  std::string key;                // the field by which it finds its row
  std::string filterScreen = {};  // class; empty: none
  std::string find = {};          // class of the picker or find screen; empty: none
};

// A grid over the first of its tables, with the commands that every list has.
//
// Its filter is that of its first table, and has three parts, joined by AND: what the filter screen says, the view that
// is switched on (Outstanding), and the clause of a jump from elsewhere. Reset clears the first and the third.
class ListScreen : public Screen {
 public:
  ListScreen(App& app, ListPlan plan) : Screen(app), plan_(std::move(plan)) {}
  std::string title() override;  // "Journal Vouchers (Outstanding, Filtered)"

  // For the filter screen and for jumps.
  void setFilter(const std::string& text);
  void setJump(const std::string& clause);
  void resetFilter();
  bool isFiltered() const { return !filter_.empty() || !jump_.empty(); }
  // What it shows, for a report that prints it: the condition as its filter, and as values "order", a list for ORDER
  // BY, and "selection", the condition's name in the title.
  virtual Open asShown();

 protected:
  virtual store::Cursor& rows() const { return *tables().front(); }
  virtual std::string keyField() const { return plan_.key; }
  // A view with its name for the title; an empty clause is none.
  void setView(std::string name, std::string clause);

  // Shows the rows that pass; empty: all.
  virtual void showOnly(const std::string& condition);

  // New, Edit, Delete, Find..., Filter..., Refresh; what the list's plan does not name is left out.
  Control& editMenu(Layout& layout);
  // An entry that sorts by an index and is checked while that is the order.
  Control& sortEntry(Layout& layout, std::string name, std::string caption, const std::string& index);
  // The list's grid: Enter opens the record, a character starts the search.
  Control& listGrid(Layout& layout, std::vector<std::unique_ptr<Control>> columns);

  virtual void mnuNewClick();
  virtual void mnuEditClick();
  virtual void mnuDeleteClick();  // asks and refuses in the table's before-delete handler
  virtual void mnuFindClick() { find(""); }
  virtual void mnuFilterClick();
  virtual void mnuRefreshClick();
  virtual void find(const std::string& typed);  // a picker or find screen that begins with the text
  void requireRow();                            // silently stops where the list has no row

  void shown(const Open& open) override;
  void shownAgain(const Open& open) override;
  void closed() override;  // its result is the key it stood on

 private:
  void clearConditions();
  void applyFilter();
  std::string condition() const;
  std::string states() const;

  ListPlan plan_;
  std::string filter_, viewName_, view_, jump_;
};

}  // namespace quillon::form
