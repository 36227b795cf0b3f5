// Opens one of the companies, where there are more than the menu shows. As its name is typed the list moves to the
// first one that begins so; the arrow keys move in the list.
#include "base/Text.h"
#include "form/App.h"
#include "form/Screen.h"
#include "shell/Companies.h"
#include "shell/MakeScreens.h"
#include "shell/Session.h"

namespace quillon::shell {
namespace {

using store::Value;

class TfrmSelectCompany final : public form::Screen {
 public:
  explicit TfrmSelectCompany(Session& session) : Screen(session.app()), session_(session) {}
  std::string title() override { return "Select Company"; }

 private:
  void build(form::Layout& layout) override;
  void shown(const form::Open& open) override;
  void find(const std::string& text);
  void btnOKClick();
  void btnCancelClick() { setResult(false); }

  Session& session_;
  form::Variable text_, company_;
};

void TfrmSelectCompany::build(form::Layout& l) {
  form::Control& box = l.edit("editSearch", "&Company:", text_, form::textConverter(0)).wide(40);
  form::Control& list = l.list("lstCompanies", "", company_, companyChoices(session_)).high(12).wide(40);
  list.opens([this] { btnOKClick(); });
  box.onTyping([this](const std::string& text) { find(text); }).movesIn(list);
  l.row(l.button("btnOK", "OK", &TfrmSelectCompany::btnOKClick).standard(),
        l.button("btnCancel", "Cancel", &TfrmSelectCompany::btnCancelClick).abandons());
}

void TfrmSelectCompany::shown(const form::Open&) {
  rebuildCompaniesMenu(session_);
  text_.reset();
  find("");
}

// A text that no name begins with selects none, so that nobody opens another company than the one that was typed.
void TfrmSelectCompany::find(const std::string& text) {
  company_.set({});
  for (const std::string& name : session_.companiesMenu) {
    if (!startsWithFolded(name, text)) continue;
    return company_.set(Value(name));
  }
}

// It closes whatever becomes of opening the company: screens that stand in the way are behind it.
void TfrmSelectCompany::btnOKClick() {
  if (company_.value.isNull()) form::refuse("No company selected", form::focus("editSearch"));
  setResult(true);
  selectCompany(session_, company_.value.asText());
}

}  // namespace

ScreenPtr makeSelectCompany(Session& session) { return std::make_unique<TfrmSelectCompany>(session); }

}  // namespace quillon::shell
