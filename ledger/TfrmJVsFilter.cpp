// The conditions of the list of vouchers.
#include "form/FilterScreen.h"
#include "ledger/MakeScreens.h"
#include "ledger/Sources.h"
#include "shell/Session.h"

namespace quillon::ledger {
namespace {

class TfrmJVsFilter final : public form::FilterScreen {
 public:
  explicit TfrmJVsFilter(shell::Session& session) : FilterScreen(session.app(), "TfrmJVs") {
    clears(source_);
    clears(posted_);
  }
  std::string title() override { return "JVs Filter"; }

 private:
  void build(form::Layout& l) override {
    l.chooser("cboSource", "&Source:", source_, sourceConditions());
    l.choice("radPosted", "&Posted", posted_, form::yesNoAllConverter());
    buttons(l);
  }

  std::string expression() const override {
    std::string source = source_.value.asText();
    if (posted_.value.isNull()) return source;
    return form::allOf({source, posted_.value.asBool() ? "(Posted = true)" : "(Posted = false)"});
  }

  form::Variable source_, posted_;
};

}  // namespace

ScreenPtr makeJVsFilter(shell::Session& session) { return std::make_unique<TfrmJVsFilter>(session); }

}  // namespace quillon::ledger
