// The main window: a small bar with the menus of the whole program and the company's name.
#include "shell/TfrmQuillon.h"

#include "form/Screen.h"
#include "shell/Session.h"
#include "store/Cursor.h"

namespace quillon::shell {
namespace {

class TfrmQuillon final : public form::Screen {
 public:
  explicit TfrmQuillon(Session& session) : Screen(session.app()), session_(session) {}
  std::string title() override { return std::string(kTitle) + " with Manufacturing"; }

 private:
  void build(form::Layout& layout) override;

  Session& session_;
};

// The menus themselves are the registry's rows; a front end shows them from there.
void TfrmQuillon::build(form::Layout& l) {
  l.label("lblCompanyName", [this]() -> std::string {
    if (!session_.hasCompany() || session_.tblCompany().isEmpty()) return {};
    return session_.tblCompany()["CompanyName"].asText();
  });
}

}  // namespace

std::unique_ptr<form::Screen> makeMainWindow(Session& session) { return std::make_unique<TfrmQuillon>(session); }

}  // namespace quillon::shell
