#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "form/Person.h"
#include "form/Screen.h"

namespace quillon::sim {

// A person who answers from a script and writes down what was said and asked.
class ScriptedPerson final : public form::Person {
 public:
  std::vector<std::string> heard;  // "error: text", "confirmation: text"
  std::deque<form::Button> answers;
  std::deque<std::function<void(form::Screen&)>> modals;  // what is done in a modal screen, until it is closed
  std::deque<std::optional<std::string>> texts;           // typed, or paths of files and folders
  form::FileQuestion fileAsked;                           // the latest
  std::function<bool(const form::Progress&)> onProgress;  // hears it and says whether it goes on

  // What was heard since the last time, one a line.
  std::string takeHeard() {
    std::string all;
    for (const std::string& text : std::exchange(heard, {})) all += (all.empty() ? "" : "\n") + text;
    return all;
  }

  form::Button ask(const form::Dialog& dialog) override {
    heard.push_back(std::string(form::nameOf(dialog.tone)) + ": " + dialog.text);
    return dialog.buttons.size() == 1 ? dialog.buttons.front() : next(answers, dialog.text);
  }
  std::optional<std::string> askText(const std::string& caption, const std::string& prompt,
                                     const std::string& /*initial*/) override {
    heard.push_back("text: " + caption + ": " + prompt);
    return next(texts, prompt);
  }
  std::optional<std::string> chooseFile(const form::FileQuestion& question) override {
    heard.push_back("file: " + question.title);
    fileAsked = question;
    return next(texts, question.title);
  }
  std::optional<std::string> chooseFolder(const std::string& title, const std::string& /*initial*/) override {
    heard.push_back("folder: " + title);
    return next(texts, title);
  }
  std::optional<form::PrintChoice> choosePrint(const form::PrintQuestion& question) override {
    return question.offered;
  }
  void runModal(form::Screen& screen) override {
    heard.push_back("modal: " + screen.name());
    next(modals, screen.name())(screen);
    if (screen.visible()) throw std::logic_error(screen.name() + " was left open");
  }
  bool progress(const form::Progress& progress) override { return !onProgress || onProgress(progress); }
  void hourglass(bool /*on*/) override {}
  void clipboard(const std::string& text) override { heard.push_back("clipboard: " + text); }
  void openOutside(const std::string& pathOrLink) override { heard.push_back("outside: " + pathOrLink); }

 private:
  template <typename T>
  static T next(std::deque<T>& script, const std::string& asked) {
    if (script.empty()) throw std::logic_error("nobody answers: " + asked);
    T first = std::move(script.front());
    script.pop_front();
    return first;
  }
};

}  // namespace quillon::sim
