#pragma once

#include <QProgressDialog>
#include <memory>

#include "form/Person.h"
#include "platform/Desktop.h"

namespace quillon::desktop {

class Front;

// Whoever sits in front of the windows.
class QtPerson final : public form::Person {
 public:
  QtPerson();
  ~QtPerson() override;
  // Before anybody is asked.
  void sitBefore(Front& front, platform::Desktop& desktop) { front_ = &front, desktop_ = &desktop; }

  form::Button ask(const form::Dialog& dialog) override;
  std::optional<std::string> askText(const std::string& caption, const std::string& prompt,
                                     const std::string& initial) override;
  std::optional<std::string> chooseFile(const form::FileQuestion& question) override;
  std::optional<std::string> chooseFolder(const std::string& title, const std::string& initial) override;
  std::optional<form::PrintChoice> choosePrint(const form::PrintQuestion& question) override;
  void runModal(form::Screen& screen) override;
  void work(form::Screen& screen, const std::function<bool()>& step) override;
  bool progress(const form::Progress& progress) override;
  void hourglass(bool on) override;
  void clipboard(const std::string& text) override;
  void openOutside(const std::string& pathOrLink) override;

 private:
  QWidget* owner() const;  // of dialogs
  void settle();           // all that is known is on view, and the pointer is the ordinary one

  Front* front_ = nullptr;
  platform::Desktop* desktop_ = nullptr;
  std::unique_ptr<QProgressDialog> progress_;
  bool waiting_ = false;
};

}  // namespace quillon::desktop
