// Asks who is there before the company is entered, and proposes the value "UserName". Confirmed, its result has
// "UserName" and "Password".
#include "form/App.h"
#include "form/Screen.h"
#include "shell/MakeScreens.h"
#include "shell/Session.h"

namespace quillon::shell {
namespace {

using store::Value;

class TfrmLogin final : public form::Screen {
 public:
  explicit TfrmLogin(Session& session) : Screen(session.app()), session_(session) {}
  std::string title() override { return std::string(kTitle) + " Security"; }

 private:
  void build(form::Layout& layout) override;
  void shown(const form::Open& open) override;
  void btnOKClick();
  void btnCancelClick() { setResult(false); }

  Session& session_;
  form::Variable userName_, password_;
};

void TfrmLogin::build(form::Layout& l) {
  l.label("lblDatabase", [this] { return "Database: " + session_.dataFolder; });
  l.edit("editUserName", "&User Name:", userName_, form::textConverter(30)).wide(30);
  l.edit("editPassword", "&Password:", password_, form::secretConverter(30)).wide(30).secret();
  l.row(l.button("btnOK", "OK", &TfrmLogin::btnOKClick).standard(),
        l.button("btnCancel", "Cancel", &TfrmLogin::btnCancelClick).abandons());
}

void TfrmLogin::shown(const form::Open& open) {
  const auto proposed = open.values.find("UserName");
  userName_.set(proposed == open.values.end() ? Value("") : proposed->second);
  password_.reset();
  setFocus(find(userName_.value.asText().empty() ? "editUserName" : "editPassword"));
}

void TfrmLogin::btnOKClick() {
  const auto text = [](const form::Variable& typed) { return Value(typed.value.isNull() ? "" : typed.value.asText()); };
  result().values = {{"UserName", text(userName_)}, {"Password", text(password_)}};
  setResult(true);
}

}  // namespace

ScreenPtr makeLogin(Session& session) { return std::make_unique<TfrmLogin>(session); }

}  // namespace quillon::shell
