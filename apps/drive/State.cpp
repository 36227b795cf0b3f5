#include "apps/drive/State.h"

#include <algorithm>

#include "apps/drive/JsonWriter.h"
#include "apps/drive/Names.h"
#include "form/Grid.h"
#include "form/PageView.h"
#include "form/Table.h"

namespace quillon::apps {
namespace {

using form::Control;
using form::Kind;

class StateWriter {
 public:
  StateWriter(const form::App& app, form::Screen& screen, const StateRange& range)
      : app_(app), screen_(screen), range_(range) {}

  std::string write() {
    out_.object().member("name", screen_.name()).member("class", screen_.entry().className);
    out_.member("title", screen_.title()).member("modal", &screen_ == app_.modal());
    const std::string focus = focusOf(screen_);
    focus.empty() ? out_.key("focus").null() : out_.member("focus", focus);
    if (screen_.typed()) out_.member("typed", *screen_.typed());
    writeCursor();
    writeResult();
    writeDefault();
    out_.key("controls").object();
    eachControl(screen_.root(), [this](Control& control) { writeControl(control); });
    out_.endObject().key("menus").array();
    writeMenus();
    return out_.endArray().endObject().text();
  }

 private:
  void writeCursor() {
    static constexpr std::array<const char*, 4> kStates = {"closed", "browse", "edit", "insert"};
    out_.key("cursor");
    if (screen_.tables().empty())
      out_.null();
    else
      out_.value(kStates[static_cast<std::size_t>(screen_.tables().front()->state())]);
  }

  void writeResult() {
    out_.key("result");
    if (screen_.hasResult())
      out_.object().member("confirmed", screen_.result().confirmed).endObject();
    else
      out_.null();
  }

  void writeDefault() {
    const Control* standard = nullptr;
    eachControl(screen_.root(), [&](const Control& control) {
      if (standard == nullptr && control.isDefault() && screen_.isVisible(control)) standard = &control;
    });
    standard ? out_.member("default", standard->name()) : out_.key("default").null();
  }

  void writeControl(Control& control) {
    if (control.name().empty() || control.kind() == Kind::entry) return;
    out_.key(control.name()).object();
    writeLooks(control, screen_.isEnabled(control), screen_.isVisible(control));
    if (control.isDefault()) out_.member("default", true);
    if (!control.shortcut().empty()) out_.member("shortcut", control.shortcut());
    if (control.binding()) writeValue(control);
    if (control.grid()) writeGrid(*control.grid());
    if (control.pageView()) writePages(*control.pageView());
    if (control.kind() == Kind::pages || control.kind() == Kind::steps) {
      out_.member("page", control.page).key("pages").array();
      for (const auto& page : control.children()) out_.value(page->caption());
      out_.endArray();
    }
    out_.endObject();
  }

  void writeLooks(const Control& control, bool enabled, bool visible) {
    out_.member("kind", form::nameOf(control.kind())).member("caption", control.caption());
    out_.member("enabled", enabled).member("visible", visible).member("readOnly", control.readOnly());
    out_.member("hint", control.hint());
    if (const std::string why = control.explanation(); !why.empty()) out_.member("explanation", why);
  }

  void writeValue(const Control& control) {
    form::Binding& binding = *control.binding();
    const store::Value data = binding.data();
    if (data.kind() == store::Value::Kind::blob) {  // a picture has no text
      out_.key("data").object().member("bytes", data.asBlob().bytes.size()).endObject();
      return;
    }
    if (control.isSecret()) {
      out_.member("value", data.isNull() ? "" : "********").key("data").null();
      return;
    }
    out_.member("value", binding.text()).member("data", data);
    const form::Choices choices = binding.choices();
    if (choices.empty() || control.kind() == Kind::check) return;
    out_.key("choices").array();
    for (const auto& [value, text] : choices) out_.value(text);
    out_.endArray();
  }

  void writeGrid(form::Grid& grid) {
    out_.key("columns").array();
    for (const auto& column : grid.columns()) {
      out_.object().member("name", column->name());
      writeLooks(*column, column->enabled(), column->visible());
      out_.endObject();
    }
    const form::Grid::View view =
        range_.from ? grid.rows(*range_.from, range_.count) : grid.rowsAround(range_.count / 2, (range_.count - 1) / 2);
    out_.endArray().member("total", view.total).member("from", view.from);
    const auto column = static_cast<std::size_t>(grid.activeColumn());
    out_.key("active").object().member("row", grid.activeRow()).key("column");
    column < grid.columns().size() ? out_.value(grid.columns()[column]->name()) : out_.null();
    out_.endObject().key("rows").array();
    for (const form::Grid::Row& row : view.rows) {
      out_.object();
      writeCells(grid, "cells", row.texts);
      writeCells(grid, "data", row.data);
      if (row.active) out_.member("active", true);
      if (row.isNew) out_.member("new", true);
      out_.endObject();
    }
    out_.endArray();
  }

  template <typename T>
  void writeCells(const form::Grid& grid, const char* name, const std::vector<T>& cells) {
    out_.key(name).object();
    std::size_t shown = 0;
    for (const auto& column : grid.columns())
      if (column->visible()) out_.member(column->name(), cells[shown++]);
    out_.endObject();
  }

  void writePages(const form::PageView& view) {
    out_.member("page", view.page).member("zoom", view.zoom).member("found", view.found);
    if (!view.pages) return;
    form::PageSource& pages = *view.pages;
    out_.member("title", pages.title()).member("count", pages.pageCount());
    if (!range_.page) return;
    if (*range_.page < 1 || *range_.page > pages.pageCount())
      throw RequestRefused("There is no page " + std::to_string(*range_.page) + "; it has " +
                           std::to_string(pages.pageCount()));
    out_.member("text", pages.pageText(*range_.page)).key("links").array();
    for (const form::PageLink& link : pages.links(*range_.page)) out_.value(link.text);
    out_.endArray();
  }

  void writeMenus() {
    eachMenuEntry(screen_.root(), [this](const std::string& path, const Control& entry) {
      out_.object().member("name", entry.name()).member("path", path);
      out_.member("enabled", screen_.isEnabled(entry)).member("visible", screen_.isVisible(entry));
      out_.member("checked", entry.checked()).member("hint", entry.hint());
      if (!entry.shortcut().empty()) out_.member("shortcut", entry.shortcut());
      out_.endObject();
    });
  }

  const form::App& app_;
  form::Screen& screen_;
  const StateRange& range_;
  JsonWriter out_;
};

}  // namespace

std::string stateOf(const form::App& app, form::Screen& screen, const StateRange& range) {
  return StateWriter(app, screen, range).write();
}

std::string screensOf(const form::App& app) {
  JsonWriter out;
  out.array();
  for (const auto& screen : app.screens()) {
    if (!screen->visible()) continue;
    out.object().member("name", screen->name()).member("class", screen->entry().className);
    out.member("title", screen->title()).member("modal", screen.get() == app.modal());
    out.member("active", screen.get() == app.active()).member("minimised", screen->minimised).endObject();
  }
  return out.endArray().text();
}

}  // namespace quillon::apps
