#pragma once

#include <functional>
#include <string>
#include <vector>

#include "form/Screen.h"

namespace quillon::form {

// A screen of pages that are gone through in order, with Back, Next, Finish and Cancel below them.
//
// Keeps: what a page refuses keeps the person on it; nothing is done before Finish, and then only if no page refuses.
// Enter presses Next, on the last page Finish.
class WizardScreen : public Screen {
 public:
  using Screen::Screen;

 protected:
  struct Page {
    std::string caption;
    std::function<void()> entered = {};  // coming from the page before, not back to it: what it begins with
    std::function<void()> checked = {};  // going on, and at Finish: raises what is wrong and where
    std::function<bool()> skipped = {};  // passed over both ways while it holds; not of the first page
  };

  // The pages in order, each told with its controls.
  virtual void buildPages(Layout& layout) = 0;
  template <typename... Controls>
  void page(Layout& layout, Page page, Controls&... controls) {
    Control& group = layout.group(page.caption, controls...);
    add(group, std::move(page));
  }
  // Does what the wizard is for; what it raises leaves the person on the last page.
  virtual void finish() = 0;

  // Derived classes set their values first.
  void shown(const Open& open) override;

  void btnBackClick();
  void btnNextClick();
  void btnFinishClick();
  void btnCancelClick() { setResult(false); }

 private:
  static constexpr int kNone = -1;

  void build(Layout& layout) final;
  void add(Control& group, Page page);
  int beside(int step) const;  // the page that comes before or after the one on view
  void turnTo(int place);

  std::vector<Page> pages_;
  std::vector<Control*> groups_;
  Control* steps_ = nullptr;
};

}  // namespace quillon::form
