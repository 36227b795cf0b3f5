#include "desktop/Front.h"

#include <utility>

#include "desktop/Window.h"

namespace quillon::desktop {

Front::Front(form::App& app) : app_(app), input_(app) {
  app_.watch(this);
  for (const auto& screen : app_.screens())
    if (screen->visible()) opened(*screen);
}

Front::~Front() { app_.watch(nullptr); }

void Front::opened(form::Screen& screen) {
  const form::Screen* modal = app_.modal();
  Window* parent = modal != nullptr ? windowOf(*modal) : nullptr;
  windows_[&screen] = std::make_unique<Window>(*this, screen, parent);
}

void Front::closing(form::Screen& screen) {
  const auto found = windows_.find(&screen);
  if (found == windows_.end()) return;
  // Those that were opened from it and stay would go with it.
  for (const auto& [other, window] : windows_)
    if (window->parentWidget() == found->second.get()) window->standAlone();
  found->second->leave();
  left_.push_back(std::move(found->second));
  windows_.erase(found);
}

void Front::sync() {
  if (syncing_) return;
  syncing_ = true;
  for (const auto& screen : app_.screens())
    if (Window* window = windowOf(*screen)) window->sync();
  syncing_ = false;
  if (busy_ == 0)
    for (auto& window : std::exchange(left_, {})) window.release()->deleteLater();
  if (Window* window = active()) window->bringFront();
}

Window* Front::windowOf(const form::Screen& screen) const {
  const auto found = windows_.find(&screen);
  return found == windows_.end() ? nullptr : found->second.get();
}

Window* Front::active() const {
  const form::Screen* screen = app_.active();
  return screen == nullptr ? nullptr : windowOf(*screen);
}

}  // namespace quillon::desktop
