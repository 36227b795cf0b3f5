// The two screens that only show who made the program: while it starts, and when it is asked for.
#include "form/App.h"
#include "form/Screen.h"
#include "shell/MakeScreens.h"
#include "shell/ProgramNames.h"
#include "shell/Session.h"

namespace quillon::shell {

void tellNames(form::Layout& l) {
  l.label("lblMaker", [] { return std::string("Marrowfield Software"); });
  l.label("lblProduct", [] { return std::string(kEdition); }).heading();
  l.label("lblVersion", [] { return std::string("Version ") + kVersion; });
}

namespace {

class TfrmSplash final : public form::Screen {
 public:
  explicit TfrmSplash(Session& session) : Screen(session.app()) {}
  std::string title() override { return kTitle; }

 private:
  void build(form::Layout& l) override { tellNames(l); }
};

class TfrmAbout final : public form::Screen {
 public:
  explicit TfrmAbout(Session& session) : Screen(session.app()), session_(session) {}
  std::string title() override { return std::string("About ") + kTitle; }

 private:
  void build(form::Layout& l) override {
    tellNames(l);
    l.label("lblDatabase", [this] { return "Database: " + session_.dataFolder; });
    l.label("lblSettings", [this] { return "Settings: " + session_.settings().path(); });
    l.button("btnOK", "OK", &TfrmAbout::btnOKClick).standard();
  }
  void btnOKClick() { setResult(true); }

  Session& session_;
};

}  // namespace

ScreenPtr makeSplash(Session& session) { return std::make_unique<TfrmSplash>(session); }
ScreenPtr makeAbout(Session& session) { return std::make_unique<TfrmAbout>(session); }

}  // namespace quillon::shell
