#include "apps/drive/Requests.h"

#include <algorithm>
#include <array>

#include "apps/Program.h"
#include "apps/ValueText.h"
#include "apps/drive/JsonWriter.h"
#include "apps/drive/Names.h"
#include "apps/drive/State.h"
#include "base/Text.h"
#include "form/Grid.h"
#include "form/PageView.h"
#include "shell/Security.h"
#include "store/Query.h"

namespace quillon::apps {
namespace {

using Done = std::optional<form::Ended>;

// What goes with the verbs; a request takes no other names.
struct Verb {
  std::string_view name;
  std::array<std::string_view, 3> others = {};
  bool beforeAnswer = false;
  Done (*serve)(Program&, const Request&, Reply&) = nullptr;  // null: the conversation itself sees to it
};

bool canBeClicked(const form::Control& control) { return static_cast<bool>(control.command()); }
bool canBeSet(const form::Control& control) { return control.binding() || control.grid(); }
bool showsPages(const form::Control& control) { return control.pageView() != nullptr; }
bool isGrid(const form::Control& control) { return control.grid() != nullptr; }

std::string quoted(std::string_view name) { return "'" + std::string(name) + "'"; }

// What a person would have typed for it.
std::string typingOf(Program& program, const Json& value);

Done serveOpen(Program& program, const Request& request, Reply&) {
  const form::Registry& registry = program.app().registry();
  const form::ScreenEntry* entry = registry.find(request.name());
  if (entry != nullptr && entry->opening != form::Opening::companion)
    return program.input().open(program.mainWindow(), *entry);
  std::vector<std::string> names;
  for (const form::ScreenEntry& some : registry.screens())
    if (some.make && some.opening != form::Opening::companion) names.push_back(some.className);
  throw RequestRefused(entry ? quoted(entry->className) + " is opened by other screens only"
                             : "There is no screen " + quoted(request.name()),
                       names);
}

// What the main window's menus hold besides what is the same in every company: the companies. They stand behind, so
// that a company's name changes no path of the program.
Done serveListedEntry(Program& program, const std::string& asked) {
  form::Screen& main = program.mainWindow();
  std::vector<std::string> all, paths;
  form::Control* found = nullptr;
  eachMenuEntry(main.root(), [&](const std::string& path, form::Control& entry) {
    if (!main.isVisible(entry)) return;
    all.push_back(form::plainCaption(path));
    if (!form::endsWithPath(path, asked)) return;
    paths.push_back(all.back());
    found = &entry;
  });
  if (found == nullptr) throw RequestRefused("There is no menu entry " + quoted(asked), all);
  if (paths.size() > 1) throw RequestRefused("The menu entry " + quoted(asked) + " is ambiguous", paths);
  return program.input().click(main, *found);
}

Done serveMenu(Program& program, const Request& request, Reply&) {
  const form::Registry& registry = program.app().registry();
  const std::vector<const form::MenuRow*> rows = registry.menuRows(request.name());
  if (rows.empty()) return serveListedEntry(program, request.name());
  std::vector<std::string> paths;
  paths.reserve(rows.size());
  for (const form::MenuRow* row : rows) paths.push_back(form::plainCaption(row->path));
  // The same screen may stand in several menus.
  const bool same = std::ranges::all_of(
      rows, [&](const form::MenuRow* row) { return !row->screen.empty() && row->screen == rows.front()->screen; });
  if (rows.size() > 1 && !same)
    throw RequestRefused("The menu entry " + quoted(request.name()) + " is ambiguous", paths);
  return program.input().menu(program.mainWindow(), *rows.front());
}

Done serveClick(Program& program, const Request& request, Reply&) {
  const std::string_view name = request.name();
  // What this version does not have is told as the menus tell it.
  for (const form::MenuRow& row : program.app().registry().menu())
    if (equalFolded("frmQuillon." + row.name, name)) return program.input().menu(program.mainWindow(), row);
  const Target target = targetNamed(program.app(), name, canBeClicked);
  if (!target.row) return program.input().click(*target.screen, *target.control);
  Done moved = program.input().cell(*target.screen, *target.control, *target.row, target.column);
  if (!moved->ok) return moved;
  const form::Control* tick = target.control->grid()->tick();
  return tick && tick->name() == target.column ? program.input().tick(*target.screen, *target.control)
                                               : program.input().click(*target.screen, *target.control);
}

Done turnPage(Program& program, const Target& target, const Json& value) {
  const auto& pages = target.control->children();
  if (value.is(Json::Kind::number))
    return program.input().turn(*target.screen, *target.control,
                                static_cast<int>(std::min<std::int64_t>(wholeOf(value, "value"), 1000)));
  std::vector<std::string> captions;
  for (std::size_t i = 0; i < pages.size(); ++i) {
    captions.push_back(form::plainCaption(pages[i]->caption()));
    if (equalFolded(captions.back(), form::plainCaption(value.text)))
      return program.input().turn(*target.screen, *target.control, static_cast<int>(i));
  }
  throw RequestRefused("There is no page " + quoted(value.text), captions);
}

Done serveSet(Program& program, const Request& request, Reply&) {
  const Json* value = request.whole.find("value");
  if (value == nullptr) throw RequestRefused("\"set\" needs a \"value\"");
  const Target target = targetNamed(program.app(), request.name(), canBeSet);
  if (target.control->kind() == form::Kind::pages) return turnPage(program, target, *value);
  const std::string text = typingOf(program, *value);
  if (target.row) return program.input().setCell(*target.screen, *target.control, *target.row, target.column, text);
  if (!value->is(Json::Kind::boolean)) return program.input().set(*target.screen, *target.control, text);
  if (target.control->kind() != form::Kind::check)
    throw RequestRefused(quoted(request.name()) + " is no check box: it takes a text");
  return program.input().choose(*target.screen, *target.control, store::Value(value->truth));
}

Done serveType(Program& program, const Request& request, Reply&) {
  const Json* keys = request.whole.find("keys");
  if (keys == nullptr || !keys->is(Json::Kind::text)) throw RequestRefused("\"type\" needs a text in \"keys\"");
  const Target target = targetNamed(program.app(), request.name(), canBeSet);
  Done moved = target.row ? program.input().cell(*target.screen, *target.control, *target.row, target.column)
                          : program.input().focus(*target.screen, *target.control);
  return moved->ok ? program.input().keys(*target.screen, keys->text) : moved;
}

Done serveKey(Program& program, const Request& request, Reply&) {
  form::Screen* active = program.app().active();
  if (active == nullptr) throw RequestRefused("No screen is open");
  return program.input().key(*active, request.name());
}

Done locate(Program& program, const Target& target, const Json* values) {
  if (values == nullptr || !values->is(Json::Kind::object) || values->members.empty())
    throw RequestRefused(R"("locate" needs "values" such as {"JVNumber":1001})");
  store::Cursor& cursor = target.control->grid()->cursor();
  std::string fields;
  std::vector<store::Value> wanted;
  for (const auto& [name, value] : values->members) {
    const int position = cursor.fieldPosition(name);
    if (position < 0) {
      std::vector<std::string> names;
      names.reserve(static_cast<std::size_t>(cursor.fieldCount()));
      for (int i = 0; i < cursor.fieldCount(); ++i) names.push_back(cursor.field(i).definition().name);
      throw RequestRefused("There is no field " + quoted(name), names);
    }
    fields += (fields.empty() ? "" : ";") + name;
    if (value.is(Json::Kind::object) || value.is(Json::Kind::array))
      throw RequestRefused("\"values\" takes texts, numbers, true, false and null");
    std::string cell;
    if (value.is(Json::Kind::null))
      appendCell(cell, {});
    else if (value.is(Json::Kind::boolean))
      cell = value.truth ? "true" : "false";
    else
      appendEscaped(cell, value.text);
    try {
      wanted.push_back(valueOfCell(cell, cursor.field(position).definition()));
    } catch (const Error& error) {
      throw RequestRefused("The field " + quoted(name) + ": " + error.what());
    }
  }
  return program.input().locate(*target.screen, *target.control, fields, wanted);
}

Done serveGrid(Program& program, const Request& request, Reply&) {
  static constexpr std::array<std::string_view, 7> kActions = {"append", "insert", "delete", "up",
                                                               "down",   "goto",   "locate"};
  const Json* action = request.whole.find("do");
  if (action == nullptr || std::ranges::find(kActions, action->text) == kActions.end())
    throw RequestRefused("\"grid\" needs a \"do\"", {kActions.begin(), kActions.end()});
  const Target target = targetNamed(program.app(), request.name(), isGrid);
  if (!isGrid(*target.control)) throw RequestRefused(quoted(request.name()) + " is no grid");
  const Json* row = request.whole.find("row");
  const Json* values = request.whole.find("values");
  if ((row != nullptr) != (action->text == "goto"))
    throw RequestRefused(row ? "Only \"goto\" takes a \"row\"" : "\"goto\" needs a \"row\"");
  if (values != nullptr && action->text != "locate") throw RequestRefused("Only \"locate\" takes \"values\"");
  if (row)
    return program.input().cell(*target.screen, *target.control, static_cast<std::uint64_t>(wholeOf(*row, "row")), "");
  if (action->text == "locate") return locate(program, target, values);
  return program.input().grid(*target.screen, *target.control, action->text);
}

// The figure is told by its text, and by its page where that is not the one on view.
Done serveFollow(Program& program, const Request& request, Reply&) {
  const Target target = targetNamed(program.app(), request.name(), showsPages);
  const form::PageView* view = target.control->pageView();
  if (view == nullptr || !view->pages) throw RequestRefused(quoted(request.name()) + " shows no pages");
  int page = view->page;
  if (const Json* asked = request.whole.find("page"))
    page = static_cast<int>(std::min<std::int64_t>(wholeOf(*asked, "page"), INT32_MAX));
  const Json* text = request.whole.find("text");
  if (text == nullptr || !text->is(Json::Kind::text)) throw RequestRefused("\"follow\" needs a \"text\"");
  if (page < 1 || page > view->pages->pageCount()) throw RequestRefused("There is no page " + std::to_string(page));
  const std::vector<form::PageLink> links = view->pages->links(page);
  const auto found = std::ranges::find(links, text->text, &form::PageLink::text);
  if (found != links.end())
    return program.input().follow(*target.screen, *target.control, page,
                                  static_cast<std::size_t>(found - links.begin()));
  std::vector<std::string> texts;
  texts.reserve(links.size());
  for (const form::PageLink& link : links) texts.push_back(link.text);
  throw RequestRefused(quoted(text->text) + " leads nowhere", texts);
}

Done serveState(Program& program, const Request& request, Reply& reply) {
  constexpr std::int64_t kMostRows = 1000;
  StateRange range;
  if (const Json* from = request.whole.find("from")) range.from = static_cast<std::uint64_t>(wholeOf(*from, "from"));
  if (const Json* count = request.whole.find("count"))
    range.count = static_cast<std::size_t>(std::clamp<std::int64_t>(wholeOf(*count, "count"), 1, kMostRows));
  if (const Json* page = request.whole.find("page"))
    range.page = static_cast<int>(std::min<std::int64_t>(wholeOf(*page, "page"), INT32_MAX));
  reply.members = "\"state\":" + stateOf(program.app(), screenNamed(program.app(), request.name()), range);
  return {};
}

Done serveScreens(Program& program, const Request& request, Reply& reply) {
  if (!request.flag("screens")) throw RequestRefused("\"screens\" takes true");
  reply.members = "\"screens\":" + screensOf(program.app());
  return {};
}

Done serveClose(Program& program, const Request& request, Reply&) {
  form::Screen& screen = screenNamed(program.app(), request.name());
  return program.input().close(screen);
}

Done serveSql(Program& program, const Request& request, Reply& reply) {
  store::Database& database = program.session().database();
  shell::requireRight(program.session(), "Security");
  store::Query query(database, request.name());
  if (!query.givesRows()) {
    reply.members = "\"columns\":[],\"rows\":[],\"changed\":" + std::to_string(query.execute());
    return {};
  }
  query.open();
  JsonWriter columns, rows;
  columns.array();
  for (int i = 0; i < query.fieldCount(); ++i) columns.value(query.field(i).definition().name);
  rows.array();
  for (query.first(); !query.eof(); query.next()) {
    rows.array();
    for (int i = 0; i < query.fieldCount(); ++i) rows.value(query.field(i).value());
    rows.endArray();
  }
  reply.members = "\"columns\":" + columns.endArray().text() + ",\"rows\":" + rows.endArray().text();
  return {};
}

constexpr Verb kVerbs[] = {{"open", {}, false, serveOpen},
                           {"menu", {}, false, serveMenu},
                           {"click", {}, false, serveClick},
                           {"set", {"value"}, false, serveSet},
                           {"type", {"keys"}, false, serveType},
                           {"key", {}, false, serveKey},
                           {"grid", {"do", "row", "values"}, false, serveGrid},
                           {"follow", {"page", "text"}, false, serveFollow},
                           {"state", {"from", "count", "page"}, true, serveState},
                           {"screens", {}, true, serveScreens},
                           {"close", {}, false, serveClose},
                           {"answer", {}, true},
                           {"sql", {}, true, serveSql},
                           {"options"},
                           {"quit", {"force"}, true}};

const Verb& verbOf(const Request& request) { return *std::ranges::find(kVerbs, request.verb, &Verb::name); }

std::string typingOf(Program& program, const Json& value) {
  if (value.is(Json::Kind::null)) return {};
  if (value.is(Json::Kind::boolean)) return value.truth ? "true" : "false";
  if (value.is(Json::Kind::text)) return value.text;
  if (!value.is(Json::Kind::number)) throw RequestRefused("A value is a text, a number, true, false or null");
  std::string text = value.text;
  const std::size_t point = text.find('.');
  if (point != std::string::npos) text.replace(point, 1, program.app().formats().numbers.decimal);
  return text;
}

}  // namespace

const std::string& Request::name() const {
  if (!about().is(Json::Kind::text)) throw RequestRefused("\"" + std::string(verb) + "\" takes a text");
  return about().text;
}

bool Request::flag(std::string_view name) const {
  const Json* found = whole.find(name);
  if (found != nullptr && !found->is(Json::Kind::boolean))
    throw RequestRefused("\"" + std::string(name) + "\" takes true or false");
  return found != nullptr && found->truth;
}

Request readRequest(std::string_view line) {
  Request request{.verb = {}, .whole = parseJson(line)};
  if (!request.whole.is(Json::Kind::object)) throw RequestRefused("A request is a JSON object");
  std::vector<std::string> verbs;
  for (const Verb& verb : kVerbs) {
    verbs.emplace_back(verb.name);
    if (request.whole.find(verb.name) == nullptr) continue;
    if (!request.verb.empty())
      throw RequestRefused("\"" + std::string(request.verb) + "\" and \"" + std::string(verb.name) +
                           "\" are two requests");
    request.verb = verb.name;
  }
  if (request.verb.empty()) throw RequestRefused("This asks for nothing that can be done", verbs);
  const auto& others = verbOf(request).others;
  for (const auto& [name, value] : request.whole.members)
    if (name != request.verb && std::ranges::find(others, name) == others.end())
      throw RequestRefused("\"" + std::string(request.verb) + "\" does not take \"" + name + "\"");
  return request;
}

bool mayComeBeforeAnswer(const Request& request) { return verbOf(request).beforeAnswer; }

std::optional<form::Ended> serve(Program& program, const Request& request, Reply& reply) {
  return verbOf(request).serve(program, request, reply);
}

}  // namespace quillon::apps
