// What a person sees first on a machine without companies of its own: the sample company, or one's own. Cancel ends the
// program.
#include "form/App.h"
#include "form/Screen.h"
#include "shell/Companies.h"
#include "shell/CompanySession.h"
#include "shell/MakeScreens.h"
#include "shell/ProgramNames.h"
#include "shell/Session.h"

namespace quillon::shell {
namespace {

using store::Value;

constexpr int kSample = 0, kOwn = 1;

class TfrmWelcome final : public form::Screen {
 public:
  explicit TfrmWelcome(Session& session) : Screen(session.app()), session_(session) {}
  std::string title() override { return std::string("Welcome to ") + kTitle; }

 private:
  void build(form::Layout& layout) override;
  void shown(const form::Open&) override { choice_.set(Value(kSample)); }
  void btnOKClick();
  void btnCancelClick() { setResult(false); }
  bool enterSample();
  bool enterOwn();

  Session& session_;
  form::Variable choice_;
};

void TfrmWelcome::build(form::Layout& l) {
  tellNames(l);
  l.choice("radChoice", "", choice_,
           form::choicesConverter(
               {{Value(kSample), "Let's look at a sample company first"}, {Value(kOwn), "Set up my own company"}}));
  l.row(l.button("btnOK", "OK", &TfrmWelcome::btnOKClick).standard(),
        l.button("btnCancel", "Cancel", &TfrmWelcome::btnCancelClick).abandons());
}

bool TfrmWelcome::enterSample() {
  const std::string folder = companyFolder(session_, kSampleData);
  if (holdsCompany(session_, folder)) return enterCompany(session_, kSampleData, folder);
  return app().runModal("TfrmCompanyDatabase", {.values = {{"mode", Value("sample")}}}).confirmed;
}

bool TfrmWelcome::enterOwn() {
  if (holdsCompany(session_, companyFolder(session_, kSampleData)))
    return app().runModal("TfrmCompanyDatabase").confirmed;
  app().person().show(
      form::Tone::information,
      "Please choose Sample Data before setting up your live data.\r\rYou can set up your own company next time or "
      "from "
      "the menu.\rThen you can switch between your live data and sample data for experimenting and learning.");
  choice_.set(Value(kSample));
  return false;
}

void TfrmWelcome::btnOKClick() {
  if (!(choice_.value == Value(kOwn) ? enterOwn() : enterSample())) return;
  rebuildCompaniesMenu(session_);
  setResult(true);
}

}  // namespace

ScreenPtr makeWelcome(Session& session) { return std::make_unique<TfrmWelcome>(session); }

}  // namespace quillon::shell
