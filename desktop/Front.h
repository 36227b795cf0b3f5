#pragma once

#include <map>
#include <memory>
#include <vector>

#include "form/App.h"
#include "form/Input.h"

namespace quillon::desktop {

class Window;

// The program's screens as windows: one for each screen on view.
//
// Keeps: a window shows what its screen is at the end of every command, and whenever somebody is asked or waits.
class Front final : public form::Watcher {
 public:
  explicit Front(form::App& app);
  ~Front() override;

  form::App& app() const { return app_; }
  form::Input& input() { return input_; }
  // Brings every window in step with its screen, and shows those that are new.
  void sync();
  bool isSyncing() const { return syncing_; }
  // Null while it has none.
  Window* windowOf(const form::Screen& screen) const;
  // The one in front; null when there is none.
  Window* active() const;

 private:
  void opened(form::Screen& screen) override;
  void closing(form::Screen& screen) override;

  form::App& app_;
  form::Input input_;
  std::map<const form::Screen*, std::unique_ptr<Window>> windows_;
  bool syncing_ = false;
};

}  // namespace quillon::desktop
