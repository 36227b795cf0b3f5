#include "form/WizardScreen.h"

#include <algorithm>

namespace quillon::form {

void WizardScreen::add(Control& group, Page page) {
  groups_.push_back(&group);
  pages_.push_back(std::move(page));
}

void WizardScreen::build(Layout& l) {
  buildPages(l);
  steps_ = &l.stepsOf(groups_).named("stpPages");
  const auto isLast = [this] { return beside(1) == kNone; };
  const auto goesOn = [this] { return beside(1) != kNone; };
  l.row(l.button("btnBack", "< &Back", &WizardScreen::btnBackClick).enabledWhen([this] { return beside(-1) != kNone; }),
        l.button("btnNext", "&Next >", &WizardScreen::btnNextClick).enabledWhen(goesOn).standardWhen(goesOn),
        l.button("btnFinish", "&Finish", &WizardScreen::btnFinishClick).enabledWhen(isLast).standardWhen(isLast),
        l.button("btnCancel", "Cancel", &WizardScreen::btnCancelClick).abandons());
}

void WizardScreen::shown(const Open& /*open*/) { turnTo(0); }

int WizardScreen::beside(int step) const {
  for (int place = steps_->page + step; place >= 0 && place < static_cast<int>(pages_.size()); place += step) {
    const Page& page = pages_[static_cast<std::size_t>(place)];
    if (!page.skipped || !page.skipped()) return place;
  }
  return kNone;
}

// The focus stands on its first field; where it has none, on the button that goes on.
void WizardScreen::turnTo(int place) {
  steps_->page = place;
  focusFirst();
  if (focused() == nullptr || focused()->kind() == Kind::button)
    setFocus(find(beside(1) == kNone ? "btnFinish" : "btnNext"));
}

void WizardScreen::btnBackClick() { turnTo(beside(-1)); }

void WizardScreen::btnNextClick() {
  const Page& page = pages_[static_cast<std::size_t>(steps_->page)];
  if (page.checked) page.checked();
  // What was just checked may decide what is skipped.
  const int next = beside(1);
  if (next == kNone) return;
  if (const auto& entered = pages_[static_cast<std::size_t>(next)].entered) entered();
  turnTo(next);
}

// Every page is asked again: what one of them stood for may have changed on a later one.
void WizardScreen::btnFinishClick() {
  for (const Page& page : pages_)
    if (page.checked && (!page.skipped || !page.skipped())) page.checked();
  finish();
  setResult(true);
}

}  // namespace quillon::form
