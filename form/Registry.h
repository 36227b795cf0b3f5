#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "form/PageRun.h"

namespace quillon::form {

class App;
class Screen;

// How a screen is opened.
enum class Opening {
  list,         // one instance; asked for again, it is refreshed and its filter taken off
  filterFirst,  // its filter screen runs first and opens it
  plain,        // one instance
  modal,
  companion,  // by other screens only
};

enum class Lifetime {
  freed,   // when it closes
  hidden,  // it keeps its values, and others may set them; freed with the company
  kept,    // until the process ends
};

struct ScreenEntry {
  std::string className;  // "TfrmJVs"
  Opening opening = Opening::plain;
  std::string right = {};        // field of Users that lets a person in; empty: anybody
  std::string displayName = {};  // of the right, where it is not the field's name
  std::string filterScreen = {};
  Lifetime lifetime = Lifetime::freed;
  bool many = false;      // several instances: frmPreview, frmPreview2, ...
  bool ofCompany = true;  // works on the company's tables: closed, and freed, with it
  int help = 0;           // context number of its page in the manual; 0 is the contents
  // Null: not in this version.
  std::function<std::unique_ptr<Screen>(App&)> make = nullptr;

  std::string instanceName() const { return className.starts_with("Tfrm") ? className.substr(1) : className; }
};

// A row of the main window's menus: its path, with access keys ("&GL > &JVs"), and the screen behind it. One without a
// screen is a command of the main window, which knows it by its name.
struct MenuRow {
  std::string path;
  std::string screen = {};  // class name
  std::string name = {};    // of the entry
};

// The screens and menus of the program. Filled at the start; every folder adds its own.
class Registry {
 public:
  void add(ScreenEntry entry);  // an entry of that class that has no maker yet is completed
  void addReport(ReportEntry entry) { reports_.push_back(std::move(entry)); }
  void addMenu(MenuRow row) { menu_.push_back(std::move(row)); }

  const ScreenEntry* find(std::string_view className) const;             // null: no such screen
  const ScreenEntry* findInstance(std::string_view instanceName) const;  // "frmJVs", in any case
  const std::deque<ScreenEntry>& screens() const { return screens_; }
  const ReportEntry* findReport(std::string_view className) const;  // null: no such report; in any case
  const std::deque<ReportEntry>& reports() const { return reports_; }
  const std::vector<MenuRow>& menu() const { return menu_; }
  // The rows whose path ends with this one; a path may leave out its beginning, "&" and "..." always.
  std::vector<const MenuRow*> menuRows(std::string_view path) const;

 private:
  std::deque<ScreenEntry> screens_;  // open screens look at theirs
  std::deque<ReportEntry> reports_;
  std::vector<MenuRow> menu_;
};

// Whether "&GL > &JVs" ends with "JVs"; in any case, "&" and "..." left out.
bool endsWithPath(std::string_view path, std::string_view ending);
// A caption without its access key's mark and its "..." .
std::string plainCaption(std::string_view caption);

}  // namespace quillon::form
