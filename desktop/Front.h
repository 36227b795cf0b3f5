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
  // Lives while something that a person did in a window is seen to. Windows that close meanwhile are freed only when
  // the last of these has ended: a widget of theirs may be in the middle of it.
  class Busy {
   public:
    explicit Busy(Front& front) : front_(front) { ++front_.busy_; }
    ~Busy() { --front_.busy_; }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

   private:
    Front& front_;
  };
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
  std::vector<std::unique_ptr<Window>> left_;  // closed, and to be freed
  int busy_ = 0;
  bool syncing_ = false;
};

}  // namespace quillon::desktop
