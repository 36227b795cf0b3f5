#pragma once

#include <iosfwd>
#include <optional>
#include <string>

#include "apps/drive/Lines.h"
#include "apps/drive/Reply.h"
#include "apps/drive/Requests.h"
#include "form/Person.h"

namespace quillon::apps {

class Program;

// Whoever sits in front when the program is driven by lines of JSON.
//
// Keeps: one reply for each line, in order. A question, or a modal screen, in the middle of a command reads the
// requests that follow itself, so that the calls of the program nest as the work does; the reply to a request is
// written when the next one is read, and says what waits by then. When the input ends every question is answered as if
// it were closed, and every modal screen is, so that all commands come to their end.
class DrivePerson final : public form::Person, private form::Watcher {
 public:
  DrivePerson(Lines& in, std::ostream& out) : in_(in), out_(out) {}

  // Starts the program, on the company of the folder or as a person would, and serves until the end of the input, or
  // until the main window closed; frees everything, then writes the last reply.
  void serve(Program& program, const std::string& folder = {});

  form::Button ask(const form::Dialog& dialog) override;
  std::optional<std::string> askText(const std::string& caption, const std::string& prompt,
                                     const std::string& initial) override;
  std::optional<std::string> chooseFile(const form::FileQuestion& question) override;
  std::optional<std::string> chooseFolder(const std::string& title, const std::string& initial) override;
  std::optional<form::PrintChoice> choosePrint(const form::PrintQuestion& question) override;
  void runModal(form::Screen& screen) override;
  bool progress(const form::Progress& progress) override;
  void hourglass(bool /*on*/) override {}
  void clipboard(const std::string& text) override { reply_.clipboard = text; }
  void openOutside(const std::string& pathOrLink) override { reply_.outside.push_back(pathOrLink); }

 private:
  void opened(form::Screen& screen) override { reply_.opened.push_back(screen.name()); }
  void closing(form::Screen& screen) override { reply_.closed.push_back(screen.name()); }
  void ended(const form::Ended& ended) override { reply_.finished.push_back(ended); }

  std::optional<Request> next();
  void writeReply();
  void refuse(const Error& error);
  void attend(const Request& request);
  void quit(bool force);
  void setOptions(const Json& options);
  // Waits for an answer that `fits`; raises why it does not. Null when it is closed.
  std::optional<Json> answerTo(Question question, const std::function<void(const Json&)>& fits);
  std::optional<std::string> pathFor(Question question);
  void countPastEnd();

  Lines& in_;
  std::ostream& out_;
  Program* program_ = nullptr;
  Reply reply_{.ready = true};
  bool owed_ = true;   // a reply that is not written yet
  int depth_ = 0;      // requests whose commands have not ended
  int owner_ = 0;      // whose command the reply tells of
  bool over_ = false;  // no more requests come
  int pastEnd_ = 0;    // questions since then
  bool tellsProgress_ = false;
  std::optional<Question> question_;
};

}  // namespace quillon::apps
