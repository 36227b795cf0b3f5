#include "apps/drive/DrivePerson.h"

#include <algorithm>
#include <ostream>

#include "apps/Program.h"
#include "apps/drive/JsonWriter.h"
#include "apps/drive/Names.h"
#include "base/Text.h"
#include "store/Errors.h"

namespace quillon::apps {
namespace {

using Kind = Json::Kind;

// After the end of the input a command is answered so often at most; then it is stopped.
constexpr int kPastEnd = 1000;

const std::vector<std::string> kOkCancel = {"OK", "Cancel"};

void requireTextOrNull(const Json& answer) {
  const bool text = answer.is(Kind::text) && answer.text.find('\0') == std::string::npos;
  if (!text && !answer.is(Kind::null)) throw RequestRefused("The answer is a text or null");
}

std::optional<std::string> textOrNone(const std::optional<Json>& answer) {
  return answer && answer->is(Kind::text) ? std::optional(answer->text) : std::nullopt;
}

}  // namespace

void DrivePerson::serve(Program& program, const std::string& folder) {
  program_ = &program;
  program.app().watch(this);
  program.start(folder);
  while (!over_ && !program.isOver())
    if (const std::optional<Request> request = next()) attend(*request);
  program.app().watch(nullptr);
  program_ = nullptr;
  try {
    program.end();
  } catch (const Error& error) {
    refuse(error);
    writeReply();
    throw;
  }
  writeReply();
}

// Requests and replies.

void DrivePerson::writeReply() {
  if (!owed_) return;
  owed_ = false;
  Standing standing;
  if (question_) standing.question = &*question_;
  if (program_) {
    if (const form::Screen* active = program_->app().active()) standing.focus = focusOf(*active);
    if (const form::Screen* modal = program_->app().modal()) standing.modal = modal->name();
  }
  out_ << textOf(reply_, standing) << '\n' << std::flush;
  reply_ = {};
  if (!out_) over_ = true;
}

// Writes what is owed and reads on, until a line is a request.
std::optional<Request> DrivePerson::next() {
  while (!over_) {
    writeReply();
    const std::optional<Lines::Line> line = over_ ? std::nullopt : in_.next();
    if (!line) {
      over_ = true;
      break;
    }
    owed_ = true;
    owner_ = depth_;
    try {
      if (line->tooLong) throw RequestRefused("The line is longer than " + std::to_string(Lines::kLongest) + " bytes");
      return readRequest(line->text);
    } catch (const Error& error) {
      refuse(error);
    }
  }
  return std::nullopt;
}

void DrivePerson::refuse(const Error& error) {
  reply_.ok = false;
  reply_.error = error.what();
  if (const auto* refused = dynamic_cast<const RequestRefused*>(&error)) reply_.exists = refused->exists();
  if (const auto* failed = dynamic_cast<const store::StoreError*>(&error)) reply_.code = failed->number();
}

void DrivePerson::attend(const Request& request) {
  const int mine = ++depth_;
  owner_ = mine;
  try {
    if (request.verb == "quit") {
      if (!request.flag("quit")) throw RequestRefused("\"quit\" takes true");
      quit(request.flag("force"));
    } else if (request.verb == "options") {
      setOptions(request.about());
    } else if (request.verb == "answer") {
      throw RequestRefused("Nothing waits for an answer");
    } else if (const auto ended = apps::serve(*program_, request, reply_); ended && !ended->ok && owner_ == mine) {
      reply_.ok = false;
    }
  } catch (const Error& error) {
    refuse(error);
  }
  --depth_;
}

void DrivePerson::setOptions(const Json& options) {
  for (const auto& [name, value] : options.members)
    if (name != "progress" || !value.is(Kind::boolean))
      throw RequestRefused("\"" + name + "\" is no option, or has no such value", {"progress"});
  if (!options.is(Kind::object)) throw RequestRefused("\"options\" takes an object", {"progress"});
  for (const auto& [name, value] : options.members) tellsProgress_ = value.truth;
}

// The orderly end is that of a person who closes the main window.
void DrivePerson::quit(bool force) {
  if (force) {
    over_ = true;
    return;
  }
  form::App& app = program_->app();
  if (question_) throw RequestRefused("A question waits for its answer");
  if (app.modal() != nullptr) throw RequestRefused("'" + app.modal()->name() + "' has to be closed first");
  if (!program_->input().close(program_->mainWindow()).ok) reply_.ok = false;
}

// Questions.

void DrivePerson::countPastEnd() {
  if (++pastEnd_ > kPastEnd) throw Abort();
}

std::optional<Json> DrivePerson::answerTo(Question question, const std::function<void(const Json&)>& fits) {
  if (over_) countPastEnd();
  if (program_) program_->app().settle();
  question_ = std::move(question);
  std::optional<Json> answer;
  while (!answer) {
    const std::optional<Request> request = next();
    if (!request) break;
    if (request->verb != "answer" && mayComeBeforeAnswer(*request)) {
      attend(*request);
      continue;
    }
    try {
      if (request->verb != "answer")
        throw RequestRefused("A question waits: " + question_->text, {"answer", "state", "screens", "sql", "quit"});
      fits(request->about());
      answer = request->about();
    } catch (const Error& error) {
      refuse(error);
    }
  }
  question_.reset();
  return answer;
}

form::Button DrivePerson::ask(const form::Dialog& dialog) {
  Question question{.kind = std::string(form::nameOf(dialog.tone)),
                    .caption = dialog.title(),
                    .text = dialog.text,
                    .buttons = {},
                    .standard = std::string(form::nameOf(dialog.standard))};
  if (dialog.buttons.size() == 1) {
    reply_.messages.push_back(std::move(question));
    if (over_) countPastEnd();
    return dialog.buttons.front();
  }
  for (const form::Button button : dialog.buttons) question.buttons.emplace_back(form::nameOf(button));
  form::Button pressed = dialog.dismissal();
  const std::vector<std::string> names = question.buttons;
  answerTo(std::move(question), [&](const Json& answer) {
    const auto found = std::ranges::find_if(
        names, [&](const std::string& name) { return answer.is(Kind::text) && equalFolded(name, answer.text); });
    if (found == names.end()) throw RequestRefused("That is none of the buttons", names);
    pressed = dialog.buttons[static_cast<std::size_t>(found - names.begin())];
  });
  return pressed;
}

std::optional<std::string> DrivePerson::askText(const std::string& caption, const std::string& prompt,
                                                const std::string& initial) {
  return textOrNone(
      answerTo({.kind = "text", .caption = caption, .text = prompt, .buttons = kOkCancel, .standard = initial},
               requireTextOrNull));
}

std::optional<std::string> DrivePerson::pathFor(Question question) {
  std::optional<std::string> path = textOrNone(answerTo(std::move(question), requireTextOrNull));
  return path && path->empty() ? std::nullopt : path;
}

std::optional<std::string> DrivePerson::chooseFile(const form::FileQuestion& question) {
  return pathFor({.kind = "file",
                  .caption = question.title,
                  .text = question.filter,
                  .buttons = kOkCancel,
                  .standard = question.name});
}

std::optional<std::string> DrivePerson::chooseFolder(const std::string& title, const std::string& initial) {
  return pathFor({.kind = "folder", .caption = title, .text = {}, .buttons = kOkCancel, .standard = initial});
}

std::optional<form::PrintChoice> DrivePerson::choosePrint(const form::PrintQuestion& asked) {
  std::optional<form::PrintChoice> choice;
  const int pages = asked.pages;
  std::vector<std::string> names = {"printer", "copies"};
  if (pages > 1) names.insert(names.begin() + 1, {"from", "to"});
  const Question question{.kind = "print",
                          .caption = "Print",
                          .text = std::to_string(pages) + (pages == 1 ? " page" : " pages"),
                          .buttons = kOkCancel,
                          .standard = asked.offered.printer};
  answerTo(question, [&](const Json& answer) {
    choice.reset();
    if (answer.is(Kind::null) || (answer.is(Kind::text) && equalFolded(answer.text, "Cancel"))) return;
    form::PrintChoice chosen = asked.offered;
    const auto number = [](const Json& value, const std::string& name) {
      return static_cast<int>(std::min<std::int64_t>(wholeOf(value, name), INT32_MAX));
    };
    for (const auto& [name, value] : answer.members) {
      if (name == "printer" && value.is(Kind::text))
        chosen.printer = value.text;
      else if (name == "from" && pages > 1)
        chosen.fromPage = number(value, name);
      else if (name == "to" && pages > 1)
        chosen.toPage = number(value, name);
      else if (name == "copies")
        chosen.copies = number(value, name);
      else
        throw RequestRefused("'" + name + "' is not asked, or has no such value", names);
    }
    const bool whole = answer.is(Kind::object) || (answer.is(Kind::text) && equalFolded(answer.text, "OK"));
    if (!whole || chosen.fromPage < 1 || chosen.toPage < chosen.fromPage || chosen.toPage > pages || chosen.copies < 1)
      throw RequestRefused("The answer is null, or an object with pages from 1 to " + std::to_string(pages), names);
    choice = chosen;
  });
  return choice;
}

// Modal screens and long work.

void DrivePerson::runModal(form::Screen& screen) {
  while (screen.visible()) {
    const std::optional<Request> request = next();
    if (request) {
      attend(*request);
      continue;
    }
    countPastEnd();
    program_->app().dismiss(screen);
  }
}

bool DrivePerson::progress(const form::Progress& progress) {
  if (over_) return false;
  if (!tellsProgress_) return true;
  JsonWriter line;
  line.object().key("progress").object().member("text", progress.text).member("done", progress.done);
  line.key("total");
  progress.total > 0 ? line.value(progress.total) : line.null();
  out_ << line.endObject().endObject().text() << '\n' << std::flush;
  return true;
}

}  // namespace quillon::apps
