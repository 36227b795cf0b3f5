#pragma once

#include <concepts>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "form/Binding.h"

namespace quillon::form {

class Grid;
struct PageView;

enum class Kind {
  label,    // a text
  mark,     // a text that shows while a condition holds, such as POSTED
  edit,     // one line
  memo,     // several lines
  check,    // yes or no
  chooser,  // one of a list that drops down
  choice,   // one of a few that all show
  list,     // one of a list that shows
  grid,
  column,  // of a grid
  button,
  menu,  // holds entries
  entry,
  separator,
  toolbar,
  picture,
  progress,
  pages,  // with tabs; holds groups
  steps,  // without tabs: launchers, wizards; holds groups
  group,  // with or without a caption, its controls below each other
  row,    // its controls beside each other
  splitter,
  month,     // a calendar's month
  pageview,  // prepared pages
};
std::string_view nameOf(Kind kind);
bool takesFocus(Kind kind);

// What a command does with what is being typed or edited when it starts.
enum class Pending {
  leaves,    // takes what is typed in the field, no more
  saves,     // and posts the line that is being edited
  abandons,  // drops what is typed; nothing that is being left is validated
};

// What is told where the contents do not say it, in 1/96 inch; 0: as it comes.
struct Size {
  int width = 0, height = 0;
};

// A property that stands, or is asked for again whenever it is needed.
template <typename T>
class Asked {
 public:
  Asked() = default;
  template <std::convertible_to<T> Fixed>
  Asked(Fixed fixed) : fixed_(std::move(fixed)) {}
  template <std::invocable Ask>
  Asked(Ask ask) : ask_(std::move(ask)) {}
  T operator()() const { return ask_ ? ask_() : fixed_; }
  bool isAsked() const { return static_cast<bool>(ask_); }

 private:
  T fixed_{};
  std::function<T()> ask_;
};

// A part of a screen: what it is, what it shows and what it does. Told once in the screen's layout; a renderer places
// it, the driver tells it. Controls are owned by what holds them and live as long as the screen.
class Control {
 public:
  Control(Kind kind, std::string name);
  ~Control();
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  Kind kind() const { return kind_; }
  const std::string& name() const { return name_; }
  std::string caption() const { return caption_(); }
  std::string hint() const { return hint_(); }
  // What the person is told who types into it while it is read-only.
  std::string explanation() const { return explanation_(); }
  bool enabled() const { return enabled_(); }
  bool visible() const { return visible_(); }
  bool readOnly() const { return readOnly_(); }
  bool checked() const { return checked_(); }  // of a menu entry
  int width() const;                           // in characters; 0: as it comes
  int height() const { return height_; }       // in lines; 0: as it comes
  const Size& told() const { return told_; }
  bool showsCaptions() const { return captions_(); }  // of a toolbar: its buttons, and not their icons alone
  bool isHeading() const { return heading_; }         // of a label: stands out
  const std::string& shortcut() const { return shortcut_; }
  Pending pending() const { return pending_; }
  bool wraps() const { return wraps_(); }    // of a memo: lines that are too long go on below
  bool isSecret() const { return secret_; }  // what stands in it is not shown: a password
  bool isDefault() const { return default_(); }
  Binding* binding() const { return binding_.get(); }
  Grid* grid() const { return grid_.get(); }
  PageView* pageView() const { return pageView_; }
  const std::function<void()>& command() const { return command_; }
  const std::function<void(const std::string&)>& typing() const { return typing_; }
  Control* list() const { return list_; }  // list or grid that the arrow keys move in, of a find box
  bool isInColumn() const { return inColumn_; }
  const std::vector<std::unique_ptr<Control>>& children() const { return children_; }
  int page = 0;  // of pages and steps: the one on view

  Control& caption(Asked<std::string> text) { return caption_ = std::move(text), *this; }
  Control& hint(Asked<std::string> text) { return hint_ = std::move(text), *this; }
  Control& explains(Asked<std::string> text) { return explanation_ = std::move(text), *this; }
  Control& enabledWhen(std::function<bool()> condition) { return enabled_ = std::move(condition), *this; }
  Control& visibleWhen(std::function<bool()> condition) { return visible_ = std::move(condition), *this; }
  Control& readOnlyWhen(std::function<bool()> condition) { return readOnly_ = std::move(condition), *this; }
  Control& checkedWhen(std::function<bool()> condition) { return checked_ = std::move(condition), *this; }
  Control& disabled() { return enabled_ = Asked<bool>(false), *this; }
  Control& readOnlyAlways() { return readOnly_ = Asked<bool>(true), *this; }
  Control& wrapsWhen(std::function<bool()> condition) { return wraps_ = std::move(condition), *this; }
  Control& named(std::string name) { return name_ = std::move(name), *this; }
  Control& wide(int characters) { return width_ = characters, *this; }
  Control& high(int lines) { return height_ = lines, *this; }
  Control& sized(Size told) { return told_ = told, *this; }
  Control& captionsWhen(std::function<bool()> condition) { return captions_ = std::move(condition), *this; }
  Control& heading() { return heading_ = true, *this; }
  Control& key(std::string shortcut) { return shortcut_ = std::move(shortcut), *this; }
  Control& saves() { return pending_ = Pending::saves, *this; }
  Control& abandons() { return pending_ = Pending::abandons, *this; }
  Control& standard() { return default_ = Asked<bool>(true), *this; }
  Control& standardWhen(std::function<bool()> condition) { return default_ = std::move(condition), *this; }
  Control& secret() { return secret_ = true, *this; }
  // Hears every key, with the text so far; for find boxes.
  Control& onTyping(std::function<void(const std::string&)> handler) { return typing_ = std::move(handler), *this; }
  // Of a find box: the arrow keys move in that list of choices, or in that grid.
  Control& movesIn(Control& list) { return list_ = &list, *this; }
  // Up and Down lead to the next field of the screen that is in the column, too.
  Control& inColumn() { return inColumn_ = true, *this; }
  // Of a grid: what Enter and a double click do; of a month or a list: a double click.
  Control& opens(std::function<void()> command) { return command_ = std::move(command), *this; }

  // For the layout.
  void bind(BindingPtr binding) { binding_ = std::move(binding); }
  void runs(std::function<void()> command) { command_ = std::move(command); }
  void show(PageView& view) { pageView_ = &view; }
  void setGrid(std::unique_ptr<Grid> grid);
  void adopt(std::unique_ptr<Control> child) { children_.push_back(std::move(child)); }
  std::vector<std::unique_ptr<Control>> takeChildren() { return std::exchange(children_, {}); }

 private:
  Kind kind_;
  std::string name_;
  Asked<std::string> caption_, hint_, explanation_;
  Asked<bool> enabled_{true}, visible_{true}, readOnly_{false}, checked_{false}, default_{false}, wraps_{true},
      captions_{true};
  int width_ = 0, height_ = 0;
  Size told_;
  bool heading_ = false;
  std::string shortcut_;
  Pending pending_ = Pending::leaves;
  bool secret_ = false, inColumn_ = false;
  BindingPtr binding_;
  std::unique_ptr<Grid> grid_;
  PageView* pageView_ = nullptr;
  Control* list_ = nullptr;
  std::function<void()> command_;
  std::function<void(const std::string&)> typing_;
  std::vector<std::unique_ptr<Control>> children_;
};

}  // namespace quillon::form
