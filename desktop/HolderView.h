#pragma once

#include "desktop/ControlView.h"

namespace quillon::desktop {

constexpr int kSpacing = 6;  // the one unit of space, at 96 dots an inch

// A control that holds others.
class HolderView : public ControlView {
 public:
  HolderView(Hands& hands, form::Control& control) : ControlView(hands, control) {}
  const std::vector<ViewPtr>& inside() const override { return views_; }
  bool stretches() const override;
  void sync() override;
  void syncInside();  // what it holds, and not whether it shows itself

 protected:
  std::vector<ViewPtr> views_;
};

// Views of all that a control holds.
std::vector<ViewPtr> viewsIn(Hands& hands, form::Control& holder, QWidget& parent);
// A group as a page: its caption stands on the tab.
ViewPtr makePageView(Hands& hands, form::Control& control, QWidget& parent);

}  // namespace quillon::desktop
