#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "form/Formats.h"
#include "form/Person.h"
#include "form/Registry.h"
#include "form/Screen.h"

namespace quillon::store {
class Cursor;
class Database;
enum class ErrorAnswer;
class StoreError;
}  // namespace quillon::store

namespace quillon::form {

// How a command ended.
struct Ended {
  std::string command;  // "frmJV.btnOK"
  bool ok = true;
  bool aborted = false;  // silently
  std::string error = {};
  int code = 0;  // of the store
};

// Hears what happens to screens; for front ends.
class Watcher {
 public:
  virtual ~Watcher() = default;
  virtual void opened(Screen&) {}
  virtual void closing(Screen&) {}  // still there
  virtual void ended(const Ended&) {}
};

// The screens of one program: which there are, which are open, and the guard around every command.
//
// One command at a time: another is refused unless it comes from the layer of a modal screen that the first one runs.
class App {
 public:
  App(Person& person, const Registry& registry, Formats formats, std::string title);
  ~App();
  App(const App&) = delete;
  App& operator=(const App&) = delete;

  Person& person() const { return person_; }
  const Registry& registry() const { return registry_; }
  const Formats& formats() const { return formats_; }
  const std::string& title() const { return title_; }  // of the program; the caption of error dialogs
  Date today() const { return formats_.today(); }
  void watch(Watcher* watcher) { watcher_ = watcher; }
  // Class of the screen that picks a date: takes and gives the value "date". Empty: none.
  std::string calendar;

  // The company's tables; null while none is open.
  void setDatabase(store::Database* database);
  store::Database& database() const;  // Error when no company is open
  bool hasDatabase() const { return database_ != nullptr; }
  // Publishes what the store gathered; done when a command ends. A person who lets somebody wait calls it before:
  // within a transaction nobody may be asked, which is a fault of the program (std::logic_error).
  void settle();
  // A read-only cursor on a table that codes and names are looked up in; lives until the company is closed.
  store::Cursor& lookUp(std::string_view table);
  void refreshLookUps();

  // Whether the person may use a screen: the field of Users and the name to show. Tells them when not.
  std::function<bool(const std::string& field, const std::string& displayName)> checkAccess;
  // Runs a report, by its class name, and shows it in a preview.
  std::function<void(const std::string& report, const Open& open)> preview = [](const std::string& report,
                                                                                const Open&) {
    throw Error("This version does not have the report '" + report + "'");
  };
  // Shows a page of the manual, by its context number.
  std::function<void(int context)> help;

  // What the menus do. The screen, or null when it was modal or did not come on view.
  Screen* openFromMenu(std::string_view className);
  // Whether this version has a screen.
  bool has(std::string_view className) const;
  // One instance, brought to the front. A silent stop where the person may not use it, which they were told; Error when
  // this version does not have it.
  Screen& open(std::string_view className, const Open& open = {});
  Result runModal(std::string_view className, const Open& open = {});
  // Takes step after step of what a screen on view shows, which alone can be used meanwhile, until one gives false or
  // it is closed.
  void work(Screen& screen, const std::function<bool()>& step);
  Screen* find(std::string_view instanceName) const;  // among those on view and those hidden; null
  void bring(Screen& screen);                         // to the front
  // Asks it to close; false when it stays.
  bool close(Screen& screen);
  // Closes it without a question; what is being edited is undone.
  void dismiss(Screen& screen) { leave(screen); }
  const std::vector<std::unique_ptr<Screen>>& screens() const { return screens_; }
  Screen* active() const;  // the one in front, of the top layer
  Screen* modal() const { return modals_.empty() ? nullptr : modals_.back(); }
  // Asks every screen of the company to close, the one in front first. False when one stays: it refused, or a command
  // of its own is running, or it is modal.
  bool closeAll();
  // The company ends: closes its screens without asking and frees them, but for those in which a command runs or that
  // are run modally. They stay as they are, with their tables closed. The first error is raised when all is done.
  void dropScreens();

  // The guard. Runs an action of a screen: hourglass off at the end, an error shown and the focus where it says, a
  // silent stop to silence; then a screen with a result is closed. Gives how it ended.
  Ended run(Screen& screen, const std::string& name, const std::function<void()>& action);
  bool accepts(const Screen& screen) const;  // whether a command of this screen may start now
  // The record-lock dialog: the answer to a failed edit or delete of a cursor.
  store::ErrorAnswer editError(store::Cursor& cursor, const store::StoreError& error);
  // Closes the screen when the command that runs now has ended.
  void closeLater(Screen& screen) { closing_.push_back(&screen); }

 private:
  struct Running {  // a command
    const Screen* screen;
    int layer;
  };

  Screen& make(const ScreenEntry& entry);
  const ScreenEntry& entryOf(std::string_view className) const;
  void requireAccess(const ScreenEntry& entry) const;
  Place attempt(const std::function<void()>& action, Ended& ended);
  void leave(Screen& screen);
  void sweep();
  void settleClosing();
  bool isInUse(const Screen& screen) const;

  Person& person_;
  const Registry& registry_;
  Formats formats_;
  std::string title_;
  Watcher* watcher_ = nullptr;
  store::Database* database_ = nullptr;
  std::map<std::string, std::unique_ptr<store::Cursor>, std::less<>> lookUps_;
  std::vector<std::unique_ptr<Screen>> screens_;  // in the order of coming to the front
  std::vector<Screen*> modals_;
  std::vector<Running> running_;
  std::vector<Screen*> closing_;
};

}  // namespace quillon::form
