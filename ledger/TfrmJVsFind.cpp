// Finds a voucher in the list: by its period, its number, both, or a part of its description.
#include "base/Text.h"
#include "form/App.h"
#include "form/Screen.h"
#include "form/Table.h"
#include "ledger/MakeScreens.h"
#include "shell/Periods.h"
#include "shell/Session.h"
#include "store/Glance.h"

namespace quillon::ledger {
namespace {

using form::focus;
using form::refuse;
using store::Value;

class TfrmJVsFind final : public form::Screen {
 public:
  explicit TfrmJVsFind(shell::Session& session) : Screen(session.app()) {}
  std::string title() override { return "Find Journal Voucher"; }

 private:
  void build(form::Layout& layout) override;
  void shown(const form::Open& open) override;
  void btnOKClick();
  void btnCancelClick() { setResult(false); }
  void findByNumbers(form::Table& rows);
  void findDescription(form::Table& rows);

  form::Variable period_, year_, number_, description_;
  std::string lastFound_;  // description; found again, the search goes on behind it
};

void TfrmJVsFind::build(form::Layout& l) {
  l.period("&Period:", period_, year_);
  l.edit("editJVNumber", "&JV no.:", number_, form::wholeConverter(app().formats(), 0, INT32_MAX));
  l.edit("editTransDescription", "&Description:", description_, form::textConverter(60));
  l.row(l.button("btnOK", "OK", &TfrmJVsFind::btnOKClick).standard(),
        l.button("btnCancel", "Cancel", &TfrmJVsFind::btnCancelClick).abandons());
}

// A character that was typed in the list is the beginning of what is looked for.
void TfrmJVsFind::shown(const form::Open& open) {
  const auto text = open.values.find("text");
  if (text == open.values.end() || text->second.asText().empty()) return;
  period_.reset();
  year_.reset();
  const std::string& typed = text->second.asText();
  const bool digits = typed.find_first_not_of("0123456789") == std::string::npos;
  number_.set(digits ? Value(std::stoi(typed.substr(0, 9))) : Value());
  description_.set(digits ? Value() : Value(typed));
  goTo(focus(digits ? "editJVNumber" : "editTransDescription"));
  setTyped(typed);  // to be typed on
}

void TfrmJVsFind::btnOKClick() {
  Screen* list = app().find("frmJVs");
  if (list == nullptr || !list->visible()) return setResult(false);
  form::Table& rows = *list->tables().front();
  if (period_.value.isNull() != year_.value.isNull())
    refuse("Period invalid...\rEnter period and year", focus(year_.value.isNull() ? "editGLYear" : "editGLPeriod"));
  if (!period_.value.isNull() || !number_.value.isNull())
    findByNumbers(rows);
  else if (!description_.value.isNull())
    findDescription(rows);
  setResult(true);
}

void TfrmJVsFind::findByNumbers(form::Table& rows) {
  const std::string period = shell::periodText({year_.value.asInt(), period_.value.asInt()});
  const std::string number = number_.value.toText();
  if (period_.value.isNull()) {
    if (!rows.locate("JVNumber", {number_.value})) refuse("JV '" + number + "' not found", focus("editJVNumber"));
  } else if (number_.value.isNull()) {
    if (!rows.locate("GLYear;GLPeriod", {year_.value, period_.value}))
      refuse("No JVs found in period '" + period + "'", focus("editGLPeriod"));
  } else if (!rows.locate("GLYear;GLPeriod;JVNumber", {year_.value, period_.value, number_.value})) {
    refuse("JV '" + number + "' not found in period '" + period + "'", focus("editJVNumber"));
  }
}

void TfrmJVsFind::findDescription(form::Table& rows) {
  const std::string text = description_.value.asText();
  const std::string wanted = foldCase(text);
  const bool again = lastFound_ == wanted;
  store::RowId found = 0;
  {
    store::Glance glance(rows);
    for (bool there = again ? glance.next() : glance.first(); there; there = glance.next())
      if (foldCase(rows["TransDescription"].asText()).find(wanted) != std::string::npos) {
        found = glance.rowId();
        break;
      }
  }
  lastFound_ = found == 0 ? "" : wanted;
  if (found == 0)
    refuse((again ? "No more JVs with '" : "No JVs with '") + text + "' in description found",
           focus("editTransDescription"));
  rows.goToRow(found);
}

}  // namespace

ScreenPtr makeJVsFind(shell::Session& session) { return std::make_unique<TfrmJVsFind>(session); }

}  // namespace quillon::ledger
