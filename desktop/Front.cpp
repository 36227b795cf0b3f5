#include "desktop/Front.h"

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

// Its widgets may be in the middle of an event of theirs.
void Front::closing(form::Screen& screen) {
  const auto found = windows_.find(&screen);
  if (found == windows_.end()) return;
  found->second->leave();
  found->second.release()->deleteLater();
  windows_.erase(found);
}

void Front::sync() {
  if (syncing_) return;
  syncing_ = true;
  for (const auto& screen : app_.screens())
    if (Window* window = windowOf(*screen)) window->sync();
  syncing_ = false;
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
