#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "form/App.h"
#include "form/ListScreen.h"
#include "store/Query.h"

namespace quillon::form {

// A list whose rows a SELECT gives: read anew when its conditions or its order change, and by Refresh.
//
// The plan's key names a row by several fields, joined by ';'; a list that is read anew stands on the same row while it
// is there. The columns are worked out (Layout::shownColumn), since the rows are read only when the list is shown.
class QueryListScreen : public ListScreen {
 public:
  QueryListScreen(App& app, const ListPlan& plan)
      : ListScreen(app, plan), key_(plan.key), rows_(app.database(), {}, "qryRows") {}

  // Reads the rows anew and stands on the one with these values of the plan's key, where it is there.
  void moveTo(const std::vector<store::Value>& key);

 protected:
  // The SELECT of the rows that pass; an empty condition passes all.
  virtual std::string statement(const std::string& condition) const = 0;
  void reread();
  virtual void rowsRead() {}  // each time
  void setParameter(std::string_view name, store::Value value) { rows_.setParameter(name, std::move(value)); }

  store::Cursor& rows() const override { return rows_; }
  void showOnly(const std::string& condition) override;
  void mnuRefreshClick() override { reread(); }
  void closed() override { rows_.close(); }
  // Null while there is no row.
  store::Value value(const char* field) const;

 private:
  std::string key_, condition_;
  mutable store::Query rows_;
};

}  // namespace quillon::form
