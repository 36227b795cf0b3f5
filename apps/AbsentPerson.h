#pragma once

#include <iostream>

#include "base/Errors.h"
#include "form/Person.h"
#include "form/Screen.h"

namespace quillon::apps {

// Nobody sits in front: a command that runs by itself. What is told goes to standard error; what would have to be
// answered is an Error.
class AbsentPerson final : public form::Person {
 public:
  form::Button ask(const form::Dialog& dialog) override {
    if (dialog.buttons.size() > 1) nobody(dialog.text);
    told_ = dialog.text;
    return dialog.buttons.front();
  }
  std::optional<std::string> askText(const std::string&, const std::string& prompt, const std::string&) override {
    nobody(prompt);
  }
  std::optional<std::string> chooseFile(const form::FileQuestion& question) override { nobody(question.title); }
  std::optional<std::string> chooseFolder(const std::string& title, const std::string&) override { nobody(title); }
  std::optional<form::PrintChoice> choosePrint(const form::PrintQuestion&) override { nobody("Print"); }
  void runModal(form::Screen& screen) override { nobody(screen.title()); }
  bool progress(const form::Progress&) override { return true; }
  void hourglass(bool) override {}
  void clipboard(const std::string&) override {}
  void openOutside(const std::string&) override {}

  const std::string& told() const { return told_; }  // last

 private:
  [[noreturn]] static void nobody(const std::string& asked) { throw Error("This would have to be answered: " + asked); }

  std::string told_;
};

}  // namespace quillon::apps
