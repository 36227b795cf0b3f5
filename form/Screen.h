#pragma once

#include <any>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "form/Control.h"
#include "form/Layout.h"
#include "form/Person.h"
#include "form/Place.h"

namespace quillon::store {
class Database;
}

namespace quillon::form {

class App;
struct ScreenEntry;
class Table;

// How a screen is asked for.
struct Open {
  bool newRow = false;
  std::map<std::string, store::Value> locate = {};  // field and value of the row to stand on
  std::string filter = {};                          // the clause of a jump
  std::string focus = {};                           // control or field
  std::string page = {};                            // caption of the page to turn to
  std::string title = {};
  std::map<std::string, store::Value> values = {};  // what else this screen takes
  std::any draft = {};                              // a document drafted elsewhere
};

struct Result {
  bool confirmed = false;
  std::map<std::string, store::Value> values = {};
};

// A small world of controls over cursors, with commands. Made by the registry; derived classes say what it shows and
// does. Its tables are members of the derived class (form::Table) and are opened before `build` is called.
class Screen {
 public:
  explicit Screen(App& app) : app_(app) {}
  virtual ~Screen();
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;

  App& app() const { return app_; }
  store::Database& database() const;
  const ScreenEntry& entry() const { return *entry_; }
  const std::string& name() const { return name_; }  // "frmJV"
  virtual std::string title() = 0;
  Control& root() { return *root_; }
  Control* find(std::string_view name);  // in any case; null when there is none
  Control* findField(std::string_view field);
  Control* gridOf(const store::Cursor& cursor);
  // A control and all that hold it, from the outside in; the screen's outermost group is not among them.
  std::vector<Control*> pathTo(const Control& control);
  // Whether it and all that hold it are visible; of steps only those in the one on view are. A page that is turned away
  // counts: who goes there turns it.
  bool isVisible(const Control& control);
  bool isEnabled(const Control& control);  // with all that hold it
  // What takes the focus, in the order of the Tab key: fields, grids and buttons on view.
  std::vector<Control*> tabOrder();
  bool visible() const { return visible_; }
  bool minimised = false;

  // Where the person stands.
  Control* focused() const { return focused_; }
  // What is typed in the focused control, or the active cell, and not yet taken.
  const std::optional<std::string>& typed() const { return typed_; }
  // Whether a person is typing in the control of that field right now: for handlers of its changes.
  bool isTyping(std::string_view field) const;
  // What typing would change: the focused control, or the active column where that is a grid. Null for none.
  Control* target() const;

  // The result of a modal screen; a command that sets it closes the screen when it ends.
  void setResult(bool confirmed) { result_.confirmed = confirmed, resultSet_ = true; }
  Result& result() { return result_; }
  bool hasResult() const { return resultSet_; }

  // Whether Esc asks to close it, when nothing is left to undo.
  virtual bool closesByEsc() const { return true; }

  // Called by App.
  void prepare(const ScreenEntry& entry, std::string name);
  void show(const Open& open);
  void hide();
  void closeTables();
  bool askToClose() { return mayClose(); }
  int layer = 0;  // of modal screens, that it was opened in

  // Called by Input.
  void setFocus(Control* control);  // turns the pages that hold it
  void setTyped(std::optional<std::string> text) { typed_ = std::move(text); }
  void takeTyped();  // raises what is wrong with it; then text and focus stay
  void dropTyped() { typed_.reset(); }
  void goTo(const Place& place);
  void focusFirst();
  void attach(Table& table) { tables_.push_back(&table); }
  const std::vector<Table*>& tables() const { return tables_; }

 protected:
  virtual void build(Layout& layout) = 0;
  // Each time it comes on view: refreshes what it shows. `open` says how it was asked for.
  virtual void shown(const Open& /*open*/) {}
  // Asked for again while it is on view.
  virtual void shownAgain(const Open& open) { shown(open); }
  // Asks what has to be asked; false: stays open.
  virtual bool mayClose() { return true; }
  // After it left the view.
  virtual void closed() {}

  friend class App;

 private:
  void openTables();
  void turnTo(std::string_view page);

  App& app_;
  const ScreenEntry* entry_ = nullptr;
  std::string name_;
  std::unique_ptr<Control> root_;
  std::vector<Table*> tables_;
  Control* focused_ = nullptr;
  std::optional<std::string> typed_;
  const Control* taking_ = nullptr;
  Result result_;
  bool resultSet_ = false;
  bool visible_ = false;
};

}  // namespace quillon::form
